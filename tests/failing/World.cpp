#include "failing/World.h"

#include <algorithm>
#include <cctype>

#include <quire/forms/FormCache.h>
#include <quire/notify/Notification.h>
#include <quire/platform/System.h>
#include <quire/tree/SearchList.h>

#include "failing/Probes.h"
#include "tree/Waiting.h"

using namespace Quire;

namespace Failing {

namespace {

QString newsroom()
{
    return QStringLiteral("server HUB read-rate=200 word-length=6\n"
                          "user ann password=secret full=\"Ann Lee\" mail=MAIL.ANN device=D1 number=7 rights=3\n"
                          "form STORY\n"
                          "  <zeko:form><zeko:row><zeko:cell idref=title length=80>Title</zeko:cell>"
                          "</zeko:row></zeko:form>\n"
                          "blob LAYOUT\n"
                          "  ABC\n"
                          "directory NEWS indexed\n"
                          "  directory SPORT\n"
                          "    queue SCORES number=20 form=STORY\n"
                          "  queue WORLD number=21 form=STORY\n"
                          "    story id=211:1:1 rate=170\n"
                          "      title: Rain\n"
                          "    story id=212:1:1\n"
                          "      title: Storm\n"
                          "    story id=213:1:1\n"
                          "      title: Sun\n"
                          "  queue LIVE number=22 form=STORY live\n"
                          "    story id=221:1:1\n"
                          "      title: Rain\n"
                          "    story id=222:1:1\n"
                          "      title: Storm\n"
                          "    story id=223:1:1\n"
                          "      title: Sun\n");
}

template<typename Mutex>
bool isHeld(Mutex &mutex)
{
    if (!mutex.tryLock(patience))
        return true;
    mutex.unlock();
    return false;
}

bool isHeld(ItemList &list)
{
    if (!comesTrue([&] { return list.tryLock(); }))
        return true;
    list.Unlock();
    return false;
}

} // namespace

const char *nameOf(State state)
{
    switch (state) {
    case NoSession:
        return "without a session";
    case Unloaded:
        return "not loaded";
    case Disconnected:
        return "not connected";
    case Connected:
        return "connected";
    case Cached:
        return "cached";
    }
    return "";
}

World::World(State state, Prepare prepare)
    : m_state(state)
    , m_prepare(prepare)
    , m_texts(Newsroom::Census::liveTexts())
    , m_arrays(Newsroom::Census::liveArrays())
    , m_server(std::make_unique<Newsroom::Server>(Newsroom::Model::fromText(newsroom())))
    , m_census(m_server->census())
    , m_registration(m_server->registerClass())
    , m_liveAtFirst(m_census->live())
{
    renew();
    enter();
}

World::~World()
{
    letGo();
}

void World::connect()
{
    const bool hasServer = QuireCOM::TheQuireCOM && session().IsLoaded();
    QuireCOM *const current = QuireCOM::GetQuireCOM(!hasServer);
    if (!current->IsConnected())
        current->Connect(text("hub"), text("ann"), text("secret"), 0);
}

void World::renew()
{
    m_code = S_OK;
    if (!m_registration.isActive())
        m_registration = m_server->registerClass();
    connect();
    if (m_prepare)
        m_prepare(*this);
    connect(); // what was prepared may have needed the session to be away
}

void World::forgetHandles()
{
    for (const char *path : {".", "NEWS", "NEWS.SPORT", "NEWS.WORLD", "NEWS.LIVE"}) {
        if (QuireCOM::TheQuireCOM)
            session().RemoveDirFromCache(text(path));
    }
}

void World::enter()
{
    switch (m_state) {
    case NoSession:
        QuireCOM::UnloadCOM();
        break;
    case Unloaded:
        m_registration.revoke();
        QuireCOM::GetQuireCOM(true);
        break;
    case Disconnected:
        session().Disconnect();
        break;
    case Connected:
        session().Disconnect();
        connect();
        break;
    case Cached:
        fillCaches();
        break;
    }
}

void World::fillCaches()
{
    for (const char *path : {"NEWS", "NEWS.SPORT", "NEWS.WORLD", "NEWS.LIVE"})
        session().GetCachedDir(text(path));
    session().GetCachedStory(worldPath(), storyID(), false);
    session().GetSysReadRate();
    FormCache::getForm(text("STORY"));
}

std::vector<ItemList *> World::lists()
{
    std::vector<ItemList *> all;
    for (ItemList *list : {static_cast<ItemList *>(directory.get()), static_cast<ItemList *>(queue.get()),
                           static_cast<ItemList *>(search)}) {
        if (list)
            all.push_back(list);
    }
    return all;
}

QStringList World::possessions()
{
    QStringList all;
    for (ItemList *list : lists()) {
        for (int index = 0; index < list->Size(); ++index)
            all.append(text("item ") + list->Nth(index)->name);
    }
    if (hasUnsavedText) {
        QString title;
        story->GetField(text("title"), title);
        all.append(text("title ") + title);
    }
    if (QuireCOM::TheQuireCOM) {
        QString server;
        QString user;
        QString password;
        session().GetConnectInfo(server, user, password);
        all.append(text("signed on %1 %2 %3").arg(server, user, password));
    }
    return all;
}

QStringList World::heldLocks()
{
    return onOtherThread([this] {
        QStringList held;
        const auto note = [&held](bool isHeld, const char *name) {
            if (isHeld)
                held.append(text(name));
        };
        note(isHeld(QuireCOM::m_ComMutex), "the server access lock");
        note(QuireCOM::m_LockThreadID != 0, "the record of the server access lock's holder");
        note(isHeld(QueueUpdateMgrProbe::mutex()), "the update manager's mutex");
        note(isHeld(QueueUpdateMgrProbe::stateMutex()), "the update manager's state mutex");
        if (Search::TheSearcher) {
            note(isHeld(SearchProbe::mutex()), "the searcher's mutex");
            note(isHeld(SearchProbe::listsMutex()), "the searcher's mutex of the lists");
        }
        for (ItemList *list : lists())
            note(isHeld(*list), "the lock of a list");
        return held;
    });
}

void World::letGo()
{
    if (m_server) {
        m_server->faults().clear();
        m_server->delivery().resume();
    }
    NotificationRelease();
    directory.reset();
    QueueUpdateMgr::EndQueueUpdates(queue.get()); // who begins must end
    queue.reset();
    story.reset();
    handle = nullptr;
    serverStory = nullptr;
    search = nullptr;
    SearchProbe::destroy();
    Queue::useThreading = true;
    Queue::sLoadIncrement = 200;
    FormCache::Clear();
    QuireCOM::UnloadCOM();
    SetErrorInfo(0, nullptr);
}

QStringList World::leftovers()
{
    letGo();
    QStringList left;
    // A worker that was let go of, and an event that is being told, may still be about to end.
    if (!m_server->waitForEvents() || !comesTrue([this] { return m_census->live() <= m_liveAtFirst; }))
        left.append(text("objects: ") + m_census->text());
    m_registration.revoke();
    m_server.reset();
    SetErrorInfo(0, nullptr);
    if (!comesTrue([this] { return Newsroom::Census::liveTexts() == m_texts; }))
        left.append(text("texts: %1").arg(Newsroom::Census::liveTexts() - m_texts));
    if (!comesTrue([this] { return Newsroom::Census::liveArrays() == m_arrays; }))
        left.append(text("arrays: %1").arg(Newsroom::Census::liveArrays() - m_arrays));
    if (QueueUpdateMgrProbe::watched() != 0)
        left.append(text("watched queues"));
    return left;
}

void World::arm(const std::function<void(Newsroom::FaultPlan &)> &plan, HRESULT code)
{
    m_server->faults().clear();
    m_met.clear();
    m_code = code;
    plan(m_server->faults());
}

#ifdef Q_OS_WIN
void World::failAllocation(int /*n*/) {}

QString World::failedAllocation()
{
    return {};
}
#else
void World::failAllocation(int n)
{
    Platform::failAllocation(n);
}

/// Takes the plan back; the name of what failed by it.
QString World::failedAllocation()
{
    const bool failed = Platform::hasAllocationFailed();
    Platform::failAllocation(0);
    return failed ? text("an allocation") : QString();
}
#endif

void World::disarm()
{
    const QString allocation = failedAllocation();
    if (m_met.isEmpty())
        m_met = allocation;
    if (m_met.isEmpty())
        m_met = m_server->faults().lastFault();
    m_server->faults().clear();
}

QString World::code(long result) const
{
    const auto narrow = static_cast<HRESULT>(result);
    if (narrow == S_OK)
        return text("0");
    return narrow == m_code ? text("H") : hexadecimal(narrow);
}

QString World::hexadecimal(HRESULT result)
{
    return text("0x%1").arg(static_cast<quint32>(result), 8, 16, QLatin1Char('0'));
}

// ---- preparing ------------------------------------------------------------------------------------------------------

void signOff(World &world)
{
    world.session().Disconnect();
}

void openDirectory(World &world)
{
    Queue::useThreading = false;
    world.directory.reset(Directory::NewDirectory(text("NEWS")));
}

void openQueue(World &world)
{
    Queue::useThreading = false;
    world.queue.reset(); // its end ends the reports on all objects of the queue
    world.queue.reset(new Queue(world.session().GetCachedDir(worldPath())));
}

void openLiveQueue(World &world)
{
    Queue::useThreading = false;
    world.queue.reset(); // its end ends the reports on all objects of the queue
    world.queue.reset(new Queue(world.session().GetCachedDir(text("NEWS.LIVE"))));
}

void openStory(World &world)
{
    if (world.state() == Cached)
        return openFoundStory(world);
    QuireCOM::UnloadCOM(); // so that it is not found
    world.story = std::make_unique<Story>(worldPath(), storyID());
}

void openFoundStory(World &world)
{
    world.story = std::make_unique<Story>(worldPath(), storyID());
    world.hasUnsavedText = world.state() == Cached;
    if (world.hasUnsavedText)
        world.story->SetField(text("title"), text("Unsaved"));
}

void keepStories(World &world)
{
    Newsroom::Model &model = *world.server().model();
    for (const qint32 number : {211, 212, 213}) {
        Newsroom::Model::NewStory story;
        story.queueNumber = 21;
        story.id = {number, 1, 1};
        model.addStory(story); // refused when it is there
    }
}

QString worldPath()
{
    return text("NEWS.WORLD");
}

const StoryID *storyID()
{
    static const StoryID id{211, 1, 1};
    return &id;
}

// ---- in words -------------------------------------------------------------------------------------------------------

std::string testName(const char *name)
{
    std::string test = name;
    std::replace_if(
        test.begin(), test.end(), [](char letter) { return !std::isalnum(static_cast<unsigned char>(letter)); }, '_');
    return test;
}

QString yes(bool answer)
{
    return text(answer ? "true" : "false");
}

QString given(const void *pointer)
{
    return text(pointer ? "some" : "none");
}

QString number(long value)
{
    return QString::number(value);
}

QString itemsOf(ItemList &list)
{
    int unnamed = 0;
    int unknown = 0;
    int locked = 0;
    for (int index = 0; index < list.Size(); ++index) {
        const Item &item = *list.Nth(index);
        Attribute identifier;
        unnamed += item.name.isEmpty() ? 1 : 0;
        locked += item.FindAttr(QLatin1String(Attr_Lock)) < 0 ? 0 : 1;
        item.FindAttr(QLatin1String(Attr_Storyid), identifier);
        const bool isKnown = !identifier.value.isEmpty() && identifier.value != text("0:0");
        unknown += item.type == Item_Story && !isKnown ? 1 : 0;
    }
    QString all = text("%1 items").arg(list.Size());
    if (unnamed)
        all += text(", %1 without a name").arg(unnamed);
    if (unknown)
        all += text(", %1 unknown").arg(unknown);
    if (locked)
        all += text(", %1 locked").arg(locked);
    return all;
}

QString heldStories(World &world)
{
    QStringList numbers;
    for (const Newsroom::StoryPointer &story : world.server().model()->stories(21).value)
        numbers.append(QString::number(story->id().part1));
    return numbers.join(QLatin1Char(' '));
}

} // namespace Failing
