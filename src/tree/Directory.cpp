#include <quire/tree/Directory.h>

#include <memory>

#include "EntryFlags.h"
#include "ObjectArray.h"
#include "ServerCall.h"
#include <quire/notify/Search.h>
#include <quire/platform/Bstr.h>
#include <quire/platform/PermanentText.h>
#include <quire/platform/Variant.h>
#include <quire/session/Dispatch2.h>
#include <quire/session/QuireCOM.h>
#include <quire/session/QuireCOMMutex.h>
#include <quire/tree/Queue.h>

namespace Quire {

bool Directory::sSkipFolderCount = false;

namespace {

/// The name of a directory or queue as the server reports it.
template<typename Pointer>
QString readName(const Pointer &entry)
{
    Platform::Bstr name;
    check(entry->get_Name(name.out()), entry);
    return name.toString();
}

void addCount(Item &item, const Orvex::IDirectory2Ptr &directory)
{
    static const auto &key =
        *new const QString(Platform::permanentText(Attr_NumItems)); // never destroyed: a worker may outlast main()
    LONG count = 1;
    if (Directory::sSkipFolderCount || SUCCEEDED(directory->get_Count(&count)))
        item.attributes.push_back({key, QString::number(count)});
}

template<typename Pointer>
void addFlags(Item &item, const Pointer &entry)
{
    EntryFlags flags;
    if (SUCCEEDED(readFlags(entry, &flags)))
        flags.addTo(item);
}

void describeDirectory(Item &item, const Orvex::IDirectory2Ptr &directory)
{
    item.type = Item_Directory;
    item.name = readName(directory);
    addFlags(item, directory);
    addCount(item, directory);
}

void describeQueue(Item &item, const Orvex::IQueue2Ptr &queue)
{
    item.type = Item_Queue;
    item.name = readName(queue);
    addFlags(item, queue);
}

/// Fills the item if the entry is a directory or a queue. The server is taken once for each of them: twice is felt in a
/// directory of many queues.
void describe(Item &item, const IDispatchPtr &entry)
{
    QuireCOMMutex lock("Directory::Populate:piDir");
    if (const Orvex::IDirectory2Ptr directory = Dispatch2Dir(entry))
        return describeDirectory(item, directory);
    lock.goOn("Directory::Populate:piQue");
    if (const Orvex::IQueue2Ptr queue = Dispatch2Queue(entry))
        describeQueue(item, queue);
}

bool canSearch()
{
    Search *const searcher = Search::GetSearcherIfMade();
    return searcher && searcher->CanSearch();
}

/// Keeps a child in the session's cache under the name that the server reports for it.
void cacheChild(QuireCOM &session, const IDispatchPtr &child)
{
    if (const Orvex::IDirectory2Ptr directory = Dispatch2Dir(child))
        session.AddDirToCache(readName(directory), child);
    else if (const Orvex::IQueue2Ptr queue = Dispatch2Queue(child))
        session.AddDirToCache(readName(queue), child);
}

} // namespace

// ---- making one -----------------------------------------------------------------------------------------------------

// NOLINTNEXTLINE(performance-unnecessary-value-param): a reference of its own while the call lasts
Directory *Directory::NewDirectory(IDispatchPtr object)
{
    return Make(object, true);
}

Directory *Directory::Make(const IDispatchPtr &object, bool registerQueue)
{
    bool isDirectory = false;
    bool isQueue = false;
    {
        const QuireCOMMutex lock("Directory::NewDirectory");
        isDirectory = Dispatch2Dir(object) != nullptr;
        isQueue = !isDirectory && Dispatch2Queue(object) != nullptr;
    }
    if (isDirectory)
        return new Directory(object);
    return isQueue ? new Queue(object, registerQueue) : nullptr;
}

Directory *Directory::NewDirectory(const QString &path)
{
    return QuireCOM::TheQuireCOM ? NewDirectory(LookUp(path)) : nullptr;
}

Directory::Directory() = default;

// NOLINTNEXTLINE(performance-unnecessary-value-param): a reference of its own while the call lasts
Directory::Directory(IDispatchPtr object)
{
    {
        const QuireCOMMutex lock("Directory::Directory");
        const Orvex::IDirectory2Ptr directory = Dispatch2Dir(object);
        if (!directory)
            return;
        ItemList::SetName(readName(directory));
    }
    Directory::Populate(object);
}

Directory::~Directory() = default;

// ---- listing --------------------------------------------------------------------------------------------------------

// NOLINTNEXTLINE(performance-unnecessary-value-param): a reference of its own while the call lasts
void Directory::Populate(IDispatchPtr object)
{
    Orvex::IDirectory2Ptr directory;
    LONG count = 0;
    {
        const QuireCOMMutex lock("Directory::Populate:get_Flags");
        directory = Dispatch2Dir(object);
        if (!directory)
            return;
        EntryFlags flags;
        check(readFlags(directory, &flags), directory);
        m_flags1 = flags.word1;
        m_flags2 = flags.word2;
        m_flags3 = canSearch() ? flags.word3 : 0;
        check(directory->get_Count(&count), directory);
    }
    if (count < 1)
        return;
    Platform::Variant answer;
    {
        const QuireCOMMutex lock("Directory::Populate:GetList");
        check(directory->GetList(0, count, answer.out()), directory);
    }
    const ObjectArray entries(answer);
    u_Expect(entries.size());
    Item item(QString(), Item_Directory); // one for all entries, for its room for attributes
    for (int index = 0; index < entries.size(); ++index) {
        item.type = Item_Directory;
        item.name.clear();
        item.attributes.clear();
        const ObjectArray::Element entry = entries.at(index);
        if (entry.object())
            describe(item, entry.object());
        Append(item);
    }
}

void Directory::Populate()
{
    if (QuireCOM::TheQuireCOM)
        Populate(LookUp(Name()));
}

void Directory::Refresh()
{
    if (!QuireCOM::TheQuireCOM)
        return;
    Clear();
    Reread();
}

void Directory::Reread()
{
    if (QuireCOM *const session = QuireCOM::TheQuireCOM)
        session->RemoveDirFromCache(Name());
    Populate();
}

/// The server's object for \a path, under the server access lock: the walk to it asks the server for each step.
IDispatchPtr Directory::LookUp(const QString &path)
{
    const QuireCOMMutex lock("Directory::LookUp");
    QuireCOM *const session = QuireCOM::TheQuireCOM;
    return session ? session->GetCachedDir(path) : IDispatchPtr();
}

// ---- entries --------------------------------------------------------------------------------------------------------

Directory *Directory::GetSubDir(const QString &name)
{
    return GetSubDir(Find(name));
}

Directory *Directory::GetSubDir(int index)
{
    std::unique_ptr<Directory> child(index < 0 ? nullptr : OpenSubDir(index));
    // Without the access lock: the update manager's mutex comes before it.
    if (child && child->IsQueue())
        static_cast<Queue *>(child.get())->RegisterIfLoaded();
    return child.release();
}

/// The child as an object; a queue is not yet registered for updates.
Directory *Directory::OpenSubDir(int index)
{
    QuireCOM *const session = QuireCOM::TheQuireCOM;
    if (!session)
        return nullptr;
    const QuireCOMMutex lock("Directory::GetSubDir");
    const Orvex::IDirectory2Ptr directory = Dispatch2Dir(session->GetCachedDir(Name()));
    if (!directory)
        return nullptr;
    const IDispatchPtr child = itemAt(directory, index);
    if (!child)
        return nullptr;
    cacheChild(*session, child);
    return Make(child, false);
}

SearchList *Directory::StartSearch(const QString &text)
{
    Search *const searcher = Search::GetSearcherIfMade();
    if (!searcher)
        return nullptr;
    const QString root = QStringLiteral(".");
    const QString scope = Name() == root ? QString() : Name();
    return searcher->StartSearch(scope + QLatin1String(".*"), text);
}

// ---- flags ----------------------------------------------------------------------------------------------------------

bool Directory::IsDirectory()
{
    return true;
}

bool Directory::IsQueue()
{
    return false;
}

bool Directory::FlagCheck(const char *key)
{
    return EntryFlags{m_flags1, m_flags2, m_flags3}.has(key);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): a reference of its own while the call lasts
bool Directory::FlagCheck(IDispatchPtr object, const char *key)
try {
    EntryFlags flags;
    {
        const QuireCOMMutex lock("Directory::FlagCheck.IQueue2Ptr::get_Flags");
        if (const Orvex::IQueue2Ptr queue = Dispatch2Queue(object))
            return readFlags(queue, &flags) == S_OK && flags.has(key);
    }
    const QuireCOMMutex lock("Directory::FlagCheck.IDirectory2Ptr::get_Flags");
    const Orvex::IDirectory2Ptr directory = Dispatch2Dir(object);
    return directory && readFlags(directory, &flags) == S_OK && flags.has(key);
} catch (const _com_error &) {
    return false;
}

} // namespace Quire
