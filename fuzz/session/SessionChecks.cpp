#include "SessionChecks.h"

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

QString checkPath(Fuzz::StandIn &world, const QString &path)
{
    QuireCOM &session = *world.session();
    const Newsroom::Answer<Newsroom::Entry> entry = world.newsroom().model().entry(path);
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
    if (directory && directory->IsQueue() != (entry.value.kind == Newsroom::Entry::Queue))
        return QStringLiteral("a queue for a directory, or the other way round");
    session.RemoveDirFromCache(path);
    const StoryID id{101, 5, 6};
    const std::unique_ptr<Story> story(new Story(path, &id));
    story->GetSection(127, QString() = QString(), true);
    return QString();
}

} // namespace

} // namespace SessionFuzz
