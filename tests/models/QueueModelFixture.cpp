#include "models/QueueModelFixture.h"

using namespace Quire;
using Newsroom::Refusal;

namespace {

QString queueText(const char *name, int number, int stories, const char *flags)
{
    QString described = text("  queue %1 number=%2 form=STORY %3\n").arg(text(name)).arg(number).arg(text(flags));
    for (int index = 0; index < stories; ++index)
        described += text("    story id=%1:1:1\n      title: Story %2\n").arg(number * 10000 + index).arg(index);
    return described;
}

int part1(int queue, int story)
{
    return queue * 10000 + story;
}

} // namespace

void QueueModelTest::SetUp()
{
    start(text("form STORY\n"
               "  <zeko:form><zeko:row><zeko:cell idref=title length=80>Title </zeko:cell>"
               "<zeko:cell idref=Writer length=20 llength=40 align=right style=b>By</zeko:cell>"
               "<zeko:cell idref=TITLE></zeko:cell><zeko:cell idref=note></zeko:cell></zeko:row></zeko:form>\n"
               "directory Q\n") +
          queueText("NONE", 10, 0, "") + queueText("SHORT", 11, 5, "") + queueText("MANY", 12, 50, "") +
          queueText("LONG", 13, 1000, "") + queueText("LIVE", 14, 45, "live"));
    ben = signOnBen();
}

void QueueModelTest::open(QueueModel &model, const char *path)
{
    model.setPollInterval(5);
    model.open(text(path));
    ASSERT_TRUE(settles(model));
}

QString QueueModelTest::numbers(const QueueModel &model)
{
    QStringList all;
    for (int row = 0; row < model.rowCount(); ++row) {
        const QString title = model.index(row, 0).data().toString();
        all.append(title.startsWith(text("Story ")) ? title.mid(6) : text("-"));
    }
    return all.join(QLatin1Char(' '));
}

void QueueModelTest::changeTitle(int queue, int story, const char *title)
{
    Newsroom::StoryDraft draft = newsroom->edit(ben, part1(queue, story)).value;
    ASSERT_EQ(draft.putField(text("title"), text(title)), Refusal::None);
    ASSERT_TRUE(newsroom->save(ben, draft).ok());
}

void QueueModelTest::remove(int queue, int story)
{
    ASSERT_EQ(newsroom->deleteStory(ben, part1(queue, story)), Refusal::None);
}

void QueueModelTest::append(int queue, int story)
{
    Newsroom::Model::NewStory added;
    added.queueNumber = queue;
    added.id = {part1(queue, story), 1, 1};
    added.text.setField(text("title"), text("Story %1").arg(story));
    ASSERT_TRUE(newsroom->addStory(added).ok());
}

void QueueModelTest::moveToEnd(int queue, int story)
{
    const Newsroom::StoryPointer before = newsroom->story(part1(queue, story)).value;
    remove(queue, story);
    ASSERT_TRUE(newsroom->addStory({queue, before->id(), before->revision(), before->formName(), before->text()}).ok());
}
