#include "TreeDrawing.h"

#include <gtest/gtest.h>

#include "support/QtPrinting.h"

#include <limits>

#include "TextWidth.h"

using namespace Tool;

namespace {

constexpr int unlimited = std::numeric_limits<int>::max();

TreeDrawing sample()
{
    TreeDrawing drawing;
    drawing.add({}, QStringLiteral("."), {QString(), QString()});
    drawing.add({false}, QStringLiteral("NEWS"), {QString(), QStringLiteral("indexed")});
    drawing.add({false, true}, QStringLiteral("日本"), {QStringLiteral("12 stories"), QStringLiteral("live")});
    drawing.add({true}, QStringLiteral("MAIL"), {QStringLiteral("1 story"), QString()});
    return drawing;
}

TEST(TreeDrawing, DrawsBranchesAndAlignsDetailsTheFirstToTheRight)
{
    const QStringList expected{QStringLiteral("."), QStringLiteral("├── NEWS                  indexed"),
                               QStringLiteral("│   └── 日本  12 stories  live"),
                               QStringLiteral("└── MAIL         1 story")};
    EXPECT_EQ(sample().lines(unlimited), expected);
}

TEST(TreeDrawing, AFinishedLevelLeavesBlanks)
{
    TreeDrawing drawing;
    drawing.add({true, false}, QStringLiteral("A"), {});
    EXPECT_EQ(drawing.lines(unlimited), QStringList{QStringLiteral("    ├── A")});
}

TEST(TreeDrawing, CutsNamesBeforeDetails)
{
    TreeDrawing drawing;
    drawing.add({true}, QString(100, QLatin1Char('N')), {QStringLiteral("12 stories")});
    const QString line = drawing.lines(60).value(0);
    EXPECT_EQ(textWidth(line), 60);
    EXPECT_TRUE(line.contains(QStringLiteral("N…  12 stories")));
}

TEST(TreeDrawing, ANameWithoutDetailsGoesOnToTheEndOfTheLine)
{
    TreeDrawing drawing;
    drawing.add({false}, QStringLiteral("A"), {QString(30, QLatin1Char('d'))});
    drawing.add({true}, QString(40, QLatin1Char('N')), {QString()});
    EXPECT_EQ(drawing.lines(60).value(1), QStringLiteral("└── ") + QString(40, QLatin1Char('N')));
}

TEST(TreeDrawing, ANameWithoutDetailsMovesNobodysDetails)
{
    TreeDrawing drawing;
    drawing.add({false}, QStringLiteral("A"), {QStringLiteral("1 story")});
    drawing.add({true}, QString(40, QLatin1Char('N')), {QString()});
    EXPECT_EQ(drawing.lines(80).value(0), QStringLiteral("├── A  1 story"));
}

TEST(TreeDrawing, EveryLineFitsHoweverDeepAndLongThingsAre)
{
    TreeDrawing drawing;
    std::vector<bool> branch;
    for (int depth = 0; depth < 60; ++depth) {
        drawing.add(branch, QStringLiteral("名前 is long %1").arg(depth),
                    {QStringLiteral("%1 stories").arg(depth * 1000), QString(depth, QLatin1Char('f'))});
        branch.push_back(depth % 3 == 0);
    }
    for (const int columns : {20, 40, 80, 200})
        for (const QString &line : drawing.lines(columns))
            EXPECT_LE(textWidth(line), columns) << qPrintable(line);
}

TEST(TreeDrawing, ADeepEntryShowsTheEndOfItsBranchAndItsName)
{
    TreeDrawing drawing;
    drawing.add(std::vector<bool>(40, true), QStringLiteral("DEEP"), {});
    const QString line = drawing.lines(80).value(0);
    EXPECT_TRUE(line.startsWith(QStringLiteral("…")));
    EXPECT_TRUE(line.endsWith(QStringLiteral("└── DEEP")));
}

TEST(TreeDrawing, IsolatesRightToLeftNamesOnly)
{
    TreeDrawing drawing;
    drawing.add({true}, QStringLiteral("أخبار"), {QStringLiteral("1 story")});
    EXPECT_EQ(drawing.lines(unlimited).value(0), QStringLiteral("└── \u2068أخبار\u2069  1 story"));
}

TEST(TreeDrawing, ALeadStandsBeforeTheNameOutsideItsIsolation)
{
    TreeDrawing drawing;
    drawing.add({true}, QStringLiteral("أخبار"), {}, QStringLiteral("4711  "));
    EXPECT_EQ(drawing.lines(unlimited).value(0), QStringLiteral("└── 4711  \u2068أخبار\u2069"));
}

TEST(TreeDrawing, ControlCharactersOfANameAreShownNotSent)
{
    TreeDrawing drawing;
    drawing.add({}, QStringLiteral("A\u001b[31m\nB"), {QStringLiteral("x\ty")});
    EXPECT_EQ(drawing.lines(unlimited).value(0), QStringLiteral("A␛[31m␊B  x␉y"));
}

TEST(TreeDrawing, AnEmptyDrawingHasNoLines)
{
    EXPECT_TRUE(TreeDrawing().lines(80).isEmpty());
}

} // namespace
