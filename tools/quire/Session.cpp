#include "Session.h"

#include "Failure.h"
#include "Words.h"
#include <quire/session/QuireCOMMutex.h>

namespace Tool {

namespace {

constexpr long usualOption = 0;

QString pathShown(const QString &path)
{
    return path.isEmpty() ? QStringLiteral(".") : path;
}

[[noreturn]] void failNotFound(const QString &message)
{
    throw Failure(ExitCode::NotFound, message);
}

} // namespace

Session::Session(const Options &options, Access access)
    : m_options(options)
    , m_source(options, access)
{
    Quire::QuireCOM *com = Quire::QuireCOM::GetQuireCOM(true);
    if (!com)
        throw Failure(ExitCode::Failed, QStringLiteral("out of memory"));
    if (!com->IsLoaded()) {
        const auto code = static_cast<HRESULT>(com->GetCOMError());
        throw Failure(ExitCode::SignOnRefused,
                      QStringLiteral("cannot load the news server: %1").arg(reason(code, false)));
    }
}

Session::~Session() = default;

QString Session::user() const
{
    return m_options.user.isNull() ? m_source.firstUser() : m_options.user;
}

void Session::signOn()
{
    // Only for the user that the newsroom itself proposes is its password known here.
    const bool own = m_options.user.isNull() && m_options.password.isNull();
    const QString password = own ? m_source.firstPassword() : m_options.password;
    const HRESULT result = tryToSignOn(m_options.server, user(), password);
    if (FAILED(result))
        throw Failure(ExitCode::SignOnRefused,
                      QStringLiteral("cannot sign on as \"%1\": %2 Check --user, --password (or QUIRE_PASSWORD) and "
                                     "--server.")
                          .arg(user(), reason(result, true)));
}

HRESULT Session::tryToSignOn(const QString &server, const QString &user, const QString &password)
{
    return static_cast<HRESULT>(com().Connect(server, user, password, usualOption));
}

TreeEntry Session::open(const QString &path)
{
    IDispatchPtr handle;
    {
        const Quire::QuireCOMMutex lock("quire::open"); // queues may be loading
        handle = com().GetCachedDir(path);
    }
    if (!handle)
        failNotFound(
            QStringLiteral("there is no \"%1\" on the server; quire tree shows what there is").arg(pathShown(path)));
    TreeEntry entry = readEntry(handle);
    if (!entry.isDirectory() && !entry.isQueue())
        failNotFound(QStringLiteral("\"%1\" is neither a directory nor a queue").arg(pathShown(path)));
    return entry;
}

TreeEntry Session::openQueue(const QString &path)
{
    TreeEntry entry = open(path);
    if (!entry.isQueue())
        failNotFound(QStringLiteral("\"%1\" is a directory; name one of its queues, quire tree %1 shows them")
                         .arg(pathShown(path)));
    return entry;
}

StoryEntry Session::openStory(const TreeEntry &queue, qint32 number)
{
    const Quire::StoryID id{number, 0, 0};
    const IDispatchPtr handle = com().GetCachedStory(queue.path, &id, false);
    if (!handle)
        failNotFound(QStringLiteral("there is no story %1 in %2; quire tree %2 --stories lists the numbers")
                         .arg(QString::number(number), queue.path));
    return readStory(handle, QStringLiteral("story %1 of %2").arg(QString::number(number), queue.path));
}

StoryEntry Session::openStoryAt(const TreeEntry &queue, qint32 position)
{
    if (position < 1 || position > queue.count)
        failNotFound(QStringLiteral("there is no story #%1 in %2, which has %3")
                         .arg(QString::number(position), queue.path,
                              counted(queue.count, QStringLiteral("story"), QStringLiteral("stories"))));
    const StoryEntry story = readStory(queue, position - 1);
    com().AddStoryToCache(queue.path, &story.id, story.story);
    return openStory(queue, story.id.part1);
}

} // namespace Tool
