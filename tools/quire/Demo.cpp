#include "Demo.h"

#include <QCryptographicHash>

#include "Blobs.h"
#include "Failure.h"
#include "Output.h"
#include "SectionName.h"
#include "ServerStory.h"
#include "TextWidth.h"
#include "TreeSummary.h"
#include "TreeWalk.h"
#include "Words.h"

namespace Tool {

namespace {

constexpr int widestText = 80;
constexpr int indent = 2;
constexpr int linesOfTree = 20;
constexpr int linesOfStory = 12;
constexpr int fewestCharactersOfStory = 200;

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
    read();
    edit();
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
    const TreeSummary summary = summarize(m_session.open(QStringLiteral(".")), TreeView(), m_columns - indent);
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

void Demo::read()
{
    title(QStringLiteral("3. Read a story"));
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
    const QStringList lines = wrapText(text, m_columns - indent);
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
    title(QStringLiteral("4. Lock a story, set a field, save, unlock"));
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
    done("edit", {{QStringLiteral("path"), queue.path},
                  {QStringLiteral("number"), number},
                  {QStringLiteral("field"), field},
                  {QStringLiteral("before"), before},
                  {QStringLiteral("after"), after}});
}

void Demo::keepBlob()
{
    title(QStringLiteral("5. Store a blob and fetch it"));
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
    title(QStringLiteral("6. Sign on with a wrong password"));
    const HRESULT result =
        m_session.tryToSignOn(QString(), m_session.user(), QStringLiteral("certainly not the password"));
    check(FAILED(result), QStringLiteral("a wrong password is refused"));
    check(!m_session.com().IsConnected(), QStringLiteral("nobody is signed on after the refusal"));
    say(QStringLiteral("The server refuses: %1 (%2)").arg(reason(result, true), hexCode(result)));
    done("refused", {{QStringLiteral("code"), hexCode(result)}, {QStringLiteral("message"), reason(result, true)}});
}

void Demo::signOff()
{
    title(QStringLiteral("7. Sign off"));
    m_session.signOn();
    m_session.com().Disconnect();
    QString server;
    QString user;
    QString password;
    m_session.com().GetConnectInfo(server, user, password);
    check(!m_session.com().IsConnected() && user.isEmpty(), QStringLiteral("nobody is signed on any more"));
    say(QStringLiteral("Signed on once more, and off. Nobody is signed on now."));
    done("sign off", {});
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
    for (const QString &line : wrapText(visible(text), m_columns - indent))
        m_host.output.line(line.isEmpty() ? line : QString(indent, QLatin1Char(' ')) + line);
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
