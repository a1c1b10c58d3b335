#include <QString>

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>

#include "RowSteps.h"
#include "models/ModelFixture.h"

using namespace Quire;

namespace {

std::vector<QString> letters(const char *word)
{
    std::vector<QString> all;
    for (const QChar letter : text(word))
        all.push_back(letter);
    return all;
}

std::vector<RowStep> stepsBetween(const std::vector<QString> &before, const std::vector<QString> &after)
{
    return rowSteps(matchRows(before, after), static_cast<int>(after.size()));
}

QString describe(const std::vector<RowStep> &steps)
{
    QStringList lines;
    for (const RowStep &step : steps) {
        const QString rows = text("%1+%2").arg(step.first).arg(step.count);
        switch (step.kind) {
        case RowStep::Remove:
            lines.append(text("remove ") + rows);
            break;
        case RowStep::Insert:
            lines.append(text("insert %1 from %2").arg(rows).arg(step.source));
            break;
        case RowStep::Move:
            lines.append(text("move %1 to %2").arg(rows).arg(step.to));
            break;
        }
    }
    return lines.join(text(", "));
}

QString steps(const char *before, const char *after)
{
    return describe(stepsBetween(letters(before), letters(after)));
}

/// What the steps make of the rows; fails on a step that no model could make.
std::vector<QString> applied(std::vector<QString> rows, const std::vector<QString> &after)
{
    for (const RowStep &step : stepsBetween(rows, after)) {
        const auto first = rows.begin() + step.first;
        EXPECT_GT(step.count, 0);
        switch (step.kind) {
        case RowStep::Remove:
            rows.erase(first, first + step.count);
            break;
        case RowStep::Insert:
            rows.insert(first, after.begin() + step.source, after.begin() + step.source + step.count);
            break;
        case RowStep::Move:
            EXPECT_TRUE(step.to < step.first || step.to > step.first + step.count);
            if (step.to > step.first)
                std::rotate(first, first + step.count, rows.begin() + step.to);
            else
                std::rotate(rows.begin() + step.to, first, first + step.count);
            break;
        }
    }
    return rows;
}

} // namespace

TEST(RowStepsTest, EqualRowsTakeNoStep)
{
    EXPECT_EQ(steps("", ""), QString());
    EXPECT_EQ(steps("abc", "abc"), QString());
}

TEST(RowStepsTest, AllRowsComeOrGoInOneStep)
{
    EXPECT_EQ(steps("", "abc"), text("insert 0+3 from 0"));
    EXPECT_EQ(steps("abc", ""), text("remove 0+3"));
}

TEST(RowStepsTest, NeighboursComeTogether)
{
    EXPECT_EQ(steps("abef", "abcdefgh"), text("insert 2+2 from 2, insert 6+2 from 6"));
}

TEST(RowStepsTest, NeighboursGoTogetherTheLastOnesFirst)
{
    EXPECT_EQ(steps("abcdefg", "adg"), text("remove 4+2, remove 1+2"));
}

TEST(RowStepsTest, ARowThatMovesDownIsTheOnlyOneToMove)
{
    EXPECT_EQ(steps("abcd", "bcda"), text("move 0+1 to 4"));
    EXPECT_EQ(steps("abcd", "acbd"), text("move 1+1 to 3"));
}

TEST(RowStepsTest, ARowThatMovesUpIsTheOnlyOneToMove)
{
    EXPECT_EQ(steps("abcd", "dabc"), text("move 3+1 to 0"));
}

TEST(RowStepsTest, NeighboursMoveTogether)
{
    EXPECT_EQ(steps("abcdefg", "fgabcde"), text("move 5+2 to 0"));
    EXPECT_EQ(steps("abcdefg", "cdefgab"), text("move 0+2 to 7"));
}

TEST(RowStepsTest, RowsWithTheSameKeyCountOneByOne)
{
    EXPECT_EQ(steps("aabaa", "aaba"), text("remove 4+1"));
    EXPECT_EQ(steps("aa", "aaa"), text("insert 2+1 from 2"));
}

TEST(RowStepsTest, AnyOrderComesOutOfAnyOther)
{
    std::mt19937 random(4711);
    for (int round = 0; round < 500; ++round) {
        std::vector<QString> before = letters("abcdefghijklmnopqrst");
        std::vector<QString> after = before;
        std::shuffle(before.begin(), before.end(), random);
        std::shuffle(after.begin(), after.end(), random);
        before.resize(random() % before.size());
        after.resize(random() % after.size());
        ASSERT_EQ(applied(before, after), after) << round;
    }
}

TEST(RowStepsTest, VeryManyStepsBecomeTwo)
{
    std::vector<QString> before;
    before.reserve(5000);
    for (int row = 0; row < 5000; ++row)
        before.push_back(QString::number(row));
    std::vector<QString> after = before;
    std::reverse(after.begin() + 10, after.end() - 10);
    EXPECT_EQ(describe(stepsBetween(before, after)), text("remove 10+4980, insert 10+4980 from 10"));
    EXPECT_EQ(applied(before, after), after);
}
