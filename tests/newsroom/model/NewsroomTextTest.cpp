#include <gtest/gtest.h>

#include <quire/newsroom/model/Model.h>
#include <quire/newsroom/model/NewsroomText.h>

#include "Newsroom.h"
#include "Printers.h"

using namespace Newsroom;

namespace {

/// The error of a text that is wrong.
QString errorOf(const char *text)
{
    QString error;
    EXPECT_EQ(Model::fromText(QString::fromUtf8(text), &error), nullptr) << text;
    return error;
}

} // namespace

TEST(NewsroomTextTest, ReadsServerAndUsers)
{
    const auto model =
        newsroom("server MAIN alias=A alias=\"B B\" read-rate=150 word-length=5 session-limit=9 offline\n"
                 "# a comment\n"
                 "user nora password=\"a b\" full=\"Nora Vale\" mail=M.N device=D number=7 rights=-3\n"
                 "user kim read-only superuser\n");
    const SystemValues values = model->system();
    EXPECT_EQ(values.serverName, QStringLiteral("MAIN"));
    EXPECT_EQ(values.aliases, (QStringList{QStringLiteral("A"), QStringLiteral("B B")}));
    EXPECT_EQ(values.readRate, 150);
    EXPECT_EQ(values.wordLength, 5);
    EXPECT_EQ(values.sessionLimit, 9);
    EXPECT_TRUE(values.offline);
    const User nora = model->users().at(0);
    EXPECT_EQ(nora.password, QStringLiteral("a b"));
    EXPECT_EQ(nora.fullName, QStringLiteral("Nora Vale"));
    EXPECT_EQ(nora.mailQueue, QStringLiteral("M.N"));
    EXPECT_EQ(nora.device, QStringLiteral("D"));
    EXPECT_EQ(nora.number, 7);
    EXPECT_EQ(nora.rights, -3);
    EXPECT_TRUE(nora.mayWrite);
    EXPECT_FALSE(model->users().at(1).mayWrite);
    EXPECT_TRUE(model->users().at(1).superuser);
}

TEST(NewsroomTextTest, ReadsFormsAndBlobs)
{
    const auto model = newsroom("form F\n"
                                "  <zeko:form>\n"
                                "    <zeko:row></zeko:row>\n"
                                "\n"
                                "  </zeko:form>\n"
                                "blob \"a b\"\n"
                                "    one\n"
                                "      two\n");
    EXPECT_EQ(model->form(QStringLiteral("F")).value,
              QStringLiteral("<zeko:form>\n  <zeko:row></zeko:row>\n\n</zeko:form>"));
    EXPECT_EQ(model->blobOf(QStringLiteral("a b")).value.data, QByteArray("one\n  two"));
}

TEST(NewsroomTextTest, ReadsTheTree)
{
    const auto model = newsroom("directory A indexed sorted\n"
                                "  directory B\n"
                                "    queue C form=F number=9 live inverted confirm-edit locked-e\n"
                                "  queue D read-only purge-locked\n"
                                "queue \"E F\"\n");
    EXPECT_TRUE((model->entry(QStringLiteral("A")).value.flags == Flags{0, 0x80, 0x40}));
    const Entry queue = model->entry(QStringLiteral("A.B.C")).value;
    EXPECT_EQ(queue.settings.formName, QStringLiteral("F"));
    EXPECT_EQ(queue.number(), 9);
    EXPECT_TRUE((queue.flags == Flags{0x43, 0, 0x05}));
    EXPECT_TRUE(model->entry(QStringLiteral("A.D")).value.settings.readOnly);
    EXPECT_TRUE(model->entry(QStringLiteral("A.D")).value.settings.purgeLocked);
    EXPECT_TRUE(model->entry(QStringLiteral("E F")).value.isQueue());
}

TEST(NewsroomTextTest, ReadsStories)
{
    const auto model = newsroom("queue Q number=2 form=F\n"
                                "  story id=100:2:7 revision=4 form=G locked-by=anna lock-type=2 hold=H wire=\"W 1\"\n"
                                "    title: Rain: more of it\n"
                                "    priority[urgency=2 uec=x]: 2\n"
                                "    empty:\n"
                                "\n"
                                "    The first paragraph,\n"
                                "    in two lines.\n"
                                "\n"
                                "\n"
                                "    <p>a <b>tag</b></p>\n"
                                "  story id=5\n"
                                "\n"
                                "    Text & only <here>\n");
    const StoryPointer story = model->story(100).value;
    ASSERT_NE(story, nullptr);
    EXPECT_TRUE((story->id() == StoryId{100, 2, 7}));
    EXPECT_EQ(story->revision(), 4);
    EXPECT_EQ(story->formName(), QStringLiteral("G"));
    EXPECT_TRUE(story->isHeld());
    EXPECT_EQ(story->markup(Section::Head), QStringLiteral("<head><storyid>64:2:7:4</storyid><formname>G</formname>"
                                                           "<meta hold=H wire=\"W 1\" words=8></head>"));
    EXPECT_EQ(story->markup(Section::Fields),
              QStringLiteral("<fields><f id=title>Rain: more of it</f><f id=priority urgency=2 uec=x>2</f>"
                             "<f id=empty></f></fields>"));
    EXPECT_EQ(story->text().body, QStringLiteral("<p>The first paragraph, in two lines.</p><p>a <b>tag</b></p>"));
    EXPECT_TRUE(model->isLocked(100, 2).value);
    EXPECT_EQ(model->lockHolder(100).value, QStringLiteral("anna"));
    EXPECT_TRUE((model->story(5).value->id() == StoryId{5, 2, 0}));
    EXPECT_EQ(model->story(5).value->plain(Section::Body), QStringLiteral("Text & only <here>"));
    EXPECT_EQ(model->story(5).value->formName(), QStringLiteral("F"));
}

TEST(NewsroomTextTest, AnIdentifierInThreePartsIsKeptAsItIs)
{
    const auto model = newsroom("queue Q number=2\n  story id=100:5:7\n  story id=101\n");
    EXPECT_TRUE((model->story(100).value->id() == StoryId{100, 5, 7}));
    EXPECT_TRUE((model->story(101).value->id() == StoryId{101, 2, 0}));
}

TEST(NewsroomTextTest, FieldsAndTheirAttributesMayHoldBracketsAndColons)
{
    const auto model = newsroom("queue Q number=1\n"
                                "  story id=1\n"
                                "    title: Rain [more: later]\n"
                                "    note: [\n"
                                "    time[at=10:30]: 5:00\n");
    EXPECT_EQ(model->story(1).value->markup(Section::Fields),
              QStringLiteral("<fields><f id=title>Rain [more: later]</f><f id=note>[</f><f id=time at=10:30>5:00</f>"
                             "</fields>"));
}

TEST(NewsroomTextTest, OnlyTheFirstEqualsSignOutsideOfQuotesSeparates)
{
    const auto model = newsroom("user nora password=a=b full=\"c=d\"\nblob \"e=f\"\n  x\n");
    EXPECT_EQ(model->users().first().password, QStringLiteral("a=b"));
    EXPECT_EQ(model->users().first().fullName, QStringLiteral("c=d"));
    EXPECT_EQ(model->blobNames(), QStringList{QStringLiteral("e=f")});
}

TEST(NewsroomTextTest, GivenWordsAreKept)
{
    const auto model = newsroom("queue Q number=1\n  story id=1 words=99\n\n    one\n");
    EXPECT_EQ(model->story(1).value->text().metaValue(QStringLiteral("words")), QStringLiteral("99"));
}

TEST(NewsroomTextTest, AddsBelowADirectory)
{
    Model model;
    ASSERT_EQ(model.addDirectory(QStringLiteral("A")), Refusal::None);
    EXPECT_TRUE(NewsroomText::addTo(&model, QStringLiteral("A"), QStringLiteral("queue Q"), nullptr));
    EXPECT_TRUE(model.entry(QStringLiteral("A.Q")).ok());
}

TEST(NewsroomTextTest, AnEmptyTextIsAnEmptyNewsroom)
{
    EXPECT_EQ(newsroom("")->entry(QString()).value.count, 0);
    EXPECT_EQ(newsroom("\n  \n# x\n")->entry(QString()).value.count, 0);
}

TEST(NewsroomTextTest, ErrorsNameTheLine)
{
    EXPECT_EQ(errorOf("\nqueue Q\nnonsense X"), QStringLiteral("line 3: \"nonsense\" is not known here"));
    EXPECT_EQ(errorOf("queue"), QStringLiteral("line 1: \"queue\" needs a name"));
    EXPECT_EQ(errorOf("directory A blue"), QStringLiteral("line 1: \"blue\" is no flag"));
    EXPECT_EQ(errorOf("queue A blue"), QStringLiteral("line 1: \"blue\" is no flag"));
    EXPECT_EQ(errorOf("queue A number=x"), QStringLiteral("line 1: \"x\" is no number"));
    EXPECT_EQ(errorOf("queue A\nqueue a"), QStringLiteral("line 2: a: The entry exists already."));
    EXPECT_EQ(errorOf("queue \"A"), QStringLiteral("line 1: a quote has no end"));
    EXPECT_EQ(errorOf("queue A.B"), QStringLiteral("line 1: A.B: The entry no longer exists."));
    EXPECT_EQ(errorOf("queue A\n  queue B"), QStringLiteral("line 2: a queue has no queues"));
    EXPECT_EQ(errorOf("queue A\n  directory B"), QStringLiteral("line 2: a queue has no directories"));
    EXPECT_EQ(errorOf("story"), QStringLiteral("line 1: a story stands in a queue, indented below it"));
    EXPECT_EQ(errorOf("queue A\nstory"), QStringLiteral("line 2: a story stands in a queue, indented below it"));
    EXPECT_EQ(errorOf("user \"a b\""), QStringLiteral("line 1: a b: The argument is not valid."));
    EXPECT_EQ(errorOf("user a blue"), QStringLiteral("line 1: \"blue\" is no word for a user"));
    EXPECT_EQ(errorOf("server a blue"), QStringLiteral("line 1: \"blue\" is no word for a server"));
    EXPECT_EQ(errorOf("form F\n  <b>"), QStringLiteral("line 2: F: The story markup has a syntax error."));
}

TEST(NewsroomTextTest, ErrorsInStoriesNameTheLine)
{
    EXPECT_EQ(errorOf("queue Q\n  story\n    title: x\n    nonsense"),
              QStringLiteral("line 4: \"nonsense\" is no field; an empty line comes before the text"));
    EXPECT_EQ(errorOf("queue Q\n  story\n    a: x\n    A: y"), QStringLiteral("line 4: the field \"A\" stands twice"));
    EXPECT_EQ(errorOf("queue Q\n  story\n    a[b: x"), QStringLiteral("line 3: the attributes of a field have no end"));
    EXPECT_EQ(errorOf("queue Q\n  story hold"), QStringLiteral("line 2: \"hold\" needs a value"));
    EXPECT_EQ(errorOf("queue Q\n  story =170"), QStringLiteral("line 2: \"\" can be no attribute's name"));
    EXPECT_EQ(errorOf("queue Q\n  story a/b=1"), QStringLiteral("line 2: \"a/b\" can be no attribute's name"));
    EXPECT_EQ(errorOf("queue Q\n  story\n    a[=1]: x"), QStringLiteral("line 3: \"\" can be no attribute's name"));
    EXPECT_EQ(errorOf("queue Q\n  story\n    a: x\n      : y"),
              QStringLiteral("line 4: \"  : y\" is no field; an empty line comes before the text"));
    EXPECT_EQ(errorOf("queue Q\n  story id=x"), QStringLiteral("line 2: \"x\" is no number"));
    EXPECT_EQ(errorOf("queue Q\n  story id=1\n  story id=1"),
              QStringLiteral("line 3: story: The entry exists already."));
    EXPECT_EQ(errorOf("queue Q\n  story\n\n    <p>x"),
              QStringLiteral("line 4: the markup of the body is not well-formed"));
}
