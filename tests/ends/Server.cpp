// The server of the scenes, a module of its own like a real one: it stays when the library goes.

#include <quire/newsroom/Newsroom.h>
#include <quire/newsroom/sample/Generated.h>

#include <QFile>

#include <cstring>
#include <memory>
#include <utility>

namespace {

constexpr int delay = 200;       // us, for a call of a server nearby
constexpr int longDelay = 20000; // us, for one far away

constexpr int hangTime = 600000; // ms, longer than any test waits

/// Writes down each story that has been saved, where the environment says so: the newsroom ends with the process.
class Record : public Newsroom::Observer
{
public:
    explicit Record(std::shared_ptr<Newsroom::Model> newsroom)
        : m_newsroom(std::move(newsroom))
    {}

    void changed(const Newsroom::Change &change) override
    {
        if (change.kind != Newsroom::Change::StorySaved)
            return;
        QFile file(qEnvironmentVariable("QUIRE_ENDS_RECORD"));
        if (!file.open(QIODevice::WriteOnly | QIODevice::Append))
            return;
        for (const qint32 part1 : change.stories)
            file.write(m_newsroom->story(part1).value->name().toUtf8() + '\n');
    }

private:
    const std::shared_ptr<Newsroom::Model> m_newsroom;
};

struct Running
{
    std::shared_ptr<Newsroom::Model> newsroom = Newsroom::generatedModel({5000, 5});
    std::shared_ptr<Record> record = std::make_shared<Record>(newsroom);
    Newsroom::Server server{newsroom};
    Newsroom::Registration registration{server.registerClass()};
};

Running *running = nullptr;

} // namespace

/// Never ends. Manners: "answer", "slow", or "hang", with which each call for a list's entries hangs.
extern "C" Q_DECL_EXPORT int serve(const char *manner)
{
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    running = new Running;
    running->newsroom->addObserver(running->record);
    running->server.faults().delayEveryCall(std::strcmp(manner, "slow") == 0 ? longDelay : delay);
    if (std::strcmp(manner, "hang") == 0)
        running->server.faults().failEvery(QStringLiteral("GetList"), Newsroom::Fault::hang(hangTime));
    return running->registration.isActive() ? 0 : 1;
}
