#include "StoryLookup.h"

#include <limits>

#include "../session/StoryIDText.h"
#include <quire/platform/Bstr.h>
#include <quire/platform/Variant.h>
#include <quire/session/Dispatch2.h>
#include <quire/session/QuireCOM.h>
#include <quire/session/QuireCOMMutex.h>

namespace Quire {

namespace {

/// An entry of a queue: the handle as the server gave it, and the story that it is.
struct Entry
{
    IDispatchPtr handle;
    Orvex::IStory2Ptr story;
};

/// The entry at \a position; without a story when the server gives none. Raises what the server answers.
Entry entryAt(const Orvex::IQueue2Ptr &queue, int position)
{
    Platform::Variant item;
    const HRESULT result = queue->get_Item(Platform::Variant::ofInt(position).get(), item.out());
    if (result == E_NOINTERFACE)
        return {};
    if (FAILED(result))
        _com_issue_errorex(result, queue, __uuidof(Orvex::IQueue2));
    const IDispatchPtr handle = item.toDispatch();
    return {handle, Dispatch2Story(handle)};
}

/// A story that is passed over is kept unless it differs in one of the two later parts alone: that may be the wanted
/// story in another version.
bool isWorthCaching(SID_Diff_t difference)
{
    return difference == SID_FirstDiffers || difference == SID_Different;
}

/// Searches the queue from its beginning up to the first position that gives no story. The stories passed over are kept
/// under their own identifiers.
Entry search(QuireCOM &session, const QString &path, const Orvex::IQueue2Ptr &queue, StoryID *wanted)
{
    for (int position = 0; position < std::numeric_limits<int>::max(); ++position) {
        Entry entry = entryAt(queue, position);
        if (!entry.story)
            break;
        StoryID found{};
        if (!readStoryID(entry.story, &found))
            continue;
        const SID_Diff_t difference = CmpStoryID(wanted, &found);
        if (difference == SID_Identical)
            return entry;
        if (isWorthCaching(difference))
            session.AddStoryToCache(path, &found, entry.handle);
    }
    return {};
}

/// The entry at \a index if it is the wanted story. Unlike in a search, another story is kept under the identifier that
/// was asked for.
Orvex::IStory2Ptr expectedAt(QuireCOM &session, const QString &path, const Orvex::IQueue2Ptr &queue, int index,
                             StoryID *wanted)
{
    const Entry entry = entryAt(queue, index);
    StoryID found{};
    if (!entry.story || !readStoryID(entry.story, &found))
        return {};
    const SID_Diff_t difference = CmpStoryID(wanted, &found);
    if (difference == SID_Identical)
        return entry.story;
    if (isWorthCaching(difference))
        session.AddStoryToCache(path, wanted, entry.handle);
    return {};
}

Orvex::IStory2Ptr findStoryAt(QuireCOM &session, const QString &path, StoryID *wanted, int index, bool *notFound)
{
    const Orvex::IQueue2Ptr queue = Dispatch2Queue(session.GetCachedDir(path));
    if (!queue)
        return {};
    if (index >= 0) {
        const Orvex::IStory2Ptr story = expectedAt(session, path, queue, index, wanted);
        if (story)
            return story;
    }
    if (notFound) {
        *notFound = true;
        return {};
    }
    return search(session, path, queue, wanted).story;
}

} // namespace

bool readStoryID(const Orvex::IStory2Ptr &story, StoryID *id)
{
    Platform::Bstr text;
    if (FAILED(story->get_StoryUnique(text.out())))
        return false;
    *id = toStoryID(text.view(), 10);
    return true;
}

IDispatchPtr lookupStory(const QString &path, StoryID *id)
{
    const QuireCOMMutex lock("Orvex GetStory");
    QuireCOM *const session = QuireCOM::TheQuireCOM;
    if (!session)
        return {};
    try {
        const Orvex::IQueue2Ptr queue = Dispatch2Queue(session->GetCachedDir(path));
        const IDispatchPtr found = queue ? search(*session, path, queue, id).handle : IDispatchPtr();
        return found ? found : session->GetStoryDirect(path, id);
    } catch (...) {
        return {};
    }
}

Orvex::IStory2Ptr lookupStoryAt(const QString &path, StoryID id, int index, bool *notFound)
{
    if (notFound)
        *notFound = false;
    QuireCOM *const session = QuireCOM::TheQuireCOM;
    if (!session)
        return {};
    const QuireCOMMutex lock("Orvex GetStory");
    try {
        return findStoryAt(*session, path, &id, index, notFound);
    } catch (...) {
        return {};
    }
}

} // namespace Quire
