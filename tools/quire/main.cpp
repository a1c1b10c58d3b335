// The command line of Quire: see docs/cli.md.

#include <QCoreApplication>
#include <QTextCodec>

#include "CommandLine.h"
#include "Stream.h"

int main(int argc, char *argv[])
{
#ifndef Q_OS_WIN
    // Arguments, file names and output are UTF-8, also where the locale is "C".
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
#endif
    const QCoreApplication application(argc, argv);
    Tool::prepareStreams();
    Tool::CommandLine commandLine;
    return static_cast<int>(commandLine.run(QCoreApplication::arguments().mid(1)));
}
