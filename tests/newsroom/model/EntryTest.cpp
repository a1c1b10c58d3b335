#include <gtest/gtest.h>

#include <quire/newsroom/model/Entry.h>

#include "Printers.h"

using namespace Newsroom;

namespace {

Flags flagsOf(const char *word)
{
    Flags flags;
    EXPECT_TRUE(flags.set(QLatin1String(word))) << word;
    return flags;
}

} // namespace

TEST(EntryTest, FlagWordsSetTheirBits)
{
    EXPECT_TRUE((flagsOf("indexed") == Flags{0, 0, 0x40}));
    EXPECT_TRUE((flagsOf("locked") == Flags{0x02, 0, 0}));
    EXPECT_TRUE((flagsOf("locked-e") == Flags{0x02, 0, 0x04}));
    EXPECT_TRUE((flagsOf("confirm-edit") == Flags{0x40, 0, 0}));
    EXPECT_TRUE((flagsOf("inverted") == Flags{0x01, 0, 0}));
    EXPECT_TRUE((flagsOf("sorted") == Flags{0, 0x80, 0}));
    EXPECT_TRUE((flagsOf("live") == Flags{0, 0, 0x01}));
}

TEST(EntryTest, UnknownFlagWordSetsNothing)
{
    Flags flags;
    EXPECT_FALSE(flags.set(QStringLiteral("Indexed")));
    EXPECT_FALSE(flags.set(QString()));
    EXPECT_TRUE(flags == Flags());
}

TEST(EntryTest, FlagTextReadsBack)
{
    Flags all;
    for (const char *word : {"indexed", "locked-e", "confirm-edit", "inverted", "sorted", "live"})
        all.set(QLatin1String(word));
    EXPECT_EQ(all.toString(), QStringLiteral("indexed locked locked-e confirm-edit inverted sorted live"));
    EXPECT_EQ(Flags().toString(), QString());
}

TEST(EntryTest, ComponentNames)
{
    for (const char *name : {"NEWS", "a b", "Überblick", "\xE5\xA4\xA9\xE6\xB0\x97", "\xF0\x9F\x93\xBA", "[x]"})
        EXPECT_TRUE(isComponentName(QString::fromUtf8(name))) << name;
    for (const char *name : {"", ".", "a.b", " a", "a ", "a\nb", "\x7F"})
        EXPECT_FALSE(isComponentName(QString::fromUtf8(name))) << name;
    EXPECT_FALSE(isComponentName(QString(QChar(0xD83D))));
    EXPECT_FALSE(isComponentName(QString(QChar(0xDE00))));
}

TEST(EntryTest, PathsFoldCaseAndALeadingDot)
{
    EXPECT_EQ(foldedPath(QStringLiteral(".")), QString());
    EXPECT_EQ(foldedPath(QString()), QString());
    EXPECT_EQ(foldedPath(QStringLiteral("News.Sport")), foldedPath(QStringLiteral(".NEWS.SPORT")));
    EXPECT_EQ(foldedPath(QStringLiteral("STRASSE")), foldedPath(QStringLiteral("strasse")));
}

TEST(EntryTest, ChildAndParentPaths)
{
    EXPECT_EQ(childPath(QStringLiteral("."), QStringLiteral("A")), QStringLiteral("A"));
    EXPECT_EQ(childPath(QString(), QStringLiteral("A")), QStringLiteral("A"));
    EXPECT_EQ(childPath(QStringLiteral("A.B"), QStringLiteral("C")), QStringLiteral("A.B.C"));
    EXPECT_EQ(parentPath(QStringLiteral("A.B.C")), QStringLiteral("A.B"));
    EXPECT_EQ(parentPath(QStringLiteral("A")), QStringLiteral("."));
    EXPECT_EQ(parentPath(QStringLiteral(".")), QStringLiteral("."));
}

TEST(EntryTest, LeafNameIsTheLastComponent)
{
    Entry entry;
    entry.path = QStringLiteral("A.B.C");
    EXPECT_EQ(entry.leafName(), QStringLiteral("C"));
    entry.path = QStringLiteral(".");
    EXPECT_EQ(entry.leafName(), QStringLiteral("."));
}
