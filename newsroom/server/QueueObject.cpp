#include <quire/newsroom/server/QueueObject.h>

#include <quire/newsroom/server/ObjectList.h>
#include <quire/newsroom/server/Results.h>
#include <quire/newsroom/server/Session.h>
#include <quire/newsroom/server/StoryObject.h>
#include <quire/newsroom/server/VariantIndex.h>

namespace Newsroom {

namespace {

const CallInterface QueueInterface{"IQueue2", __uuidof(Orvex::IQueue2)};

} // namespace

QueueObject::QueueObject(const std::shared_ptr<Session> &session, LONG number)
    : ComObject(session->core(), ObjectKind::Queue, QueueInterface)
    , m_session(session)
    , m_number(number)
{}

STDMETHODIMP QueueObject::get_Item(VARIANT index, VARIANT *item)
{
    return call("get_Item").in(index).out(item).within(m_session).run([&] {
        LONG position = 0;
        const HRESULT result = readIndex(index, &position);
        if (FAILED(result))
            return result;
        return handOver(core()->model().storyAt(m_number, position), [&](const StoryPointer &story) {
            ObjectList::setObject(item, makeOwned<StoryObject>(m_session, story->id()));
        });
    });
}

STDMETHODIMP QueueObject::get_Count(LONG *count)
{
    return call("get_Count").out(count).within(m_session).run([&] {
        return handOver(entry(), [&](const Entry &found) { *count = found.count; });
    });
}

STDMETHODIMP QueueObject::GetList(LONG first, LONG count, VARIANT *list)
{
    return call("GetList").in(first).in(count).outList(list).within(m_session).run([&] {
        if (first < 0 || count < 0)
            return E_INVALIDARG;
        return handOver(core()->model().stories(m_number, first, count), [&](const QVector<StoryPointer> &stories) {
            std::vector<Owned<IDispatch>> objects;
            for (const StoryPointer &story : stories)
                objects.push_back(makeOwned<StoryObject>(m_session, story->id()));
            *list = ObjectList::make(objects, core()->options().listElements).release();
        });
    });
}

STDMETHODIMP QueueObject::get_Name(BSTR *name)
{
    return call("get_Name").out(name).within(m_session).run([&] {
        return handOver(entry(), [&](const Entry &found) { *name = core()->toText(found.path); });
    });
}

STDMETHODIMP QueueObject::get_Flags(LONG *flags1, LONG *flags2, LONG *flags3)
{
    return call("get_Flags").out(flags1).out(flags2).out(flags3).within(m_session).run([&] {
        return handOver(entry(), [&](const Entry &found) {
            *flags1 = found.flags.word1;
            *flags2 = found.flags.word2;
            *flags3 = found.flags.word3;
        });
    });
}

STDMETHODIMP QueueObject::get_QueueID(Orvex::QueueIdentifier *id)
{
    return call("get_QueueID").out(id).within(m_session).run([&] {
        return handOver(entry(), [&](const Entry &found) { *id = {found.number(), 0, 0, 0}; });
    });
}

STDMETHODIMP QueueObject::get_FormName(BSTR *name)
{
    return call("get_FormName").out(name).within(m_session).run([&] {
        return handOver(entry(), [&](const Entry &found) { *name = core()->toText(found.settings.formName); });
    });
}

STDMETHODIMP QueueObject::get_Update(VARIANT_BOOL *on)
{
    return call("get_Update").out(on).within(m_session).run([&] {
        return handOver(entry(),
                        [&](const Entry &) { *on = m_session->isWatching(m_number) ? VARIANT_TRUE : VARIANT_FALSE; });
    });
}

STDMETHODIMP QueueObject::put_Update(VARIANT_BOOL on)
{
    return call("put_Update").inTruth(on).within(m_session).run([&] {
        return handOver(entry(), [&](const Entry &) {
            m_session->watch(m_number, on != VARIANT_FALSE);
            if (on && core()->options().noticeOnUpdate)
                m_session->tellQueueChange(m_number);
        });
    });
}

STDMETHODIMP QueueObject::CreateStory(LONG position, VARIANT *story)
{
    return call("CreateStory").in(position).out(story).within(m_session).run([&] {
        return handOver(core()->model().createStory(m_session->id(), m_number, position),
                        [&](const StoryPointer &created) {
                            ObjectList::setObject(story, makeOwned<StoryObject>(m_session, created->id()));
                        });
    });
}

STDMETHODIMP QueueObject::Delete(VARIANT index)
{
    return call("Delete").in(index).within(m_session).run([&] {
        LONG position = 0;
        const HRESULT result = readIndex(index, &position);
        return FAILED(result) ? result : toResult(core()->model().deleteStoryAt(m_session->id(), m_number, position));
    });
}

STDMETHODIMP QueueObject::DeleteAll()
{
    return call("DeleteAll").within(m_session).run([&] {
        return toResult(core()->model().deleteAll(m_session->id(), m_number));
    });
}

Answer<Entry> QueueObject::entry() const
{
    return core()->model().queue(m_number);
}

} // namespace Newsroom
