#pragma once

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include "fuzz/markup/MarkupChecks.h"

/// Asks \a check for every file in \a folder, the seeds of a fuzz target, of which there are at least \a fewest.
inline void replayCorpus(const QString &folder, int fewest, QString (*check)(const QString &))
{
    const QFileInfoList files = QDir(folder).entryInfoList(QDir::Files, QDir::Name);
    EXPECT_GE(files.size(), fewest);
    for (const QFileInfo &info : files) {
        QFile file(info.filePath());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        const auto *data = reinterpret_cast<const unsigned char *>(bytes.constData());
        const QString complaint = check(MarkupFuzz::textOf(data, std::size_t(bytes.size())));
        EXPECT_TRUE(complaint.isEmpty()) << info.fileName().toStdString() << ": " << complaint.toStdString();
    }
}
