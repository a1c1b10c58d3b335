#include <gtest/gtest.h>

#include <QSet>

#include <quire/newsroom/Newsroom.h>

using namespace Newsroom;

namespace {

QVector<StoryPointer> storiesOf(const Model &model, const char *path)
{
    return model.stories(model.entry(QLatin1String(path)).value.number()).value;
}

TEST(GeneratedTest, StoriesAreSharedOutAmongTheQueuesInOrder)
{
    const std::shared_ptr<Model> model = generatedModel({11, 3});
    EXPECT_EQ(model->storyCount(), 11);
    ASSERT_EQ(model->queues().size(), 3);
    EXPECT_EQ(storiesOf(*model, "WIRES.W1").size(), 4);
    EXPECT_EQ(storiesOf(*model, "WIRES.W2").size(), 4);
    EXPECT_EQ(storiesOf(*model, "WIRES.W3").size(), 3);
}

TEST(GeneratedTest, MoreQueuesThanStoriesLeavesSomeEmpty)
{
    const std::shared_ptr<Model> model = generatedModel({1, 2});
    EXPECT_EQ(storiesOf(*model, "WIRES.W1").size(), 1);
    EXPECT_EQ(storiesOf(*model, "WIRES.W2").size(), 0);
}

TEST(GeneratedTest, IsTheSameEachTime)
{
    const QVector<StoryPointer> first = storiesOf(*generatedModel({50, 1}), "WIRES.W1");
    const QVector<StoryPointer> second = storiesOf(*generatedModel({50, 1}), "WIRES.W1");
    ASSERT_EQ(first.size(), 50);
    ASSERT_EQ(second.size(), 50);
    for (int i = 0; i < 50; ++i)
        EXPECT_EQ(first.at(i)->markup(Section::Whole), second.at(i)->markup(Section::Whole));
}

TEST(GeneratedTest, EachStoryHasItsTitleAndAllFieldsOfTheForm)
{
    const std::shared_ptr<Model> model = generatedModel({1000, 1});
    QSet<QString> titles;
    for (const StoryPointer &story : storiesOf(*model, "WIRES.W1")) {
        titles.insert(story->name());
        for (const char *field : {"title", "urgency", "source", "create-by", "create-date"})
            EXPECT_NE(story->text().fieldValue(QLatin1String(field)), QString()) << field;
        EXPECT_GT(story->text().wordCount(), 5);
    }
    EXPECT_EQ(titles.size(), 1000);
    EXPECT_TRUE(model->form(QStringLiteral("WIRE")));
}

} // namespace
