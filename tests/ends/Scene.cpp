// What a host is in the middle of when it lets go of the library, or when the process ends. A module, so that the host
// program can load it, and the library with it, and let go of both again. It destroys nothing.

#include <quire/Quire.h>
#include <quire/models/DirectoryModel.h>
#include <quire/models/QueueModel.h>
#include <quire/models/SearchModel.h>
#include <quire/models/StoryFieldsModel.h>

#include <QCoreApplication>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

using namespace Quire;

namespace {

/// A text that does not go with this module, as a QStringLiteral does, when the session or a model keeps it.
QString lasting(const char *text)
{
    return QString::fromLatin1(text);
}

QString wires(int queue)
{
    return QStringLiteral("WIRES.W%1").arg(queue);
}

bool signOn()
{
    QuireCOM *session = QuireCOM::GetQuireCOM(true);
    return session->Connect(QString(), lasting("journalist"), lasting("news"), 0) == 0;
}

Queue *openQueue(int queue)
{
    Queue::setLoadIncrement(1000000);
    return new Queue(QuireCOM::TheQuireCOM->GetCachedDir(wires(queue)));
}

bool walk()
{
    return (new Directory(QuireCOM::TheQuireCOM->GetCachedDir(QStringLiteral("WIRES"))))->Size() > 0;
}

bool startLoad()
{
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): a scene leaves what it opened to the process's end
    return openQueue(1) != nullptr;
}

bool startLoads()
{
    for (int queue = 1; queue <= 4; ++queue) {
        const Queue *loading = openQueue(queue);
        if (!loading)
            return false;
    }
    return true;
}

/// How often a Completed runs at this moment; none may when what is static goes.
class Completions
{
public:
    ~Completions()
    {
        if (m_running > 0) {
            std::fprintf(stderr, "ends_scene: a worker is still in Completed\n");
            std::_Exit(7);
        }
    }

    void begin() { ++m_running; }
    void end() { --m_running; }
    bool isOneRunning() const { return m_running > 0; }

private:
    std::atomic<int> m_running{0};
};

Completions completions;

/// Begins to load another queue when it is loaded, and lets its last one go.
class ChainedQueue : public Queue
{
public:
    explicit ChainedQueue(const IDispatchPtr &handle)
        : Queue(handle)
        , m_handle(handle)
    {}

    void Completed() override
    {
        completions.begin();
        Queue::Completed();
        std::this_thread::sleep_for(std::chrono::milliseconds(500)); // long enough for the process's end to begin in it
        new ChainedQueue(m_handle);
        delete new Queue(m_handle);
        completions.end();
    }

private:
    const IDispatchPtr m_handle;
};

bool startChain()
{
    Queue::setLoadIncrement(20);
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): a scene leaves what it opened to the process's end
    const auto *queue = new ChainedQueue(QuireCOM::TheQuireCOM->GetCachedDir(wires(1)));
    while (!completions.isOneRunning())
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return queue != nullptr;
}

bool loadOneAndWatchIt()
{
    Queue *queue = openQueue(5);
    while (!queue->IsComplete())
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    QueueUpdateMgr::BeginQueueUpdates(queue);
    return queue->Size() > 0;
}

bool listen()
{
    NotificationInit(nullptr, nullptr, nullptr); // callbacks would go with this module
    return Search::GetSearcher()->CanSearch();
}

bool startSearches()
{
    for (int queue = 1; queue <= 4; ++queue) {
        if (!Search::GetSearcher()->StartSearch(wires(queue), QStringLiteral("report")))
            return false;
    }
    return true;
}

/// Nobody runs an event loop, so nothing arrives: what counts is that the models' thread is at work.
bool startModels()
{
    auto *tree = new DirectoryModel;
    auto *stories = new QueueModel;
    auto *more = new QueueModel;
    auto *hits = new SearchModel;
    stories->open(wires(1));
    tree->fetchMore(QModelIndex());
    more->open(wires(2));
    hits->start(wires(3), Item_Queue, lasting("report"));
    return tree->isLoading() && stories->isLoading() && more->isLoading() && hits->isLoading();
}

/// Sets the title of a story, and leaves the saving to the model.
bool edit()
{
    static int count = 0;
    new QCoreApplication(count, nullptr);
    auto *fields = new StoryFieldsModel;
    fields->open(wires(1), StoryID{1, 0, 0});
    while (fields->isLoading()) {
        QCoreApplication::processEvents(); // not those yet to come: some dispatchers wait although they have delivered
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return fields->setData(fields->index(fields->rowOf(lasting("title")), StoryFieldsModel::ValueColumn),
                           lasting("Set at the end"));
}

bool signOff()
{
    QuireCOM::UnloadCOM();
    return true;
}

struct Step
{
    const char *name;
    bool (*take)();
};

/// What a host does.
constexpr Step steps[] = {
    {"sign-on", signOn},     {"walk", walk},     {"load", loadOneAndWatchIt}, {"one-load", startLoad},
    {"loads", startLoads},   {"listen", listen}, {"chain", startChain},       {"search", startSearches},
    {"models", startModels}, {"edit", edit},     {"sign-off", signOff},
};

bool take(const QString &name)
{
    for (const Step &step : steps) {
        if (name == QLatin1String(step.name))
            return step.take();
    }
    return false;
}

} // namespace

/// Takes the steps, separated by commas. 0 when all went well, else the number of the one that did not.
extern "C" Q_DECL_EXPORT int play(const char *road)
{
    const QStringList names = QString::fromLatin1(road).split(QLatin1Char(','));
    for (int index = 0; index < names.size(); ++index) {
        if (!take(names[index]))
            return index + 1;
    }
    return 0;
}
