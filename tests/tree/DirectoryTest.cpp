// Directories: what is listed, how the server is asked, and what is opened from them.

#include <gmock/gmock.h>

#include <quire/platform/SafeArray.h>
#include <quire/platform/Variant.h>
#include <quire/session/Dispatch2.h>
#include <quire/session/QuireCOM.h>
#include <quire/tree/AttributeKeys.h>
#include <quire/tree/ListMutexLocker.h>
#include <quire/tree/SearchList.h>

#include "tree/TreeFixture.h"

using namespace Quire;
using FakeServer::Kind;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

const HRESULT objectGone = static_cast<HRESULT>(0x8004040B);

const LONG inverted1 = 1 << 0;
const LONG locked1 = 1 << 1;
const LONG confirmEdit1 = 1 << 6;
const LONG sorted2 = 1 << 7;
const LONG live3 = 1 << 0;
const LONG editLock3 = 1 << 2;
const LONG indexed3 = 1 << 6;

class DirectoryTest : public TreeTest
{
protected:
    using Words = std::array<LONG, 3>;

    void setFlags(const char *path, const Words &words) { server.data[text(path)].flags = words; }

    /// The error that the work raises, S_OK when it raises none.
    template<typename Work>
    static HRESULT raised(const Work &work)
    {
        try {
            work();
        } catch (const _com_error &error) {
            return error.Error();
        }
        return S_OK;
    }
};

/// Names the protected functions.
class OpenedDirectory : public Directory
{
public:
    using Directory::Directory;
    using Directory::Populate;
};

/// Counts what comes through the virtual Append.
class CountingDirectory : public OpenedDirectory
{
public:
    void Append(const Item &item) override
    {
        ++appended;
        Directory::Append(item);
    }
    int appended = 0;
};

} // namespace

// ---- making one -----------------------------------------------------------------------------------------------------

TEST_F(DirectoryTest, IsEmptyAndNamelessByItself)
{
    Directory directory;
    EXPECT_EQ(directory.Size(), 0);
    EXPECT_EQ(directory.Name(), QString());
    for (const char *key : {Attr_Indexed, Attr_Lock, Attr_ConfirmEdit, Attr_Inverted, Attr_Sorted})
        EXPECT_FALSE(directory.FlagCheck(key)) << key;
    EXPECT_THAT(server.calls(), IsEmpty());
}

TEST_F(DirectoryTest, IsADirectoryAndNoQueue)
{
    Directory directory;
    EXPECT_TRUE(directory.IsDirectory());
    EXPECT_FALSE(directory.IsQueue());
}

TEST_F(DirectoryTest, MadeFromADirectoryIsNamedAndListed)
{
    Directory directory(object("NEWS"));
    EXPECT_EQ(directory.Name(), text("NEWS"));
    EXPECT_EQ(namesOf(directory), QStringList({text("NEWS.SPORT"), text("NEWS.WORLD")}));
}

TEST_F(DirectoryTest, MadeFromAnotherObjectIsEmptyAndNameless)
{
    for (const IDispatchPtr &other : {object("MAIL"), IDispatchPtr()}) {
        Directory directory(other);
        EXPECT_EQ(directory.Name(), QString());
        EXPECT_EQ(directory.Size(), 0);
    }
    EXPECT_THAT(server.calls(), IsEmpty());
}

TEST_F(DirectoryTest, NewDirectoryMakesADirectory)
{
    const std::unique_ptr<Directory> made(Directory::NewDirectory(object("NEWS")));
    ASSERT_TRUE(made);
    EXPECT_TRUE(made->IsDirectory());
    EXPECT_EQ(made->Name(), text("NEWS"));
}

TEST_F(DirectoryTest, NewDirectoryMakesAQueue)
{
    const std::unique_ptr<Directory> made(Directory::NewDirectory(object("MAIL")));
    ASSERT_TRUE(dynamic_cast<Queue *>(made.get()));
    EXPECT_FALSE(made->IsDirectory());
    EXPECT_TRUE(made->IsQueue());
    EXPECT_EQ(made->Name(), text("MAIL"));
}

TEST_F(DirectoryTest, NewDirectoryGivesNullForAnythingElse)
{
    EXPECT_EQ(Directory::NewDirectory(IDispatchPtr()), nullptr);
    EXPECT_EQ(Directory::NewDirectory(IDispatchPtr(server.newObject(Kind::Bare, text("X")), false)), nullptr);
    EXPECT_EQ(Directory::NewDirectory(IDispatchPtr(server.newObject(Kind::Story, text("X")), false)), nullptr);
    EXPECT_THAT(server.calls(), IsEmpty());
}

TEST_F(DirectoryTest, NewDirectoryFindsThePath)
{
    const std::unique_ptr<Directory> made(Directory::NewDirectory(text("NEWS.SPORT")));
    ASSERT_TRUE(made);
    EXPECT_EQ(made->Name(), text("NEWS.SPORT"));
    EXPECT_EQ(namesOf(*made), QStringList(text("NEWS.SPORT.SCORES")));
}

TEST_F(DirectoryTest, NewDirectoryGivesNullForAnUnknownPath)
{
    EXPECT_EQ(Directory::NewDirectory(text("NOWHERE")), nullptr);
}

TEST_F(DirectoryTest, NewDirectoryGivesNullWithoutASession)
{
    QuireCOM::UnloadCOM();
    EXPECT_EQ(Directory::NewDirectory(text("NEWS")), nullptr);
}

TEST_F(DirectoryTest, TheRootListsWhatIsAtTheTop)
{
    const std::unique_ptr<Directory> root = open(".");
    ASSERT_TRUE(root);
    EXPECT_EQ(root->Name(), text("."));
    EXPECT_EQ(namesOf(*root), QStringList({text("NEWS"), text("MAIL")}));
    EXPECT_EQ(root->Nth(0)->type, Item_Directory);
    EXPECT_EQ(root->Nth(1)->type, Item_Queue);
}

// ---- calls and labels -----------------------------------------------------------------------------------------------

TEST_F(DirectoryTest, ListingMakesTheseCallsUnderTheseLabels)
{
    const IDispatchPtr news = object("NEWS");
    const Directory directory(news);
    EXPECT_THAT(callsWithLabels(), ElementsAre(text("NEWS.get_Name() under Directory::Directory"),
                                               text("NEWS.get_Flags() under Directory::Populate:get_Flags"),
                                               text("NEWS.get_Count() under Directory::Populate:get_Flags"),
                                               text("NEWS.GetList(0, 2) under Directory::Populate:GetList"),
                                               text("NEWS.SPORT.get_Name() under Directory::Populate:piDir"),
                                               text("NEWS.SPORT.get_Flags() under Directory::Populate:piDir"),
                                               text("NEWS.SPORT.get_Count() under Directory::Populate:piDir"),
                                               text("NEWS.WORLD.get_Name() under Directory::Populate:piQue"),
                                               text("NEWS.WORLD.get_Flags() under Directory::Populate:piQue")));
}

TEST_F(DirectoryTest, WithoutEntriesNothingIsListed)
{
    server.remove(text("NEWS.SPORT.SCORES"));
    const std::unique_ptr<Directory> sport(new Directory(object("NEWS.SPORT")));
    EXPECT_THAT(server.calls(), ElementsAre(text("NEWS.SPORT.get_Name()"), text("NEWS.SPORT.get_Flags()"),
                                            text("NEWS.SPORT.get_Count()")));
    EXPECT_EQ(sport->Size(), 0);
}

TEST_F(DirectoryTest, WithoutEntriesTheListStaysAsItWas)
{
    OpenedDirectory directory(object("NEWS"));
    server.remove(text("NEWS.SPORT"));
    server.remove(text("NEWS.WORLD"));
    directory.Populate();
    EXPECT_EQ(directory.Size(), 2);
}

TEST_F(DirectoryTest, PopulatingAgainAppendsAgain)
{
    OpenedDirectory directory(object("NEWS"));
    directory.Populate(object("NEWS"));
    EXPECT_EQ(namesOf(directory),
              QStringList({text("NEWS.SPORT"), text("NEWS.WORLD"), text("NEWS.SPORT"), text("NEWS.WORLD")}));
}

TEST_F(DirectoryTest, PopulatingFromAnotherObjectLeavesTheListAlone)
{
    OpenedDirectory directory(object("NEWS"));
    directory.Populate(object("MAIL"));
    directory.Populate(IDispatchPtr());
    EXPECT_EQ(directory.Size(), 2);
    EXPECT_THAT(server.calls(), IsEmpty());
}

TEST_F(DirectoryTest, PopulatingByNameNeedsASession)
{
    OpenedDirectory directory(object("NEWS"));
    QuireCOM::UnloadCOM();
    directory.Populate();
    directory.Refresh();
    EXPECT_EQ(directory.Size(), 2);
}

TEST_F(DirectoryTest, ListingLeavesTheChangeFlagAlone)
{
    OpenedDirectory directory(object("NEWS"));
    EXPECT_TRUE(directory.HasChanged(true));
    directory.Populate();
    directory.Refresh();
    EXPECT_FALSE(directory.HasChanged(false));
}

TEST_F(DirectoryTest, EntriesArriveThroughTheVirtualAppend)
{
    CountingDirectory directory;
    directory.Populate(object("NEWS"));
    EXPECT_EQ(directory.appended, 2);
}

TEST_F(DirectoryTest, EntriesAreAppendedUnderTheListsLock)
{
    const IDispatchPtr news = object("NEWS");
    ListMutexLocker::sDebugListLocks = true;
    const FrameworkLog log;
    const Directory directory(news);
    ListMutexLocker::sDebugListLocks = false;
    EXPECT_EQ(listLocks(log.texts()), QStringList({text("ItemList::Append()"), text("ItemList::Append()")}));
}

// ---- entries --------------------------------------------------------------------------------------------------------

TEST_F(DirectoryTest, FlagsBecomeAttributesInThisOrder)
{
    startSearcher();
    const Words all{inverted1 | locked1 | confirmEdit1, sorted2, indexed3 | editLock3};
    setFlags("NEWS.SPORT", all);
    setFlags("NEWS.WORLD", all);
    const std::unique_ptr<Directory> news = open("NEWS");
    EXPECT_EQ(attributesOf(*news, 0), QStringList({text("_indexed=/0"), text("_lock=E/0"), text("_confirm_edit=/0"),
                                                   text("_inverted=/0"), text("_sorted=/0"), text("_count=1/0")}));
    EXPECT_EQ(attributesOf(*news, 1), QStringList({text("_indexed=/0"), text("_lock=E/0"), text("_confirm_edit=/0"),
                                                   text("_inverted=/0"), text("_sorted=/0")}));
}

TEST_F(DirectoryTest, EachFlagIsAnAttributeOfItsOwn)
{
    struct Row
    {
        Words words;
        QStringList attributes;
    };
    const QVector<Row> rows{
        {{0, 0, 0}, {}},
        {{0, 0, indexed3}, {text("_indexed=/0")}},
        {{locked1, 0, 0}, {text("_lock=/0")}},
        {{locked1, 0, editLock3}, {text("_lock=E/0")}},
        {{0, 0, editLock3}, {}},
        {{confirmEdit1, 0, 0}, {text("_confirm_edit=/0")}},
        {{inverted1, 0, 0}, {text("_inverted=/0")}},
        {{0, sorted2, 0}, {text("_sorted=/0")}},
        {{0, 0, live3}, {}},
        {{~(inverted1 | locked1 | confirmEdit1), ~sorted2, ~(indexed3 | editLock3)}, {}},
    };
    for (const Row &row : rows) {
        setFlags("NEWS.WORLD", row.words);
        EXPECT_EQ(attributesOf(*open("NEWS"), 1), row.attributes);
    }
}

TEST_F(DirectoryTest, SubDirectoriesTellTheirNumberOfEntries)
{
    for (const char *path : {"NEWS.SPORT.A", "NEWS.SPORT.B", "NEWS.SPORT.C"})
        server.add(Kind::Queue, text(path));
    EXPECT_EQ(attributesOf(*open("NEWS"), 0), QStringList(text("_count=4/0")));
}

TEST_F(DirectoryTest, SubDirectoriesTellOneEntryWhenTheyAreNotAsked)
{
    server.add(Kind::Queue, text("NEWS.SPORT.A"));
    Directory::sSkipFolderCount = true;
    const IDispatchPtr news = object("NEWS");
    Directory directory(news);
    EXPECT_EQ(attributesOf(directory, 0), QStringList(text("_count=1/0")));
    EXPECT_EQ(server.count(text("NEWS.SPORT.get_Count()")), 0);
    EXPECT_EQ(server.count(text("NEWS.get_Count()")), 1); // the directory itself is asked all the same
}

TEST_F(DirectoryTest, ByDefaultSubDirectoriesAreAsked)
{
    EXPECT_FALSE(Directory::sSkipFolderCount);
}

TEST_F(DirectoryTest, AFailingCountOnlyOmitsTheAttribute)
{
    server.fail(text("NEWS.SPORT.get_Count()"), E_FAIL);
    const std::unique_ptr<Directory> news = open("NEWS");
    EXPECT_EQ(attributesOf(*news, 0), QStringList());
    EXPECT_EQ(news->Size(), 2);
}

TEST_F(DirectoryTest, FailingFlagsOnlyOmitTheirAttributes)
{
    setFlags("NEWS.SPORT", {locked1, 0, 0});
    setFlags("NEWS.WORLD", {locked1, 0, 0});
    server.fail(text("NEWS.SPORT.get_Flags()"), E_FAIL);
    server.fail(text("NEWS.WORLD.get_Flags()"), E_FAIL);
    const std::unique_ptr<Directory> news = open("NEWS");
    EXPECT_EQ(attributesOf(*news, 0), QStringList(text("_count=1/0")));
    EXPECT_EQ(attributesOf(*news, 1), QStringList());
}

namespace {

/// An answer of GetList with these objects, as elements of this type.
HRESULT answerList(const std::vector<IDispatchPtr> &objects, VARTYPE type, VARIANT *list)
{
    list->vt = static_cast<VARTYPE>(VT_ARRAY | type);
    list->parray = SafeArrayCreateVector(type, 0, static_cast<ULONG>(objects.size()));
    const Platform::SafeArrayAccess access(list->parray);
    for (std::size_t index = 0; index < objects.size(); ++index) {
        IDispatchPtr object = objects[index];
        if (type == VT_DISPATCH) {
            access.as<IDispatch *>()[index] = object.Detach();
        } else if (type == VT_UNKNOWN) {
            access.as<IUnknown *>()[index] = object.Detach();
        } else {
            access.as<VARIANT>()[index].vt = VT_DISPATCH;
            access.as<VARIANT>()[index].pdispVal = object.Detach();
        }
    }
    return S_OK;
}

} // namespace

TEST_F(DirectoryTest, EmptyAndUnknownElementsAreNamelessDirectories)
{
    const IDispatchPtr mail = object("MAIL");
    server.getList = [&](LONG, LONG, VARIANT *list) {
        return answerList({IDispatchPtr(), mail, IDispatchPtr(server.newObject(Kind::Bare, text("X")), false)},
                          VT_DISPATCH, list);
    };
    const std::unique_ptr<Directory> news = open("NEWS");
    ASSERT_EQ(namesOf(*news), QStringList({QString(), text("MAIL"), QString()}));
    for (const int index : {0, 2}) {
        EXPECT_EQ(news->Nth(index)->type, Item_Directory);
        EXPECT_EQ(attributesOf(*news, index), QStringList());
    }
    EXPECT_EQ(news->Nth(1)->type, Item_Queue);
}

TEST_F(DirectoryTest, ElementsOfEveryObjectTypeAreListed)
{
    const IDispatchPtr mail = object("MAIL");
    const IDispatchPtr sport = object("NEWS.SPORT");
    for (const VARTYPE type : {VT_DISPATCH, VT_UNKNOWN, VT_VARIANT}) {
        server.getList = [&](LONG, LONG, VARIANT *list) {
            return answerList({mail, IDispatchPtr(), sport}, type, list);
        };
        EXPECT_EQ(namesOf(*open("NEWS")), QStringList({text("MAIL"), QString(), text("NEWS.SPORT")})) << type;
    }
}

namespace {

/// An object as IUnknown that knows whether it was asked for another interface without the server access lock.
class WatchfulObject : public IUnknown
{
public:
    explicit WatchfulObject(const IDispatchPtr &object)
        : m_object(object)
    {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void **result) override
    {
        if (QuireCOM::m_LockThreadID != GetCurrentThreadId())
            ++askedWithoutLock;
        ++asked;
        return m_object->QueryInterface(iid, result);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }

    int asked = 0;
    int askedWithoutLock = 0;

private:
    const IDispatchPtr m_object;
};

} // namespace

TEST_F(DirectoryTest, ElementsAreAskedForTheirInterfacesUnderTheAccessLock)
{
    WatchfulObject mail(object("MAIL"));
    server.getList = [&](LONG, LONG, VARIANT *list) {
        list->vt = VT_ARRAY | VT_UNKNOWN;
        list->parray = SafeArrayCreateVector(VT_UNKNOWN, 0, 1);
        Platform::SafeArrayAccess(list->parray).as<IUnknown *>()[0] = &mail;
        return S_OK;
    };
    EXPECT_EQ(open("NEWS")->Size(), 1);
    EXPECT_GT(mail.asked, 0);
    EXPECT_EQ(mail.askedWithoutLock, 0);
}

TEST_F(DirectoryTest, AListThatIsReferredToIsListed)
{
    const IDispatchPtr mail = object("MAIL");
    Platform::Variant kept;
    answerList({mail}, VT_DISPATCH, kept.out());
    VARIANT reference{};
    reference.vt = VT_ARRAY | VT_DISPATCH | VT_BYREF;
    SAFEARRAY *array = kept.get().parray;
    for (SAFEARRAY **place : {&array, static_cast<SAFEARRAY **>(nullptr)}) {
        reference.pparray = place;
        server.getList = [&](LONG, LONG, VARIANT *list) {
            *list = reference;
            return S_OK;
        };
        EXPECT_EQ(open("NEWS")->Size(), place ? 1 : 0);
    }
}

TEST_F(DirectoryTest, AListOfAnotherTypeIsEmpty)
{
    server.getList = [](LONG, LONG, VARIANT *list) {
        list->vt = VT_ARRAY | VT_I4;
        list->parray = SafeArrayCreateVector(VT_I4, 0, 3);
        return S_OK;
    };
    EXPECT_EQ(open("NEWS")->Size(), 0);
    server.getList = [](LONG, LONG, VARIANT *list) {
        list->vt = VT_I4;
        list->lVal = 3;
        return S_OK;
    };
    EXPECT_EQ(open("NEWS")->Size(), 0);
    server.getList = [](LONG, LONG, VARIANT *) { return S_OK; };
    EXPECT_EQ(open("NEWS")->Size(), 0);
    server.getList = [](LONG, LONG, VARIANT *list) {
        list->vt = VT_ARRAY | VT_DISPATCH;
        list->parray = nullptr;
        return S_OK;
    };
    EXPECT_EQ(open("NEWS")->Size(), 0);
}

TEST_F(DirectoryTest, AListWithoutMemoryForItsElementsIsEmpty)
{
    server.getList = [](LONG, LONG, VARIANT *list) {
        list->vt = VT_ARRAY | VT_DISPATCH;
        SafeArrayAllocDescriptorEx(VT_DISPATCH, 1, &list->parray);
        list->parray->rgsabound[0] = {3, 0};
        return S_OK;
    };
    EXPECT_EQ(open("NEWS")->Size(), 0);
}

TEST_F(DirectoryTest, AListOfElementsOfAnotherSizeIsEmpty)
{
    server.getList = [](LONG, LONG, VARIANT *list) {
        list->vt = VT_ARRAY | VT_DISPATCH;
        list->parray = SafeArrayCreateVector(VT_DISPATCH, 0, 3);
        list->parray->cbElements = 1;
        return S_OK;
    };
    EXPECT_EQ(open("NEWS")->Size(), 0);
}

TEST_F(DirectoryTest, AListLongerThanTheCountIsTakenWhole)
{
    const IDispatchPtr mail = object("MAIL");
    server.getList = [&](LONG, LONG, VARIANT *list) {
        return answerList({mail, mail, mail, mail, mail}, VT_DISPATCH, list);
    };
    EXPECT_EQ(open("NEWS")->Size(), 5);
}

// ---- refreshing -----------------------------------------------------------------------------------------------------

TEST_F(DirectoryTest, RefreshReadsTheEntriesAnew)
{
    const std::unique_ptr<Directory> news = open("NEWS");
    server.add(Kind::Queue, text("NEWS.LOCAL"));
    news->Refresh();
    EXPECT_EQ(namesOf(*news), QStringList({text("NEWS.SPORT"), text("NEWS.WORLD"), text("NEWS.LOCAL")}));
}

TEST_F(DirectoryTest, RefreshLooksTheDirectoryUpAnew)
{
    const std::unique_ptr<Directory> root = open(".");
    const std::unique_ptr<Directory> news = open("NEWS");
    news->Refresh();
    EXPECT_THAT(server.calls(), ::testing::Contains(text("..get_Item(0)")));
}

TEST_F(DirectoryTest, IsLookedUpUnderTheAccessLock)
{
    const std::unique_ptr<Directory> sport(Directory::NewDirectory(text("NEWS.SPORT")));
    sport->Refresh();
    const QStringList calls = callsWithLabels();
    EXPECT_EQ(calls.filter(text(" without the lock")), QStringList());
    EXPECT_THAT(calls, Contains(text("..get_Item(0) under Directory::LookUp")));
}

TEST_F(DirectoryTest, RefreshOfADirectoryThatIsGoneLeavesItEmpty)
{
    const std::unique_ptr<Directory> news = open("NEWS");
    server.remove(text("NEWS"));
    news->Refresh();
    EXPECT_EQ(news->Size(), 0);
    EXPECT_EQ(news->Name(), text("NEWS"));
}

TEST_F(DirectoryTest, RefreshReadsTheFlagsAnew)
{
    const std::unique_ptr<Directory> news = open("NEWS");
    EXPECT_FALSE(news->FlagCheck(Attr_Lock));
    setFlags("NEWS", {locked1, 0, 0});
    news->Refresh();
    EXPECT_TRUE(news->FlagCheck(Attr_Lock));
}

TEST_F(DirectoryTest, RefreshPassesOnWhatTheServerRefuses)
{
    const std::unique_ptr<Directory> news = open("NEWS");
    server.fail(text("GetList"), E_ACCESSDENIED);
    EXPECT_EQ(raised([&] { news->Refresh(); }), E_ACCESSDENIED);
    EXPECT_EQ(news->Size(), 0);
}

// ---- sub-directories ------------------------------------------------------------------------------------------------

TEST_F(DirectoryTest, OpensAnEntryByIndex)
{
    const std::unique_ptr<Directory> news = open("NEWS");
    const std::unique_ptr<Directory> sport(news->GetSubDir(0));
    ASSERT_TRUE(sport);
    EXPECT_TRUE(sport->IsDirectory());
    EXPECT_EQ(sport->Name(), text("NEWS.SPORT"));
    const std::unique_ptr<Directory> world(news->GetSubDir(1));
    ASSERT_TRUE(world);
    EXPECT_TRUE(world->IsQueue());
    EXPECT_EQ(world->Name(), text("NEWS.WORLD"));
}

TEST_F(DirectoryTest, OpensAnEntryByNameWhateverItsCase)
{
    const std::unique_ptr<Directory> news = open("NEWS");
    const std::unique_ptr<Directory> world(news->GetSubDir(text("news.World")));
    ASSERT_TRUE(world);
    EXPECT_EQ(world->Name(), text("NEWS.WORLD"));
}

TEST_F(DirectoryTest, OpeningMakesTheseCallsUnderOneLabel)
{
    const std::unique_ptr<Directory> news = open("NEWS");
    const std::unique_ptr<Directory> sport(news->GetSubDir(0));
    for (const QString &call : callsWithLabels())
        EXPECT_TRUE(call.endsWith(text(" under Directory::GetSubDir"))) << call.toStdString();
    EXPECT_EQ(server.calls().mid(0, 3),
              QStringList({text("NEWS.get_Item(0)"), text("NEWS.SPORT.get_Name()"), text("NEWS.SPORT.get_Name()")}));
}

TEST_F(DirectoryTest, OpensNothingForANegativeIndexOrAnUnknownNameWithoutACall)
{
    const std::unique_ptr<Directory> news = open("NEWS");
    EXPECT_EQ(news->GetSubDir(-1), nullptr);
    EXPECT_EQ(news->GetSubDir(-2147483647 - 1), nullptr);
    EXPECT_EQ(news->GetSubDir(text("NEWS.ELSEWHERE")), nullptr);
    EXPECT_EQ(news->GetSubDir(QString()), nullptr);
    EXPECT_THAT(server.calls(), IsEmpty());
}

TEST_F(DirectoryTest, OpensNothingWithoutASession)
{
    const std::unique_ptr<Directory> news = open("NEWS");
    QuireCOM::UnloadCOM();
    server.forgetCalls();
    EXPECT_EQ(news->GetSubDir(0), nullptr);
    EXPECT_THAT(server.calls(), IsEmpty());
}

TEST_F(DirectoryTest, OpensNothingWhenItIsGoneFromTheServer)
{
    const std::unique_ptr<Directory> news = open("NEWS");
    server.remove(text("NEWS"));
    session->RemoveDirFromCache(text("NEWS"));
    EXPECT_EQ(news->GetSubDir(0), nullptr);
}

TEST_F(DirectoryTest, OpensNothingWhenAQueueHasTakenItsPlace)
{
    const std::unique_ptr<Directory> news = open("NEWS");
    session->AddDirToCache(text("NEWS"), object("MAIL"));
    EXPECT_EQ(news->GetSubDir(0), nullptr);
    EXPECT_THAT(server.calls(), IsEmpty());
}

TEST_F(DirectoryTest, OpeningPastTheEndRaises)
{
    const std::unique_ptr<Directory> news = open("NEWS");
    EXPECT_EQ(raised([&] { news->GetSubDir(2); }), objectGone);
}

TEST_F(DirectoryTest, OpensNothingWhenTheServerHasNoSuchInterface)
{
    const std::unique_ptr<Directory> news = open("NEWS");
    server.fail(text("get_Item"), E_NOINTERFACE);
    EXPECT_EQ(news->GetSubDir(0), nullptr);
}

TEST_F(DirectoryTest, OpensNothingForAnEntryThatIsNeither)
{
    const std::unique_ptr<Directory> news = open("NEWS");
    server.add(Kind::Bare, text("NEWS.BARE"));
    EXPECT_EQ(news->GetSubDir(2), nullptr);
}

TEST_F(DirectoryTest, KeepsAnOpenedEntryUnderTheNameThatTheServerTells)
{
    const std::unique_ptr<Directory> news = open("NEWS");
    const std::unique_ptr<Directory> sport(news->GetSubDir(0));
    server.forgetCalls();
    EXPECT_TRUE(session->GetCachedDir(text("NEWS.SPORT")));
    EXPECT_THAT(server.calls(), IsEmpty());
}

TEST_F(DirectoryTest, OpensByPlaceInTheServersOrder)
{
    const std::unique_ptr<Directory> news = open("NEWS");
    news->Nth(0)->sortKey = text("b");
    news->Nth(1)->sortKey = text("a");
    news->SortUnique();
    const std::unique_ptr<Directory> opened(news->GetSubDir(text("NEWS.WORLD")));
    EXPECT_EQ(opened->Name(), text("NEWS.SPORT"));
}

TEST_F(DirectoryTest, AnOpenedQueueIsLoadedAndRegistered)
{
    server.data[text("NEWS.WORLD")].flags = {0, 0, live3};
    addStory("NEWS.WORLD", "1:2:3", "One");
    const std::unique_ptr<Directory> news = open("NEWS");
    const std::unique_ptr<Directory> world(news->GetSubDir(1));
    EXPECT_EQ(namesOf(*world), QStringList(text("One"))) << server.calls().join(text("\n")).toStdString();
    EXPECT_TRUE(server.data[text("NEWS.WORLD")].reports);
}

// ---- flags ----------------------------------------------------------------------------------------------------------

TEST_F(DirectoryTest, ChecksItsOwnFlags)
{
    startSearcher();
    struct Row
    {
        const char *key;
        Words words;
    };
    const QVector<Row> rows{{Attr_Indexed, {0, 0, indexed3}},
                            {Attr_Lock, {locked1, 0, 0}},
                            {Attr_ConfirmEdit, {confirmEdit1, 0, 0}},
                            {Attr_Inverted, {inverted1, 0, 0}},
                            {Attr_Sorted, {0, sorted2, 0}}};
    for (const Row &set : rows) {
        setFlags("NEWS", set.words);
        const std::unique_ptr<Directory> news = open("NEWS");
        for (const Row &asked : rows) {
            EXPECT_EQ(news->FlagCheck(asked.key), asked.key == set.key) << asked.key;
            EXPECT_EQ(Directory::FlagCheck(object("NEWS"), asked.key), asked.key == set.key) << asked.key;
        }
    }
}

TEST_F(DirectoryTest, ChecksFlagsByTheAddressOfTheKey)
{
    setFlags("NEWS", {locked1, 0, 0});
    const std::unique_ptr<Directory> news = open("NEWS");
    const std::string copy(Attr_Lock);
    EXPECT_TRUE(news->FlagCheck(Attr_Lock));
    EXPECT_FALSE(news->FlagCheck(copy.c_str()));
    EXPECT_FALSE(news->FlagCheck(nullptr));
    EXPECT_FALSE(news->FlagCheck(Attr_Storyid));
    EXPECT_FALSE(Directory::FlagCheck(object("NEWS"), copy.c_str()));
    EXPECT_FALSE(Directory::FlagCheck(object("NEWS"), nullptr));
}

TEST_F(DirectoryTest, CheckingItsOwnFlagsMakesNoCall)
{
    const std::unique_ptr<Directory> news = open("NEWS");
    setFlags("NEWS", {locked1, 0, 0});
    EXPECT_FALSE(news->FlagCheck(Attr_Lock));
    EXPECT_THAT(server.calls(), IsEmpty());
}

TEST_F(DirectoryTest, IsNotIndexedWithoutASearcher)
{
    setFlags("NEWS", {locked1, sorted2, indexed3});
    ASSERT_EQ(Search::TheSearcher, nullptr);
    const std::unique_ptr<Directory> news = open("NEWS");
    EXPECT_FALSE(news->FlagCheck(Attr_Indexed));
    EXPECT_TRUE(news->FlagCheck(Attr_Lock)); // the other words stay
    EXPECT_TRUE(news->FlagCheck(Attr_Sorted));
}

TEST_F(DirectoryTest, IsNotIndexedWhileTheSearcherCannotSearch)
{
    setFlags("NEWS", {0, 0, indexed3});
    Search::GetSearcher();
    EXPECT_FALSE(open("NEWS")->FlagCheck(Attr_Indexed));
    startSearcher();
    EXPECT_TRUE(open("NEWS")->FlagCheck(Attr_Indexed));
}

TEST_F(DirectoryTest, EntriesAreIndexedWithoutASearcher)
{
    setFlags("NEWS.WORLD", {0, 0, indexed3});
    EXPECT_EQ(attributesOf(*open("NEWS"), 1), QStringList(text("_indexed=/0")));
}

TEST_F(DirectoryTest, CheckingFlagsOfADirectoryObjectAsksUnderThisLabel)
{
    setFlags("NEWS", {0, 0, indexed3});
    EXPECT_TRUE(Directory::FlagCheck(object("NEWS"), Attr_Indexed)); // whatever the searcher can do
    EXPECT_THAT(callsWithLabels(),
                ElementsAre(text("NEWS.get_Flags() under Directory::FlagCheck.IDirectory2Ptr::get_Flags")));
}

TEST_F(DirectoryTest, CheckingFlagsOfAQueueObjectAsksUnderThisLabel)
{
    setFlags("MAIL", {confirmEdit1, 0, 0});
    EXPECT_TRUE(Directory::FlagCheck(object("MAIL"), Attr_ConfirmEdit));
    EXPECT_THAT(callsWithLabels(),
                ElementsAre(text("MAIL.get_Flags() under Directory::FlagCheck.IQueue2Ptr::get_Flags")));
}

TEST_F(DirectoryTest, FlagsThatAreNotToldAreNotSet)
{
    setFlags("NEWS", {locked1, 0, 0});
    setFlags("MAIL", {locked1, 0, 0});
    const IDispatchPtr news = object("NEWS");
    const IDispatchPtr mail = object("MAIL");
    for (const HRESULT result : {E_FAIL, S_FALSE}) {
        server.fail(text("get_Flags"), result);
        EXPECT_FALSE(Directory::FlagCheck(news, Attr_Lock)) << result;
        EXPECT_FALSE(Directory::FlagCheck(mail, Attr_Lock)) << result;
    }
    server.raise(text("get_Flags"), E_FAIL);
    EXPECT_FALSE(Directory::FlagCheck(news, Attr_Lock));
    EXPECT_FALSE(Directory::FlagCheck(IDispatchPtr(), Attr_Lock));
    EXPECT_FALSE(Directory::FlagCheck(IDispatchPtr(server.newObject(Kind::Bare, text("X")), false), Attr_Lock));
}

// ---- searching ------------------------------------------------------------------------------------------------------

TEST_F(DirectoryTest, SearchesNothingWithoutASearcher)
{
    EXPECT_EQ(open("NEWS")->StartSearch(text("storm")), nullptr);
    EXPECT_THAT(server.calls(), IsEmpty());
}

TEST_F(DirectoryTest, SearchesItselfAndEverythingBelow)
{
    startSearcher();
    server.searchId = 7;
    const std::unique_ptr<Directory> news = open("NEWS");
    SearchList *const found = news->StartSearch(text("storm"));
    ASSERT_TRUE(found);
    EXPECT_EQ(found->SearchID(), 7);
    EXPECT_EQ(found->SearchStr(), text("{MaxFound=500 [HUB]NEWS.*}((storm))"));
    EXPECT_EQ(server.count(text("Search({MaxFound=500 [HUB]NEWS.*}((storm)))")), 1);
}

TEST_F(DirectoryTest, TheRootSearchesEverything)
{
    startSearcher();
    server.searchId = 7;
    const std::unique_ptr<Directory> root = open(".");
    root->StartSearch(text("storm"));
    EXPECT_EQ(server.count(text("Search({MaxFound=500 [HUB].*}((storm)))")), 1);
}

TEST_F(DirectoryTest, AQueueSearchesItselfAlone)
{
    startSearcher();
    server.searchId = 7;
    openQueue("MAIL")->StartSearch(text("storm"));
    EXPECT_EQ(server.count(text("Search({MaxFound=500 [HUB]MAIL}((storm)))")), 1);
}

TEST_F(DirectoryTest, AQueueSearchesNothingWithoutASearcher)
{
    EXPECT_EQ(openQueue("MAIL")->StartSearch(text("storm")), nullptr);
}

// ---- failures -------------------------------------------------------------------------------------------------------

TEST_F(DirectoryTest, WhatTheServerRefusesIsRaisedAndLeavesNothing)
{
    const QVector<const char *> calls{"NEWS.get_Name()",    "NEWS.get_Flags()",      "NEWS.get_Count()",
                                      "NEWS.GetList(0, 2)", "NEWS.SPORT.get_Name()", "NEWS.WORLD.get_Name()"};
    const IDispatchPtr news = object("NEWS");
    const int live = server.liveObjects();
    for (const char *call : calls) {
        for (const HRESULT result : {E_FAIL, E_ACCESSDENIED, objectGone}) {
            server.fail(text(call), result);
            EXPECT_EQ(raised([&] { delete Directory::NewDirectory(news); }), result) << call;
            server.mend();
            EXPECT_EQ(server.liveObjects(), live) << call;
            EXPECT_EQ(QuireCOM::m_LockThreadID, 0u) << call;
        }
    }
    const std::unique_ptr<Directory> again(Directory::NewDirectory(news));
    EXPECT_EQ(again->Size(), 2);
}

TEST_F(DirectoryTest, WhatTheServerRaisesIsRaisedAndLeavesNothing)
{
    const IDispatchPtr news = object("NEWS");
    const int live = server.liveObjects();
    for (const char *operation : {"get_Name", "get_Flags", "get_Count", "GetList"}) {
        server.raise(text(operation), E_UNEXPECTED);
        EXPECT_EQ(raised([&] { delete Directory::NewDirectory(news); }), E_UNEXPECTED) << operation;
        server.mend();
        EXPECT_EQ(server.liveObjects(), live) << operation;
        EXPECT_EQ(QuireCOM::m_LockThreadID, 0u) << operation;
    }
}

TEST_F(DirectoryTest, WhatASubDirectoryRefusesIsRaisedAndLeavesNothing)
{
    const std::unique_ptr<Directory> news = open("NEWS");
    const std::unique_ptr<Directory> sport(news->GetSubDir(0)); // so that the table of handles has it
    const int live = server.liveObjects();
    for (const char *call : {"NEWS.get_Item(0)", "NEWS.SPORT.get_Name()", "NEWS.SPORT.get_Flags()",
                             "NEWS.SPORT.get_Count()", "NEWS.SPORT.GetList(0, 1)", "NEWS.SPORT.SCORES.get_Name()"}) {
        server.fail(text(call), E_FAIL);
        EXPECT_EQ(raised([&] { delete news->GetSubDir(0); }), E_FAIL) << call;
        server.mend();
        EXPECT_EQ(server.liveObjects(), live) << call;
        EXPECT_EQ(QuireCOM::m_LockThreadID, 0u) << call;
    }
}

TEST_F(DirectoryTest, ARefusedQueryForAnInterfaceIsRaised)
{
    const IDispatchPtr news = object("NEWS");
    server.refuse(Kind::Directory, __uuidof(Orvex::IDirectory2), E_ACCESSDENIED);
    EXPECT_EQ(raised([&] { delete Directory::NewDirectory(news); }), E_ACCESSDENIED);
    EXPECT_FALSE(Directory::FlagCheck(news, Attr_Lock));
}
