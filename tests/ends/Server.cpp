// The server of the scenes, a module of its own like a real one: it stays when the library goes.

#include <quire/newsroom/Newsroom.h>
#include <quire/newsroom/sample/Generated.h>

namespace {

constexpr int delay = 200; // us, for a call of a server nearby

constexpr int hangTime = 600000; // ms, longer than any test waits

struct Running
{
    Newsroom::Server server{Newsroom::generatedModel({5000, 5})};
    Newsroom::Registration registration{server.registerClass()};
};

Running *running = nullptr;

} // namespace

/// Never ends. With \a hanging each call for a list's entries hangs.
extern "C" Q_DECL_EXPORT int serve(int hanging)
{
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    running = new Running;
    running->server.faults().delayEveryCall(delay);
    if (hanging)
        running->server.faults().failEvery(QStringLiteral("GetList"), Newsroom::Fault::hang(hangTime));
    return running->registration.isActive() ? 0 : 1;
}
