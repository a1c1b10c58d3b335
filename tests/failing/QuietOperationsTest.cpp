#include <gtest/gtest.h>

#include <QRegularExpression>
#include <QTemporaryDir>

#include <quire/Quire.h>

#include "failing/PublicOperations.h"
#include "failing/World.h"
#include "support/QtPrinting.h"

// Each public operation reaches the server, and then the failure loop has it, or is called here and reaches nothing.

using namespace Quire;

namespace Failing {

namespace {

/// What the operations are called on, all of it made before.
struct Scene
{
    World &world;
    LocalStory &local;
    Item item;
    Attribute attribute;
    DispatchCache cache;
    IDispatchPtr handle;
    QString text;
    StoryID id{};

    QuireCOM &session() { return world.session(); }
    Directory &directory() { return *world.directory; }
    Queue &queue() { return *world.queue; }
    Story &story() { return *world.story; }
    SearchList &found() { return *world.search; }
    Search &searcher() { return *Search::TheSearcher; }
};

struct QuietOperation
{
    const char *name;
    void (*run)(Scene &);
};

void PrintTo(const QuietOperation &operation, std::ostream *out)
{
    *out << operation.name;
}

void prepare(World &world)
{
    NotificationRelease();
    NotificationInit(nullptr, nullptr, nullptr);
    world.server().delivery().pause(); // no search comes to an end by itself
    world.search = Search::TheSearcher->StartSearch(worldPath(), text("Rain"));
    openDirectory(world);
    openQueue(world);
    openFoundStory(world);
}

// ---- values, texts, forms -------------------------------------------------------------------------------------------

// NOLINTNEXTLINE(cppcoreguidelines-interfaces-global-init): what it names is read when an operation runs
const std::vector<QuietOperation> values{
    {"CmpStoryID", [](Scene &s) { CmpStoryID(&s.id, &s.id); }},
    {"Story::CmpStoryID", [](Scene &s) { Story::CmpStoryID(&s.id, &s.id); }},
    {"ConvertDate2Orvex", [](Scene &) { ConvertDate2Orvex(0); }},
    {"ConvertOrvex2Date",
     [](Scene &) {
         std::tm date{};
         ConvertOrvex2Date(0, &date);
     }},
    {"DecodeAttribute", [](Scene &s) { DecodeAttribute(text("modify-date"), s.text); }},
    {"EncodeAttribute", [](Scene &s) { EncodeAttribute(text("modify-by"), s.text); }},
    {"IsAttributeReadOnly", [](Scene &) { IsAttributeReadOnly(text("modify-by")); }},
    {"StoryID2String", [](Scene &s) { StoryID2String(s.id, true); }},
    {"String2StoryID", [](Scene &s) { String2StoryID(text("1:2:3"), &s.id, 10); }},
    {"getErrorString", [](Scene &) { getErrorString(E_FAIL, true); }},
    {"FreeBlob", [](Scene &) { FreeBlob(nullptr); }},
    {"Field::Width", [](Scene &) { Field().Width(); }},
    {"FormData::FormData", [](Scene &) { FormData(text("STORY"), text("<zeko:form></zeko:form>")); }},
    {"FormCache::Clear", [](Scene &) { FormCache::Clear(); }},
    {"FormCache::FormCache(other)", [](Scene &) { const FormCache copy(FormCache::sFormCache); }},
    {"FormCache::FormCache(&&other)",
     [](Scene &) {
         FormCache copy(FormCache::sFormCache);
         const FormCache moved(std::move(copy));
     }},
    {"FormCache::operator=(other)",
     [](Scene &) {
         FormCache copy(FormCache::sFormCache);
         copy = FormCache::sFormCache;
     }},
    {"FormCache::operator=(&&other)",
     [](Scene &) {
         FormCache copy(FormCache::sFormCache);
         copy = FormCache(FormCache::sFormCache);
     }},
    {"FormCache::~FormCache", [](Scene &) { const FormCache copy(FormCache::sFormCache); }},
    {"Item::Item(name, type)", [](Scene &) { const Item item(text("other"), Item_Queue); }},
    {"Item::Item(other)", [](Scene &s) { const Item copy(s.item); }},
    {"Item::Item(&&other)",
     [](Scene &s) {
         Item copy(s.item);
         const Item moved(std::move(copy));
     }},
    {"Item::~Item", [](Scene &s) { const Item copy(s.item); }},
    {"Item::operator=(other)",
     [](Scene &s) {
         const Item other(text("other"), Item_Queue);
         s.item = other;
     }},
    {"Item::operator=(&&other)", [](Scene &s) { s.item = Item(text("other"), Item_Queue); }},
    {"Item::operator==", [](Scene &s) { static_cast<void>(s.item == Item(text("other"), Item_Queue)); }},
    {"Item::operator<", [](Scene &s) { static_cast<void>(s.item < Item(text("other"), Item_Queue)); }},
    {"Item::RetrieveAttrs",
     [](Scene &s) {
         std::vector<Attribute> attributes;
         s.queue().Nth(0)->RetrieveAttrs(attributes);
     }},
    {"Item::AddAttr(attribute)", [](Scene &s) { s.item.AddAttr(s.attribute); }},
    {"Item::AddAttr(name, value, flags)", [](Scene &s) { s.item.AddAttr(text("title"), text("Rain"), 0); }},
    {"Item::FindAttr(name, attribute, const)",
     [](Scene &s) { s.queue().Nth(0)->FindAttr(text("title"), s.attribute); }},
    {"Item::FindAttr(name, const)", [](Scene &s) { s.queue().Nth(0)->FindAttr(text("title")); }},
    {"Item::GetAttr", [](Scene &s) { s.queue().Nth(0)->GetAttr(0, s.attribute); }},
    {"Item::RemoveAttr", [](Scene &s) { s.item.RemoveAttr(0); }},
};

// ---- the session ----------------------------------------------------------------------------------------------------

// NOLINTNEXTLINE(cppcoreguidelines-interfaces-global-init): what it names is read when an operation runs
const std::vector<QuietOperation> session{
    {"DispatchWrapper::DispatchWrapper()", [](Scene &) { const DispatchWrapper wrapper; }},
    {"DispatchWrapper::DispatchWrapper(handle)", [](Scene &s) { const DispatchWrapper wrapper(s.handle); }},
    {"DispatchWrapper::DispatchWrapper(other)",
     [](Scene &s) {
         const DispatchWrapper wrapper(s.handle);
         // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the copy is what is tried
         const DispatchWrapper copy(wrapper);
         copy.Handle();
     }},
    {"DispatchWrapper::~DispatchWrapper", [](Scene &s) { const DispatchWrapper wrapper(s.handle); }},
    {"DispatchWrapper::operator=", [](Scene &s) { DispatchWrapper() = DispatchWrapper(s.handle); }},
    {"DispatchWrapper::Handle", [](Scene &s) { DispatchWrapper(s.handle).Handle(); }},
    {"DispatchCache::DispatchCache", [](Scene &) { const DispatchCache cache; }},
    {"DispatchCache::~DispatchCache", [](Scene &) { const DispatchCache cache; }},
    {"DispatchCache::AddDir", [](Scene &s) { s.cache.AddDir(worldPath(), s.handle); }},
    {"DispatchCache::FindDir", [](Scene &s) { s.cache.FindDir(worldPath(), s.handle); }},
    {"DispatchCache::AddStory", [](Scene &s) { s.cache.AddStory(worldPath(), 211, s.handle); }},
    {"DispatchCache::FindStory", [](Scene &s) { s.cache.FindStory(worldPath(), 211, s.handle); }},
    {"DispatchCache::RemoveStory", [](Scene &s) { s.cache.RemoveStory(worldPath(), 211); }},
    {"DispatchCache::Remove", [](Scene &s) { s.cache.Remove(worldPath()); }},
    {"DispatchCache::Clear", [](Scene &s) { s.cache.Clear(); }},
    {"QuireCOMMutex::QuireCOMMutex()", [](Scene &) { const QuireCOMMutex lock; }},
    {"QuireCOMMutex::QuireCOMMutex(name)", [](Scene &) { const QuireCOMMutex lock(text("quiet")); }},
    {"QuireCOMMutex::QuireCOMMutex(const label[])", [](Scene &) { const QuireCOMMutex lock("quiet"); }},
    {"QuireCOMMutex::QuireCOMMutex(buffer[])",
     [](Scene &) {
         char buffer[] = "quiet";
         const QuireCOMMutex lock(buffer);
     }},
    {"QuireCOMMutex::goOn",
     [](Scene &) {
         QuireCOMMutex lock("quiet");
         lock.goOn("still quiet");
     }},
    {"QuireCOMMutex::~QuireCOMMutex", [](Scene &) { const QuireCOMMutex lock("quiet"); }},
    {"QuireCOM::operator=", [](Scene &s) { s.session() = *QuireCOM::TheQuireCOM; }},
    {"QuireCOM::GetDLLName", [](Scene &) { QuireCOM::GetDLLName(); }},
    {"QuireCOM::IsUnicode", [](Scene &) { QuireCOM::IsUnicode(); }},
    {"QuireCOM::SetUnicode", [](Scene &) { QuireCOM::SetUnicode(QuireCOM::IsUnicode()); }},
    {"QuireCOM::registerCOM", [](Scene &) { QuireCOM::registerCOM(text("no such folder")); }},
    {"QuireCOM::IsLoaded", [](Scene &s) { s.session().IsLoaded(); }},
    {"QuireCOM::GetCOMError", [](Scene &s) { s.session().GetCOMError(); }},
    {"QuireCOM::SignOnCount", [](Scene &) { QuireCOM::SignOnCount(); }},
    {"QuireCOM::GetConnectInfo", [](Scene &s) { s.session().GetConnectInfo(s.text, s.text, s.text); }},
    {"QuireCOM::GetSignon", [](Scene &s) { s.session().GetSignon(); }},
    {"QuireCOM::AddDirToCache", [](Scene &s) { s.session().AddDirToCache(worldPath(), s.handle); }},
    {"QuireCOM::RemoveDirFromCache", [](Scene &s) { s.session().RemoveDirFromCache(worldPath()); }},
    {"QuireCOM::GetCachedStory, from the cache only",
     [](Scene &s) { s.session().GetCachedStory(worldPath(), storyID(), true); }},
    {"QuireCOM::GetCachedStory, from the cache only, not there",
     [](Scene &s) {
         s.session().RemoveStoriesFromCache(worldPath());
         s.session().GetCachedStory(worldPath(), storyID(), true);
     }},
    {"QuireCOM::AddStoryToCache", [](Scene &s) { s.session().AddStoryToCache(worldPath(), storyID(), s.handle); }},
    {"QuireCOM::RemoveStoryFromCache", [](Scene &s) { s.session().RemoveStoryFromCache(worldPath(), storyID()); }},
    {"QuireCOM::RemoveStoriesFromCache", [](Scene &s) { s.session().RemoveStoriesFromCache(worldPath()); }},
};

// ---- lists, directories, queues -------------------------------------------------------------------------------------

// NOLINTNEXTLINE(cppcoreguidelines-interfaces-global-init): what it names is read when an operation runs
const std::vector<QuietOperation> lists{
    {"ListMutexLocker::ListMutexLocker(const name[], mutex, tryOnly)",
     [](Scene &) {
         QMutex mutex;
         const ListMutexLocker lock("quiet", &mutex);
     }},
    {"ListMutexLocker::ListMutexLocker(const name[], mutex, tryOnly) 2",
     [](Scene &) {
         ListMutex mutex;
         const ListMutexLocker lock("quiet", &mutex);
     }},
    {"ListMutexLocker::ListMutexLocker(name, mutex, tryOnly)",
     [](Scene &) {
         QMutex mutex;
         const ListMutexLocker lock(text("quiet"), &mutex);
     }},
    {"ListMutexLocker::~ListMutexLocker",
     [](Scene &) {
         QMutex mutex;
         const ListMutexLocker lock("quiet", &mutex);
     }},
    {"ListMutexLocker::IsLocked",
     [](Scene &) {
         QMutex mutex;
         ListMutexLocker("quiet", &mutex).IsLocked();
     }},
    {"ListMutexLocker::Owns",
     [](Scene &) {
         QMutex mutex;
         ListMutexLocker("quiet", &mutex).Owns();
     }},
    {"ItemList::ItemList", [](Scene &) { const ItemList list; }},
    {"ItemList::~ItemList", [](Scene &) { const ItemList list; }},
    {"ItemList::SetID", [](Scene &s) { s.queue().SetID(1); }},
    {"ItemList::ID", [](Scene &s) { s.queue().ID(); }},
    {"ItemList::SetName", [](Scene &s) { s.queue().SetName(worldPath()); }},
    {"ItemList::Name", [](Scene &s) { s.queue().Name(); }},
    {"ItemList::Size", [](Scene &s) { s.queue().Size(); }},
    {"ItemList::Append", [](Scene &s) { s.queue().Append(s.item); }},
    {"ItemList::Find", [](Scene &s) { s.queue().Find(text("Storm")); }},
    {"ItemList::Nth", [](Scene &s) { s.queue().Nth(1); }},
    {"ItemList::FindByAttribute", [](Scene &s) { s.queue().FindByAttribute(text("title"), text("Storm")); }},
    {"ItemList::SortUnique", [](Scene &s) { s.queue().SortUnique(); }},
    {"ItemList::u_Size", [](Scene &s) { s.queue().u_Size(); }},
    {"ItemList::u_Nth", [](Scene &s) { s.queue().u_Nth(0); }},
    {"ItemList::HasChanged", [](Scene &s) { s.queue().HasChanged(true); }},
    {"ItemList::SetChanged", [](Scene &s) { s.queue().SetChanged(); }},
    {"ItemList::Lock",
     [](Scene &s) {
         s.queue().Lock();
         s.queue().Unlock();
     }},
    {"ItemList::tryLock",
     [](Scene &s) {
         s.queue().tryLock();
         s.queue().Unlock();
     }},
    {"ItemList::Unlock",
     [](Scene &s) {
         s.queue().Lock();
         s.queue().Unlock();
     }},
    {"ItemList::Clear", [](Scene &s) { s.queue().Clear(); }},
    {"Directory::Directory()", [](Scene &) { const Directory directory; }},
    {"Directory::FlagCheck(key)", [](Scene &s) { s.directory().FlagCheck(Attr_Indexed); }},
    {"Directory::~Directory", [](Scene &s) { s.world.directory.reset(); }},
    {"Directory::IsDirectory", [](Scene &s) { s.directory().IsDirectory(); }},
    {"Directory::IsQueue", [](Scene &s) { s.directory().IsQueue(); }},
    {"Queue::getLoadIncrement", [](Scene &) { Queue::getLoadIncrement(); }},
    {"Queue::setLoadIncrement", [](Scene &) { Queue::setLoadIncrement(Queue::getLoadIncrement()); }},
    {"Queue::IsDirectory", [](Scene &s) { s.queue().IsDirectory(); }},
    {"Queue::IsQueue", [](Scene &s) { s.queue().IsQueue(); }},
    {"Queue::IsComplete", [](Scene &s) { s.queue().IsComplete(); }},
    {"Queue::IsFinished", [](Scene &s) { s.queue().IsFinished(); }},
    {"Queue::GetError", [](Scene &s) { s.queue().GetError(); }},
    {"Queue::cancelQueueLoad", [](Scene &s) { s.queue().cancelQueueLoad(true); }},
    {"Queue::GetLiveRefresh", [](Scene &s) { s.queue().GetLiveRefresh(); }},
    {"Queue::MoreStoriesAvailable", [](Scene &s) { s.queue().MoreStoriesAvailable(); }},
    {"Queue::QueueID", [](Scene &s) { s.queue().QueueID(); }},
    {"QueueUpdateMgr::Update", [](Scene &s) { QueueUpdateMgr::Update(s.queue().QueueID()); }},
    {"QueueUpdateMgr::NeedsRefresh", [](Scene &s) { QueueUpdateMgr::NeedsRefresh(&s.queue(), true); }},
};

// ---- searches -------------------------------------------------------------------------------------------------------

const std::vector<QuietOperation> searches{
    {"SearchList::SearchList", [](Scene &) { const SearchList list(0, text("Rain")); }},
    {"SearchList::~SearchList", [](Scene &) { const SearchList list(0, text("Rain")); }},
    {"SearchList::SearchID", [](Scene &s) { s.found().SearchID(); }},
    {"SearchList::SearchStr", [](Scene &s) { s.found().SearchStr(); }},
    {"SearchList::GetTotalHits", [](Scene &s) { s.found().GetTotalHits(); }},
    {"SearchList::SetTotalHits", [](Scene &s) { s.found().SetTotalHits(3); }},
    {"SearchList::IsSearchComplete", [](Scene &s) { s.found().IsSearchComplete(); }},
    {"SearchList::AddHits",
     [](Scene &s) {
         std::vector<Item> hits{s.item};
         s.found().AddHits(hits);
     }},
    {"SearchList::SetSearchComplete", [](Scene &s) { s.found().SetSearchComplete(); }},
    {"SearchList::Complete", [](Scene &s) { s.found().Complete(3); }},
    {"Search::GetSearcher", [](Scene &) { Search::GetSearcher(); }},
    {"Search::GetSearcherIfMade", [](Scene &) { Search::GetSearcherIfMade(); }},
    {"Search::GetSearchLimit", [](Scene &) { Search::GetSearchLimit(); }},
    {"Search::SetSearchLimit", [](Scene &) { Search::SetSearchLimit(Search::GetSearchLimit()); }},
    {"Search::CanSearch", [](Scene &s) { s.searcher().CanSearch(); }},
    {"Search::SetNotification", [](Scene &s) { s.searcher().SetNotification(false); }},
    {"Search::IsSearchDone", [](Scene &s) { s.searcher().IsSearchDone(s.found().SearchID()); }},
    {"Search::AccessSearchResults",
     [](Scene &s) {
         s.searcher().AccessSearchResults(s.found().SearchID());
         s.searcher().EndAccessSearchResults(s.found().SearchID());
     }},
    {"Search::EndAccessSearchResults",
     [](Scene &s) {
         s.searcher().AccessSearchResults(s.found().SearchID());
         s.searcher().EndAccessSearchResults(s.found().SearchID());
     }},
};

// ---- stories --------------------------------------------------------------------------------------------------------

const std::vector<QuietOperation> stories{
    {"Story::Story(other)", [](Scene &s) { const Story copy(s.story()); }},
    {"Story::~Story", [](Scene &s) { s.world.story.reset(); }},
    {"Story::operator=", [](Scene &s) { s.story() = *s.world.story; }},
    {"Story::GetID", [](Scene &s) { s.story().GetID(&s.id); }},
    {"Story::GetIDStr", [](Scene &s) { s.story().GetIDStr(s.text, true); }},
    {"Story::GetReadRate", [](Scene &s) { s.story().GetReadRate(); }},
    {"Story::SetReadRate", [](Scene &s) { s.story().SetReadRate(170); }},
    {"Story::GetConfirmEdit", [](Scene &s) { s.story().GetConfirmEdit(); }},
    {"Story::SetConfirmEdit", [](Scene &s) { s.story().SetConfirmEdit(true); }},
    {"Story::HasKeylock", [](Scene &s) { s.story().HasKeylock(); }},
    {"Story::IsLoaded", [](Scene &s) { s.story().IsLoaded(); }},
    {"Story::GetError", [](Scene &s) { s.story().GetError(); }},
    {"Story::FormName", [](Scene &s) { s.story().FormName(); }},
    {"Story::GetTextSectionPos",
     [](Scene &s) {
         int start = 0;
         int end = 0;
         Story::GetTextSectionPos(s.text, text("body"), start, end);
     }},
    {"Story::ExtractTextSection", [](Scene &s) { Story::ExtractTextSection(s.text, text("body")); }},
    {"LocalStory::setLocalPath", [](Scene &) { LocalStory::setLocalPath(LocalStory::getLocalPath()); }},
    {"LocalStory::getLocalPath", [](Scene &) { LocalStory::getLocalPath(); }},
    {"LocalStory::LocalStory(other)", [](Scene &s) { const LocalStory copy(s.local); }},
    {"LocalStory::~LocalStory", [](Scene &s) { const LocalStory copy(s.local); }},
    {"LocalStory::operator=", [](Scene &s) { s.local = LocalStory(s.local); }},
    {"LocalStory::GetSection", [](Scene &s) { s.local.GetSection(127, s.text, true); }},
    {"LocalStory::PutSection", [](Scene &s) { s.local.PutSection(127, s.text, true); }},
    {"LocalStory::GetField", [](Scene &s) { s.local.GetField(text("title"), s.text); }},
    {"LocalStory::SetField", [](Scene &s) { s.local.SetField(text("title"), s.text); }},
    {"LocalStory::Save", [](Scene &s) { s.local.Save(false); }},
    {"LocalStory::UpdateHeaderID", [](Scene &s) { s.local.UpdateHeaderID(); }},
    {"LocalStory::Lock", [](Scene &s) { s.local.Lock(1, s.text); }},
    {"LocalStory::Unlock", [](Scene &s) { s.local.Unlock(); }},
    {"LocalStory::IsLocked", [](Scene &s) { s.local.IsLocked(1); }},
    {"LocalStory::SetTextSection", [](Scene &s) { LocalStory::SetTextSection(s.text, text("body"), text("x")); }},
};

/// Nobody may destroy what it makes.
const char *const notForHosts[] = {"QuireCOM::QuireCOM"};

const std::vector<QuietOperation> *const tables[] = {&values, &session, &lists, &searches, &stories};

std::vector<QuietOperation> allQuiet()
{
    std::vector<QuietOperation> all;
    for (const std::vector<QuietOperation> *table : tables)
        all.insert(all.end(), table->begin(), table->end());
    return all;
}

class QuietOperations : public ::testing::TestWithParam<QuietOperation>
{};

/// The operations of the failure loop's tables, with what they say about the way they are called.
QStringList operationsOfTheLoop()
{
    QStringList found;
    const ::testing::UnitTest &program = *::testing::UnitTest::GetInstance();
    for (int suite = 0; suite < program.total_test_suite_count(); ++suite) {
        const ::testing::TestSuite &tests = *program.GetTestSuite(suite);
        if (!QString::fromUtf8(tests.name()).endsWith(text("/FailureLoop")))
            continue;
        for (int test = 0; test < tests.total_test_count(); ++test) {
            found.append(QString::fromUtf8(tests.GetTestInfo(test)->value_param()));
        }
    }
    return found;
}

/// Without what a row's name says about the way that the operation is called: all but the name, and the parameters
/// where these tell overloads apart.
QString operationOf(const QString &row, const QStringList &declared)
{
    static const QRegularExpression pattern(text(R"(^([^(,]*)(?:\([^)]*\)(?: \d+)?)?)"));
    const QRegularExpressionMatch match = pattern.match(row);
    return match.captured(declared.contains(match.captured(0)) ? 0 : 1);
}

/// What is in the one and not in the other.
QStringList missing(const QStringList &wanted, const QStringList &there)
{
    QStringList lacking;
    for (const QString &each : wanted) {
        if (!there.contains(each))
            lacking.append(each);
    }
    return lacking;
}

} // namespace

TEST_P(QuietOperations, ReachNoServer)
{
    const QTemporaryDir folder;
    LocalStory::setLocalPath(folder.filePath(text("story")));
    World world(Cached, prepare);
    LocalStory local(folder.filePath(text("story")));
    Scene scene{world,
                local,
                Item(text("item"), Item_Story),
                {text("title"), text("Rain"), 0},
                {},
                world.session().GetCachedDir(worldPath()),
                text("<body>text</body>"),
                *storyID()};
    world.server().calls().start();
    GetParam().run(scene);
    EXPECT_EQ(world.server().calls().takeTexts(), QStringList());
}

INSTANTIATE_TEST_SUITE_P(Library, QuietOperations, ::testing::ValuesIn(allQuiet()));

TEST(PublicOperations, AreFoundInDeclarations)
{
    const QString code = text("#define MACRO(x) \\\n  x();\n"
                              "/// comment();\n"
                              "namespace Quire {\n"
                              "class Forward;\n"
                              "class Hidden\n{\npublic:\n    void notExported();\n};\n"
                              "class QUIRE_EXPORT Shown final : public Base\n{\n"
                              "    void privateAtFirst();\n"
                              "public:\n"
                              "    explicit Shown(int value = other()) noexcept;\n"
                              "    virtual ~Shown();\n"
                              "    bool operator==(const Shown &other) const;\n"
                              "    int inlined() const { if (m_value) { return 1; } return m_value; }\n"
                              "    template<typename T>\n    Shown(T &value)\n        : m_value(value)\n    {}\n"
                              "    void last() QUIRE_EXCLUDES(m_value);\n"
                              "    void twice(const std::map<int, int> &first = f(1, 2), bool) const;\n"
                              "    void twice() { m_value = 0; }\n"
                              "    int twice() const;\n"
                              "    void twice(int) = delete;\n"
                              "    void twice(int &&moved);\n"
                              "    void twice(const char (&label)[Size], char (&buffer)[Size]);\n"
                              "    int m_open QUIRE_GUARDED_BY(m_value) = 0;\n"
                              "protected:\n    void inherited();\n"
                              "private:\n    void secret();\n    int m_value = 0;\n};\n"
                              "QUIRE_EXPORT void function(int value);\n"
                              "void local();\n"
                              "inline int defined() { return 0; }\n"
                              "} // namespace Quire\n");
    EXPECT_EQ(
        operationsIn(code),
        QStringList({text("Shown::Shown(value)"), text("Shown::Shown(value) 2"), text("Shown::inlined"),
                     text("Shown::last"), text("Shown::operator=="), text("Shown::twice(&&moved)"),
                     text("Shown::twice()"), text("Shown::twice(const label[], buffer[])"), text("Shown::twice(const)"),
                     text("Shown::twice(first, bool, const)"), text("Shown::~Shown"), text("function")}));
}

TEST(PublicOperations, ReachTheServerInTheFailureLoopOrNotAtAll)
{
    const QStringList declared = publicOperations();
    ASSERT_FALSE(declared.isEmpty());
    QStringList known = operationsOfTheLoop();
    for (const QuietOperation &operation : allQuiet())
        known.append(text(operation.name));
    for (QString &row : known)
        row = operationOf(row, declared);
    for (const char *name : notForHosts)
        known.append(text(name));
    EXPECT_EQ(missing(declared, known), QStringList()) << "neither in the failure loop nor among the quiet ones";
    EXPECT_EQ(missing(known, declared), QStringList()) << "in no header";
}

} // namespace Failing
