#include <quire/newsroom/model/Clock.h>

#include <ctime>

namespace Newsroom {

Clock systemClock()
{
    return [] { return static_cast<qint32>(std::time(nullptr)); };
}

Clock fixedClock(qint32 time)
{
    return [time] { return time; };
}

} // namespace Newsroom
