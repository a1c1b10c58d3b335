#include "ServerStory.h"

#include "Failure.h"
#include "SectionName.h"
#include "Words.h"

namespace Tool {

namespace {

constexpr HRESULT noAnswer = -1; // what the library keeps when a section could not even be asked for

QString why(HRESULT code)
{
    if (code == noAnswer)
        return QStringLiteral("The server does not answer.");
    return FAILED(code) ? reason(code, false) : QStringLiteral("It is gone.");
}

} // namespace

ServerStory::ServerStory(Session &session, const QString &path, const StoryNumber &number)
    : ServerStory(session, session.openQueue(path), number)
{}

ServerStory::ServerStory(Session &session, const TreeEntry &queue, const StoryNumber &number)
    : ServerStory(session, queue, number.open(session, queue))
{}

ServerStory::ServerStory(Session &session, const TreeEntry &queue, const StoryEntry &entry)
    : m_session(session)
    , m_path(queue.path)
    , m_entry(entry)
    , m_story(queue.path, &entry.id)
{
    if (!m_story.IsLoaded())
        throw Failure(ExitCode::NotFound, QStringLiteral("%1 is gone").arg(title()));
}

ServerStory::~ServerStory()
{
    if (!m_locked)
        return;
    try {
        m_story.Unlock();
    } catch (const _com_error &) { // NOLINT(bugprone-empty-catch): with the connection the lock is gone, too
    }
}

void ServerStory::fail(const QString &what) const
{
    throw Failure(ExitCode::Failed, QStringLiteral("cannot %1 %2: %3").arg(what, title(), why(lastError())));
}

void ServerStory::failChange(const QString &what) const
{
    throw Failure(ExitCode::Failed,
                  QStringLiteral("cannot %1 %2: %3 Nothing was saved.").arg(what, title(), why(lastError())));
}

QString ServerStory::title() const
{
    return QStringLiteral("story %1 of %2").arg(QString::number(m_entry.id.part1), m_path);
}

QString ServerStory::section(int number, bool markup)
{
    QString text;
    m_story.GetSection(number, text, markup);
    if (FAILED(lastError()))
        fail(QStringLiteral("read"));
    return text;
}

QString ServerStory::text()
{
    return section(StorySection::Body, false);
}

std::vector<Quire::Attribute> ServerStory::shownFields()
{
    return Quire::Story::GetStoryFields(m_entry.story);
}

void ServerStory::lock()
{
    QString holder;
    m_locked = m_story.Lock(editLock, holder);
    if (m_locked)
        return;
    if (!holder.isEmpty())
        throw Failure(
            ExitCode::Failed,
            QStringLiteral("cannot lock %1: %2 is editing it (%3)").arg(title(), holder, reason(lastError(), false)));
    fail(QStringLiteral("lock"));
}

void ServerStory::unlock()
{
    m_locked = false;
    if (!m_story.Unlock())
        fail(QStringLiteral("give back the lock of"));
}

void ServerStory::setField(const QString &name, const QString &value)
{
    m_story.SetField(name, value);
    if (FAILED(lastError()))
        failChange(QStringLiteral("set %1 of").arg(name));
}

void ServerStory::putSection(int number, const QString &markup)
{
    QString text = markup;
    if (!m_story.PutSection(number, text, true))
        failChange(QStringLiteral("change"));
}

void ServerStory::save()
{
    if (!m_story.Save(true))
        failChange(QStringLiteral("save"));
    m_session.keep();
}

} // namespace Tool
