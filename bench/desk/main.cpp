// What the desk's window costs, on a newsroom with one queue of 100,000 stories, under whatever X server DISPLAY names:
// when the first rows are on the screen, how smoothly the table scrolls while the others arrive, the heap that a story
// takes. The exit code tells whether all bounds held.

#include <QApplication>
#include <QLoggingCategory>

#include "Appearance.h"
#include "Loading.h"
#include "Scrolling.h"
#include <quire/platform/Apartment.h>

int main(int argc, char **argv)
{
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false);
    const QApplication application(argc, argv);
    Desk::Appearance::apply(false);
    const Platform::Apartment apartment;
    DeskWindow desk;
    bool held = Loading::firstRows(desk);
    held &= Loading::heap(desk); // before the table has made room for all rows
    held &= Scrolling::frames(desk);
    return held ? 0 : 1;
}
