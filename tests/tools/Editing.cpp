#include "Editing.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

QString editorCommand(const QString &arguments)
{
    const QDir folder(QCoreApplication::applicationDirPath());
#ifdef Q_OS_WIN
    const QLatin1String name("fake_editor.exe");
#else
    const QLatin1String name("fake_editor");
#endif
    return QStringLiteral("\"%1\" %2").arg(QDir::toNativeSeparators(folder.filePath(name)), arguments);
}

QByteArray takeKept(const Outcome &run)
{
    const QString words = QStringLiteral("; your edit is kept in ");
    const int position = run.errors.indexOf(words);
    EXPECT_GE(position, 0) << qPrintable(run.errors);
    if (position < 0)
        return QByteArray();
    const QString path = run.errors.mid(position + words.size()).trimmed();
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    QByteArray bytes = file.readAll().replace("\xEF\xBB\xBF", "").replace("\r\n", "\n");
    file.remove();
    const QDir folder = QFileInfo(path).absoluteDir();
    EXPECT_TRUE(folder.dirName().startsWith(QLatin1String("quire-"))) << qPrintable(path);
    EXPECT_TRUE(QDir().rmdir(folder.path())) << qPrintable(path); // goes only when it is empty
    return bytes;
}
