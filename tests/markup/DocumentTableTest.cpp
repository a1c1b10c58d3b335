/// \file
/// Small documents with their exact tree and exact text, from data/documents.tsv.

#include <QFile>
#include <QStringList>

#include <gtest/gtest.h>

#include "markup/Support.h"

using namespace MarkupTest;

namespace {

/// A column of the table as the text it stands for.
QString unescaped(const QString &column)
{
    QString result;
    for (int i = 0; i < column.size(); ++i) {
        if (column[i] != QLatin1Char('\\')) {
            result += column[i];
            continue;
        }
        switch (column[++i].unicode()) {
        case 'n':
            result += QLatin1Char('\n');
            break;
        case 'r':
            result += QLatin1Char('\r');
            break;
        case 't':
            result += QLatin1Char('\t');
            break;
        case 'u':
            result += QChar(column.mid(i + 1, 4).toUShort(nullptr, 16));
            i += 4;
            break;
        default:
            result += column[i];
        }
    }
    return result;
}

} // namespace

TEST(DocumentTable, EveryDocumentHasItsTreeAndItsText)
{
    QFile file(QStringLiteral(MARKUP_TEST_DATA "/documents.tsv"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    int rows = 0;
    int number = 0;
    while (!file.atEnd()) {
        ++number;
        QString line = QString::fromLatin1(file.readLine());
        line.remove(QLatin1Char('\n')).remove(QLatin1Char('\r'));
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        const QStringList columns = line.split(QLatin1Char('\t'));
        ASSERT_EQ(columns.size(), 3) << "line " << number;
        const TagPtr root = parsed(unescaped(columns[0]));
        EXPECT_EQ(outline(*root), unescaped(columns[1])) << "line " << number;
        EXPECT_EQ(written(*root), unescaped(columns[2])) << "line " << number;
        EXPECT_TRUE(isSound(*root)) << "line " << number;
        const TagPtr copy(root->Duplicate());
        EXPECT_EQ(outline(*copy), unescaped(columns[1])) << "line " << number;
        ++rows;
    }
    EXPECT_GT(rows, 700);
}
