#include <quire/session/QuireCOM.h>

#include <algorithm>
#include <limits>
#include <typeinfo>
#include <vector>

#include <quire/platform/Bstr.h>
#include <quire/platform/Variant.h>
#include <quire/session/Dispatch2.h>
#include <quire/session/DispatchCache.h>
#include <quire/session/QuireCOMMutex.h>

// The session's handles of server objects: directories and queues by path, stories by queue path and number.

namespace Quire {

namespace {

const QLatin1Char separator('.');

/// Deeper paths than any server has: up to here an override of GetCachedDir answers for the directories above, which
/// takes stack for each component. What lies deeper is walked in a loop.
const int deepestOverriddenPath = 256;

bool isRoot(const QString &path)
{
    return path.isEmpty() || path == separator;
}

/// The path above; the empty one, which means the root, when there is no separator.
QString parentPath(const QString &path)
{
    return path.left(std::max(path.lastIndexOf(separator), 0));
}

/// The part after the last separator, all of it when there is none.
QString lastComponent(const QString &path)
{
    return path.mid(path.lastIndexOf(separator) + 1);
}

/// The object's IDispatch, empty for E_NOINTERFACE. By way of IUnknown, since the smart pointer takes a pointer of its
/// own type without asking the object.
IDispatchPtr queryDispatch(IUnknown *object)
{
    return IDispatchPtr(object);
}

IDispatchPtr fetchItem(const Orvex::IDirectory2Ptr &directory, LONG index)
{
    const Platform::Variant position(index);
    Platform::Variant item;
    const HRESULT result = directory->get_Item(position.get(), item.out());
    if (FAILED(result))
        _com_issue_errorex(result, directory, __uuidof(Orvex::IDirectory2));
    return queryDispatch(item.toDispatch());
}

/// What get_Name says, empty when it fails.
template<typename Interface>
QString nameOf(const Interface &object)
{
    Platform::Bstr name;
    return SUCCEEDED(object->get_Name(name.out())) ? name.toString() : QString();
}

/// The name of a directory's item, empty when it is neither a directory nor a queue.
QString itemName(const IDispatchPtr &item)
{
    const Orvex::IDirectory2Ptr directory = Dispatch2Dir(item);
    const Orvex::IQueue2Ptr queue = Dispatch2Queue(item);
    if (directory)
        return nameOf(directory);
    return queue ? nameOf(queue) : QString();
}

} // namespace

// ---- directories and queues -----------------------------------------------------------------------------------------

IDispatchPtr QuireCOM::GetCachedDir(const QString &path)
{
    IDispatchPtr handle;
    if (FindCachedDir(path, handle))
        return handle;
    if (isRoot(path))
        return GetDir(QStringLiteral("."));

    // Up to the nearest directory that is at hand, remembering the lengths of the paths passed...
    std::vector<int> missing;
    QString above = parentPath(path);
    for (; !AnswersForParent(above); above = parentPath(above))
        missing.push_back(above.size());

    // ... and down again. A level that fails leaves the next one to the server's own look-up.
    const auto emptyIfRaised = [](auto answer) {
        try {
            return answer();
        } catch (...) {
            return IDispatchPtr();
        }
    };
    handle = emptyIfRaised([&] { return GetCachedDir(above); });
    for (; !missing.empty(); missing.pop_back())
        handle = emptyIfRaised([&] { return FetchDir(path.left(missing.back()), handle); });
    return FetchDir(path, handle);
}

/// True when GetCachedDir gives the directory \a path without climbing further here: it is at hand, or an override
/// must have its say.
bool QuireCOM::AnswersForParent(const QString &path) const
{
    IDispatchPtr handle;
    if (isRoot(path) || FindCachedDir(path, handle))
        return true;
    return typeid(*this) != typeid(QuireCOM) && path.count(separator) < deepestOverriddenPath;
}

/// The handle of \a path, whose directory above is \a parent: by name among its items, else by the server's own
/// look-up.
IDispatchPtr QuireCOM::FetchDir(const QString &path, IDispatchPtr parent)
{
    try {
        if (const IDispatchPtr handle = FindBelow(path, parent))
            return handle;
    } catch (...) {
        // The walk is a short cut; whatever went wrong in it, the server is asked once more.
    }
    return GetDir(path);
}

IDispatchPtr QuireCOM::FindBelow(const QString &path, IDispatchPtr &parent)
{
    const Orvex::IDirectory2Ptr directory = Dispatch2Dir(parent);
    if (!directory)
        return IDispatchPtr();
    const long index = FindDirItemByName(lastComponent(path), parent);
    if (index < 0)
        return IDispatchPtr();
    const IDispatchPtr handle = fetchItem(directory, static_cast<LONG>(index));
    if (handle)
        AddDirToCache(path, handle);
    return handle;
}

long QuireCOM::FindDirItemByName(const QString &name, IDispatchPtr &parent)
{
    const Orvex::IDirectory2Ptr directory = Dispatch2Dir(parent);
    if (!directory)
        return -1;
    const QString wanted = lastComponent(name);
    for (LONG index = 0; index < std::numeric_limits<LONG>::max(); ++index) {
        const QString found = itemName(fetchItem(directory, index));
        if (found.isEmpty())
            return -1;
        const QString component = lastComponent(found);
        if (component.size() == wanted.size() && component.startsWith(wanted, Qt::CaseInsensitive))
            return index;
    }
    return -1;
}

IDispatchPtr QuireCOM::GetDir(const QString &path)
{
    if (!IsConnected())
        return IDispatchPtr();
    const QuireCOMMutex lock("QuireCOM::GetDir");
    const Platform::Bstr pathText(path);
    IDispatchPtr handle;
    const HRESULT result = m_signon->GetDirectory(pathText.get(), &handle);
    if (FAILED(result) || !handle)
        return IDispatchPtr();
    m_cache->AddDir(path, handle);
    return handle;
}

bool QuireCOM::FindCachedDir(const QString &path, IDispatchPtr &handle) const
{
    return m_cache && m_cache->FindDir(path, handle);
}

void QuireCOM::AddDirToCache(const QString &path, const IDispatchPtr &handle)
{
    const QuireCOMMutex lock("QuireCOM::AddDirToCache");
    if (m_cache)
        m_cache->AddDir(path, handle);
}

void QuireCOM::RemoveDirFromCache(const QString &path)
{
    const QuireCOMMutex lock("QuireCOM::RemoveDirFromCache");
    if (m_cache)
        m_cache->Remove(path);
}

// ---- stories --------------------------------------------------------------------------------------------------------

void QuireCOM::RemoveStoriesFromCache(const QString &path)
{
    const QuireCOMMutex lock("QuireCOM::RemoveStoriesFromCache");
    if (m_cache)
        m_cache->Remove(path);
}

void QuireCOM::AddStoryToCache(const QString &queuePath, const StoryID *id, const IDispatchPtr &handle)
{
    const QuireCOMMutex lock("QuireCOM::AddStoryToCache");
    if (m_cache && id)
        m_cache->AddStory(queuePath, id->part1, handle);
}

void QuireCOM::RemoveStoryFromCache(const QString &queuePath, const StoryID *id)
{
    const QuireCOMMutex lock("QuireCOM::RemoveStoryFromCache");
    if (m_cache && id)
        m_cache->RemoveStory(queuePath, id->part1);
}

IDispatchPtr QuireCOM::GetCachedStory(const QString &queuePath, const StoryID *id, bool cacheOnly)
{
    if (!id)
        return IDispatchPtr();
    IDispatchPtr handle;
    if (m_cache && m_cache->FindStory(queuePath, id->part1, handle))
        return handle;
    return cacheOnly ? IDispatchPtr() : GetStoryDirect(queuePath, id);
}

IDispatchPtr QuireCOM::GetStoryDirect(const QString &queuePath, const StoryID *id)
{
    if (!id || !IsConnected())
        return IDispatchPtr();
    const QuireCOMMutex lock("QuireCOM::GetStoryDirect");
    const Platform::Bstr path(queuePath);
    IDispatchPtr answer;
    const HRESULT result = m_signon->GetStory(path.get(), id->part1, 0, 0, &answer);
    if (FAILED(result) || !answer)
        return IDispatchPtr();
    const IDispatchPtr story = queryDispatch(answer);
    if (!story)
        return IDispatchPtr();
    AddStoryToCache(queuePath, id, story);
    return GetCachedStory(queuePath, id, true);
}

bool QuireCOM::DeleteStoryDirect(const QString &queuePath, const StoryID *id)
{
    if (!id || !IsConnected())
        return false;
    const QuireCOMMutex lock("QuireCOM::DeleteStoryDirect");
    const Platform::Bstr path(queuePath);
    return SUCCEEDED(m_signon->DeleteStory(path.get(), id->part1, id->part2, id->part3));
}

} // namespace Quire
