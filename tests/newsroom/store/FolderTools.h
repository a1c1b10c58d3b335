#pragma once

// Making, reading and listing the files that the store's tests are about.

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <newsroom/model/Printers.h>

namespace Newsroom {

inline void makeFile(const QString &path, const QByteArray &data)
{
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    ASSERT_EQ(file.write(data), data.size());
}

inline QByteArray contentOf(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

/// Every file below \a folder with its bytes.
inline QMap<QString, QByteArray> filesBelow(const QString &folder)
{
    QMap<QString, QByteArray> files;
    QDirIterator iterator(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (iterator.hasNext()) {
        const QString path = iterator.next();
        files.insert(path.mid(folder.size() + 1), contentOf(path));
    }
    return files;
}

/// A folder of its own for each test.
class FolderFixture : public testing::Test
{
protected:
    QTemporaryDir temporary;
    QString error;

    QString in(const char *path) const { return temporary.path() + QLatin1Char('/') + QString::fromUtf8(path); }
    /// The error without the folder's own name, for comparing.
    QString shownError() const
    {
        return QDir::fromNativeSeparators(error).replace(temporary.path() + QLatin1Char('/'), QString());
    }
};

} // namespace Newsroom
