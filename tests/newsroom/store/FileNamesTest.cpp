#include <QSet>
#include <gtest/gtest.h>

#include <quire/newsroom/model/Entry.h>
#include <quire/newsroom/store/FileNames.h>

#include <newsroom/model/Printers.h>

using namespace Newsroom;

namespace {

QString decoded(const QString &fileName)
{
    QString name = QStringLiteral("(none)");
    FileNames::decode(fileName, &name);
    return name;
}

QString ofEntry(const char *name)
{
    return FileNames::ofEntry(QString::fromUtf8(name));
}

const char *const hardNames[] = {
    "NEWS",      "a b",  "a/b",     "a\\b",    "..",   ".",    ".hidden", "end.",    "end ",   " start",   "%41",
    "100%",      "CON",  "con",     "Nul.txt", "COM1", "lpt9", "COM10",   "CONSOLE", "a:b",    "a*?\"<>|", "tab\there",
    "Überblick", "天気", "الأخبار", "📺 live",  "\x7F", "Con ", "COM¹",    "",        "%u0041", "straße"};

} // namespace

TEST(FileNamesTest, PlainNamesStayAsTheyAre)
{
    for (const char *name :
         {"NEWS", "a b", "Überblick", "天気", "الأخبار", "📺 live", "COM10", "CONSOLE", "a.b", "it's"})
        EXPECT_EQ(ofEntry(name), QString::fromUtf8(name));
}

TEST(FileNamesTest, WhatNoFileSystemTakesIsEncoded)
{
    EXPECT_EQ(ofEntry("a/b"), QStringLiteral("a%2Fb"));
    EXPECT_EQ(ofEntry("a\\b"), QStringLiteral("a%5Cb"));
    EXPECT_EQ(ofEntry("100%"), QStringLiteral("100%25"));
    EXPECT_EQ(ofEntry("a:b*?\"<>|"), QStringLiteral("a%3Ab%2A%3F%22%3C%3E%7C"));
    EXPECT_EQ(ofEntry("tab\there"), QStringLiteral("tab%09here"));
    EXPECT_EQ(ofEntry("\x7F"), QStringLiteral("%7F"));
}

TEST(FileNamesTest, DotsAndBlanksAtTheEndsAreEncoded)
{
    EXPECT_EQ(ofEntry("."), QStringLiteral("%2E"));
    EXPECT_EQ(ofEntry(".."), QStringLiteral("%2E%2E"));
    EXPECT_EQ(ofEntry("end."), QStringLiteral("end%2E"));
    EXPECT_EQ(ofEntry("end "), QStringLiteral("end%20"));
    EXPECT_EQ(ofEntry(".hidden"), QStringLiteral("%2Ehidden"));
}

TEST(FileNamesTest, DeviceNamesAreEncoded)
{
    EXPECT_EQ(ofEntry("CON"), QStringLiteral("%43ON"));
    EXPECT_EQ(ofEntry("con"), QStringLiteral("%63on"));
    EXPECT_EQ(ofEntry("Nul.txt"), QStringLiteral("%4Eul.txt"));
    EXPECT_EQ(ofEntry("COM1"), QStringLiteral("%43OM1"));
    EXPECT_EQ(ofEntry("lpt9"), QStringLiteral("%6Cpt9"));
    EXPECT_EQ(ofEntry("COM¹"), QStringLiteral("%43OM¹"));
    EXPECT_EQ(FileNames::ofExactName(QStringLiteral("con")), QStringLiteral("%63on"));
    EXPECT_EQ(FileNames::ofExactName(QStringLiteral("lpt9.x")), QStringLiteral("%6Cpt9.x"));
}

TEST(FileNamesTest, HalvesOfSurrogatePairsAreEncoded)
{
    EXPECT_EQ(FileNames::ofEntry(QString(QChar(0xD83D)) + QLatin1Char('x')), QStringLiteral("%uD83Dx"));
    EXPECT_EQ(FileNames::ofEntry(QLatin1Char('x') + QString(QChar(0xDE00)) + QLatin1Char('y')),
              QStringLiteral("x%uDE00y"));
}

TEST(FileNamesTest, EveryNameComesBack)
{
    for (const char *hard : hardNames) {
        const QString name = QString::fromUtf8(hard);
        EXPECT_EQ(decoded(FileNames::ofEntry(name)), name);
        EXPECT_EQ(decoded(FileNames::ofExactName(name)), name);
        for (const int letters : {0, 1, 2, 100})
            EXPECT_EQ(decoded(FileNames::component(name, letters)), name);
    }
    for (int c = 0; c < 0x10000; ++c) {
        const QString name = QLatin1Char('a') + QString(QChar(static_cast<ushort>(c))) + QLatin1Char('b');
        ASSERT_EQ(decoded(FileNames::ofEntry(name)), name);
        ASSERT_EQ(decoded(FileNames::ofExactName(name)), name);
        ASSERT_EQ(decoded(FileNames::component(name)), name);
    }
}

TEST(FileNamesTest, ExactNamesDifferAlsoIgnoringLetterCase)
{
    QSet<QString> seen;
    for (const char *name : {"layout", "Layout", "LAYOUT", "%4cayout", "%4Cayout", "ä", "Ä", "straße", "STRASSE", "ﬀ",
                             "𐐀", "𐐨", "ⅵ", "Ⅵ", "ⓐ", "Ⓐ"}) {
        const QString file = FileNames::ofExactName(QString::fromUtf8(name)).toCaseFolded();
        EXPECT_FALSE(seen.contains(file)) << name;
        seen.insert(file);
    }
    EXPECT_EQ(FileNames::ofExactName(QStringLiteral("Ab")), QStringLiteral("%41b"));
    EXPECT_EQ(FileNames::ofExactName(QStringLiteral("e\u0301")), QStringLiteral("e%u0301"));
}

TEST(FileNamesTest, ComponentsAreComponents)
{
    for (const char *hard : hardNames) {
        const QString name = QString::fromUtf8(hard);
        EXPECT_EQ(isComponentName(FileNames::component(name)), !name.isEmpty()) << hard;
    }
    EXPECT_EQ(FileNames::component(QStringLiteral("python3.11")), QStringLiteral("python3%2E11"));
    EXPECT_EQ(FileNames::component(QStringLiteral(" a ")), QStringLiteral("%20a%20"));
}

TEST(FileNamesTest, ComponentsOfNamesThatDifferInCaseCanBeToldApart)
{
    EXPECT_NE(FileNames::component(QStringLiteral("readme"), 1).toCaseFolded(),
              FileNames::component(QStringLiteral("README"), 0).toCaseFolded());
    EXPECT_EQ(FileNames::component(QStringLiteral("readme"), 1), QStringLiteral("%72eadme"));
}

TEST(FileNamesTest, WhatIsNoEncodedNameIsRefused)
{
    for (const char *name : {"%", "%4", "%zz", "a%", "%u", "%u12", "%u12G4", "%+1", "% 1", "%u0x12", "%u+123"}) {
        QString out = QStringLiteral("kept");
        EXPECT_FALSE(FileNames::decode(QLatin1String(name), &out)) << name;
        EXPECT_EQ(out, QStringLiteral("kept"));
    }
}
