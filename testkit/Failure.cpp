#include <quire/testkit/Failure.h>

#include <QMap>
#include <QMutex>
#include <QMutexLocker>

#include <atomic>
#include <cstdio>

namespace Quire {
namespace TestKit {

namespace {

std::atomic<FailureHandler> theHandler{nullptr};
std::atomic<int> theCount{0};

/// The notes there are, by numbers that grow.
struct Notes
{
    QMutex mutex;
    QMap<int, QString> texts;
    int last = 0;
};

Notes &notes()
{
    static Notes all;
    return all;
}

QString withNotes(QString text)
{
    Notes &all = notes();
    const QMutexLocker guard(&all.mutex);
    for (const QString &note : qAsConst(all.texts))
        text += QStringLiteral("\n  while ") + note;
    return text;
}

void print(const Failure &failure)
{
    std::fprintf(stderr, "%s:%d: %s\n", failure.place.file ? failure.place.file : "?", failure.place.line,
                 failure.text.toUtf8().constData());
}

} // namespace

FailureHandler setFailureHandler(FailureHandler handler)
{
    return theHandler.exchange(handler);
}

int failureCount()
{
    return theCount;
}

void report(const Place &place, const QString &text)
{
    ++theCount;
    const FailureHandler handler = theHandler;
    (handler ? handler : print)({place, withNotes(text)});
}

Note::Note(const QString &text)
{
    Notes &all = notes();
    const QMutexLocker guard(&all.mutex);
    m_number = ++all.last;
    all.texts.insert(m_number, text);
}

Note::~Note()
{
    Notes &all = notes();
    const QMutexLocker guard(&all.mutex);
    all.texts.remove(m_number);
}

} // namespace TestKit
} // namespace Quire
