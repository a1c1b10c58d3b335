#include "failing/FailureLoop.h"

#include <quire/session/Dispatch2.h>

// The session: loading, signing on, system values, blobs, searches, handles.

using namespace Quire;

namespace Failing::SessionCalls {

namespace {

// ---- loading and signing on -----------------------------------------------------------------------------------------

QString load(World &world)
{
    QuireCOM *const session = QuireCOM::GetQuireCOM(true);
    world.disarm();
    return session ? text("error ") + world.code(session->GetCOMError()) : text("none");
}

QString unload(World &)
{
    QuireCOM::UnloadCOM();
    return given(QuireCOM::TheQuireCOM);
}

/// What the session says of itself after the call, also when that raises.
template<typename Call>
QString withConnectInfo(World &world, const Call &call)
{
    const QString result = attempt(world, call);
    QString server;
    QString user;
    QString password;
    world.session().GetConnectInfo(server, user, password);
    return text("%1, %2/%3/%4").arg(result, server, user, password);
}

QString connect(World &world)
{
    return withConnectInfo(
        world, [&world] { return world.code(world.session().Connect(text("hub"), text("ann"), text("secret"), 0)); });
}

QString disconnect(World &world)
{
    return withConnectInfo(world, [&world] {
        world.session().Disconnect();
        return text("done");
    });
}

QString connectionPoint(World &world)
{
    const IConnectionPointContainerPtr container(world.session().GetConnectionPoint(), false);
    return given(container);
}

// ---- values and blobs -----------------------------------------------------------------------------------------------

QString userInfo(World &world)
{
    UserInfo info;
    info.text1 = text("before");
    world.session().GetUserInfo(info);
    return text("%1 %2 %3").arg(info.text1).arg(info.number1).arg(info.number2);
}

QString systemForm(World &world)
{
    QString form = text("before");
    world.session().GetSystemForm(text("STORY"), form);
    return form.left(11);
}

void keepBlobs(World &world)
{
    world.server().model()->setBlob(text("LAYOUT"), "ABC");
    world.server().model()->setUserBlob(text("ann"), "AB");
}

template<typename Load>
QString blobBy(const Load &load)
{
    long size = -7;
    long extra = -8;
    char *const bytes = load(&size, &extra);
    QString described = text("%1: %2, %3").arg(given(bytes)).arg(size).arg(extra);
    FreeBlob(bytes);
    return described;
}

QString loadBlob(World &world)
{
    return blobBy([&](long *size, long *extra) { return world.session().LoadBlob(text("LAYOUT"), size, extra); });
}

QString loadUserBlob(World &world)
{
    return blobBy([&](long *size, long *extra) { return world.session().LoadUserBlob(size, extra); });
}

QString saveBlob(World &world)
{
    return yes(world.session().SaveBlob(text("NEW"), "XYZ", 3));
}

QString deleteBlob(World &world)
{
    return yes(world.session().DeleteBlob(text("LAYOUT")));
}

QString blobText(const Newsroom::Answer<Newsroom::Blob> &blob)
{
    return blob.ok() ? QString::fromLatin1(blob.value.data) : text("none");
}

/// All that the server keeps by names.
QString heldBlobs(World &world)
{
    QStringList all;
    for (const QString &name : world.server().model()->blobNames())
        all.append(name + QLatin1Char('=') + blobText(world.server().model()->blobOf(name)));
    return all.join(QLatin1Char(' '));
}

QString heldUserBlob(World &world)
{
    return blobText(world.server().model()->userBlobOf(text("ann")));
}

// ---- searches -------------------------------------------------------------------------------------------------------

const char *const query = "{MaxFound=500 [HUB]NEWS.*}((Rain))";

QString startSearch(World &world)
{
    return world.session().Search(text(query)) > 0 ? text("number") : text("0");
}

void startRunningSearch(World &world)
{
    world.server().delivery().pause(); // it does not come to an end by itself
    world.searchId = world.session().Search(text(query));
}

QString stopSearch(World &world)
{
    return yes(world.session().StopSearch(world.searchId));
}

// ---- handles --------------------------------------------------------------------------------------------------------

/// What the server's object turns out to be.
QString kindOf(World &world, const IDispatchPtr &handle)
{
    world.disarm();
    if (!handle)
        return text("none");
    if (Dispatch2Dir(handle))
        return text("a directory");
    if (Dispatch2Queue(handle))
        return text("a queue");
    return text(Dispatch2Story(handle) ? "a story" : "a stranger");
}

QString cachedDirectory(World &world)
{
    return kindOf(world, world.session().GetCachedDir(worldPath()));
}

QString root(World &world)
{
    world.session().RemoveDirFromCache(text("."));
    return kindOf(world, world.session().GetCachedDir(text(".")));
}

QString cachedStory(World &world)
{
    return kindOf(world, world.session().GetCachedStory(worldPath(), storyID(), false));
}

QString storyDirect(World &world)
{
    return kindOf(world, world.session().GetStoryDirect(worldPath(), storyID()));
}

QString deleteStory(World &world)
{
    const StoryID id{213, 1, 1};
    return yes(world.session().DeleteStoryDirect(worldPath(), &id));
}

void fetchDirectory(World &world)
{
    world.handle = world.session().GetCachedDir(text("NEWS"));
}

void fetchQueue(World &world)
{
    world.handle = world.session().GetCachedDir(worldPath());
}

void fetchStory(World &world)
{
    world.handle = world.session().GetStoryDirect(worldPath(), storyID());
}

// ---- what is documented ---------------------------------------------------------------------------------------------

const unsigned withServer = Disconnected | signedOn;

const std::vector<Operation> operations{
    {"QuireCOM::GetQuireCOM(true)",
     NoSession | withServer,
     nullptr,
     load,
     "error 0",
     "error 0",
     {{"CreateInstance", Fails, "error H"},
      {"CreateInstance", Empty, "error 0x80070057"}, // there is nothing to run
      {"QueryInterface", Fails, "error H | ="},      // one of several; the last ones are of no account
      {"get_Connected Disconnect", Fails | Empty, "="}},
     {},
     false,
     true},
    {"QuireCOM::UnloadCOM", anyState, nullptr, unload, "none", "none", {{"*", AnyFault, "none"}}},
    {"QuireCOM::Connect, not loaded", Unloaded, nullptr, connect, "0, HUB/ann/secret", "0xffffffff, //", {}},
    {"QuireCOM::Connect",
     withServer,
     nullptr,
     connect,
     "0, HUB/ann/secret",
     "0, HUB/ann/secret",
     {{"Connect", Fails, "H, //"},
      {"Connect get_ServerName", Empty, "0, hub/ann/secret"},
      {"get_ServerName", Fails, "0, hub/ann/secret"},
      {"get_Connected Disconnect GetDirectory", Fails | Empty, "="},
      {"Connect get_ServerName", Raised, "raised H, //"},
      {"Connect get_ServerName", OutOfMemory, "out of memory, //"},
      {"*", Raised, "raised H, // | raised H, HUB/ann/secret"}, // before or behind the server's Connect
      {"*", OutOfMemory, "out of memory, // | out of memory, HUB/ann/secret"}},
     {},
     true},
    {"QuireCOM::Disconnect, not connected",
     Unloaded | Disconnected,
     nullptr,
     disconnect,
     "done, //",
     "done, //",
     {{"*", Raised, "raised H, //"}, {"*", OutOfMemory, "out of memory, //"}}},
    {"QuireCOM::Disconnect",
     signedOn,
     nullptr,
     disconnect,
     "done, //",
     "done, //",
     {{"get_Connected", Fails | Empty, "done, HUB/ann/secret"},
      {"Disconnect", Fails | Empty, "="},
      {"*", Raised, "raised H, HUB/ann/secret"},
      {"*", OutOfMemory, "out of memory, HUB/ann/secret"}}},
    {"QuireCOM::IsConnected",
     anySession,
     nullptr,
     [](World &w) { return yes(w.session().IsConnected()); },
     "true",
     "false",
     {}},
    {"QuireCOM::GetConnectionPoint", Unloaded, nullptr, connectionPoint, "some", "raised 0x80004003", {}},
    {"QuireCOM::GetConnectionPoint, loaded",
     withServer,
     nullptr,
     connectionPoint,
     "some",
     "some",
     {{"QueryInterface", NoInterface, "none"}, {"QueryInterface", Fails, "raised H"}}},

    {"QuireCOM::GetSysReadRate",
     anySession,
     signOff,
     [](World &w) { return number(w.session().GetSysReadRate()); },
     "200",
     "180",
     {{"get_SysReadRate", Fails, "raised H"}, {"get_SysReadRate", Empty, "180"}}},
    {"QuireCOM::GetSysWordLength",
     anySession,
     nullptr,
     [](World &w) { return number(w.session().GetSysWordLength()); },
     "6",
     "0",
     {{"get_SysWordLength", Fails, "raised H"}, {"get_SysWordLength", Empty, "0"}}},
    {"QuireCOM::GetSystemForm",
     anySession,
     nullptr,
     systemForm,
     "<zeko:form>",
     "",
     {{"GetSystemForm", Fails | Empty, ""}}},
    {"QuireCOM::GetUserInfo",
     anySession,
     nullptr,
     userInfo,
     "ann 7 3",
     "before 0 0",
     {{"GetUserInfo", Fails | Empty, "before 0 0"}}},

    {"QuireCOM::LoadBlob",
     anySession,
     keepBlobs,
     loadBlob,
     "some: 3, 3",
     "none: -7, -8",
     {{"LoadBlob", Fails, "-"}, {"LoadBlob", Empty, "some: 0, 0"}}},
    {"QuireCOM::SaveBlob",
     anySession,
     keepBlobs,
     saveBlob,
     "true",
     "false",
     {{"SaveBlob", Fails, "-"}, {"SaveBlob", Empty, "="}},
     {"SaveBlob", heldBlobs}},
    {"QuireCOM::DeleteBlob",
     anySession,
     keepBlobs,
     deleteBlob,
     "true",
     "false",
     {{"DeleteBlob", Fails, "-"}, {"DeleteBlob", Empty, "="}},
     {"DeleteBlob", heldBlobs}},
    {"QuireCOM::LoadUserBlob",
     anySession,
     keepBlobs,
     loadUserBlob,
     "some: 2, 2",
     "none: -7, -8",
     {{"LoadUserBlob", Fails, "-"}, {"LoadUserBlob", Empty, "some: 0, 0"}}},
    {"QuireCOM::SaveUserBlob",
     anySession,
     keepBlobs,
     [](World &w) { return yes(w.session().SaveUserBlob("XYZ", 3)); },
     "true",
     "false",
     {{"SaveUserBlob", Fails, "-"}, {"SaveUserBlob", Empty, "="}},
     {"SaveUserBlob", heldUserBlob}},

    {"QuireCOM::Search, not loaded", Unloaded, nullptr, startSearch, "number", "raised 0x80004003", {}},
    {"QuireCOM::Search", withServer, nullptr, startSearch, "number", "0", {{"Search", Fails | Empty, "0"}}},
    {"QuireCOM::StopSearch, not loaded", Unloaded, startRunningSearch, stopSearch, "true", "raised 0x80004003", {}},
    {"QuireCOM::StopSearch",
     Disconnected | Cached,
     startRunningSearch,
     stopSearch,
     "true",
     "false",
     {{"StopSearch", Fails, "-"}, {"StopSearch", Null | Wrong, "true"}}},

    {"QuireCOM::GetCachedDir(.)",
     anySession,
     nullptr,
     root,
     "a directory",
     "none",
     {{"GetDirectory", Fails | Null, "-"}, {"GetDirectory", Wrong, "none | a stranger"}}},
    {"QuireCOM::GetCachedDir",
     anySession,
     signOff,
     cachedDirectory,
     "a queue",
     "none",
     {{"get_Connected", Throws, "none | raised H | out of memory"}, // dropped while the way to it is looked for
      {"get_Item", Wrong, "= | a stranger"},
      {"IDirectory2::* IQueue2::*", AnyFault, "="}}},
    {"QuireCOM::GetCachedStory",
     anySession,
     signOff,
     cachedStory,
     "a story",
     "none",
     {{"GetStory", Fails | Null, "-"},
      {"GetStory", Wrong, "none | a stranger"},
      {"QueryInterface", NoInterface, "none"},
      {"QueryInterface", Fails, "raised H"}}},
    {"QuireCOM::GetStoryDirect",
     anySession,
     signOff,
     storyDirect,
     "a story",
     "none",
     {{"GetStory", Fails | Null, "-"},
      {"GetStory", Wrong, "none | a stranger"},
      {"QueryInterface", NoInterface, "none"},
      {"QueryInterface", Fails, "raised H"}}},
    {"QuireCOM::DeleteStoryDirect",
     anySession,
     keepStories,
     deleteStory,
     "true",
     "false",
     {{"DeleteStory", Fails, "-"}, {"DeleteStory", Empty, "="}},
     {"DeleteStory", heldStories}},

    {"Dispatch2Dir",
     anyState,
     fetchDirectory,
     [](World &w) { return given(Dispatch2Dir(w.handle)); },
     "some",
     "some",
     {{"QueryInterface", NoInterface, "none"}, {"QueryInterface", Fails, "raised H"}}},
    {"Dispatch2Queue",
     anyState,
     fetchQueue,
     [](World &w) { return given(Dispatch2Queue(w.handle)); },
     "some",
     "some",
     {{"QueryInterface", NoInterface, "none"}, {"QueryInterface", Fails, "raised H"}}},
    {"Dispatch2Story",
     anyState,
     fetchStory,
     [](World &w) { return given(Dispatch2Story(w.handle)); },
     "some",
     "some",
     {{"QueryInterface", NoInterface, "none"}, {"QueryInterface", Fails, "raised H"}}},
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Session, FailureLoop, ::testing::ValuesIn(operations), nameOfTest);

} // namespace Failing::SessionCalls
