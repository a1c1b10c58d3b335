// Stories of the newsroom in a box: all that it has, beside another user, and while it fails.

#include <QMutex>
#include <QMutexLocker>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include <quire/Quire.h>
#include <quire/forms/FormCache.h>
#include <quire/newsroom/Newsroom.h>
#include <quire/platform/Bstr.h>
#include <quire/story/Story.h>
#include <quire/tree/Item.h>

#include "story/StoryProbe.h"
#include "support/QtPrinting.h"
#include "support/Stress.h"
#include "support/Text.h"

using namespace Quire;
using Newsroom::Fault;
using Newsroom::ObjectKind;

namespace {

const char *const tenStories = R"(
directory SOAK
  queue TEN form=STORY
    story id=9000:900:1 rate=150
      title: none
      count: 0
    story id=9001:900:1
      title: none
      count: 0
    story id=9002:900:1
      title: none
      count: 0
    story id=9003:901:1
      title: none
      count: 0
    story id=9004:901:2
      title: none
      count: 0
    story id=9005:900:1
      title: none
      count: 0
    story id=9006:902:3
      title: none
      count: 0
    story id=9007:900:1
      title: none
      count: 0
    story id=9008:900:1
      title: none
      count: 0
    story id=9009:903:4
      title: none
      count: 0
)";

const int storyCount = 10;

QString queuePath()
{
    return text("SOAK.TEN");
}

StoryID idOf(const Newsroom::StoryId &id)
{
    return {id.part1, id.part2, id.part3};
}

/// A session on the sample newsroom with ten stories more. After each test nothing of the newsroom is left.
class StoryNewsroom : public ::testing::Test
{
protected:
    StoryNewsroom()
        : model(Newsroom::sampleModel())
        , server(model)
        , registration(server.registerClass())
        , m_live(server.census()->live())
        , m_texts(Newsroom::Census::liveTexts())
        , m_arrays(Newsroom::Census::liveArrays())
    {}

    void SetUp() override
    {
        QString error;
        ASSERT_TRUE(Newsroom::NewsroomText::addTo(model.get(), text(tenStories), &error)) << error.toStdString();
        signOn();
    }
    void TearDown() override
    {
        server.faults().clear();
        FormCache::Clear();
        expectSound();
        QuireCOM::UnloadCOM();
        EXPECT_TRUE(server.waitForEvents());
        SetErrorInfo(0, nullptr); // what the last refusal left with this thread
        EXPECT_EQ(server.census()->live(), m_live) << server.census()->text().toStdString();
        EXPECT_EQ(Newsroom::Census::liveTexts(), m_texts);
        EXPECT_EQ(Newsroom::Census::liveArrays(), m_arrays);
    }

    /// Makes the session anew and signs on.
    void signOn()
    {
        session = QuireCOM::GetQuireCOM(true);
        ASSERT_EQ(session->Connect(text("HAVENPORT"), text("producer"), text("air"), 0), 0);
    }

    /// Nobody holds the access lock, and the session works.
    void expectSound()
    {
        EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
        EXPECT_TRUE(session->IsConnected());
        const StoryID id = ten(0);
        EXPECT_TRUE(Story(queuePath(), &id).IsLoaded());
    }

    /// The identifier of one of the ten stories.
    StoryID ten(int index) const { return idOf(model->story(9000 + index).value->id()); }

    Story open(int index) const
    {
        const StoryID id = ten(index);
        return Story(queuePath(), &id);
    }

    /// The server's story in another user's session.
    static Orvex::IStory2Ptr foreign(const Orvex::ISignon4Ptr &signon, int index)
    {
        IDispatchPtr story;
        signon->GetStory(Platform::Bstr(queuePath()).get(), 9000 + index, 0, 0, &story);
        return Orvex::IStory2Ptr(story);
    }

    QString saved(int index, const char *field) const
    {
        return model->story(9000 + index).value->text().fieldValue(text(field));
    }

    std::shared_ptr<Newsroom::Model> model;
    Newsroom::Server server;
    Newsroom::Registration registration;
    QuireCOM *session = nullptr;

private:
    int m_live;
    qint64 m_texts;
    qint64 m_arrays;
};

using EditSoak = StoryNewsroom;

} // namespace

// ---- what the newsroom has ------------------------------------------------------------------------------------------

TEST_F(StoryNewsroom, EveryStoryIsOpenedAsTheNewsroomKeepsIt)
{
    int count = 0;
    for (const Newsroom::Entry &queue : model->queues()) {
        for (const Newsroom::StoryPointer &kept : model->stories(queue.number()).value) {
            const StoryID id = idOf(kept->id());
            Story story(queue.path, &id);
            ASSERT_TRUE(story.IsLoaded()) << kept->id().unique().toStdString();
            EXPECT_EQ(StoryProbe::headerStoryId(story), kept->headerId());
            EXPECT_EQ(story.FormName(), kept->formName());
            EXPECT_EQ(story.HasKeylock(), kept->isKeyLocked());
            const QString rate = kept->text().metaValue(text("rate"));
            EXPECT_EQ(story.GetReadRate(), rate.isEmpty() ? 18 : rate.toInt() / 10);
            QString whole;
            story.GetSection(127, whole, true);
            EXPECT_EQ(whole, kept->markup(127));
            QString body;
            story.GetSection(8, body, false);
            EXPECT_EQ(body, kept->plain(8));
            EXPECT_FALSE(story.UpdateHeaderID());
            ++count;
        }
    }
    EXPECT_EQ(count, model->storyCount());
}

TEST_F(StoryNewsroom, EveryStorysItemHasItsFieldsAsTheStoryShowsThem)
{
    int fields = 0;
    for (const Newsroom::Entry &queue : model->queues()) {
        int index = 0;
        for (const Newsroom::StoryPointer &kept : model->stories(queue.number()).value) {
            const StoryID id = idOf(kept->id());
            bool notFound = true;
            const Orvex::IStory2Ptr handle = Story::GetStory(queue.path, id, index++, &notFound);
            ASSERT_TRUE(handle);
            EXPECT_FALSE(notFound);
            Item item(QString(), Item_Story);
            StoryProbe::initItem(item, handle);
            EXPECT_EQ(item.name, kept->name());
            std::vector<Attribute> attributes{{text("_headerid"), QString(), 0}, {text("_storyid"), QString(), 0}};
            item.RetrieveAttrs(attributes);
            EXPECT_EQ(attributes[0].value, kept->headerId());
            EXPECT_EQ(attributes[1].value, StoryID2String(id, false));
            Story story(queue.path, &id);
            for (const Attribute &field : Story::GetStoryFields(handle)) {
                Attribute ofItem;
                EXPECT_TRUE(item.FindAttr(field.name, ofItem));
                EXPECT_EQ(ofItem.value, field.value);
                EXPECT_EQ(ofItem.flags, field.flags);
                QString value;
                story.GetField(field.name, value);
                const bool computed = value.isEmpty() && field.name == text("total-time");
                EXPECT_TRUE(computed || field.value == value) << field.name.toStdString();
                ++fields;
            }
        }
    }
    EXPECT_GT(fields, 100);
}

TEST_F(StoryNewsroom, FieldsOfTheFormAreFound)
{
    Story story = open(0);
    std::vector<Attribute> names;
    story.GetAllFieldNames(names);
    EXPECT_GT(names.size(), 3u);
    Field *const field = story.FindField(text("TITLE"));
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(field->m_Label, text("Title"));
}

TEST_F(StoryNewsroom, StoryThatIsInAnotherQueueIsNotFound)
{
    const StoryID id = ten(0);
    EXPECT_FALSE(Story(text("SHOWS.EVENING.RUNDOWN"), &id).IsLoaded()); // the end of a queue is a failure there
    bool notFound = false;
    EXPECT_FALSE(Story::GetStory(queuePath(), id, 3, &notFound));
    EXPECT_TRUE(notFound);
    EXPECT_TRUE(Story::GetStory(queuePath(), id, 3, nullptr));
}

// ---- beside another user --------------------------------------------------------------------------------------------

TEST_F(StoryNewsroom, AnotherUsersLockIsRefusedByName)
{
    const Orvex::ISignon4Ptr editor = server.connect(text("editor"), text("desk"));
    const Orvex::IStory2Ptr theirs = foreign(editor, 4);
    Platform::Bstr nobody;
    ASSERT_EQ(theirs->Lock(1, nobody.out()), S_OK);
    Story story = open(4);
    QString holder;
    EXPECT_FALSE(story.Lock(1, holder));
    EXPECT_EQ(holder, text("editor"));
    EXPECT_EQ(getErrorString(story.GetError(), true), text("Story currently being edited."));
    EXPECT_TRUE(story.IsLocked(1));
    EXPECT_EQ(story.GetError(), 0);
    EXPECT_FALSE(story.Unlock());
    EXPECT_NE(story.GetError(), 0);
    ASSERT_EQ(theirs->Unlock(), S_OK);
    EXPECT_TRUE(story.Lock(1, holder));
    EXPECT_EQ(holder, QString());
    EXPECT_TRUE(story.Unlock());
}

TEST_F(StoryNewsroom, AnotherUsersSaveIsNoticedOnce)
{
    const Orvex::ISignon4Ptr editor = server.connect(text("editor"), text("desk"));
    const Orvex::IStory2Ptr theirs = foreign(editor, 0);
    Story story = open(0);
    EXPECT_FALSE(story.UpdateHeaderID());
    ASSERT_EQ(theirs->put_Field(Platform::Bstr(text("title")).get(), Platform::Bstr(text("theirs")).get()), S_OK);
    EXPECT_FALSE(story.UpdateHeaderID());
    ASSERT_EQ(theirs->Save(VARIANT_TRUE), S_OK);
    EXPECT_TRUE(story.UpdateHeaderID());
    EXPECT_FALSE(story.UpdateHeaderID());
    QString title;
    story.GetField(text("title"), title);
    EXPECT_EQ(title, text("theirs"));
}

TEST_F(StoryNewsroom, ChangesAreSeenByOthersOnceTheyAreSaved)
{
    Story story = open(0);
    Story other = open(0);
    QString section = text("<body><p>new text</p></body>");
    story.SetField(text("title"), text("mine"));
    EXPECT_EQ(story.GetError(), 0);
    EXPECT_TRUE(story.PutSection(8, section, true)) << story.GetError();
    QString title;
    other.GetField(text("title"), title);
    EXPECT_EQ(title, text("none"));
    EXPECT_TRUE(story.Save(true));
    other.GetField(text("title"), title);
    EXPECT_EQ(title, text("mine"));
    QString body;
    other.GetSection(8, body, false);
    EXPECT_EQ(body.trimmed(), text("new text"));
}

TEST_F(StoryNewsroom, MarkupThatDoesNotParseIsRefused)
{
    Story story = open(0);
    QString section = text("<body><p>not closed</body>");
    EXPECT_FALSE(story.PutSection(8, section, true));
    EXPECT_EQ(getErrorString(story.GetError(), false), getErrorString(static_cast<qint32>(0x80040458), false));
    EXPECT_EQ(story.GetError(), static_cast<qint32>(0x80040458));
}

TEST_F(StoryNewsroom, StoryThatVanishesIsRefusedByEveryOperation)
{
    Story story = open(5);
    const Orvex::IStory2Ptr handle = Story::GetStory(queuePath(), ten(5), 5, nullptr);
    ASSERT_TRUE(handle);
    const Orvex::ISignon4Ptr editor = server.connect(text("editor"), text("desk"));
    ASSERT_EQ(editor->DeleteStory(Platform::Bstr(queuePath()).get(), 9005, 900, 1), S_OK);

    const long gone = static_cast<qint32>(0x8004040B);
    QString value = text("old");
    story.GetField(text("title"), value);
    EXPECT_EQ(value, QString());
    EXPECT_EQ(story.GetError(), gone);
    story.SetField(text("title"), text("x"));
    EXPECT_EQ(story.GetError(), gone);
    value = text("old");
    story.GetSection(8, value, true);
    EXPECT_EQ(value, QString());
    EXPECT_EQ(story.GetError(), gone);
    EXPECT_FALSE(story.PutSection(8, value, true));
    EXPECT_EQ(story.GetError(), gone);
    EXPECT_FALSE(story.Save(true));
    EXPECT_EQ(story.GetError(), gone);
    value = text("old");
    EXPECT_FALSE(story.Lock(1, value));
    EXPECT_EQ(value, QString());
    EXPECT_EQ(story.GetError(), gone);
    EXPECT_FALSE(story.IsLocked(1));
    EXPECT_EQ(story.GetError(), gone);
    EXPECT_TRUE(story.UpdateHeaderID());
    EXPECT_FALSE(story.UpdateHeaderID());

    Item item(QString(), Item_Story);
    StoryProbe::initItem(item, handle);
    ASSERT_EQ(item.attributes.size(), 2u);
    EXPECT_EQ(item.attributes[0].name, text("_storyid"));
    EXPECT_EQ(item.attributes[0].value, QString());
    EXPECT_EQ(item.attributes[1].name, text("_lock"));
}

TEST_F(StoryNewsroom, AfterALogoutEveryOperationFailsAndNothingHangs)
{
    Story story = open(1);
    EXPECT_EQ(server.triggerLogout(), 1);
    QString value = text("old");
    story.GetField(text("title"), value);
    EXPECT_EQ(value, QString());
    EXPECT_EQ(story.GetError(), static_cast<qint32>(0x80040416));
    EXPECT_FALSE(story.Lock(1, value));
    EXPECT_FALSE(story.Save(true));
    const StoryID id{9001, 900, 1};
    EXPECT_FALSE(Story(queuePath(), &id).IsLoaded());
    signOn(); // with a new session, since the old one still has the handles that were logged out
}

// ---- while the newsroom fails ---------------------------------------------------------------------------------------

namespace {

/// Survives what a server raises; anything else would end the test.
template<class Operation>
void survive(const Operation &operation)
{
    try {
        operation();
    } catch (const _com_error &) {
        EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
    }
}

/// Works with a story in every way there is.
void useEverything(const StoryID &id)
{
    survive([&id] {
        Story story(queuePath(), &id);
        QString value = text("old");
        survive([&] { story.GetField(text("title"), value); });
        survive([&] { story.SetField(text("title"), text("new")); });
        survive([&] { story.GetSection(8, value, true); });
        survive([&] { story.GetSection(8, value, false); });
        value = text("<body></body>");
        survive([&] { story.PutSection(8, value, true); });
        survive([&] { story.Lock(1, value); });
        survive([&] { story.IsLocked(1); });
        survive([&] { story.Save(true); });
        survive([&] { story.Unlock(); });
        survive([&] { story.UpdateHeaderID(); });
        survive([&] { story.FindField(text("title")); });
    });
    for (const int index : {-1, 2, 5}) {
        bool notFound = false;
        Orvex::IStory2Ptr handle;
        EXPECT_NO_THROW(handle = Story::GetStory(queuePath(), id, index, index < 0 ? nullptr : &notFound));
        survive([&] {
            Item item(QString(), Item_Story);
            StoryProbe::initItem(item, handle);
            std::vector<Attribute> attributes{{text("title"), QString(), 0}};
            item.RetrieveAttrs(attributes);
        });
        survive([&] { Story::GetStoryFields(handle); });
        survive([&] {
            QString value;
            Story::GetHeaderMetaValue(handle, text("rate"), value);
        });
    }
}

} // namespace

TEST_F(StoryNewsroom, AnyFailureOfAnyCallIsSurvived)
{
    const StoryID id = ten(2);
    const Fault faults[] = {Fault::hresult(E_FAIL),
                            Fault::hresult(static_cast<HRESULT>(0x8004040Bu)),
                            Fault::hresult(E_NOINTERFACE),
                            Fault::hresult(S_FALSE),
                            Fault::raise(E_FAIL),
                            Fault::nullResult(),
                            Fault::wrongType(),
                            Fault::strangers(),
                            Fault::nullElements()};
    server.faults().clear();
    useEverything(id);
    const int calls = server.faults().callsSeen();
    EXPECT_GT(calls, 30);
    for (const Fault &fault : faults) {
        for (int call = 1; call <= calls; ++call) {
            server.faults().clear();
            server.faults().failCall(call, fault);
            useEverything(id);
            model->breakLock(id.part1); // Unlock may have been what failed
            FormCache::Clear();
            if (call % 16 == 0)
                expectSound();
        }
    }
}

TEST_F(StoryNewsroom, FailureOfAllCallsOfOneOperationIsSurvived)
{
    const StoryID id = ten(2);
    for (const char *operation :
         {"IQueue2::get_Item", "IDirectory2::get_Item", "ISignon4::GetStory", "ISignon4::GetDirectory",
          "IStory2::get_StoryUnique", "IStory2::get_SectionXml", "IStory2::get_Section", "IStory2::get_Field",
          "IStory2::get_FormName", "IStory2::get_StoryName", "IStory2::Lock", "IStory2::IsLocked", "IStory2::Save",
          "IStory2::put_Field", "IStory2::put_SectionXml", "IUnknown::QueryInterface"}) {
        for (const Fault &fault : {Fault::hresult(E_FAIL), Fault::raise(E_FAIL), Fault::nullResult()}) {
            server.faults().clear();
            server.faults().failEvery(text(operation), fault);
            session->RemoveDirFromCache(queuePath());
            useEverything(id);
            server.faults().clear();
            model->breakLock(id.part1);
            expectSound();
        }
    }
}

// ---- many rounds ----------------------------------------------------------------------------------------------------

namespace {

/// Counts what went wrong and names the first of it; any thread.
class Verdict
{
public:
    void check(bool right, const char *what)
    {
        if (!right && m_wrong++ == 0)
            m_first = what;
    }
    void expectAllRight() const
    {
        const char *first = m_first;
        EXPECT_EQ(m_wrong, 0) << "the first of them: " << (first ? first : "");
    }

private:
    std::atomic<int> m_wrong{0};
    std::atomic<const char *> m_first{nullptr};
};

/// One editor's way to a story: in this process's session, or in another user's.
struct Desk
{
    std::function<bool()> lock;
    std::function<QString(const char *)> read;
    std::function<void(const char *, const QString &)> write;
    std::function<bool()> save;
    std::function<bool()> unlock;
};

Desk deskOf(Story &story, Verdict &verdict)
{
    Desk desk;
    desk.lock = [&] {
        QString holder;
        if (story.Lock(1, holder))
            return true;
        verdict.check(holder == text("editor") || holder == text("sports"), "the holder");
        verdict.check(story.GetError() == static_cast<qint32>(0x8004040E), "the refusal");
        return false;
    };
    desk.read = [&](const char *field) {
        QString value;
        story.GetField(text(field), value);
        verdict.check(story.GetError() == 0, "GetField");
        return value;
    };
    desk.write = [&](const char *field, const QString &value) {
        story.SetField(text(field), value);
        verdict.check(story.GetError() == 0, "SetField");
    };
    desk.save = [&] { return story.Save(true); };
    desk.unlock = [&] { return story.Unlock(); };
    return desk;
}

Desk deskOf(const Orvex::IStory2Ptr &story)
{
    Desk desk;
    desk.lock = [story] {
        Platform::Bstr holder;
        return SUCCEEDED(story->Lock(1, holder.out()));
    };
    desk.read = [story](const char *field) {
        Platform::Bstr value;
        story->get_Field(Platform::Bstr(text(field)).get(), value.out());
        return value.toString();
    };
    desk.write = [story](const char *field, const QString &value) {
        story->put_Field(Platform::Bstr(text(field)).get(), Platform::Bstr(value).get());
    };
    desk.save = [story] { return SUCCEEDED(story->Save(VARIANT_TRUE)); };
    desk.unlock = [story] { return SUCCEEDED(story->Unlock()); };
    return desk;
}

/// Counts the story up and signs it, all under its lock.
void editOnce(const Desk &desk, const QString &signature, Verdict &verdict)
{
    while (!desk.lock())
        std::this_thread::yield();
    const int count = desk.read("count").toInt();
    desk.write("count", QString::number(count + 1));
    desk.write("title", signature);
    std::this_thread::yield(); // the lock holds meanwhile
    verdict.check(desk.save(), "Save");
    verdict.check(desk.read("title") == signature, "the saved title");
    verdict.check(desk.read("count").toInt() == count + 1, "the saved count");
    verdict.check(desk.unlock(), "Unlock");
}

int rounds()
{
    return soakRounds(1000);
}

} // namespace

// The session's threads share one sign-on, so its locks do not keep them from each other: they take turns by story.
TEST_F(EditSoak, EveryEditOfThreeUsersOnSixThreadsIsSaved)
{
    const int ownThreads = 4;
    const QVector<QPair<QString, QString>> others{{text("editor"), text("desk")}, {text("sports"), text("ball")}};
    const int threadCount = ownThreads + others.size();
    QMutex turns[storyCount];
    Verdict verdict;
    std::atomic<int> started{0};
    std::atomic<int> theirStarted{0};

    const auto ownRounds = [&](int thread) {
        std::vector<Story> kept;
        kept.reserve(storyCount);
        for (int index = 0; index < storyCount; ++index)
            kept.push_back(open(index));
        for (int round = started++; round < rounds() / 2; round = started++) {
            const int index = (round + thread) % storyCount;
            const QMutexLocker turn(&turns[index]);
            Story fresh = round % 2 ? open(index) : Story();
            Story &story = round % 2 ? fresh : kept[static_cast<std::size_t>(index)];
            story.UpdateHeaderID();
            editOnce(deskOf(story, verdict), QStringLiteral("own %1").arg(round), verdict);
            verdict.check(story.UpdateHeaderID(), "the new header");
        }
    };
    const auto theirRounds = [&](const QPair<QString, QString> &user) {
        const Orvex::ISignon4Ptr signon = server.connect(user.first, user.second);
        for (int round = theirStarted++; round < rounds() / 2; round = theirStarted++)
            editOnce(deskOf(foreign(signon, round % storyCount)), QStringLiteral("theirs %1").arg(round), verdict);
        signon->Disconnect();
    };
    std::vector<std::thread> threads;
    threads.reserve(threadCount);
    for (int thread = 0; thread < threadCount; ++thread) {
        threads.emplace_back([&, thread] {
            if (thread < ownThreads)
                ownRounds(thread);
            else
                theirRounds(others.at(thread - ownThreads));
            SetErrorInfo(0, nullptr);
        });
    }
    for (std::thread &thread : threads)
        thread.join();

    verdict.expectAllRight();
    int edits = 0;
    for (int index = 0; index < storyCount; ++index) {
        edits += saved(index, "count").toInt();
        EXPECT_FALSE(model->isLocked(9000 + index, 0).value);
        EXPECT_TRUE(saved(index, "title").startsWith(text("own ")) ||
                    saved(index, "title").startsWith(text("theirs ")));
    }
    EXPECT_EQ(edits, rounds());
}

// Without turns the session's own threads undo each other's locks; what is saved is still what somebody wrote.
TEST_F(EditSoak, EditsWithoutTurnsSaveWhatSomebodyWrote)
{
    std::atomic<int> started{0};
    std::atomic<int> savedEdits{0};
    std::atomic<int> raised{0};
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&] {
            for (int round = started++; round < rounds(); round = started++) {
                try {
                    Story story = open(round % storyCount);
                    QString holder;
                    story.Lock(1, holder);
                    const QString value = QStringLiteral("round %1").arg(round);
                    story.SetField(text("title"), value);
                    story.SetField(text("count"), QString::number(round));
                    if (story.Save(false))
                        ++savedEdits;
                    story.Unlock();
                } catch (const _com_error &) {
                    ++raised;
                }
            }
            SetErrorInfo(0, nullptr);
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(raised, 0);
    EXPECT_EQ(savedEdits, rounds());
    for (int index = 0; index < storyCount; ++index) {
        const QString count = saved(index, "count");
        EXPECT_EQ(saved(index, "title"), text("round ") + count);
        EXPECT_EQ(count.toInt() % storyCount, index);
        EXPECT_FALSE(model->isLocked(9000 + index, 0).value);
    }
}
