#include <gtest/gtest.h>

#include <quire/newsroom/model/StoryText.h>

#include "Printers.h"

using namespace Newsroom;

namespace {

const StoryHeader header{QStringLiteral("7:c:0:1"), QStringLiteral("STORY")};

StoryText sample()
{
    StoryText text;
    text.setMeta(QStringLiteral("rate"), QStringLiteral("170"));
    text.setMeta(QStringLiteral("words"), QStringLiteral("3"));
    text.setField(QStringLiteral("title"), QStringLiteral("Rain & wind"));
    text.fields.append(
        {QStringLiteral("priority"), QStringLiteral("2"), {{QStringLiteral("urgency"), QStringLiteral("2")}}});
    text.setPlainBody(QStringLiteral("It rained.\nStill."));
    text.look = QStringLiteral("<view x=1></view>");
    text.aesetAtts = QStringLiteral("z");
    return text;
}

const char *const wholeSample =
    "<story><head><storyid>7:c:0:1</storyid><formname>STORY</formname><meta rate=170 words=3></head>"
    "<look><view x=1></view></look>"
    "<fields><f id=title>Rain &amp; wind</f><f id=priority urgency=2>2</f></fields>"
    "<body><p>It rained.</p><p>Still.</p></body>"
    "<aeset></aeset><field-atts></field-atts><aeset-atts>z</aeset-atts></story>";

Refusal put(StoryText *text, qint32 sections, const char *markup)
{
    return text->putMarkup(sections, QString::fromUtf8(markup));
}

QString plainOfBody(const char *body)
{
    StoryText text;
    text.body = QString::fromUtf8(body);
    return text.plainBody();
}

} // namespace

TEST(StoryTextTest, WholeMarkupHasEverySectionInOrder)
{
    EXPECT_EQ(markupOf(sample(), header, Section::Whole), QLatin1String(wholeSample));
}

TEST(StoryTextTest, OneSectionIsItsElementWithTags)
{
    EXPECT_EQ(markupOf(sample(), header, Section::Body), QStringLiteral("<body><p>It rained.</p><p>Still.</p></body>"));
    EXPECT_EQ(markupOf(StoryText(), header, Section::Aeset), QStringLiteral("<aeset></aeset>"));
}

TEST(StoryTextTest, SeveralSectionsAreTheirElementsInOrder)
{
    EXPECT_EQ(markupOf(sample(), header, Section::AesetAtts | Section::Look),
              QStringLiteral("<look><view x=1></view></look><aeset-atts>z</aeset-atts>"));
}

TEST(StoryTextTest, AesetStandsBeforeAesetAtts)
{
    const QString whole = markupOf(sample(), header, Section::Whole);
    EXPECT_LT(whole.indexOf(QLatin1String("<aeset>")), whole.indexOf(QLatin1String("<aeset-atts>")));
}

TEST(StoryTextTest, FieldsAreWrittenAsFileReadersLookForThem)
{
    EXPECT_TRUE(markupOf(sample(), header, Section::Fields).contains(QLatin1String("<f id=title>")));
}

TEST(StoryTextTest, WholeMarkupReadsBack)
{
    StoryText text;
    StoryHeader read;
    ASSERT_EQ(readStory(QLatin1String(wholeSample), &text, &read), Refusal::None);
    EXPECT_EQ(read.storyId, header.storyId);
    EXPECT_EQ(read.formName, header.formName);
    EXPECT_EQ(markupOf(text, read, Section::Whole), QLatin1String(wholeSample));
}

TEST(StoryTextTest, UnprintableAndForeignValuesReadBack)
{
    StoryText text;
    text.setMeta(QStringLiteral("locked"), QStringLiteral("by \"me\" & <you>/"));
    text.setField(QStringLiteral("odd name"),
                  QString::fromUtf8("\xD9\x85\xD8\xB1\xD8\xAD\xD8\xA8\xD8\xA7 \xF0\x9F\x98\x80\t\x01\n<b>"));
    text.setField(QStringLiteral("half"), QString(QChar(0xD800)));
    StoryText read;
    StoryHeader readHeader;
    ASSERT_EQ(readStory(markupOf(text, header, Section::Whole), &read, &readHeader), Refusal::None);
    EXPECT_EQ(read.meta, text.meta);
    EXPECT_TRUE(read.fields == text.fields);
}

TEST(StoryTextTest, MetaKeepsItsOrderAndDropsEmptyValues)
{
    StoryText text;
    text.setMeta(QStringLiteral("b"), QStringLiteral("1"));
    text.setMeta(QStringLiteral("a"), QStringLiteral("2"));
    text.setMeta(QStringLiteral("b"), QStringLiteral("3"));
    EXPECT_EQ(text.metaValue(QStringLiteral("b")), QStringLiteral("3"));
    EXPECT_EQ(text.meta.first().name, QStringLiteral("b"));
    text.setMeta(QStringLiteral("b"), QString());
    EXPECT_EQ(text.meta.size(), 1);
    EXPECT_EQ(text.metaValue(QStringLiteral("none")), QString());
}

TEST(StoryTextTest, FieldsAreFoundIgnoringLetterCase)
{
    StoryText text = sample();
    text.setField(QStringLiteral("TITLE"), QStringLiteral("New"));
    EXPECT_EQ(text.fields.size(), 2);
    EXPECT_EQ(text.fields.first().id, QStringLiteral("title"));
    EXPECT_EQ(text.fieldValue(QStringLiteral("Title")), QStringLiteral("New"));
    EXPECT_EQ(text.field(QStringLiteral("titl")), nullptr);
}

TEST(StoryTextTest, SettingAFieldKeepsItsAttributes)
{
    StoryText text = sample();
    text.setField(QStringLiteral("priority"), QStringLiteral("3"));
    EXPECT_EQ(text.field(QStringLiteral("priority"))->attributes.first().value, QStringLiteral("2"));
}

TEST(StoryTextTest, PutsOneSection)
{
    StoryText text = sample();
    EXPECT_EQ(put(&text, Section::Body, "<body><p>New</p></body>"), Refusal::None);
    EXPECT_EQ(text.body, QStringLiteral("<p>New</p>"));
    EXPECT_EQ(text.fields.size(), 2);
}

TEST(StoryTextTest, PutsAPrefixedSection)
{
    StoryText text;
    EXPECT_EQ(put(&text, Section::Body, "<zeko:body>\n<p>x</p></zeko:body>"), Refusal::None);
    EXPECT_EQ(text.body, QStringLiteral("\n<p>x</p>"));
}

TEST(StoryTextTest, PutsAnEmptyElement)
{
    StoryText text = sample();
    EXPECT_EQ(put(&text, Section::Body, "<body/>"), Refusal::None);
    EXPECT_EQ(text.body, QString());
}

TEST(StoryTextTest, DeclarationCommentsAndBlanksAroundASectionAreFine)
{
    StoryText text;
    EXPECT_EQ(put(&text, Section::Look, "<?xml version=\"1.0\"?>\n <!-- c --> <look>l</look>\n"), Refusal::None);
    EXPECT_EQ(text.look, QStringLiteral("l"));
}

TEST(StoryTextTest, OpenAnchorsInTheBodyAreKeptAsTheyStand)
{
    StoryText text;
    EXPECT_EQ(put(&text, Section::Body, "<body><p><a idref=0>x</p><a idref=1></body>"), Refusal::None);
    EXPECT_EQ(text.body, QStringLiteral("<p><a idref=0>x</p><a idref=1>"));
}

TEST(StoryTextTest, PutsTheHeadersMetaAttributesOnly)
{
    StoryText text = sample();
    EXPECT_EQ(
        put(&text, Section::Head, "<head><storyid>1:1:1</storyid><formname>X</formname><meta rate=150 hold=h></head>"),
        Refusal::None);
    EXPECT_EQ(text.meta, (QVector<NameValue>{{QStringLiteral("rate"), QStringLiteral("150")},
                                             {QStringLiteral("hold"), QStringLiteral("h")}}));
}

TEST(StoryTextTest, MetaAttributesThatStandTwiceHaveTheirLastValue)
{
    StoryText text;
    EXPECT_EQ(put(&text, Section::Head, "<head><meta rate=1 hold=H words=\"\" rate=2><meta hold=\"\"></head>"),
              Refusal::None);
    EXPECT_EQ(text.meta, (QVector<NameValue>{{QStringLiteral("rate"), QStringLiteral("2")}}));
}

TEST(StoryTextTest, PutFieldsReplacesThemAll)
{
    StoryText text = sample();
    EXPECT_EQ(
        put(&text, Section::Fields, "<fields> <f uec=1 id=slug>a&lt;<b>b</b></f><zeko:f id=\"two words\"/></fields>"),
        Refusal::None);
    ASSERT_EQ(text.fields.size(), 2);
    EXPECT_EQ(text.fields.at(0).id, QStringLiteral("slug"));
    EXPECT_EQ(text.fields.at(0).value, QStringLiteral("a<b"));
    EXPECT_EQ(text.fields.at(0).attributes, (QVector<NameValue>{{QStringLiteral("uec"), QStringLiteral("1")}}));
    EXPECT_EQ(text.fields.at(1).id, QStringLiteral("two words"));
}

TEST(StoryTextTest, AFieldThatStandsTwiceHasItsLastValue)
{
    StoryText text;
    EXPECT_EQ(put(&text, Section::Fields, "<fields><f id=a>1</f><f id=b>2</f><f id=A x=y>3</f></fields>"),
              Refusal::None);
    ASSERT_EQ(text.fields.size(), 2);
    EXPECT_EQ(text.fieldValue(QStringLiteral("a")), QStringLiteral("3"));
    EXPECT_EQ(text.fields.first().attributes.size(), 1);
}

TEST(StoryTextTest, PutsSeveralSectionsAtOnce)
{
    StoryText text = sample();
    qint32 applied = 0;
    EXPECT_EQ(text.putMarkup(Section::Look | Section::Body, QStringLiteral("<body>b</body><look>l</look>"), &applied),
              Refusal::None);
    EXPECT_EQ(applied, Section::Look | Section::Body);
    EXPECT_EQ(text.look, QStringLiteral("l"));
    EXPECT_EQ(text.body, QStringLiteral("b"));
}

TEST(StoryTextTest, OfAWholeStoryOnlyTheNamedSectionsAreApplied)
{
    StoryText text;
    qint32 applied = 0;
    EXPECT_EQ(text.putMarkup(Section::Look | Section::Body, QLatin1String(wholeSample), &applied), Refusal::None);
    EXPECT_EQ(applied, Section::Look | Section::Body);
    EXPECT_TRUE(text.fields.isEmpty());
    EXPECT_EQ(put(&text, Section::Whole, "<zeko:story><zeko:fields><f id=x>1</f></zeko:fields></zeko:story>"),
              Refusal::None);
    EXPECT_EQ(text.fields.size(), 1);
    EXPECT_EQ(text.body, sample().body);
}

TEST(StoryTextTest, NoSectionOrAnUnknownOneIsNoArgument)
{
    StoryText text;
    for (const qint32 sections : {0, 128, 255, -1})
        EXPECT_EQ(put(&text, sections, "<body></body>"), Refusal::InvalidArgument) << sections;
    EXPECT_EQ(text.putPlain(0, QString()), Refusal::InvalidArgument);
}

TEST(StoryTextTest, RefusedMarkupChangesNothing)
{
    const char *const wrong[] = {"",
                                 "text",
                                 "<body>",
                                 "</body>",
                                 "<body></look>",
                                 "<look></look>",
                                 "<body></body>x",
                                 "<body></body><body></body>",
                                 "<body></body><look></look>",
                                 "<body><p></body>",
                                 "<body>a < b</body>",
                                 "<story><body></body></story>x",
                                 "<story><body></body>",
                                 "<story></story>",
                                 "<story/>",
                                 "<body></body></story>",
                                 "<body x=\"></body>",
                                 "<body><p x=\"1></p></body>",
                                 "<story><story></story></story>",
                                 "<other></other>",
                                 "<body></body><story></story>",
                                 "<story></story><body></body>",
                                 "<body></bod",
                                 "<meta x=1>",
                                 "<![CDATA[x]]>",
                                 "<body></zeko:body>"};
    for (const char *markup : wrong) {
        StoryText text = sample();
        EXPECT_EQ(put(&text, Section::Body, markup), Refusal::MarkupSyntax) << markup;
        EXPECT_EQ(markupOf(text, header, Section::Whole), QLatin1String(wholeSample)) << markup;
    }
}

TEST(StoryTextTest, RefusedFieldMarkupChangesNothing)
{
    for (const char *markup :
         {"<fields><f>x</f></fields>", "<fields><f id=\"\">x</f></fields>", "<fields>x</fields>",
          "<fields><g id=a></g></fields>", "<fields><f id=a>x</fields>", "<fields><f id=\"a></f></fields>"}) {
        StoryText text = sample();
        EXPECT_EQ(put(&text, Section::Fields, markup), Refusal::MarkupSyntax) << markup;
        EXPECT_EQ(text.fields.size(), 2) << markup;
    }
}

TEST(StoryTextTest, PlainBodyIsItsParagraphsAsLines)
{
    EXPECT_EQ(plainOfBody("<p>One &amp; two</p>\n<p>Three <b>four</b></p>"), QStringLiteral("One & two\nThree four"));
    EXPECT_EQ(plainOfBody(""), QString());
    EXPECT_EQ(plainOfBody("<p></p><p>x</p>"), QStringLiteral("\nx"));
    EXPECT_EQ(plainOfBody("<p>a\nb\r\nc</p>"), QStringLiteral("a b c"));
    EXPECT_EQ(plainOfBody("<p>a<br/>b</p>"), QStringLiteral("a\nb"));
    EXPECT_EQ(plainOfBody("<p/><p>a</p>"), QStringLiteral("\na"));
    EXPECT_EQ(plainOfBody("<p><![CDATA[a<b]]></p>"), QStringLiteral("a<b"));
    EXPECT_EQ(plainOfBody("<!-- c --><p>a</p>"), QStringLiteral("a"));
}

TEST(StoryTextTest, TextOutsideOfParagraphsIsNotLost)
{
    EXPECT_EQ(plainOfBody("one\n two \n\n<p>three</p>four"), QStringLiteral("one\ntwo\nthree\nfour"));
    EXPECT_EQ(plainOfBody("<p>a<p>b</p>c</p>"), QStringLiteral("a\nb\nc"));
}

TEST(StoryTextTest, PlainBodyReadsBack)
{
    for (const char *plain :
         {"", "a", "a\nb", "\n", "a\n\n b \n", "<b> & \"c\"", "\xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80"}) {
        StoryText text;
        text.setPlainBody(QString::fromUtf8(plain));
        EXPECT_EQ(text.plainBody(), QString::fromUtf8(plain));
    }
    StoryText text;
    text.setPlainBody(QStringLiteral("a\r\nb\rc"));
    EXPECT_EQ(text.plainBody(), QStringLiteral("a\nb\nc"));
}

TEST(StoryTextTest, PlainWholeSeparatesSectionsByBlankLines)
{
    EXPECT_EQ(plainOf(sample(), header, Section::Whole),
              QStringLiteral("storyid: 7:c:0:1\nformname: STORY\nrate: 170\nwords: 3\n\n<view x=1></view>\n\n"
                             "title: Rain & wind\npriority: 2\n\nIt rained.\nStill.\n\nz"));
    EXPECT_EQ(plainOf(sample(), header, Section::Fields), QStringLiteral("title: Rain & wind\npriority: 2"));
    EXPECT_EQ(plainOf(StoryText(), header, Section::Body), QString());
}

TEST(StoryTextTest, PlainFieldsReadBackWithTheirAttributes)
{
    StoryText text = sample();
    text.setField(QStringLiteral("note"), QStringLiteral("two\nlines: yes"));
    text.setField(QStringLiteral("empty"), QString());
    const QVector<StoryField> before = text.fields;
    EXPECT_EQ(text.putPlain(Section::Fields, plainOf(text, header, Section::Fields)), Refusal::None);
    EXPECT_TRUE(text.fields == before);
}

TEST(StoryTextTest, PlainFieldsReplaceThemAll)
{
    StoryText text = sample();
    EXPECT_EQ(text.putPlain(Section::Fields, QStringLiteral("a:1\r\n\r\nb: 2\nA: 3")), Refusal::None);
    ASSERT_EQ(text.fields.size(), 2);
    EXPECT_EQ(text.fieldValue(QStringLiteral("a")), QStringLiteral("3"));
    EXPECT_EQ(text.fieldValue(QStringLiteral("b")), QStringLiteral("2"));
}

TEST(StoryTextTest, PlainFieldLineWithoutColonIsRefused)
{
    StoryText text = sample();
    EXPECT_EQ(text.putPlain(Section::Fields, QStringLiteral("a: 1\nnonsense")), Refusal::MarkupSyntax);
    EXPECT_EQ(text.putPlain(Section::Fields, QStringLiteral(": 1")), Refusal::MarkupSyntax);
    EXPECT_EQ(text.fields.size(), 2);
}

TEST(StoryTextTest, OtherSectionsAreNotPutPlain)
{
    StoryText text;
    for (const qint32 sections : {Section::Head, Section::Look, Section::Aeset, Section::FieldAtts, Section::AesetAtts,
                                  Section::Body | Section::Fields, Section::Whole})
        EXPECT_EQ(text.putPlain(sections, QStringLiteral("x: y")), Refusal::InvalidArgument) << sections;
}

TEST(StoryTextTest, CountsWordsOfTheBody)
{
    EXPECT_EQ(sample().wordCount(), 3);
    EXPECT_EQ(StoryText().wordCount(), 0);
    StoryText text;
    text.setPlainBody(QStringLiteral("  one\ttwo  \n\n three "));
    EXPECT_EQ(text.wordCount(), 3);
}

TEST(StoryTextTest, RawHalvesOfSurrogatesAreStoredAsReferences)
{
    StoryText text;
    EXPECT_EQ(
        text.putMarkup(Section::Body, QStringLiteral("<body><p>") + QChar(0xD83D) + QStringLiteral("</p></body>")),
        Refusal::None);
    EXPECT_EQ(text.body, QStringLiteral("<p>&#55357;</p>"));
}

TEST(StoryTextTest, HostileSectionsEndInLinearTime)
{
    StoryText text;
    const int depth = 100000;
    const QString open = QStringLiteral("<p>").repeated(depth);
    const QString close = QStringLiteral("</p>").repeated(depth);
    EXPECT_EQ(text.putMarkup(Section::Body, QLatin1String("<body>") + open + close + QLatin1String("</body>")),
              Refusal::None);
    EXPECT_EQ(text.putMarkup(Section::Body, QLatin1String("<body>") + open + QLatin1String("</body>")),
              Refusal::MarkupSyntax);
    QString fields;
    for (int i = 0; i < depth; ++i)
        fields += QStringLiteral("<f id=x%1>v</f>").arg(i);
    EXPECT_EQ(text.putMarkup(Section::Fields, QLatin1String("<fields>") + fields + QLatin1String("</fields>")),
              Refusal::None);
    EXPECT_EQ(text.fields.size(), depth);
    QString meta;
    for (int i = 0; i < depth; ++i)
        meta += QStringLiteral(" x%1=v").arg(i);
    EXPECT_EQ(text.putMarkup(Section::Head, QLatin1String("<head><meta") + meta + QLatin1String("></head>")),
              Refusal::None);
    EXPECT_EQ(text.meta.size(), depth);
    EXPECT_EQ(text.putPlain(Section::Fields, plainOf(text, header, Section::Fields)), Refusal::None);
    EXPECT_EQ(text.fields.size(), depth);
}
