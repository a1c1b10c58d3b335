#include <QApplication>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <cstdio>

#include "Appearance.h"
#include "newsdesk/VirtualDisplay.h"

int main(int argc, char **argv)
{
    ::testing::InitGoogleMock(&argc, argv);
    const QTemporaryDir runtime; // where Qt keeps what it needs while it runs
    qputenv("XDG_RUNTIME_DIR", runtime.path().toLocal8Bit());
    const VirtualDisplay display;
    if (!display.error().isEmpty()) {
        std::fprintf(stderr, "%s\n", qPrintable(display.error()));
        return 1;
    }
    // Without a window manager a window is asked to take the focus before it is there.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.qpa.xcb.warning=false\ndefault.debug=false"));
    const QApplication application(argc, argv);
    Desk::Appearance::apply(false);
    return RUN_ALL_TESTS();
}
