// A newsroom in a window: the tree, the queues, the stories, searches, edits under the lock. See docs/desk.md.

#include <QApplication>
#include <QLoggingCategory>

#include <cstdlib>
#include <memory>

#include "Appearance.h"
#include "MainWindow.h"
#include "Options.h"
#include "QueuePane.h"
#include "Screenshots.h"
#include "Session.h"

namespace {

constexpr int patience = 5000; // milliseconds for a server that does not answer

int show(const Desk::Options &options)
{
    Desk::Session session(options);
    auto window = std::make_unique<Desk::MainWindow>(session);
    QObject::connect(&session, &Desk::Session::signedOn, window.get(), [&] {
        if (!options.open.isEmpty() && window->queue().model().path().isEmpty())
            window->openQueue(options.open);
    });
    std::unique_ptr<Desk::Screenshots> pictures;
    if (!options.screenshots.isEmpty()) {
        pictures = std::make_unique<Desk::Screenshots>(*window, session, options.screenshots);
        QObject::connect(pictures.get(), &Desk::Screenshots::finished, window.get(),
                         [](bool complete) { QApplication::exit(complete ? 0 : 1); });
    }
    window->show();
    session.signOn();
    const int code = QApplication::exec();
    pictures.reset();
    window.reset();
    if (!session.end(patience))
        std::_Exit(code); // nothing can be waited for any more
    return code;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("newsdesk"));
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, qEnvironmentVariableIsSet("QUIRE_DEBUG"));
    const Desk::Options options = Desk::readOptions(QApplication::arguments());
    Desk::Appearance::apply(options.dark);
    return show(options);
}
