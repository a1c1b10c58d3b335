#include <array>
#include <utility>
#include <vector>

#include <quire/newsroom/server/Owned.h>
#include <quire/newsroom/server/RecordInfo.h>
#include <quire/newsroom/server/ServerCore.h>
#include <quire/orvex/Orvex.h>
#include <quire/platform/Apartment.h>
#include <quire/platform/Bstr.h>
#include <quire/platform/SafeArray.h>

#include "NewsroomChecks.h"
#include "fuzz/Input.h"

namespace NewsroomFuzz {

using namespace Newsroom;

namespace {

constexpr int recordCount = 3;

/// What a record was given; a text that is not there is null.
struct Known
{
    QString name;
    QString queuePath;
    qint32 number = 0;
    bool hasFields = false;
    std::vector<std::pair<QString, QString>> fields;
};

BSTR toBstr(const QString &text)
{
    return text.isNull() ? nullptr : Platform::toBstr(text);
}

bool holds(BSTR there, const QString &text)
{
    return (there == nullptr) == text.isNull() && Platform::toQString(there) == text;
}

/// An array of hits, and what they have to be.
class Hits
{
public:
    Hits()
        : m_core(ServerCore::make(std::make_shared<Model>()))
        , m_info(makeOwned<RecordInfo>(m_core, RecordInfo::searchHit()))
        , m_array(RecordInfo::makeArray(m_core, RecordInfo::searchHit(), recordCount))
    {}
    ~Hits() { m_core->close(); }
    Hits(const Hits &) = delete;
    Hits &operator=(const Hits &) = delete;

    /// One call, which the input chooses.
    QString step(Fuzz::Input &input)
    {
        const int which = input.below(recordCount);
        switch (input.below(5)) {
        case 0:
            return fill(which, input);
        case 1:
            return copy(which, input.below(recordCount));
        case 2:
            return clear(which);
        case 3:
            return copyAlone(which);
        default:
            return copyAll();
        }
    }

    QString wrongIn(SAFEARRAY *array) const
    {
        const Platform::SafeArrayAccess access(array);
        if (access.size() != recordCount)
            return QStringLiteral("%1 records").arg(access.size());
        for (std::size_t i = 0; i < recordCount; ++i) {
            if (!isRight(access.as<Orvex::SearchHit>()[i], m_known.at(i)))
                return QStringLiteral("record %1 holds something else").arg(i);
        }
        return QString();
    }

    SAFEARRAY *array() const { return m_array.get(); }

private:
    static bool isRight(const Orvex::SearchHit &hit, const Known &known)
    {
        if (!holds(hit.name, known.name) || !holds(hit.queuePath, known.queuePath) || hit.id.part1 != known.number)
            return false;
        if (!hit.fields || !known.hasFields)
            return !hit.fields && !known.hasFields;
        const Platform::SafeArrayAccess fields(hit.fields);
        if (fields.size() != known.fields.size())
            return false;
        for (std::size_t i = 0; i < known.fields.size(); ++i) {
            const auto &field = fields.as<Orvex::FieldValue>()[i];
            if (!holds(field.name, known.fields[i].first) || !holds(field.value, known.fields[i].second))
                return false;
        }
        return true;
    }

    QString fill(int which, Fuzz::Input &input)
    {
        clear(which);
        Known &known = m_known.at(std::size_t(which));
        known = {input.text(), input.text(), input.number(), input.below(3) != 0, {}};
        const Platform::SafeArrayAccess access(m_array.get());
        Orvex::SearchHit &hit = access.as<Orvex::SearchHit>()[which];
        hit.name = toBstr(known.name);
        hit.queuePath = toBstr(known.queuePath);
        hit.id.part1 = known.number;
        if (!known.hasFields)
            return QString();
        const int count = input.below(4);
        hit.fields = RecordInfo::makeArray(m_core, RecordInfo::fieldValue(), static_cast<ULONG>(count)).release();
        const Platform::SafeArrayAccess fields(hit.fields);
        for (int i = 0; i < count; ++i) {
            known.fields.emplace_back(input.text(), input.text());
            auto &field = fields.as<Orvex::FieldValue>()[i];
            field.name = toBstr(known.fields.back().first);
            field.value = toBstr(known.fields.back().second);
        }
        return QString();
    }

    QString copy(int from, int to)
    {
        const Platform::SafeArrayAccess access(m_array.get());
        auto *const hits = access.as<Orvex::SearchHit>();
        if (FAILED(m_info->RecordCopy(&hits[from], &hits[to])))
            return QStringLiteral("a record cannot be copied");
        m_known.at(std::size_t(to)) = Known(m_known.at(std::size_t(from)));
        return QString();
    }

    QString clear(int which)
    {
        const Platform::SafeArrayAccess access(m_array.get());
        if (FAILED(m_info->RecordClear(&access.as<Orvex::SearchHit>()[which])))
            return QStringLiteral("a record cannot be cleared");
        Known empty;
        empty.number = m_known.at(std::size_t(which)).number; // nobody owns a number
        m_known.at(std::size_t(which)) = empty;
        return QString();
    }

    QString copyAlone(int which)
    {
        const Platform::SafeArrayAccess access(m_array.get());
        void *made = nullptr;
        if (FAILED(m_info->RecordCreateCopy(&access.as<Orvex::SearchHit>()[which], &made)) || !made)
            return QStringLiteral("no copy was made");
        const bool right = isRight(*static_cast<Orvex::SearchHit *>(made), m_known.at(std::size_t(which)));
        if (FAILED(m_info->RecordDestroy(made)))
            return QStringLiteral("a copy cannot be destroyed");
        return right ? QString() : QStringLiteral("a copy holds something else");
    }

    QString copyAll()
    {
        Platform::SafeArray copied;
        if (FAILED(SafeArrayCopy(m_array.get(), copied.out())))
            return QStringLiteral("the array cannot be copied");
        return wrongIn(copied.get());
    }

    const std::shared_ptr<ServerCore> m_core;
    const Owned<RecordInfo> m_info;
    const Platform::SafeArray m_array;
    std::array<Known, recordCount> m_known;
};

} // namespace

QString checkRecords(const QByteArray &bytes)
{
    const Platform::Apartment apartment;
    const qint64 texts = Census::liveTexts();
    const qint64 arrays = Census::liveArrays();
    {
        Fuzz::Input input(bytes);
        Hits hits;
        while (!input.atEnd()) {
            QString wrong = hits.step(input);
            if (wrong.isEmpty())
                wrong = hits.wrongIn(hits.array());
            if (!wrong.isEmpty())
                return wrong;
        }
    }
    const bool isClean = Census::liveTexts() == texts && Census::liveArrays() == arrays;
    return isClean ? QString() : QStringLiteral("a text or an array is left");
}

} // namespace NewsroomFuzz
