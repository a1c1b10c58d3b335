// The command line of Quire: see docs/cli.md.

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QTextCodec>

#include "CommandLine.h"
#include "Stream.h"

int main(int argc, char *argv[])
{
    Tool::prepareStreams(); // before Qt opens anything
#ifndef Q_OS_WIN
    // Arguments, file names and output are UTF-8, also where the locale is "C".
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
#endif
    const QCoreApplication application(argc, argv);
    // What the library notes for its developers is not for those who watch a queue.
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, qEnvironmentVariableIsSet("QUIRE_DEBUG"));
    Tool::CommandLine commandLine;
    return static_cast<int>(commandLine.run(QCoreApplication::arguments().mid(1)));
}
