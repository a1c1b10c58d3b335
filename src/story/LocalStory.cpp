#include <quire/story/LocalStory.h>

#include <utility>

#include "SectionPattern.h"
#include "Sections.h"
#include "TextFile.h"
#include <quire/session/Mutex.h>

namespace Quire {

namespace {

/// Guards LocalStory::sZEKOFile, which stories on several threads set; a leaf.
Mutex<LockRank::LocalStoryPath> &pathMutex()
{
    static Mutex<LockRank::LocalStoryPath> mutex;
    return mutex;
}

/// What stands between the first ">" and the last "<"; the text itself when it is no element.
QString innerText(const QString &element)
{
    const int start = element.indexOf(QLatin1Char('>')) + 1;
    const int end = element.lastIndexOf(QLatin1Char('<'));
    return start == 0 || end < start ? element : element.mid(start, end - start);
}

/// Where the value of a field stands in a fields section.
struct ValuePlace
{
    int start = -1;
    int length = -1;
    bool isValid() const { return length >= 0; }
};

ValuePlace findValue(const QString &fields, const QString &name)
{
    const QString key = QLatin1String("<f id=") + name + QLatin1Char('>');
    const int position = fields.indexOf(key, 0, Qt::CaseInsensitive);
    if (position < 0)
        return {};
    const int start = position + key.length();
    const int end = fields.indexOf(QLatin1String("</f>"), start);
    return end < start ? ValuePlace() : ValuePlace{start, end - start};
}

} // namespace

QString LocalStory::sZEKOFile;

void LocalStory::setLocalPath(QString path)
{
    const MutexLocker lock(pathMutex());
    sZEKOFile = std::move(path);
}

QString LocalStory::getLocalPath()
{
    const MutexLocker lock(pathMutex());
    return sZEKOFile;
}

// ---- making one -----------------------------------------------------------------------------------------------------

LocalStory::LocalStory(QString path) // NOLINT(performance-unnecessary-value-param): hosts are built for this form
{
    m_queuePath = QStringLiteral("LocalStory");
    setLocalPath(path);
    m_text = readTextFile(path);
    if (m_text.isEmpty())
        return;
    m_loaded = true;
    m_queuePath = path;
    LocalStory::Preprocess();
    const QString id = ExtractTextSection(m_text, QStringLiteral("storyid"));
    if (!id.isEmpty())
        String2StoryID(innerText(id), &m_id, 16);
    LocalStory::GetFormName(m_formName);
}

LocalStory::LocalStory(const LocalStory &other) = default;
LocalStory &LocalStory::operator=(const LocalStory &other) = default;
LocalStory::~LocalStory() = default;

// ---- sections and fields --------------------------------------------------------------------------------------------

void LocalStory::GetSection(int section, QString &text, bool)
{
    m_lastError = S_OK;
    const QString name = Section::elementName(section);
    if (section == Section::Whole)
        text = m_text;
    else
        text = name.isNull() ? QString() : ExtractTextSection(m_text, name);
}

bool LocalStory::PutSection(int section, QString &text, bool)
{
    const QString name = Section::elementName(section);
    if (section == Section::Whole)
        m_text = text;
    else if (!name.isNull())
        SetTextSection(m_text, name, text);
    return true;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): hosts are built for this form
void LocalStory::SetTextSection(QString &storyText, QString tag, QString section)
{
    int start = -1;
    int end = -1;
    bool prefixed = false;
    if (!SectionPattern(tag).findWhole(storyText, &start, &end, &prefixed))
        return;
    if (prefixed) {
        section.replace(QLatin1Char('<') + tag, QLatin1String("<zeko:") + tag);
        section.replace(QLatin1String("</") + tag, QLatin1String("</zeko:") + tag);
    }
    storyText.replace(start, end - start, section);
}

void LocalStory::GetField(const QString &name, QString &value)
{
    const QString fields = ExtractTextSection(m_text, Section::elementName(Section::Fields));
    const ValuePlace place = findValue(fields, name);
    if (place.isValid())
        value = fields.mid(place.start, place.length);
}

void LocalStory::SetField(const QString &name, const QString &value)
{
    QString fields = ExtractTextSection(m_text, Section::elementName(Section::Fields));
    const ValuePlace place = findValue(fields, name);
    if (!place.isValid())
        return;
    fields.replace(place.start, place.length, value);
    SetTextSection(m_text, Section::elementName(Section::Fields), fields);
}

void LocalStory::GetFormName(QString &out)
{
    out = innerText(ExtractTextSection(m_text, QStringLiteral("formname")));
}

void LocalStory::GetHeaderInfo()
{
    const QString head = ExtractTextSection(m_text, Section::elementName(Section::Head));
    if (head.isEmpty()) {
        m_keyLock = QStringLiteral("lock");
        return;
    }
    int readRate = m_readRate;
    GetInitialHeaderInfo(head, &m_headerStoryId, &readRate, &m_keyLock);
    m_readRate = readRate;
}

void LocalStory::Preprocess()
{
    const QString open = QStringLiteral("<a ");
    const QString close = QStringLiteral("</a>");
    const QString body = ExtractTextSection(m_text, QStringLiteral("body"));
    QString closed; // the body up to `from`, with every anchor closed
    int from = 0;
    int position = body.indexOf(open);
    while (position >= 0) {
        const int end = body.indexOf(QLatin1Char('>'), position) + 1;
        if (end == 0)
            break;
        if (body.midRef(end, close.length()) != close) {
            closed += body.midRef(from, end - from);
            closed += close;
            from = end;
        }
        position = body.indexOf(open, end);
    }
    if (from > 0)
        SetTextSection(m_text, QStringLiteral("body"), closed + body.midRef(from));
}

// ---- saving and locking ---------------------------------------------------------------------------------------------

bool LocalStory::Save(bool)
{
    writeTextFile(getLocalPath(), m_text);
    return true;
}

bool LocalStory::UpdateHeaderID()
{
    return false;
}

bool LocalStory::Lock(int, QString &)
{
    return false;
}

bool LocalStory::Unlock()
{
    m_lockFlags = 0;
    return true;
}

bool LocalStory::IsLocked(int mask)
{
    return (m_lockFlags & mask) != 0;
}

} // namespace Quire
