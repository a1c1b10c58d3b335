#include "Demo.h"

#include <functional>

#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QThread>

#include <quire/notify/Search.h>
#include <quire/tree/QueueUpdateMgr.h>
#include <quire/tree/SearchList.h>

#include "Blobs.h"
#include "Failure.h"
#include "Output.h"
#include "QueueLoading.h"
#include "SectionName.h"
#include "ServerStory.h"
#include "TextWidth.h"
#include "TreeSummary.h"
#include "TreeWalk.h"
#include "Words.h"

namespace Tool {

namespace {

constexpr int widestText = 80;
constexpr int narrationIndent = 2;
constexpr int linesOfTree = 14;
constexpr int linesOfStory = 12;
constexpr int fewestCharactersOfStory = 200;
constexpr int longestWait = 10000; // milliseconds, for what the server does by itself

/// Whether \a holds becomes true within the longest wait.
bool waitFor(const std::function<bool()> &holds)
{
    QElapsedTimer time;
    time.start();
    while (!holds()) {
        if (time.elapsed() > longestWait)
            return false;
        QThread::msleep(1);
    }
    return true;
}

} // namespace

Demo::Demo(Session &session, Host &host)
    : m_session(session)
    , m_host(host)
    , m_columns(qMin(host.output.columns(), widestText))
{}

void Demo::run()
{
    signOn();
    walk();
    load();
    read();
    edit();
    search();
    keepBlob();
    beRefused();
    signOff();
    if (m_host.options.json)
        m_host.output.json({{QStringLiteral("steps"), m_steps}});
}

void Demo::signOn()
{
    title(QStringLiteral("1. Sign on"));
    m_session.signOn();
    check(m_session.com().IsConnected(), QStringLiteral("the server says that the session is connected"));
    QString server;
    QString user;
    QString password;
    m_session.com().GetConnectInfo(server, user, password);
    say(QStringLiteral("Signed on to %1 as %2; stories are timed at %3 words a minute.")
            .arg(server, user, QString::number(m_session.com().GetSysReadRate())));
    done("sign on", {{QStringLiteral("server"), server}, {QStringLiteral("user"), user}});
}

void Demo::walk()
{
    title(QStringLiteral("2. Walk the tree"));
    const TreeSummary summary = summarize(m_session.open(QStringLiteral(".")), TreeView(), m_columns - narrationIndent);
    for (const QString &line : summary.lines.mid(0, linesOfTree))
        say(line);
    const int more = summary.lines.size() - linesOfTree;
    if (more > 0)
        say(QStringLiteral("... and %1 more directories and queues, which quire tree shows").arg(more));
    say(QString());
    say(summary.totals());
    check(summary.directories > 0 && summary.queues > 0, QStringLiteral("the tree has directories and queues"));
    done("walk", {{QStringLiteral("directories"), summary.directories},
                  {QStringLiteral("queues"), summary.queues},
                  {QStringLiteral("stories"), summary.stories}});
}

StoryEntry Demo::firstStoryWithText(TreeEntry &queue, QString &text)
{
    TreeWalk walk(m_session.open(QStringLiteral(".")), -1);
    while (walk.next()) {
        if (!walk.entry().isQueue())
            continue;
        for (qint32 position = 0; position < walk.entry().count; ++position) {
            StoryEntry story = readStory(walk.entry(), position);
            text = ServerStory(m_session, walk.entry(), story).text();
            if (text.size() < fewestCharactersOfStory)
                continue;
            queue = walk.entry();
            return story;
        }
    }
    throw Failure(ExitCode::Failed, QStringLiteral("demo: no queue has a story with text"));
}

void Demo::load()
{
    title(QStringLiteral("3. Load a queue on a thread of its own"));
    TreeEntry queue;
    QString text;
    firstStoryWithText(queue, text);
    m_notices = std::make_unique<Notices>();
    m_queue = loadQueue(m_session, queue.path, {-1}, m_host.output);
    check(m_queue->Size() == queue.count, QStringLiteral("all stories of the queue arrive"));
    check(m_queue->GetUpdate() == m_queue->GetLiveRefresh(), QStringLiteral("a live queue is watched"));
    say(QStringLiteral("%1: %2 arrived, 20 with each call; the server will tell of changes.")
            .arg(queue.path, counted(m_queue->Size(), QStringLiteral("story"), QStringLiteral("stories"))));
    done("load", {{QStringLiteral("path"), queue.path}, {QStringLiteral("stories"), m_queue->Size()}});
}

void Demo::read()
{
    title(QStringLiteral("4. Read a story"));
    TreeEntry queue;
    QString text;
    const qint32 number = firstStoryWithText(queue, text).id.part1;
    ServerStory opened(m_session, queue, StoryNumber{number, false});
    const StoryEntry &story = opened.entry();
    check(opened.text() == text, QStringLiteral("the story reads the same by its number"));
    check(!!m_session.com().GetCachedStory(queue.path, &story.id, true),
          QStringLiteral("the session keeps the story's handle"));
    const QString markup = opened.section(StorySection::Whole, true);
    say(QStringLiteral("%1, number %2, \"%3\"").arg(queue.path, QString::number(number), story.name));
    say(QString());
    const QStringList lines = wrapText(text, m_columns - narrationIndent);
    for (const QString &line : lines.mid(0, linesOfStory))
        say(line);
    if (lines.size() > linesOfStory)
        say(QStringLiteral("..."));
    done("read", {{QStringLiteral("path"), queue.path},
                  {QStringLiteral("number"), number},
                  {QStringLiteral("name"), story.name},
                  {QStringLiteral("characters"), text.size()},
                  {QStringLiteral("markupCharacters"), markup.size()}});
}

void Demo::edit()
{
    title(QStringLiteral("5. Lock a story, set a field, save, unlock"));
    TreeEntry queue;
    QString text;
    const qint32 number = firstStoryWithText(queue, text).id.part1;
    ServerStory story(m_session, queue, StoryNumber{number, false});
    const QString field = QStringLiteral("title");
    QString before;
    story.story().GetField(field, before);
    const QString wanted = before + QStringLiteral(" (second edition)");
    story.lock();
    check(story.story().IsLocked(StoryAccess::editLock), QStringLiteral("the story is locked"));
    story.setField(field, wanted);
    story.save();
    story.unlock();
    check(!story.story().IsLocked(StoryAccess::editLock), QStringLiteral("the story is free again"));
    check(story.story().UpdateHeaderID(), QStringLiteral("the saved story has a new revision"));
    QString after;
    ServerStory(m_session, queue, StoryNumber{number, false}).story().GetField(field, after);
    check(after == wanted, QStringLiteral("the field reads back as it was set"));
    say(QStringLiteral("before  %1").arg(before));
    say(QStringLiteral("after   %1").arg(after));
    noticeEdit(field, wanted);
    done("edit", {{QStringLiteral("path"), queue.path},
                  {QStringLiteral("number"), number},
                  {QStringLiteral("field"), field},
                  {QStringLiteral("before"), before},
                  {QStringLiteral("after"), after}});
}

/// The server tells of the edit, and the queue read again has it.
void Demo::noticeEdit(const QString &field, const QString &wanted)
{
    check(waitFor([this] { return Quire::QueueUpdateMgr::NeedsRefresh(m_queue.get(), true); }),
          QStringLiteral("the server tells that the queue has changed"));
    m_queue->Refresh();
    waitForLoad(*m_queue, 0, m_host.output);
    std::vector<Quire::Attribute> values{{field, QString(), 0}};
    for (int index = 0; index < m_queue->Size() && values.front().value != wanted; ++index)
        m_queue->Nth(index)->RetrieveAttrs(values);
    check(values.front().value == wanted, QStringLiteral("the queue read again has the edited story"));
    say(QStringLiteral("The server tells that the queue has changed; read again, it has the new title."));
    m_queue.reset();
}

void Demo::search()
{
    title(QStringLiteral("6. Search everywhere"));
    const QString word = QStringLiteral("lighthouse");
    const std::unique_ptr<Quire::Directory> root(Quire::Directory::NewDirectory(QStringLiteral(".")));
    Quire::SearchList *const list = root ? root->StartSearch(word) : nullptr;
    check(list, QStringLiteral("the server starts a search"));
    const int id = list->SearchID(); // cppcheck-suppress nullPointer; the check above raises then
    Quire::Search &searcher = *Quire::Search::GetSearcher();
    check(waitFor([&] { return searcher.IsSearchDone(id); }), QStringLiteral("the search ends"));
    Quire::ItemList *const hits = searcher.AccessSearchResults(id);
    const int count = hits->u_Size();
    const QString first = count > 0 ? hits->u_Nth(0)->name : QString();
    searcher.EndAccessSearchResults(id);
    searcher.DeleteSearch(id);
    check(count > 0, QStringLiteral("the search finds stories"));
    say(QStringLiteral("\"%1\" is in %2, first in \"%3\".")
            .arg(word, counted(count, QStringLiteral("story"), QStringLiteral("stories")), first));
    done("search", {{QStringLiteral("query"), word}, {QStringLiteral("hits"), count}});
}

void Demo::keepBlob()
{
    title(QStringLiteral("7. Store a blob and fetch it"));
    const BlobName blob{QStringLiteral("quire.demo"), false};
    QByteArray bytes;
    for (int value = 0; value < 1000; ++value)
        bytes += static_cast<char>(value);
    saveBlob(m_session, blob, bytes);
    const BlobContent content = loadBlob(m_session, blob);
    check(content.bytes == bytes, QStringLiteral("the blob comes back as it was stored"));
    const QString hash =
        QString::fromLatin1(QCryptographicHash::hash(content.bytes, QCryptographicHash::Sha256).toHex().left(16));
    say(QStringLiteral("Stored %1 bytes as %2 and fetched the same (SHA-256 %3...).")
            .arg(QString::number(bytes.size()), blob.text(), hash));
    removeBlob(m_session, blob);
    check(!findBlob(m_session, blob), QStringLiteral("the removed blob is gone"));
    say(QStringLiteral("Removed it again."));
    done("blob", {{QStringLiteral("name"), blob.name}, {QStringLiteral("bytes"), bytes.size()}});
}

void Demo::beRefused()
{
    title(QStringLiteral("8. Sign on with a wrong password"));
    const HRESULT result =
        m_session.tryToSignOn(QString(), m_session.user(), QStringLiteral("certainly not the password"));
    check(FAILED(result), QStringLiteral("a wrong password is refused"));
    check(!m_session.com().IsConnected(), QStringLiteral("nobody is signed on after the refusal"));
    say(QStringLiteral("The server refuses: %1 (%2)").arg(reason(result, true), hexCode(result)));
    done("refused", {{QStringLiteral("code"), hexCode(result)}, {QStringLiteral("message"), reason(result, true)}});
}

void Demo::signOff()
{
    title(QStringLiteral("9. Be logged out"));
    m_session.signOn();
    m_notices.reset(); // the notices of the session before
    m_notices = std::make_unique<Notices>();
    m_session.source().logOut(m_session.user());
    check(waitFor([this] { return m_notices->isLoggedOut(); }), QStringLiteral("the server tells of the logout"));
    check(!m_session.com().IsConnected(), QStringLiteral("nobody is signed on any more"));
    m_session.com().Disconnect();
    say(QStringLiteral("Signed on once more; the server logs the session out, and says so."));
    done("logged out", {});
}

void Demo::title(const QString &text)
{
    if (m_host.options.json)
        return;
    if (!m_steps.isEmpty())
        m_host.output.line();
    m_host.output.line(text);
}

void Demo::say(const QString &text)
{
    if (m_host.options.json)
        return;
    for (const QString &line : wrapText(visible(text), m_columns - narrationIndent))
        m_host.output.line(line.isEmpty() ? line : QString(narrationIndent, QLatin1Char(' ')) + line);
}

void Demo::check(bool holds, const QString &expected) const
{
    if (!holds)
        throw Failure(ExitCode::Failed, QStringLiteral("demo: it does not hold that %1").arg(expected));
}

void Demo::done(const char *step, QJsonObject facts)
{
    facts.insert(QStringLiteral("step"), QLatin1String(step));
    m_steps.append(facts);
}

} // namespace Tool
