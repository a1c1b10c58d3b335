#include "Program.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

namespace {

constexpr int deadline = 300000; // milliseconds; ThreadSanitizer beside other builds takes its time

} // namespace

QJsonObject Outcome::json() const
{
    return QJsonDocument::fromJson(bytes).object();
}

bool Outcome::hasOneErrorLine() const
{
    return errors.startsWith(QLatin1String("quire: ")) && errors.count(QLatin1Char('\n')) == 1 &&
           errors.endsWith(QLatin1Char('\n'));
}

QString ProgramTest::programPath()
{
#ifdef Q_OS_WIN
    const QLatin1String name("quire.exe");
#else
    const QLatin1String name("quire");
#endif
    return QDir(QCoreApplication::applicationDirPath()).filePath(name);
}

Outcome ProgramTest::quire(const QStringList &arguments, const QByteArray &input)
{
    QProcess process;
    process.setProcessEnvironment(m_environment);
    process.setWorkingDirectory(m_folder.path());
    process.start(programPath(), arguments);
    EXPECT_TRUE(process.waitForStarted(deadline)) << qPrintable(process.errorString());
    process.write(input);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished(deadline)) << "no end";
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    Outcome run;
    run.code = process.exitCode();
    run.bytes = process.readAllStandardOutput();
    run.output = QString::fromUtf8(run.bytes);
    run.errors = QString::fromUtf8(process.readAllStandardError()).remove(QLatin1Char('\r'));
    return run;
}

Outcome ProgramTest::quire(const char *arguments)
{
    return quire(QString::fromUtf8(arguments).split(QLatin1Char(' '), Qt::SkipEmptyParts));
}

void ProgramTest::expectFailure(const Outcome &run, int code, const char *words)
{
    EXPECT_EQ(run.code, code);
    EXPECT_TRUE(run.hasOneErrorLine()) << qPrintable(run.errors);
    EXPECT_TRUE(run.errors.contains(QString::fromUtf8(words))) << qPrintable(run.errors);
    EXPECT_EQ(run.output, QString());
}

void ProgramTest::write(const char *name, const QByteArray &bytes) const
{
    QFile file(path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray ProgramTest::read(const char *name) const
{
    QFile file(path(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
    return file.readAll();
}

bool ProgramTest::exists(const char *name) const
{
    return QFileInfo::exists(path(name));
}
