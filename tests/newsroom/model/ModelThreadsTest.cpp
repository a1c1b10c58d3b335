#include "EditingFixture.h"

#include <atomic>
#include <thread>
#include <vector>

using namespace Newsroom;

using ModelThreadsTest = EditingFixture;

namespace {

constexpr int threadCount = 8;

void run(const std::function<void(int)> &work)
{
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int i = 0; i < threadCount; ++i)
        threads.emplace_back(work, i);
    for (std::thread &thread : threads)
        thread.join();
}

} // namespace

TEST_F(ModelThreadsTest, NoSaveIsLost)
{
    constexpr int saves = 50;
    Answer<StoryDraft> longer = model->edit(nora, 10);
    longer.value.putPlain(Section::Body, QStringLiteral("word ").repeated(20000));
    ASSERT_TRUE(model->save(nora, longer.value).ok()); // making a revision takes long enough to be overtaken
    run([this](int i) {
        const QString field = QStringLiteral("f%1").arg(i);
        for (int n = 1; n <= saves; ++n) {
            Answer<StoryDraft> draft = model->edit(nora, 10);
            draft.value.putField(field, QString::number(n));
            EXPECT_TRUE(model->save(nora, draft.value).ok());
        }
    });
    const StoryPointer story = model->story(10).value;
    EXPECT_EQ(story->revision(), 2 + threadCount * saves);
    for (int i = 0; i < threadCount; ++i)
        EXPECT_EQ(story->text().fieldValue(QStringLiteral("f%1").arg(i)), QString::number(saves));
}

TEST_F(ModelThreadsTest, OnlyOneSessionHoldsALock)
{
    std::atomic<int> holders{0};
    run([&](int) {
        const SessionId session = signOn("nora");
        for (int n = 0; n < 200; ++n) {
            if (model->lock(session, 10, 1).refusal != Refusal::None)
                continue;
            EXPECT_EQ(holders.fetch_add(1), 0);
            EXPECT_EQ(holders.fetch_sub(1), 1);
            EXPECT_EQ(model->unlock(session, 10), Refusal::None);
        }
        model->signOff(session);
    });
    EXPECT_FALSE(model->isLocked(10, 0).value);
}

TEST_F(ModelThreadsTest, ReadersSeeWholeListsWhileStoriesComeAndGo)
{
    std::atomic<bool> done{false};
    std::thread writer([&] {
        for (int n = 0; n < 300; ++n) {
            const Answer<StoryPointer> created = model->createStory(nora, 3, n % 3);
            ASSERT_TRUE(created.ok());
            retitle(nora, created.value->id().part1, "busy");
        }
        done = true;
    });
    run([&](int) {
        while (!done) {
            const Answer<QVector<StoryPointer>> stories = model->stories(3, 0, 20);
            for (const StoryPointer &story : stories.value)
                EXPECT_FALSE(story->markup(Section::Whole).isEmpty());
            EXPECT_TRUE(model->scope(Query::parse(QStringLiteral("{.*}((*))")).value).ok());
        }
    });
    writer.join();
    EXPECT_EQ(model->queue(3).value.count, 301);
}
