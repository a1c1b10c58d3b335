#include <gtest/gtest.h>

#include <quire/newsroom/model/Model.h>

#include "Newsroom.h"
#include "Printers.h"

using namespace Newsroom;

namespace {

const char *const small = R"(
form STORY
  <zeko:form><zeko:row><zeko:cell idref=title>Title</zeko:cell></zeko:row></zeko:form>
directory NEWS indexed
  queue TODAY form=STORY number=12 live
    story
      title: One
    story
      title: Two
    story
      title: Three
  directory SPORT
    queue FOOTBALL
      story
        title: Four
  queue EMPTY
queue MAIL number=3
)";

QStringList pathsOf(const Answer<QVector<Entry>> &entries)
{
    QStringList paths;
    for (const Entry &entry : entries.value)
        paths.append(entry.path);
    return paths;
}

QStringList namesOf(const Answer<QVector<StoryPointer>> &stories)
{
    QStringList names;
    for (const StoryPointer &story : stories.value)
        names.append(story->name());
    return names;
}

QStringList found(const Model &model, const char *query)
{
    return namesOf(model.scope(Query::parse(QLatin1String(query)).value));
}

} // namespace

TEST(ModelTreeTest, AFreshNewsroomHasAnEmptyRoot)
{
    const Model model;
    const Answer<Entry> root = model.entry(QStringLiteral("."));
    ASSERT_TRUE(root.ok());
    EXPECT_EQ(root.value.path, QStringLiteral("."));
    EXPECT_EQ(root.value.kind, Entry::Directory);
    EXPECT_EQ(root.value.count, 0);
    EXPECT_EQ(model.storyCount(), 0);
    EXPECT_TRUE(model.children(QString()).value.isEmpty());
}

TEST(ModelTreeTest, PathsAreFoundIgnoringLetterCaseInTheirOwn)
{
    const auto model = newsroom(small);
    EXPECT_EQ(model->entry(QStringLiteral("news.sport.Football")).value.path, QStringLiteral("NEWS.SPORT.FOOTBALL"));
    EXPECT_EQ(model->entry(QStringLiteral(".NEWS")).value.path, QStringLiteral("NEWS"));
    EXPECT_EQ(model->entry(QString()).value.path, QStringLiteral("."));
}

TEST(ModelTreeTest, UnknownPathsAreGone)
{
    const auto model = newsroom(small);
    for (const char *path : {"X", "NEWS.X", "NEWS.", "NEWS..TODAY", "NEWS.TODAY.X", ".."})
        EXPECT_EQ(model->entry(QLatin1String(path)).refusal, Refusal::EntryGone) << path;
    EXPECT_EQ(model->children(QStringLiteral("X")).refusal, Refusal::EntryGone);
    EXPECT_EQ(model->children(QStringLiteral("MAIL")).refusal, Refusal::EntryGone);
    EXPECT_EQ(model->queue(99).refusal, Refusal::EntryGone);
    EXPECT_EQ(model->queue(0).refusal, Refusal::EntryGone);
}

TEST(ModelTreeTest, EntriesKnowTheirKindFlagsAndCount)
{
    const auto model = newsroom(small);
    const Entry news = model->entry(QStringLiteral("NEWS")).value;
    EXPECT_FALSE(news.isQueue());
    EXPECT_EQ(news.count, 3);
    EXPECT_EQ(news.flags.word3, Flags::Indexed3);
    const Entry today = model->queue(12).value;
    EXPECT_TRUE(today.isQueue());
    EXPECT_EQ(today.path, QStringLiteral("NEWS.TODAY"));
    EXPECT_EQ(today.count, 3);
    EXPECT_EQ(today.settings.formName, QStringLiteral("STORY"));
    EXPECT_TRUE(today.flags.isLiveRefresh());
    EXPECT_EQ(today.number(), 12);
}

TEST(ModelTreeTest, ChildrenComeInTheirOrderAndInParts)
{
    const auto model = newsroom(small);
    const QString news = QStringLiteral("NEWS");
    EXPECT_EQ(pathsOf(model->children(QStringLiteral("."))), (QStringList{news, QStringLiteral("MAIL")}));
    EXPECT_EQ(pathsOf(model->children(news)),
              (QStringList{QStringLiteral("NEWS.TODAY"), QStringLiteral("NEWS.SPORT"), QStringLiteral("NEWS.EMPTY")}));
    EXPECT_EQ(pathsOf(model->children(news, 1, 1)), QStringList{QStringLiteral("NEWS.SPORT")});
    EXPECT_EQ(pathsOf(model->children(news, 2, 100)), QStringList{QStringLiteral("NEWS.EMPTY")});
    EXPECT_TRUE(pathsOf(model->children(news, 3, 1)).isEmpty());
    EXPECT_TRUE(pathsOf(model->children(news, 1000000, 2147483647)).isEmpty());
    EXPECT_EQ(model->children(news, -1, 1).refusal, Refusal::InvalidArgument);
}

TEST(ModelTreeTest, ChildrenAreFoundByIndex)
{
    const auto model = newsroom(small);
    EXPECT_EQ(model->child(QStringLiteral("NEWS"), 1).value.path, QStringLiteral("NEWS.SPORT"));
    EXPECT_EQ(model->child(QStringLiteral("NEWS"), 3).refusal, Refusal::EntryGone);
    EXPECT_EQ(model->child(QStringLiteral("NEWS"), -1).refusal, Refusal::EntryGone);
    EXPECT_EQ(model->child(QStringLiteral("MAIL"), 0).refusal, Refusal::EntryGone);
    EXPECT_EQ(model->addDirectory(QStringLiteral("VOID")), Refusal::None);
    EXPECT_EQ(model->child(QStringLiteral("VOID"), 0).refusal, Refusal::EntryGone);
}

TEST(ModelTreeTest, QueuesAreListedInTreeOrder)
{
    QStringList paths;
    for (const Entry &entry : newsroom(small)->queues())
        paths.append(entry.path);
    EXPECT_EQ(paths, (QStringList{QStringLiteral("NEWS.TODAY"), QStringLiteral("NEWS.SPORT.FOOTBALL"),
                                  QStringLiteral("NEWS.EMPTY"), QStringLiteral("MAIL")}));
}

TEST(ModelTreeTest, QueueNumbersAreUniqueAndAboveZero)
{
    const auto model = newsroom(small);
    QVector<qint32> numbers;
    for (const Entry &entry : model->queues()) {
        EXPECT_GT(entry.number(), 0);
        EXPECT_FALSE(numbers.contains(entry.number()));
        numbers.append(entry.number());
    }
    EXPECT_EQ(model->addQueue(QStringLiteral("X"), {12, {}, {}, false, false}).refusal, Refusal::EntryExists);
    EXPECT_EQ(model->addQueue(QStringLiteral("X"), {-1, {}, {}, false, false}).refusal, Refusal::InvalidArgument);
}

TEST(ModelTreeTest, NumbersThatQueuesBroughtAlongAreNotGivenAgain)
{
    Model model;
    QueueSettings first;
    first.number = 1;
    EXPECT_EQ(model.addQueue(QStringLiteral("A"), first).value, 1);
    EXPECT_EQ(model.addQueue(QStringLiteral("B"), {}).value, 2);
}

TEST(ModelTreeTest, AddingRefusesBadAndTakenNames)
{
    Model model;
    EXPECT_EQ(model.addDirectory(QStringLiteral("A")), Refusal::None);
    EXPECT_EQ(model.addDirectory(QStringLiteral("a")), Refusal::EntryExists);
    EXPECT_EQ(model.addQueue(QStringLiteral("A")).refusal, Refusal::EntryExists);
    EXPECT_EQ(model.addDirectory(QStringLiteral("B.C")), Refusal::EntryGone);
    EXPECT_EQ(model.addDirectory(QString()), Refusal::InvalidArgument);
    EXPECT_EQ(model.addDirectory(QStringLiteral(".")), Refusal::InvalidArgument);
    EXPECT_EQ(model.addDirectory(QStringLiteral("A. x")), Refusal::InvalidArgument);
    EXPECT_TRUE(model.addQueue(QStringLiteral("a.Q")).ok());
    EXPECT_EQ(model.entry(QStringLiteral("A.Q")).value.path, QStringLiteral("A.Q"));
    EXPECT_EQ(model.addQueue(QStringLiteral("A.Q.R")).refusal, Refusal::EntryGone);
}

TEST(ModelTreeTest, FlagsAndSettingsCanBeReplaced)
{
    const auto model = newsroom(small);
    EXPECT_EQ(model->setFlags(QStringLiteral("news.today"), {1, 2, 3}), Refusal::None);
    EXPECT_TRUE((model->queue(12).value.flags == Flags{1, 2, 3}));
    EXPECT_EQ(model->setFlags(QStringLiteral("X"), {}), Refusal::EntryGone);
    QueueSettings settings;
    settings.number = 77;
    settings.formName = QStringLiteral("OTHER");
    settings.readOnly = true;
    EXPECT_EQ(model->setQueueSettings(12, settings), Refusal::None);
    EXPECT_EQ(model->queue(12).value.settings.formName, QStringLiteral("OTHER"));
    EXPECT_EQ(model->queue(77).refusal, Refusal::EntryGone);
    EXPECT_EQ(model->queue(12).value.number(), 12);
    EXPECT_EQ(model->setQueueSettings(99, settings), Refusal::EntryGone);
}

TEST(ModelTreeTest, AnEntrysFlagsAreThoseOfItsSettings)
{
    const auto model = newsroom(small);
    EXPECT_EQ(model->setFlags(QStringLiteral("NEWS.TODAY"), {1, 2, 3}), Refusal::None);
    EXPECT_TRUE((model->queue(12).value.settings.flags == Flags{1, 2, 3}));
    QueueSettings settings;
    settings.flags = {4, 5, 6};
    EXPECT_EQ(model->setQueueSettings(12, settings), Refusal::None);
    EXPECT_TRUE((model->queue(12).value.flags == Flags{4, 5, 6}));
}

TEST(ModelTreeTest, RemovingTakesEverythingBelow)
{
    const auto model = newsroom(small);
    EXPECT_EQ(model->removeEntry(QStringLiteral("news")), Refusal::None);
    EXPECT_EQ(model->entry(QStringLiteral("NEWS.SPORT.FOOTBALL")).refusal, Refusal::EntryGone);
    EXPECT_EQ(model->queue(12).refusal, Refusal::EntryGone);
    EXPECT_EQ(model->storyCount(), 0);
    EXPECT_EQ(model->removeEntry(QStringLiteral("NEWS")), Refusal::EntryGone);
    EXPECT_EQ(model->removeEntry(QStringLiteral(".")), Refusal::InvalidArgument);
    EXPECT_EQ(model->entry(QStringLiteral(".")).value.count, 1);
}

TEST(ModelTreeTest, StoriesAreListedByPositionAndInParts)
{
    const auto model = newsroom(small);
    EXPECT_EQ(namesOf(model->stories(12)),
              (QStringList{QStringLiteral("One"), QStringLiteral("Two"), QStringLiteral("Three")}));
    EXPECT_EQ(namesOf(model->stories(12, 1, 1)), QStringList{QStringLiteral("Two")});
    EXPECT_EQ(namesOf(model->stories(12, 1, 20)).size(), 2);
    EXPECT_TRUE(model->stories(12, 3, 20).ok());
    EXPECT_TRUE(model->stories(12, 3, 20).value.isEmpty());
    EXPECT_EQ(model->stories(12, -1, 20).refusal, Refusal::InvalidArgument);
    EXPECT_EQ(model->stories(99).refusal, Refusal::EntryGone);
    EXPECT_EQ(model->storyAt(12, 2).value->name(), QStringLiteral("Three"));
    EXPECT_EQ(model->storyAt(12, 3).refusal, Refusal::EntryGone);
    EXPECT_EQ(model->storyAt(12, -1).refusal, Refusal::EntryGone);
    EXPECT_EQ(model->storyAt(99, 0).refusal, Refusal::EntryGone);
}

TEST(ModelTreeTest, StoriesAreFoundByTheFirstPartOfTheirIdentifier)
{
    const auto model = newsroom(small);
    const StoryPointer two = model->storyAt(12, 1).value;
    const qint32 part1 = two->id().part1;
    EXPECT_EQ(model->story(part1).value, two);
    EXPECT_EQ(model->positionOf(part1).value, 1);
    EXPECT_EQ(model->story(QStringLiteral("news.today"), part1).value, two);
    EXPECT_EQ(model->story(QStringLiteral("MAIL"), part1).refusal, Refusal::EntryGone);
    EXPECT_EQ(model->story(QStringLiteral("X"), part1).refusal, Refusal::EntryGone);
    EXPECT_EQ(model->story(12345).refusal, Refusal::EntryGone);
    EXPECT_EQ(model->positionOf(12345).refusal, Refusal::EntryGone);
    EXPECT_EQ(two->queuePath(), QStringLiteral("NEWS.TODAY"));
    EXPECT_EQ(two->queueNumber(), 12);
    EXPECT_EQ(two->id().part2, 12);
    EXPECT_EQ(two->id().part3, 0);
}

TEST(ModelTreeTest, AddedStoriesKeepTheirIdentifierAndForm)
{
    const auto model = newsroom(small);
    Model::NewStory story;
    story.queueNumber = 12;
    story.id = {2147483647, -5, 6};
    story.revision = 9;
    story.formName = QStringLiteral("OWN");
    ASSERT_TRUE(model->addStory(story).ok());
    EXPECT_EQ(model->addStory(story).refusal, Refusal::EntryExists);
    EXPECT_EQ(model->story(2147483647).value->headerId(), QStringLiteral("7fffffff:fffffffb:6:9"));
    EXPECT_EQ(model->story(2147483647).value->formName(), QStringLiteral("OWN"));
    story.id = {};
    const Answer<StoryPointer> next = model->addStory(story);
    ASSERT_TRUE(next.ok());
    EXPECT_GT(next.value->id().part1, 0);
    story.queueNumber = 99;
    EXPECT_EQ(model->addStory(story).refusal, Refusal::EntryGone);
}

TEST(ModelTreeTest, ScopeIsAQueueADirectorysQueuesOrAllBelow)
{
    const auto model = newsroom(small);
    EXPECT_EQ(found(*model, "{NEWS.SPORT.FOOTBALL}((x))"), QStringList{QStringLiteral("Four")});
    EXPECT_EQ(found(*model, "{NEWS}((x))").size(), 3);
    EXPECT_EQ(found(*model, "{NEWS.*}((x))").size(), 4);
    EXPECT_EQ(found(*model, "{[NEWSROOM-A].*}((x))").size(), 4);
    EXPECT_EQ(found(*model, "{[newsroom-a]}((x))").size(), 4);
    EXPECT_TRUE(found(*model, "{.}((x))").isEmpty());
    EXPECT_EQ(model->scope(Query::parse(QStringLiteral("{[OTHER].*}((x))")).value).refusal, Refusal::ServerNotFound);
    EXPECT_EQ(model->scope(Query::parse(QStringLiteral("{X.*}((x))")).value).refusal, Refusal::EntryGone);
}

TEST(ModelTreeTest, FormsAreFoundExactlyFirst)
{
    Model model;
    EXPECT_EQ(model.setForm({QStringLiteral("Story"), QStringLiteral("<a></a>")}), Refusal::None);
    EXPECT_EQ(model.setForm({QStringLiteral("STORY"), QStringLiteral("<b></b>")}), Refusal::None);
    EXPECT_EQ(model.form(QStringLiteral("STORY")).value, QStringLiteral("<b></b>"));
    EXPECT_EQ(model.form(QStringLiteral("story")).value, QStringLiteral("<a></a>"));
    EXPECT_EQ(model.form(QStringLiteral("X")).refusal, Refusal::EntryGone);
    EXPECT_EQ(model.setForm({QStringLiteral("STORY"), QStringLiteral("<c></c>")}), Refusal::None);
    EXPECT_EQ(model.forms().size(), 2);
    EXPECT_EQ(model.setForm({QString(), QString()}), Refusal::InvalidArgument);
    EXPECT_EQ(model.setForm({QStringLiteral("X"), QStringLiteral("<a>x</b>")}), Refusal::MarkupSyntax);
}

TEST(ModelTreeTest, DeepTreesNeedNoStack)
{
    Model model;
    QString path = QStringLiteral("D");
    ASSERT_EQ(model.addDirectory(path), Refusal::None);
    for (int i = 0; i < 2000; ++i) {
        path += QStringLiteral(".D");
        ASSERT_EQ(model.addDirectory(path), Refusal::None);
    }
    ASSERT_TRUE(model.addQueue(path + QStringLiteral(".Q")).ok());
    EXPECT_EQ(model.queues().size(), 1);
    EXPECT_EQ(model.removeEntry(QStringLiteral("D")), Refusal::None);
    EXPECT_TRUE(model.queues().isEmpty());
}
