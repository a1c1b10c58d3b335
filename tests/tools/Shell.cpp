#include "Shell.h"

#include <QCoreApplication>
#include <QStandardPaths>

namespace {

constexpr int foreignDeadline = 60000; // milliseconds

} // namespace

ShellOutcome runForeign(const QString &program, const QStringList &arguments, const QByteArray &input)
{
    ShellOutcome outcome;
    outcome.found = !QStandardPaths::findExecutable(program).isEmpty();
    if (!outcome.found)
        return outcome;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PATH"), QCoreApplication::applicationDirPath() + QLatin1Char(':') +
                                                   environment.value(QStringLiteral("PATH")));
    const QTemporaryDir home;
    environment.insert(QStringLiteral("HOME"), home.path());
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(home.path());
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForStarted(foreignDeadline)) << qPrintable(process.errorString());
    process.write(input);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished(foreignDeadline)) << "no end";
    outcome.code = process.exitCode();
    outcome.lines = QString::fromUtf8(process.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    outcome.lines.sort();
    outcome.errors = QString::fromUtf8(process.readAllStandardError());
    return outcome;
}
