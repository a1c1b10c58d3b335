// Stories in a file: read, edited as text, written back.

#include <quire/story/LocalStory.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <quire/forms/FormCache.h>
#include <quire/newsroom/Newsroom.h>
#include <quire/session/QuireCOM.h>

#include "support/QtPrinting.h"
#include "support/SessionFixture.h"
#include "support/Text.h"

namespace Quire {

/// What a local story keeps to itself.
struct LocalStoryProbe
{
    static qint32 &lockFlags(LocalStory &story) { return story.m_lockFlags; }
};

} // namespace Quire

using namespace Quire;

namespace {

const char *const wholeStory = R"(<story>
<formname>RUNDOWN</formname>
<head><storyid>1F:2</storyid><meta rate=175 locked=ann></head>
<look>plain</look>
<fields><f id=title>Final</f><f id=audio-time>90</f><f id=empty></f></fields>
<body><p>Text</p></body>
<aeset>a</aeset>
<field-atts>fa</field-atts>
<aeset-atts>aa</aeset-atts>
</story>
)";

/// A host's own local story, which sees what subclasses see.
class OwnStory : public LocalStory
{
public:
    using LocalStory::GetFormName;
    using LocalStory::GetHeaderInfo;
    using LocalStory::LocalStory;
    using LocalStory::Preprocess;

    QString queuePath() const { return m_queuePath; }
    QString headerStoryId() const { return m_headerStoryId; }
    QString keyLock() const { return m_keyLock; }
    void setLastError(HRESULT error) { m_lastError = error; }
};

class LocalStoryTest : public ::testing::Test
{
protected:
    void TearDown() override { LocalStory::setLocalPath(QString()); }

    QString path(const char *name = "story.zko") const { return m_folder.filePath(QLatin1String(name)); }

    QString write(const QByteArray &bytes, const char *name = "story.zko") const
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(bytes), bytes.size());
        return path(name);
    }

    QByteArray bytes(const char *name = "story.zko") const
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    OwnStory storyOf(const QByteArray &bytes) const { return OwnStory(write(bytes)); }

    QTemporaryDir m_folder;
};

QString whole(LocalStory &story)
{
    QString section;
    story.GetSection(127, section, true);
    return section;
}

QString section(LocalStory &story, int number)
{
    QString found = QStringLiteral("from before");
    story.GetSection(number, found, true);
    return found;
}

/// The field's value, "left alone" when GetField leaves it so.
QString field(LocalStory &story, const char *name)
{
    QString value = QStringLiteral("left alone");
    story.GetField(text(name), value);
    return value;
}

bool put(LocalStory &story, int number, const char *section)
{
    QString given = text(section);
    const bool result = story.PutSection(number, given, true);
    EXPECT_EQ(given, text(section));
    return result;
}

/// The body of \a story's text once it has been read.
QString preprocessed(const QByteArray &body, const QTemporaryDir &folder)
{
    QFile file(folder.filePath(QStringLiteral("anchors.zko")));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("<body>" + body + "</body>");
    file.close();
    LocalStory story(file.fileName());
    const QString all = whole(story);
    return all.mid(6, all.length() - 13);
}

} // namespace

// ---- reading one ----------------------------------------------------------------------------------------------------

TEST_F(LocalStoryTest, HoldsTheFilesText)
{
    OwnStory story = storyOf(wholeStory);
    EXPECT_EQ(whole(story), text(wholeStory));
    EXPECT_TRUE(story.IsLoaded());
}

TEST_F(LocalStoryTest, HasTheFileAsItsQueuePath)
{
    EXPECT_EQ(storyOf(wholeStory).queuePath(), path());
}

TEST_F(LocalStoryTest, TakesItsFormNameFromTheText)
{
    EXPECT_EQ(storyOf(wholeStory).FormName(), text("RUNDOWN"));
}

TEST_F(LocalStoryTest, WithoutFormNameElementHasNone)
{
    EXPECT_EQ(storyOf("<story/>").FormName(), QString());
}

TEST_F(LocalStoryTest, TakesAPrefixedFormName)
{
    EXPECT_EQ(storyOf("<zeko:formname>WIRE</zeko:formname>").FormName(), text("WIRE"));
}

TEST_F(LocalStoryTest, ReadsItsIdentifierInBaseSixteen)
{
    StoryID id{0, 0, 0};
    ASSERT_TRUE(storyOf("<storyid>1F:2A:fF</storyid>").GetID(&id));
    EXPECT_EQ(id.part1, 0x1F);
    EXPECT_EQ(id.part2, 0x2A);
    EXPECT_EQ(id.part3, 0xFF);
}

TEST_F(LocalStoryTest, ReadsAPrefixedIdentifier)
{
    StoryID id{0, 0, 0};
    ASSERT_TRUE(storyOf("<zeko:head><zeko:storyid>10:0:0</zeko:storyid></zeko:head>").GetID(&id));
    EXPECT_EQ(id.part1, 16);
}

TEST_F(LocalStoryTest, WithoutIdentifierHasZeros)
{
    StoryID id{1, 2, 3};
    ASSERT_TRUE(storyOf("<story/>").GetID(&id));
    EXPECT_EQ(id.part1, 0);
    EXPECT_EQ(id.part2, 0);
    EXPECT_EQ(id.part3, 0);
}

TEST_F(LocalStoryTest, ReadsAnIdentifierWithoutInnerTagsAsItStands)
{
    // No text lies between the first ">" and the last "<": the last "<" stands before.
    StoryID id{0, 0, 0};
    ASSERT_TRUE(storyOf("<storyid</storyid>").GetID(&id));
    EXPECT_EQ(id.part1, 0);
}

TEST_F(LocalStoryTest, IdentifierAsTextIsThatOfAnyStory)
{
    OwnStory story = storyOf("<storyid>1F:2:3</storyid>");
    StoryID id{0, 0, 0};
    story.GetID(&id);
    QString shown;
    story.GetIDStr(shown, true);
    EXPECT_EQ(shown, StoryID2String(id, true));
}

TEST_F(LocalStoryTest, GetIDRefusesANullPointer)
{
    EXPECT_FALSE(storyOf(wholeStory).GetID(nullptr));
}

TEST_F(LocalStoryTest, OfAMissingFileIsEmptyAndNotLoaded)
{
    OwnStory story(path());
    EXPECT_FALSE(story.IsLoaded());
    EXPECT_EQ(whole(story), QString());
    EXPECT_EQ(story.queuePath(), text("LocalStory"));
    EXPECT_EQ(story.FormName(), QString());
    EXPECT_EQ(story.GetError(), 0);
    EXPECT_FALSE(QFile::exists(path()));
}

TEST_F(LocalStoryTest, OfAnEmptyFileIsNotLoaded)
{
    OwnStory story = storyOf(QByteArray());
    EXPECT_FALSE(story.IsLoaded());
    EXPECT_EQ(story.queuePath(), text("LocalStory"));
}

TEST_F(LocalStoryTest, OfAByteOrderMarkAloneIsNotLoaded)
{
    EXPECT_FALSE(storyOf("\xEF\xBB\xBF").IsLoaded());
}

TEST_F(LocalStoryTest, OfAFolderIsNotLoaded)
{
    EXPECT_FALSE(LocalStory(m_folder.path()).IsLoaded());
}

TEST_F(LocalStoryTest, OfNoPathIsNotLoaded)
{
    EXPECT_FALSE(LocalStory(QString()).IsLoaded());
}

TEST_F(LocalStoryTest, MayHoldNoMarkupAtAll)
{
    OwnStory story = storyOf("Just words, 3 > 2.");
    EXPECT_TRUE(story.IsLoaded());
    EXPECT_EQ(whole(story), text("Just words, 3 > 2."));
    for (const int number : {1, 2, 4, 8, 16, 32, 64})
        EXPECT_EQ(section(story, number), QString());
}

TEST_F(LocalStoryTest, HoldsZerosAndForeignBytes)
{
    const QByteArray bytes("<body>\0\xFF\xC3</body>\0", 17);
    OwnStory story = storyOf(bytes);
    EXPECT_EQ(whole(story), QString::fromLatin1(bytes.constData(), bytes.size()));
}

TEST_F(LocalStoryTest, IsReadByItsByteOrderMark)
{
    QByteArray bytes("\xFF\xFE", 2);
    for (const QChar unit : text("<body>é</body>")) {
        bytes += static_cast<char>(unit.cell());
        bytes += static_cast<char>(unit.row());
    }
    OwnStory story = storyOf(bytes);
    EXPECT_EQ(section(story, 8), text("<body>é</body>"));
}

TEST_F(LocalStoryTest, StartsWithTheDefaultsOfAnyStory)
{
    OwnStory story = storyOf(wholeStory);
    EXPECT_EQ(story.GetReadRate(), 18);
    EXPECT_FALSE(story.GetConfirmEdit());
    EXPECT_FALSE(story.HasKeylock());
    EXPECT_EQ(story.headerStoryId(), QString());
    EXPECT_EQ(story.GetError(), 0);
    EXPECT_FALSE(story.IsLocked(-1));
}

// ---- the process's one file -----------------------------------------------------------------------------------------

TEST_F(LocalStoryTest, PathIsThatOfTheLastOneMade)
{
    const OwnStory first(write("1", "first"));
    EXPECT_EQ(LocalStory::getLocalPath(), path("first"));
    const OwnStory second(path("missing"));
    EXPECT_EQ(LocalStory::getLocalPath(), path("missing"));
    EXPECT_EQ(LocalStory::sZEKOFile, path("missing"));
}

TEST_F(LocalStoryTest, PathCanBeSet)
{
    LocalStory::setLocalPath(text("elsewhere"));
    EXPECT_EQ(LocalStory::getLocalPath(), text("elsewhere"));
    EXPECT_EQ(LocalStory::sZEKOFile, text("elsewhere"));
}

TEST_F(LocalStoryTest, CopyingLeavesThePathAlone)
{
    const OwnStory story = storyOf(wholeStory);
    LocalStory::setLocalPath(text("elsewhere"));
    const OwnStory copy(story); // NOLINT(performance-unnecessary-copy-initialization): the copy is what is tested
    EXPECT_EQ(LocalStory::getLocalPath(), text("elsewhere"));
}

TEST_F(LocalStoryTest, SaveOfTheFirstWritesToTheSecondsFile)
{
    OwnStory first(write("<body>first</body>", "first"));
    const OwnStory second(write("<body>second</body>", "second"));
    EXPECT_TRUE(first.Save(false));
    EXPECT_EQ(bytes("first"), QByteArray("<body>first</body>"));
    EXPECT_EQ(bytes("second"), QByteArray("\xEF\xBB\xBF<body>first</body>"));
}

TEST_F(LocalStoryTest, SaveWritesWhereSetLocalPathSays)
{
    OwnStory story = storyOf("<body>x</body>");
    LocalStory::setLocalPath(path("other"));
    EXPECT_TRUE(story.Save(true));
    EXPECT_EQ(bytes("other"), QByteArray("\xEF\xBB\xBF<body>x</body>"));
    EXPECT_EQ(bytes(), QByteArray("<body>x</body>"));
}

// ---- saving ---------------------------------------------------------------------------------------------------------

TEST_F(LocalStoryTest, SaveWritesUtf8WithMarkWhateverTheFlag)
{
    OwnStory story = storyOf("<body>\xC3\xA9</body>");
    for (const bool flag : {false, true}) {
        write("old");
        EXPECT_TRUE(story.Save(flag));
        EXPECT_EQ(bytes(), QByteArray("\xEF\xBB\xBF<body>\xC3\xA9</body>"));
    }
}

TEST_F(LocalStoryTest, WhatWasSavedIsReadAgain)
{
    OwnStory story = storyOf(wholeStory);
    story.SetField(text("title"), text("Élection – 選挙 📰"));
    EXPECT_TRUE(story.Save(false));
    OwnStory again(path());
    EXPECT_EQ(whole(again), whole(story));
    EXPECT_EQ(field(again, "title"), text("Élection – 選挙 📰"));
}

TEST_F(LocalStoryTest, SaveSucceedsThoughTheFileIsAFolder)
{
    OwnStory story = storyOf(wholeStory);
    LocalStory::setLocalPath(m_folder.path());
    EXPECT_TRUE(story.Save(false));
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList(text("story.zko")));
}

TEST_F(LocalStoryTest, SaveSucceedsThoughTheFolderIsMissing)
{
    OwnStory story = storyOf(wholeStory);
    LocalStory::setLocalPath(path("missing/story.zko"));
    EXPECT_TRUE(story.Save(false));
    EXPECT_FALSE(QFile::exists(path("missing")));
}

TEST_F(LocalStoryTest, SaveSucceedsThoughThereIsNoPath)
{
    OwnStory story = storyOf(wholeStory);
    LocalStory::setLocalPath(QString());
    EXPECT_TRUE(story.Save(false));
    EXPECT_EQ(bytes(), QByteArray(wholeStory));
}

TEST_F(LocalStoryTest, SaveOfAnUnloadedOneMakesAnEmptyFile)
{
    LocalStory story(path());
    EXPECT_TRUE(story.Save(false));
    EXPECT_EQ(bytes(), QByteArray());
}

TEST_F(LocalStoryTest, SaveLeavesTheLastErrorAlone)
{
    OwnStory story = storyOf(wholeStory);
    story.setLastError(7);
    EXPECT_TRUE(story.Save(false));
    EXPECT_EQ(story.GetError(), 7);
}

// ---- sections -------------------------------------------------------------------------------------------------------

TEST_F(LocalStoryTest, SectionsHaveTheirNumbers)
{
    OwnStory story = storyOf(wholeStory);
    EXPECT_EQ(section(story, 1), text("<head><storyid>1F:2</storyid><meta rate=175 locked=ann></head>"));
    EXPECT_EQ(section(story, 2), text("<look>plain</look>"));
    EXPECT_EQ(section(story, 4), text("<fields><f id=title>Final</f><f id=audio-time>90</f><f id=empty></f></fields>"));
    EXPECT_EQ(section(story, 8), text("<body><p>Text</p></body>"));
    EXPECT_EQ(section(story, 32), text("<field-atts>fa</field-atts>"));
    EXPECT_EQ(section(story, 64), text("<aeset-atts>aa</aeset-atts>"));
    EXPECT_EQ(section(story, 127), text(wholeStory));
}

TEST_F(LocalStoryTest, SectionSixteenIsTheAeset)
{
    OwnStory story = storyOf(wholeStory);
    EXPECT_EQ(section(story, 16), text("<aeset>a</aeset>"));
}

TEST_F(LocalStoryTest, OtherNumbersAreEmptySections)
{
    OwnStory story = storyOf(wholeStory);
    for (const int number : {0, 3, 5, 12, 65, 126, 128, 255, -1, -128})
        EXPECT_EQ(section(story, number), QString()) << number;
}

TEST_F(LocalStoryTest, OtherNumbersAreNoSectionsOfAnElementWithoutName)
{
    OwnStory story = storyOf("<>x</>");
    EXPECT_EQ(section(story, 3), QString());
    EXPECT_TRUE(put(story, 3, "y"));
    EXPECT_EQ(whole(story), text("<>x</>"));
}

TEST_F(LocalStoryTest, SectionIsTheSameInBothForms)
{
    OwnStory story = storyOf(wholeStory);
    QString other;
    story.GetSection(8, other, false);
    EXPECT_EQ(other, section(story, 8));
}

TEST_F(LocalStoryTest, GetSectionSetsTheLastErrorToZero)
{
    OwnStory story = storyOf(wholeStory);
    for (const int number : {1, 127, 0}) {
        story.setLastError(-1);
        section(story, number);
        EXPECT_EQ(story.GetError(), 0);
    }
}

TEST_F(LocalStoryTest, PutSectionReplacesTheSection)
{
    for (const bool markup : {false, true}) {
        OwnStory story = storyOf("<s><head>1</head><body>2</body></s>");
        QString body = text("<body>new</body>");
        EXPECT_TRUE(story.PutSection(8, body, markup));
        EXPECT_EQ(whole(story), text("<s><head>1</head><body>new</body></s>"));
    }
}

TEST_F(LocalStoryTest, PutSectionReplacesEachByItsNumber)
{
    const std::vector<std::pair<int, const char *>> names{
        {1, "head"}, {2, "look"}, {4, "fields"}, {8, "body"}, {16, "aeset"}, {32, "field-atts"}, {64, "aeset-atts"}};
    for (const auto &[number, name] : names) {
        const QString element = text("<%1>%2</%1>").arg(text(name));
        OwnStory story = storyOf(element.arg(text("old")).toUtf8());
        QString given = element.arg(text("new"));
        EXPECT_TRUE(story.PutSection(number, given, true));
        EXPECT_EQ(whole(story), given);
    }
}

TEST_F(LocalStoryTest, PutSectionOfTheWholeReplacesTheText)
{
    OwnStory story = storyOf(wholeStory);
    EXPECT_TRUE(put(story, 127, "<body><a href=x>open</body>"));
    EXPECT_EQ(whole(story), text("<body><a href=x>open</body>"));
}

TEST_F(LocalStoryTest, PutSectionOfAMissingSectionChangesNothing)
{
    OwnStory story = storyOf("<story><body>x</body></story>");
    EXPECT_TRUE(put(story, 4, "<fields></fields>"));
    EXPECT_EQ(whole(story), text("<story><body>x</body></story>"));
}

TEST_F(LocalStoryTest, PutSectionBehindItsFirstEndTagChangesNothing)
{
    for (const char *markup : {"</body><body>x</body>", "</body> <body>x</body>"}) {
        OwnStory story = storyOf(markup);
        EXPECT_TRUE(put(story, 8, "<body>y</body>"));
        EXPECT_EQ(whole(story), text(markup));
    }
}

TEST_F(LocalStoryTest, PutSectionOfAnotherNumberChangesNothing)
{
    OwnStory story = storyOf(wholeStory);
    for (const int number : {0, 3, 126, 128, -1})
        EXPECT_TRUE(put(story, number, "<body>new</body>"));
    EXPECT_EQ(whole(story), text(wholeStory));
}

TEST_F(LocalStoryTest, PutSectionKeepsThePrefixOfTheFile)
{
    OwnStory story = storyOf("<zeko:story><zeko:fields><f id=a>1</f></zeko:fields></zeko:story>");
    EXPECT_TRUE(put(story, 4, "<fields><f id=a>2</f></fields>"));
    EXPECT_EQ(whole(story), text("<zeko:story><zeko:fields><f id=a>2</f></zeko:fields></zeko:story>"));
}

TEST_F(LocalStoryTest, PutSectionLeavesTheLastErrorAlone)
{
    OwnStory story = storyOf(wholeStory);
    story.setLastError(7);
    put(story, 8, "<body/>");
    EXPECT_EQ(story.GetError(), 7);
}

TEST_F(LocalStoryTest, SectionsPutBackAsTheyWereChangeNothing)
{
    OwnStory story = storyOf(wholeStory);
    for (const int number : {1, 2, 4, 8, 16, 32, 64, 127}) {
        QString same = section(story, number);
        EXPECT_TRUE(story.PutSection(number, same, true));
    }
    EXPECT_EQ(whole(story), text(wholeStory));
}

// ---- fields ---------------------------------------------------------------------------------------------------------

TEST_F(LocalStoryTest, FieldIsReadAsItStands)
{
    OwnStory story = storyOf(wholeStory);
    EXPECT_EQ(field(story, "title"), text("Final"));
    EXPECT_EQ(field(story, "audio-time"), text("90"));
}

TEST_F(LocalStoryTest, FieldKeepsItsBlanksAndEscapes)
{
    OwnStory story = storyOf("<fields><f id=title>  A &amp; B </f></fields>");
    EXPECT_EQ(field(story, "title"), text("  A &amp; B "));
}

TEST_F(LocalStoryTest, FieldMayBeEmpty)
{
    OwnStory story = storyOf(wholeStory);
    EXPECT_EQ(field(story, "empty"), QString());
}

TEST_F(LocalStoryTest, FieldIsFoundInAnyLetterCase)
{
    OwnStory story = storyOf("<fields><F ID=Title>Final</f></fields>");
    EXPECT_EQ(field(story, "tITLE"), text("Final"));
}

TEST_F(LocalStoryTest, FieldInQuotesIsNotFound)
{
    OwnStory story = storyOf("<fields><f id=\"title\">Final</f></fields>");
    EXPECT_EQ(field(story, "title"), text("left alone"));
}

TEST_F(LocalStoryTest, FieldWithMoreAttributesIsNotFound)
{
    OwnStory story = storyOf("<fields><f id=title uec=1>Final</f></fields>");
    EXPECT_EQ(field(story, "title"), text("left alone"));
}

TEST_F(LocalStoryTest, FieldIsNotFoundByTheBeginningOfItsName)
{
    OwnStory story = storyOf(wholeStory);
    EXPECT_EQ(field(story, "tit"), text("left alone"));
}

TEST_F(LocalStoryTest, FirstOfTwoFieldsIsRead)
{
    OwnStory story = storyOf("<fields><f id=a>1</f><f id=a>2</f></fields>");
    EXPECT_EQ(field(story, "a"), text("1"));
}

TEST_F(LocalStoryTest, FieldWithoutEndIsNotFound)
{
    OwnStory story = storyOf("<fields><f id=a>1</fields>");
    EXPECT_EQ(field(story, "a"), text("left alone"));
}

TEST_F(LocalStoryTest, EndOfAFieldIsNotFoundInAnotherLetterCase)
{
    OwnStory story = storyOf("<fields><f id=a>1</F></fields>");
    EXPECT_EQ(field(story, "a"), text("left alone"));
}

TEST_F(LocalStoryTest, FieldWithoutEndReachesToTheNextOne)
{
    OwnStory story = storyOf("<fields><f id=a>1<f id=b>2</f></fields>");
    EXPECT_EQ(field(story, "a"), text("1<f id=b>2"));
}

TEST_F(LocalStoryTest, FieldOutsideTheFieldsSectionIsNotFound)
{
    OwnStory story = storyOf("<f id=a>1</f><fields></fields><f id=a>2</f>");
    EXPECT_EQ(field(story, "a"), text("left alone"));
}

TEST_F(LocalStoryTest, FieldOfATextWithoutFieldsSectionIsNotFound)
{
    OwnStory story = storyOf("<f id=a>1</f>");
    EXPECT_EQ(field(story, "a"), text("left alone"));
}

TEST_F(LocalStoryTest, FieldOfAPrefixedSectionIsRead)
{
    OwnStory story = storyOf("<zeko:fields><f id=a>1</f></zeko:fields>");
    EXPECT_EQ(field(story, "a"), text("1"));
}

TEST_F(LocalStoryTest, FieldWithPlaceholdersInItsNameStandsForItself)
{
    OwnStory story = storyOf("<fields><f id=%1>1</f></fields>");
    EXPECT_EQ(field(story, "%1"), text("1"));
}

TEST_F(LocalStoryTest, NameAndValueMayBeOneText)
{
    OwnStory story = storyOf(wholeStory);
    QString both = text("title");
    story.GetField(both, both);
    EXPECT_EQ(both, text("Final"));
}

TEST_F(LocalStoryTest, FieldOperationsLeaveTheLastErrorAlone)
{
    OwnStory story = storyOf(wholeStory);
    story.setLastError(7);
    field(story, "title");
    story.SetField(text("title"), text("x"));
    EXPECT_EQ(story.GetError(), 7);
}

TEST_F(LocalStoryTest, SetFieldReplacesTheValueAlone)
{
    OwnStory story = storyOf("<s><fields><f id=a>1</f><f id=b>2</f></fields></s>");
    story.SetField(text("B"), text("new"));
    EXPECT_EQ(whole(story), text("<s><fields><f id=a>1</f><f id=b>new</f></fields></s>"));
}

TEST_F(LocalStoryTest, SetFieldWritesWhatItIsGiven)
{
    OwnStory story = storyOf(wholeStory);
    for (const char *value : {"1:30", "A & B", " x ", "</f>", ""}) {
        story.SetField(text("audio-time"), text("0"));
        story.SetField(text("audio-time"), text(value));
        EXPECT_TRUE(whole(story).contains(text("<f id=audio-time>%1</f>").arg(text(value)))) << value;
    }
}

TEST_F(LocalStoryTest, SetFieldDoesNotAddAField)
{
    OwnStory story = storyOf(wholeStory);
    story.SetField(text("missing"), text("x"));
    EXPECT_EQ(whole(story), text(wholeStory));
}

TEST_F(LocalStoryTest, SetFieldThatIsMissingLeavesAPrefixedSectionAlone)
{
    const char *const markup = "<zeko:fields><f id=a></fields></f></zeko:fields>";
    OwnStory story = storyOf(markup);
    story.SetField(text("missing"), text("x"));
    EXPECT_EQ(whole(story), text(markup));
}

TEST_F(LocalStoryTest, SetFieldWithoutEndChangesNothing)
{
    OwnStory story = storyOf("<fields><f id=a>1</fields>");
    story.SetField(text("a"), text("x"));
    EXPECT_EQ(whole(story), text("<fields><f id=a>1</fields>"));
}

TEST_F(LocalStoryTest, SetFieldKeepsThePrefixOfTheSection)
{
    OwnStory story = storyOf("<zeko:fields><f id=a>1</f></zeko:fields>");
    story.SetField(text("a"), text("2"));
    EXPECT_EQ(whole(story), text("<zeko:fields><f id=a>2</f></zeko:fields>"));
}

TEST_F(LocalStoryTest, SetFieldPrefixesTagsInTheValueOfAPrefixedSection)
{
    OwnStory story = storyOf("<zeko:fields><f id=a>1</f></zeko:fields>");
    story.SetField(text("a"), text("<fields>"));
    EXPECT_EQ(whole(story), text("<zeko:fields><f id=a><zeko:fields></f></zeko:fields>"));
}

TEST_F(LocalStoryTest, SetFieldIsReadAgain)
{
    OwnStory story = storyOf(wholeStory);
    story.SetField(text("title"), text("Élection"));
    EXPECT_EQ(field(story, "title"), text("Élection"));
    EXPECT_EQ(field(story, "audio-time"), text("90"));
}

// ---- anchors --------------------------------------------------------------------------------------------------------

TEST_F(LocalStoryTest, OpenAnchorGetsItsEndRightBehindIt)
{
    EXPECT_EQ(preprocessed("x <a href=1>link", m_folder), text("x <a href=1></a>link"));
}

TEST_F(LocalStoryTest, ClosedAnchorIsLeftAlone)
{
    EXPECT_EQ(preprocessed("x <a href=1></a>y", m_folder), text("x <a href=1></a>y"));
}

TEST_F(LocalStoryTest, AnchorWithTextIsClosedInFrontOfIt)
{
    EXPECT_EQ(preprocessed("<a href=1>link</a>", m_folder), text("<a href=1></a>link</a>"));
}

TEST_F(LocalStoryTest, AnchorThatClosesItselfStillGetsAnEnd)
{
    EXPECT_EQ(preprocessed("<a href=1/>", m_folder), text("<a href=1/></a>"));
}

TEST_F(LocalStoryTest, AnchorFollowedByAnEndInCapitalsGetsAnother)
{
    EXPECT_EQ(preprocessed("<a href=1></A>", m_folder), text("<a href=1></a></A>"));
}

TEST_F(LocalStoryTest, AnchorFollowedByTheEndOfALongerNameGetsItsOwn)
{
    EXPECT_EQ(preprocessed("<a href=1></abbr>", m_folder), text("<a href=1></a></abbr>"));
}

TEST_F(LocalStoryTest, AnchorInCapitalsOrWithoutBlankIsNone)
{
    EXPECT_EQ(preprocessed("<A href=1><a><abbr x><a\thref=1>", m_folder), text("<A href=1><a><abbr x><a\thref=1>"));
}

TEST_F(LocalStoryTest, EveryAnchorIsLookedAt)
{
    EXPECT_EQ(preprocessed("<a 1>x<a 2></a><a 3><a 4></a>", m_folder), text("<a 1></a>x<a 2></a><a 3></a><a 4></a>"));
}

TEST_F(LocalStoryTest, AnchorInsideAnAnchorsTagEndsWithIt)
{
    EXPECT_EQ(preprocessed("<a <a x>y", m_folder), text("<a <a x></a>y"));
}

TEST_F(LocalStoryTest, AnchorWithoutBracketTakesTheBodysEndTag)
{
    OwnStory story = storyOf("<body><a href</body>");
    EXPECT_EQ(whole(story), text("<body><a href</body></a>"));
}

TEST_F(LocalStoryTest, AnchorAtTheVeryEndOfTheBodyIsClosed)
{
    EXPECT_EQ(preprocessed("<a x>", m_folder), text("<a x></a>"));
}

TEST_F(LocalStoryTest, AnchorsOutsideTheBodyAreLeftAlone)
{
    OwnStory story = storyOf("<head><a 1></head><body>x</body><a 2>");
    EXPECT_EQ(whole(story), text("<head><a 1></head><body>x</body><a 2>"));
}

TEST_F(LocalStoryTest, AnchorsOfATextWithoutBodyAreLeftAlone)
{
    OwnStory story = storyOf("<a 1><a 2>");
    EXPECT_EQ(whole(story), text("<a 1><a 2>"));
}

TEST_F(LocalStoryTest, AnchorsOfAPrefixedBodyAreClosed)
{
    OwnStory story = storyOf("<zeko:body><a 1>x</zeko:body>");
    EXPECT_EQ(whole(story), text("<zeko:body><a 1></a>x</zeko:body>"));
}

TEST_F(LocalStoryTest, ClosedAnchorsStayAsTheyAreOnTheNextReading)
{
    OwnStory story = storyOf("<body><a 1>x<a 2/>y</body>");
    story.Save(false);
    OwnStory again(path());
    EXPECT_EQ(whole(again), whole(story));
}

TEST_F(LocalStoryTest, TenThousandAnchorsInABodyOfFiftyMegabytesAreClosed)
{
    const int anchors = 10000;
    const QByteArray words(5 * 1024, 'x');
    const QString body = preprocessed(("<a href=1>" + words).repeated(anchors), m_folder);
    EXPECT_TRUE(body == (text("<a href=1></a>") + QString::fromLatin1(words)).repeated(anchors));
}

TEST_F(LocalStoryTest, AMillionAnchorsSideBySideAreClosed)
{
    const QString body = preprocessed(QByteArray("<a 1>").repeated(1000000), m_folder);
    EXPECT_TRUE(body == text("<a 1></a>").repeated(1000000));
}

// ---- header and form ------------------------------------------------------------------------------------------------

TEST_F(LocalStoryTest, HeaderInfoComesFromTheHead)
{
    OwnStory story = storyOf(wholeStory);
    story.GetHeaderInfo();
    EXPECT_EQ(story.headerStoryId(), text("1F:2"));
    EXPECT_EQ(story.GetReadRate(), 17);
    EXPECT_EQ(story.keyLock(), text("ann"));
    EXPECT_TRUE(story.HasKeylock());
}

TEST_F(LocalStoryTest, HeaderInfoWithoutHeadLocksAndLeavesTheRest)
{
    OwnStory story = storyOf("<body>x</body>");
    story.SetReadRate(5);
    story.GetHeaderInfo();
    EXPECT_EQ(story.keyLock(), text("lock"));
    EXPECT_EQ(story.GetReadRate(), 5);
    EXPECT_EQ(story.headerStoryId(), QString());
}

TEST_F(LocalStoryTest, HeaderInfoOfABareHeadLeavesWhatWasThere)
{
    OwnStory story = storyOf("<head></head>");
    story.SetReadRate(5);
    story.GetHeaderInfo();
    EXPECT_EQ(story.GetReadRate(), 5);
    EXPECT_FALSE(story.HasKeylock());
}

TEST_F(LocalStoryTest, FormNameIsThatOfTheTextAtTheTime)
{
    OwnStory story = storyOf(wholeStory);
    put(story, 127, "<formname>OTHER</formname>");
    QString form = text("from before");
    story.GetFormName(form);
    EXPECT_EQ(form, text("OTHER"));
    EXPECT_EQ(story.FormName(), text("RUNDOWN"));
    put(story, 127, "<body/>");
    story.GetFormName(form);
    EXPECT_EQ(form, QString());
}

TEST_F(LocalStoryTest, FormNameMayHoldElements)
{
    OwnStory story = storyOf("<formname a=1><b>X</b></formname>");
    EXPECT_EQ(story.FormName(), text("<b>X</b>"));
}

TEST_F(LocalStoryTest, FormNameWithoutInnerTextIsTheElementItself)
{
    OwnStory story = storyOf("<formname</formname>");
    EXPECT_EQ(story.FormName(), text("<formname</formname>"));
}

TEST_F(LocalStoryTest, FormIsFoundNowhereWithoutSession)
{
    OwnStory story = storyOf(wholeStory);
    std::vector<Attribute> names{{text("old"), text("value"), 1}};
    story.GetAllFieldNames(names);
    EXPECT_TRUE(names.empty());
    EXPECT_EQ(story.FindField(text("title")), nullptr);
}

// ---- locks ----------------------------------------------------------------------------------------------------------

TEST_F(LocalStoryTest, LockIsRefusedAndTouchesNothing)
{
    OwnStory story = storyOf(wholeStory);
    story.setLastError(7);
    QString holder = text("nobody");
    EXPECT_FALSE(story.Lock(1, holder));
    EXPECT_EQ(holder, text("nobody"));
    EXPECT_EQ(story.GetError(), 7);
    EXPECT_FALSE(story.IsLocked(-1));
}

TEST_F(LocalStoryTest, UpdateHeaderIDIsRefused)
{
    EXPECT_FALSE(storyOf(wholeStory).UpdateHeaderID());
}

TEST_F(LocalStoryTest, IsLockedTestsTheFlagsByItsMask)
{
    OwnStory story = storyOf(wholeStory);
    LocalStoryProbe::lockFlags(story) = 6;
    EXPECT_TRUE(story.IsLocked(2));
    EXPECT_TRUE(story.IsLocked(5));
    EXPECT_FALSE(story.IsLocked(1));
    EXPECT_FALSE(story.IsLocked(0));
}

TEST_F(LocalStoryTest, UnlockClearsTheFlags)
{
    OwnStory story = storyOf(wholeStory);
    LocalStoryProbe::lockFlags(story) = -1;
    EXPECT_TRUE(story.Unlock());
    EXPECT_FALSE(story.IsLocked(-1));
    EXPECT_TRUE(story.Unlock());
}

// ---- copies ---------------------------------------------------------------------------------------------------------

TEST_F(LocalStoryTest, CopyHasTextFlagsAndAllElse)
{
    OwnStory story = storyOf(wholeStory);
    LocalStoryProbe::lockFlags(story) = 4;
    story.SetReadRate(5);
    OwnStory copy(story);
    EXPECT_EQ(whole(copy), text(wholeStory));
    EXPECT_TRUE(copy.IsLocked(4));
    EXPECT_EQ(copy.GetReadRate(), 5);
    EXPECT_TRUE(copy.IsLoaded());
    EXPECT_EQ(copy.FormName(), text("RUNDOWN"));
    EXPECT_EQ(copy.queuePath(), path());
}

TEST_F(LocalStoryTest, CopyIsEditedOnItsOwn)
{
    OwnStory story = storyOf(wholeStory);
    OwnStory copy(story);
    copy.SetField(text("title"), text("other"));
    LocalStoryProbe::lockFlags(copy) = 4;
    EXPECT_EQ(field(story, "title"), text("Final"));
    EXPECT_FALSE(story.IsLocked(4));
}

TEST_F(LocalStoryTest, AssignmentTakesTextFlagsAndAllElse)
{
    OwnStory story = storyOf(wholeStory);
    LocalStoryProbe::lockFlags(story) = 4;
    OwnStory other(path("missing"));
    other = story;
    EXPECT_EQ(whole(other), text(wholeStory));
    EXPECT_TRUE(other.IsLocked(4));
    EXPECT_TRUE(other.IsLoaded());
    EXPECT_EQ(other.FormName(), text("RUNDOWN"));
}

TEST_F(LocalStoryTest, AssignmentToItselfChangesNothing)
{
    OwnStory story = storyOf(wholeStory);
    OwnStory &same = story;
    story = same;
    EXPECT_EQ(whole(story), text(wholeStory));
}

// ---- as any story ---------------------------------------------------------------------------------------------------

TEST_F(LocalStoryTest, IsUsedAsAnyStory)
{
    OwnStory local = storyOf(wholeStory);
    Story &story = local;
    QString value;
    story.GetField(text("title"), value);
    EXPECT_EQ(value, text("Final"));
    story.SetField(text("title"), text("new"));
    QString fields;
    story.GetSection(4, fields, true);
    EXPECT_TRUE(fields.contains(text("<f id=title>new</f>")));
    QString body = text("<body>new</body>");
    EXPECT_TRUE(story.PutSection(8, body, true));
    EXPECT_TRUE(story.Save(false));
    EXPECT_TRUE(bytes().contains("<body>new</body>"));
    EXPECT_FALSE(story.Lock(1, value));
    EXPECT_FALSE(story.UpdateHeaderID());
    EXPECT_TRUE(story.Unlock());
    LocalStoryProbe::lockFlags(local) = 1;
    EXPECT_TRUE(story.IsLocked(1));
}

TEST_F(LocalStoryTest, ReadsItsFormThroughTheSession)
{
    Newsroom::Server server(Newsroom::Model::fromText(text("server HUB read-rate=250\n"
                                                           "user ann password=secret\n"
                                                           "form RUNDOWN\n"
                                                           "  <zeko:form><zeko:row><zeko:cell idref=title>Titel"
                                                           "</zeko:cell></zeko:row></zeko:form>\n")));
    const Newsroom::Registration registration = server.registerClass();
    QuireCOM *const session = QuireCOM::GetQuireCOM(true);
    ASSERT_NE(session, nullptr);
    ASSERT_EQ(session->Connect(text("HUB"), text("ann"), text("secret"), 0), 0);
    FormCache::Clear();
    {
        OwnStory story = storyOf(wholeStory);
        EXPECT_EQ(story.GetReadRate(), 25);
        std::vector<Attribute> names;
        story.GetAllFieldNames(names);
        ASSERT_EQ(names.size(), 1u);
        EXPECT_EQ(names[0].name, text("title"));
        EXPECT_EQ(names[0].value, text("Titel"));
        story.GetFieldValues(names);
        EXPECT_EQ(names[0].value, text("Titel"));
        EXPECT_NE(story.FindField(text("TITLE")), nullptr);
    }
    FormCache::Clear();
    QuireCOM::UnloadCOM();
}

namespace {

class LocalStoryInSession : public SessionTest
{};

} // namespace

TEST_F(LocalStoryInSession, OperationsCallNoServer)
{
    connect();
    const QTemporaryDir folder;
    QFile file(folder.filePath(text("story.zko")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(wholeStory);
    file.close();
    OwnStory story(file.fileName());
    server.forgetCalls();

    QString value;
    story.GetSection(127, value, true);
    story.PutSection(127, value, true);
    story.GetField(text("title"), value);
    story.SetField(text("title"), value);
    story.Save(true);
    story.UpdateHeaderID();
    story.Lock(1, value);
    story.IsLocked(1);
    story.Unlock();
    story.GetFormName(value);
    story.GetHeaderInfo();
    story.Preprocess();
    EXPECT_EQ(server.calls(), QStringList());
    LocalStory::setLocalPath(QString());
}

// ---- threads --------------------------------------------------------------------------------------------------------

TEST_F(LocalStoryTest, ThreadsReadThemAtOnce)
{
    const QString first = write("<body>first</body>", "first");
    const QString second = write("<body>second</body>", "second");
    std::atomic<int> wrong{0};
    const auto work = [&wrong](const QString &file, const QString &body) {
        for (int round = 0; round < 200; ++round) {
            LocalStory story(file);
            const QString known = LocalStory::getLocalPath();
            if (section(story, 8) != body || !known.endsWith(text("st")) == !known.endsWith(text("nd")))
                ++wrong;
        }
    };
    std::thread other(work, second, text("<body>second</body>"));
    work(first, text("<body>first</body>"));
    other.join();
    EXPECT_EQ(wrong, 0);
}

TEST_F(LocalStoryTest, ThreadsThatSaveAtOnceLeaveOneTextWhole)
{
    const OwnStory story = storyOf("<body>x</body>");
    const auto work = [&story](QChar letter) {
        LocalStory own(story);
        QString all(200000, letter);
        own.PutSection(127, all, true);
        for (int round = 0; round < 50; ++round)
            own.Save(false);
    };
    std::thread other(work, QLatin1Char('a'));
    work(QLatin1Char('b'));
    other.join();
    const QByteArray left = bytes();
    ASSERT_EQ(left.size(), 200003);
    EXPECT_EQ(left.mid(3), QByteArray(200000, left.back()));
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList(text("story.zko")));
}
