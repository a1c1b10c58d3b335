#include "Scrolling.h"

#include <QScrollBar>

#include <algorithm>
#include <cstdio>

namespace {

constexpr double leastFrames = 30; // a second
constexpr int seconds = 5;

/// What was painted while something went on.
struct Frames
{
    int number = 0;
    double longest = 0; // milliseconds
    double time = 0;    // seconds

    double rate() const { return number / time; }
};

/// Scrolls by \a step and paints, as often as it can until \a ended is true. At the end it begins anew.
template<typename Condition>
Frames scroll(DeskWindow &desk, int step, const Condition &ended)
{
    Frames frames;
    QScrollBar &bar = *desk.table().verticalScrollBar();
    QElapsedTimer all;
    all.start();
    while (!ended()) {
        QElapsedTimer frame;
        frame.start();
        bar.setValue(bar.value() + step > bar.maximum() ? 0 : bar.value() + step);
        desk.table().viewport()->repaint();
        QCoreApplication::processEvents();
        frames.longest = std::max(frames.longest, millisecondsOf(frame));
        ++frames.number;
    }
    frames.time = millisecondsOf(all) / 1000;
    return frames;
}

bool tell(const char *what, const Frames &frames)
{
    std::printf("%s: %.0f frames a second over %.1f s, the longest %.1f ms  (at least %.0f)\n", what, frames.rate(),
                frames.time, frames.longest, leastFrames);
    return frames.rate() >= leastFrames;
}

} // namespace

bool Scrolling::frames(DeskWindow &desk)
{
    desk.closeQueue();
    desk.openQueue();
    waitFor([&] { return !desk.model().isLoading() && desk.model().rowCount() > 0; });
    desk.queue().loadAll();
    const int page = desk.table().viewport()->height();
    const int row = desk.table().rowHeight(0);
    const auto all = [&] { return !desk.model().isLoading() && desk.model().rowCount() == DeskWindow::stories; };
    bool held = tell("scrolling by pages while 100,000 stories arrive", scroll(desk, page, all));
    for (const int step : {page, row}) {
        QElapsedTimer timer;
        timer.start();
        held &= tell(step == page ? "scrolling by pages through all of them" : "scrolling by rows",
                     scroll(desk, step, [&] { return timer.hasExpired(qint64{seconds} * 1000); }));
    }
    return held;
}
