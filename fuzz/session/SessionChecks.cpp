#include "SessionChecks.h"

#include <algorithm>
#include <memory>

#include <quire/Quire.h>
#include <quire/newsroom/Newsroom.h>
#include <quire/platform/Bstr.h>

#include "fuzz/Input.h"
#include "fuzz/StandIn.h"

namespace SessionFuzz {

namespace {

using namespace Quire;

const char *const newsroomText = R"(
server HUB-A alias=HUB-B
user ann password=secret
user Élise password=""
form RUNDOWN
  <zeko:form><zeko:row><zeko:cell idref=title length=80>Title</zeko:cell></zeko:row></zeko:form>
directory NEWS
  directory SPORT
    queue SCORES form=RUNDOWN
      story id=101:5:6
        title: Final
  queue WÖRLD form=RUNDOWN
directory MAIL
)";

QString nameOf(const IDispatchPtr &handle)
{
    const QuireCOMMutex lock("Fuzz::nameOf");
    Platform::Bstr name;
    if (const Orvex::IDirectory2Ptr directory = Dispatch2Dir(handle))
        directory->get_Name(name.out());
    else if (const Orvex::IQueue2Ptr queue = Dispatch2Queue(handle))
        queue->get_Name(name.out());
    return name.toString();
}

/// What is at \a path: the entry of that name in what is at the path above, else what the newsroom itself finds.
Newsroom::Answer<Newsroom::Entry> entryAt(const Newsroom::Model &model, const QString &path)
{
    Newsroom::Answer<Newsroom::Entry> above = model.entry(QString());
    for (int start = 0; start <= path.size();) {
        const int dot = path.indexOf(QLatin1Char('.'), start);
        const int end = dot < 0 ? path.size() : dot;
        const QString whole = path.left(end);
        if (end > 0 && whole != QLatin1String(".")) {
            const QString leaf = path.mid(start, end - start);
            const bool isDirectory = above.ok() && !above.value.isQueue();
            const Newsroom::Answer<Newsroom::Entry> below =
                isDirectory ? model.entry(Newsroom::childPath(above.value.path, leaf)) : above;
            above = isDirectory && below.ok() && !leaf.isEmpty() ? below : model.entry(whole);
        }
        start = end + 1;
    }
    return path == QLatin1String(".") ? model.entry(path) : above;
}

QString checkPath(Fuzz::StandIn &world, const QString &path)
{
    QuireCOM &session = *world.session();
    const Newsroom::Answer<Newsroom::Entry> entry = entryAt(world.newsroom().model(), path);
    const IDispatchPtr handle = session.GetCachedDir(path);
    if (bool(handle) != entry.ok())
        return QStringLiteral("a handle of what is not there, or none of what is");
    if (handle && nameOf(handle).compare(entry.value.path, Qt::CaseInsensitive) != 0)
        return QStringLiteral("another handle: ") + nameOf(handle);
    if (session.GetCachedDir(path) != handle)
        return QStringLiteral("another handle the second time");
    const std::unique_ptr<Directory> directory(Directory::NewDirectory(path));
    if (bool(directory) != entry.ok())
        return QStringLiteral("a directory of what is not there, or none of what is");
    if (directory && directory->IsQueue() != (entry.value.isQueue()))
        return QStringLiteral("a queue for a directory, or the other way round");
    session.RemoveDirFromCache(path);
    return QString();
}

QString checkForm(Fuzz::StandIn &world, const QString &name)
{
    QString form = QStringLiteral("former");
    world.session()->GetSystemForm(name, form);
    return form == world.newsroom().model().form(name).value ? QString() : QStringLiteral("another form");
}

QString checkBlob(QuireCOM &session, const QString &name, const QByteArray &bytes)
{
    const bool saved = session.SaveBlob(name, bytes.constData(), bytes.size());
    if (saved == name.isEmpty())
        return QStringLiteral("a blob without a name was kept, or one with a name was not");
    long size = -1;
    const std::unique_ptr<char, void (*)(char *)> loaded(session.LoadBlob(name, &size, nullptr), FreeBlob);
    if (saved != bool(loaded))
        return QStringLiteral("a blob was lost or invented");
    if (saved && QByteArray(loaded.get(), static_cast<int>(size)) != bytes)
        return QStringLiteral("other bytes than were kept");
    return session.DeleteBlob(name) == saved ? QString() : QStringLiteral("a blob cannot be deleted");
}

QString checkSearch(Fuzz::StandIn &world, const QString &text)
{
    const Newsroom::Answer<Newsroom::Query> query = Newsroom::Query::parse(text);
    const bool possible = query.ok() && world.newsroom().model().scope(query.value).ok();
    const long id = world.session()->Search(text);
    if ((id != 0) != possible)
        return QStringLiteral("a search was started that is none, or refused");
    world.session()->StopSearch(id);
    return QString();
}

} // namespace

QString checkNames(const QString &text)
{
    Fuzz::StandIn world(newsroomText);
    const QStringList lines = Fuzz::linesOf(text, 4);
    QString wrong = checkPath(world, lines[0]);
    if (wrong.isEmpty())
        wrong = checkForm(world, lines[1]);
    if (wrong.isEmpty())
        wrong = checkBlob(*world.session(), lines[2], lines[4].toUtf8());
    if (wrong.isEmpty())
        wrong = checkSearch(world, lines[3]);
    return world.end(wrong);
}

QString checkSignOn(const QString &text)
{
    Fuzz::StandIn world(newsroomText);
    QuireCOM &session = *world.session();
    const QStringList lines = Fuzz::linesOf(text, 2);
    const bool isHere = lines[0].isEmpty() || lines[0].compare(QLatin1String("HUB-A"), Qt::CaseInsensitive) == 0 ||
                        lines[0].compare(QLatin1String("HUB-B"), Qt::CaseInsensitive) == 0;
    const QVector<Newsroom::User> users = world.newsroom().model().users();
    const auto user = std::find_if(users.begin(), users.end(), [&](const Newsroom::User &known) {
        return known.name.compare(lines[1], Qt::CaseInsensitive) == 0;
    });
    const bool isKnown = user != users.end() && user->password == lines[2];
    const bool signedOn = session.Connect(lines[0], lines[1], lines[2], 0) >= 0;
    QString server;
    QString name;
    QString password;
    session.GetConnectInfo(server, name, password);
    if (signedOn != (isHere && isKnown) || session.IsConnected() != signedOn)
        return world.end(QStringLiteral("somebody was let in, or kept out"));
    const bool told = signedOn ? name == lines[1] && password == lines[2] && !server.isEmpty()
                               : name.isEmpty() && password.isEmpty() && server.isEmpty();
    return world.end(told ? QString() : QStringLiteral("told otherwise than it was let in with"));
}

} // namespace SessionFuzz
