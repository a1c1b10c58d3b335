#include <quire/tree/Queue.h>

#include <QMessageLogger>

#include <memory>

#include "../session/StoryIDText.h"
#include "../story/FormFields.h"
#include "../story/StoryLookup.h"
#include "ServerCall.h"
#include "WorkerPresence.h"
#include <quire/forms/FormCache.h>
#include <quire/platform/Bstr.h>
#include <quire/session/Dispatch2.h>
#include <quire/session/QuireCOM.h>
#include <quire/session/QuireCOMMutex.h>
#include <quire/story/Story.h>
#include <quire/tree/ListMutexLocker.h>

// What can be done with the stories of a queue, its form, and its reports.

namespace Quire {

namespace {

/// The queue \a name on the server, empty when there is none. Under the access lock.
Orvex::IQueue2Ptr findQueue(const QString &name)
{
    QuireCOM *const session = QuireCOM::TheQuireCOM;
    return session ? Dispatch2Queue(session->GetCachedDir(name)) : Orvex::IQueue2Ptr();
}

/// Reads the identifier of a story. Raises what the server refuses.
StoryID readID(const Orvex::IStory2Ptr &story)
{
    Platform::Bstr text;
    check(story->get_StoryUnique(text.out()), story);
    return toStoryID(text.view(), 10);
}

/// Keeps a story of the server's in the session's cache; false when \a handle is none. Under the access lock.
bool cacheStory(const QString &queueName, const IDispatchPtr &handle, StoryID *id)
{
    const Orvex::IStory2Ptr story = Dispatch2Story(handle);
    if (!story)
        return false;
    *id = readID(story);
    QuireCOM::TheQuireCOM->AddStoryToCache(queueName, id, handle);
    return true;
}

/// Drops the story from the session's cache if it tells its identifier.
void uncacheStory(const QString &queueName, const IDispatchPtr &handle)
{
    const Orvex::IStory2Ptr story = Dispatch2Story(handle);
    StoryID id{};
    if (story && readStoryID(story, &id))
        QuireCOM::TheQuireCOM->RemoveStoryFromCache(queueName, &id);
}

} // namespace

// ---- stories --------------------------------------------------------------------------------------------------------

Story *Queue::GetStory(const StoryID *id)
{
    if (!id)
        return nullptr;
    const int index = FindByAttribute(QLatin1String(Attr_Storyid), StoryID2String(*id, false));
    return index < 0 ? nullptr : GetStory(index);
}

Story *Queue::GetStory(int index)
{
    if (index < 0 || index >= u_Size() || !QuireCOM::TheQuireCOM)
        return nullptr;
    Orvex::IQueue2Ptr queue;
    {
        const QuireCOMMutex lock("Queue::GetStory:GetCachedDir");
        queue = findQueue(Name());
    }
    if (!queue || !IsOpenable(index))
        return nullptr;
    StoryID id{};
    {
        const QuireCOMMutex lock("Queue::GetStory:get_StoryUnique");
        if (!cacheStory(Name(), itemAt(queue, index), &id))
            return nullptr;
    }
    return new Story(Name(), &id);
}

/// There is such an item, and it is not marked as locked.
bool Queue::IsOpenable(int index)
{
    const ListMutexLocker lock("Queue::GetStory()", listMutex().get());
    const Item *const item = u_Nth(index);
    return item && item->FindAttr(QLatin1String(Attr_Lock)) < 0;
}

Story *Queue::CreateStory(int position)
{
    StoryID id{};
    {
        const QuireCOMMutex lock("Queue::CreateStory");
        const Orvex::IQueue2Ptr queue = findQueue(Name());
        if (!queue)
            return nullptr;
        Platform::Variant answer;
        check(queue->CreateStory(position, answer.out()), queue);
        if (!cacheStory(Name(), answer.toDispatch(), &id))
            return nullptr;
    }
    return new Story(Name(), &id);
}

bool Queue::Delete(int index)
{
    const QuireCOMMutex lock("Queue::Delete");
    const Orvex::IQueue2Ptr queue = findQueue(Name());
    if (!queue)
        return false;
    uncacheStory(Name(), itemAt(queue, index));
    return SUCCEEDED(queue->Delete(Platform::Variant(LONG{index}).get()));
}

bool Queue::DeleteAll()
{
    const QuireCOMMutex lock("Queue::DeleteAll");
    const Orvex::IQueue2Ptr queue = findQueue(Name());
    if (!queue)
        return false;
    const HRESULT result = queue->DeleteAll();
    QuireCOM::TheQuireCOM->RemoveStoriesFromCache(Name());
    return SUCCEEDED(result);
}

// ---- the form -------------------------------------------------------------------------------------------------------

// NOLINTNEXTLINE(performance-unnecessary-value-param): a reference of its own while the call lasts
FormData *Queue::GetFormA(IDispatchPtr object)
{
    const QuireCOMMutex lock("Queue::GetForm");
    const Orvex::IQueue2Ptr queue = Dispatch2Queue(object);
    if (!queue)
        return nullptr;
    Platform::Bstr name;
    check(queue->get_FormName(name.out()), queue);
    return FormCache::getForm(name.toString());
}

Field *Queue::FindField(const QString &name)
{
    return findFormField(GetFormA(LookUp(Name())), name);
}

void Queue::RetrieveFields(std::vector<Attribute> &out)
{
    out.clear(); // also when the server refuses
    out = formAttributes(GetFormA(LookUp(Name())));
}

// ---- reports --------------------------------------------------------------------------------------------------------

void Queue::SetUpdate(bool on)
{
    const QString name = Name();
    const qint32 queueId = m_queueId;
    // The server may take its time, and the queue may go meanwhile.
    WorkerPresence::Outside outside(m_presence);
    try {
        SwitchUpdate(name, queueId, on);
    } catch (...) {
        outside.comeBack(); // or else an override that catches what the server refuses would go on
        throw;
    }
    outside.comeBack();
}

void Queue::SwitchUpdate(const QString &name, qint32 queueId, bool on)
{
    const QuireCOMMutex lock("Queue::SetUpdate");
    const Orvex::IQueue2Ptr queue = findQueue(name);
    if (!queue)
        return;
    const HRESULT result = queue->put_Update(on ? VARIANT_TRUE : VARIANT_FALSE);
    const QMessageLogger log("quireDir", 0, "Queue::SetUpdate");
    log.debug("Queue Update %s: %d %s", on ? "ON" : "OFF", int{queueId}, qUtf8Printable(name));
    check(result, queue);
}

bool Queue::GetUpdate()
{
    const QuireCOMMutex lock("Queue::GetUpdate");
    const Orvex::IQueue2Ptr queue = findQueue(Name());
    if (!queue)
        return false;
    VARIANT_BOOL on = VARIANT_FALSE;
    check(queue->get_Update(&on), queue);
    return on != VARIANT_FALSE;
}

bool Queue::GetLiveRefresh()
{
    return m_liveRefresh;
}

} // namespace Quire
