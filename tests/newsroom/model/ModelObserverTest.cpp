#include "EditingFixture.h"

using namespace Newsroom;

namespace {

/// Writes down what it is told, and asks the model meanwhile.
class Diary : public Observer
{
public:
    explicit Diary(Model *model)
        : m_model(model)
    {}

    void changed(const Change &change) override
    {
        m_model->storyCount(); // would hang if a lock of the model were held
        QStringList stories;
        for (const qint32 part1 : change.stories)
            stories.append(QString::number(part1));
        entries.append(QStringLiteral("%1 q%2 [%3] %4")
                           .arg(QLatin1String(nameOf(change.kind)))
                           .arg(change.queueNumber)
                           .arg(stories.join(QLatin1Char(',')), change.name));
        queueChanges += change.isQueueChange() ? 1 : 0;
    }

    QStringList take()
    {
        QStringList taken;
        taken.swap(entries);
        return taken;
    }

    QStringList entries;
    int queueChanges = 0;

private:
    Model *const m_model;

    static const char *nameOf(Change::Kind kind)
    {
        static const char *const names[] = {"created", "saved",     "deleted", "locked", "unlocked",
                                            "blob",    "user-blob", "tree",    "system"};
        return names[kind];
    }
};

class ModelObserverTest : public EditingFixture
{
protected:
    std::shared_ptr<Diary> diary;

    void SetUp() override
    {
        EditingFixture::SetUp();
        diary = std::make_shared<Diary>(model.get());
        model->addObserver(diary);
    }

    static QStringList told(const char *what) { return {QString::fromLatin1(what)}; }
};

} // namespace

TEST_F(ModelObserverTest, EditsAreTold)
{
    retitle(nora, 10, "X");
    EXPECT_EQ(diary->take(), told("saved q1 [10] "));
    model->lock(nora, 10, 1);
    EXPECT_EQ(diary->take(), told("locked q1 [10] "));
    model->unlock(nora, 10);
    EXPECT_EQ(diary->take(), told("unlocked q1 [10] "));
    const qint32 created = model->createStory(nora, 1, 0).value->id().part1;
    EXPECT_EQ(diary->take(), QStringList{QStringLiteral("created q1 [%1] ").arg(created)});
    model->deleteStory(nora, created);
    EXPECT_EQ(diary->take(), QStringList{QStringLiteral("deleted q1 [%1] ").arg(created)});
    EXPECT_EQ(diary->queueChanges, 5);
}

TEST_F(ModelObserverTest, DeleteAllIsToldOnce)
{
    model->deleteAll(nora, 1);
    EXPECT_EQ(diary->take(), told("deleted q1 [10,11] "));
    model->deleteAll(nora, 4);
    EXPECT_EQ(diary->take(), QStringList());
}

TEST_F(ModelObserverTest, SigningOffTellsTheReleasedLocks)
{
    model->lock(nora, 10, 1);
    model->lock(nora, 30, 1);
    diary->take();
    model->signOff(nora);
    EXPECT_EQ(diary->take(), (QStringList{QStringLiteral("unlocked q1 [10] "), QStringLiteral("unlocked q3 [30] ")}));
}

TEST_F(ModelObserverTest, RefusedAndEmptyOperationsTellNothing)
{
    model->save(nora, model->edit(nora, 10).value);
    retitle(nora, 20, "X");
    model->unlock(nora, 10);
    model->deleteStory(nora, 30);
    model->createStory(nora, 4, 0);
    model->deleteBlob(nora, QStringLiteral("none"));
    EXPECT_EQ(diary->take(), QStringList());
}

TEST_F(ModelObserverTest, BlobsTreeAndSystemAreTold)
{
    model->saveBlob(nora, QStringLiteral("b"), "x");
    model->deleteBlob(nora, QStringLiteral("b"));
    model->saveUserBlob(nora, "x");
    EXPECT_EQ(diary->take(), (QStringList{QStringLiteral("blob q0 [] b"), QStringLiteral("blob q0 [] b"),
                                          QStringLiteral("user-blob q0 [] nora")}));
    model->addDirectory(QStringLiteral("D"));
    model->setFlags(QStringLiteral("D"), {1, 0, 0});
    model->removeEntry(QStringLiteral("D"));
    EXPECT_EQ(diary->take(), (QStringList{QStringLiteral("tree q0 [] D"), QStringLiteral("tree q0 [] D"),
                                          QStringLiteral("tree q0 [] D")}));
    model->setSystem(model->system());
    EXPECT_EQ(diary->take(), told("system q0 [] "));
    EXPECT_EQ(diary->queueChanges, 0);
}

TEST_F(ModelObserverTest, SettingsUsersAndFormsAreTold)
{
    model->setQueueSettings(4, model->queue(4).value.settings);
    EXPECT_EQ(diary->take(), told("tree q0 [] NEWS.PLAIN"));
    model->setUser(model->users().first());
    EXPECT_EQ(diary->take(), told("system q0 [] "));
    model->setForm(model->forms().first());
    EXPECT_EQ(diary->take(), told("system q0 [] "));
}

TEST_F(ModelObserverTest, APutQueueTellsOnlyWhatItChanged)
{
    const QVector<StoryPointer> stories = model->stories(1).value;
    const StoryPointer &first = stories.first();
    const Model::NewStory same{1, first->id(), first->revision(), first->formName(), first->text()};
    model->putQueue(1, {same}, {10, 11, 12, 13});
    EXPECT_EQ(diary->take(), QStringList());
    model->putQueue(1, {same}, {10, 11, 12});
    EXPECT_EQ(diary->take(), told("deleted q1 [13] "));
}

TEST_F(ModelObserverTest, ARemovedObserverIsNotTold)
{
    model->removeObserver(diary.get());
    retitle(nora, 10, "X");
    EXPECT_EQ(diary->take(), QStringList());
}

TEST_F(ModelObserverTest, AnObserverThatIsGoneIsForgotten)
{
    diary.reset();
    EXPECT_EQ(retitle(nora, 10, "X"), Refusal::None);
    model->addObserver(std::weak_ptr<Observer>());
    EXPECT_EQ(retitle(nora, 10, "Y"), Refusal::None);
}
