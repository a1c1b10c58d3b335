#include <quire/newsroom/server/StoryObject.h>

#include <quire/newsroom/model/Section.h>
#include <quire/newsroom/server/Results.h>
#include <quire/newsroom/server/Session.h>
#include <quire/platform/Bstr.h>

namespace Newsroom {

namespace {

const CallInterface StoryInterface{"IStory2", __uuidof(Orvex::IStory2)};

} // namespace

StoryObject::StoryObject(const std::shared_ptr<Session> &session, const StoryId &id)
    : ComObject(session->core(), ObjectKind::Story, StoryInterface)
    , m_session(session)
    , m_id(id)
{}

STDMETHODIMP StoryObject::get_StoryName(BSTR *name)
{
    return call("get_StoryName").out(name).within(m_session).run([&] {
        return read([&](const auto &story) { *name = core()->toText(story.name()); });
    });
}

STDMETHODIMP StoryObject::get_StoryUnique(BSTR *identifier)
{
    return call("get_StoryUnique").out(identifier).within(m_session).run([&] {
        return handOver(core()->model().story(m_id.part1),
                        [&](const StoryPointer &story) { *identifier = core()->toText(story->id().unique()); });
    });
}

STDMETHODIMP StoryObject::Unlock()
{
    return call("Unlock").within(m_session).run(
        [&] { return toResult(core()->model().unlock(m_session->id(), m_id.part1)); });
}

STDMETHODIMP StoryObject::get_FormName(BSTR *name)
{
    return call("get_FormName").out(name).within(m_session).run([&] {
        return handOver(core()->model().story(m_id.part1),
                        [&](const StoryPointer &story) { *name = core()->toText(story->formName()); });
    });
}

STDMETHODIMP StoryObject::get_Field(BSTR name, BSTR *value)
{
    return call("get_Field").in(name).out(value).within(m_session).run([&] {
        return read(
            [&](const auto &story) { *value = core()->toText(story.text().fieldValue(Platform::toQString(name))); });
    });
}

STDMETHODIMP StoryObject::put_Field(BSTR name, BSTR value)
{
    return call("put_Field").in(name).in(value).within(m_session).run([&] {
        return change(
            [&](StoryDraft &draft) { return draft.putField(Platform::toQString(name), Platform::toQString(value)); });
    });
}

STDMETHODIMP StoryObject::Save(VARIANT_BOOL flag)
{
    return call("Save").inTruth(flag).within(m_session).run([&] { return save(); });
}

STDMETHODIMP StoryObject::IsLocked(LONG lockType, VARIANT_BOOL *locked)
{
    return call("IsLocked").in(lockType).out(locked).within(m_session).run([&] {
        return handOver(core()->model().isLocked(m_id.part1, lockType),
                        [&](bool isLocked) { *locked = isLocked ? VARIANT_TRUE : VARIANT_FALSE; });
    });
}

STDMETHODIMP StoryObject::get_Section(LONG section, BSTR *text)
{
    return call("get_Section").in(section).out(text).within(m_session).run([&] {
        if (!isSectionSet(section))
            return E_INVALIDARG;
        return read([&](const auto &story) { *text = core()->toText(story.plain(section)); });
    });
}

STDMETHODIMP StoryObject::put_Section(LONG section, BSTR text)
{
    return call("put_Section").in(section).in(text).within(m_session).run([&] {
        return change([&](StoryDraft &draft) { return draft.putPlain(section, Platform::toQString(text)); });
    });
}

STDMETHODIMP StoryObject::get_SectionXml(LONG section, BSTR *text)
{
    return call("get_SectionXml").in(section).out(text).within(m_session).run([&] {
        if (!isSectionSet(section))
            return E_INVALIDARG;
        return read([&](const auto &story) { *text = core()->toText(story.markup(section)); });
    });
}

STDMETHODIMP StoryObject::put_SectionXml(LONG section, BSTR text)
{
    return call("put_SectionXml").in(section).in(text).within(m_session).run([&] {
        return change([&](StoryDraft &draft) { return draft.putMarkup(section, Platform::toQString(text)); });
    });
}

STDMETHODIMP StoryObject::Lock(LONG lockType, BSTR *holder)
{
    return call("Lock").in(lockType).out(holder).within(m_session).run([&] {
        const LockAnswer answer = core()->model().lock(m_session->id(), m_id.part1, lockType);
        if (!answer.holder.isEmpty())
            *holder = Platform::toBstr(answer.holder);
        return toResult(answer.refusal);
    });
}

/// Lets `use` read the story with this object's changes. Refused when the story is gone, whatever was put.
template<class Use>
HRESULT StoryObject::read(const Use &use) const
{
    const Answer<StoryPointer> story = core()->model().story(m_id.part1);
    if (!story.ok())
        return toResult(story.refusal);
    std::optional<StoryDraft> draft;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        draft = m_draft;
    }
    if (draft)
        use(*draft);
    else
        use(*story.value);
    return S_OK;
}

template<class Put>
HRESULT StoryObject::change(const Put &put)
{
    const Answer<StoryDraft> fresh = core()->model().edit(m_session->id(), m_id.part1);
    if (!fresh.ok())
        return toResult(fresh.refusal);
    const std::lock_guard<std::mutex> lock(m_mutex);
    StoryDraft draft = m_draft ? *m_draft : fresh.value;
    const Refusal refusal = put(draft);
    if (refusal != Refusal::None)
        return toResult(refusal);
    m_draft = draft;
    ++m_changes;
    return S_OK;
}

HRESULT StoryObject::save()
{
    // The newsroom tells of the change before it returns, so the mutex is not held meanwhile.
    std::optional<StoryDraft> draft;
    unsigned changes = 0;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        draft = m_draft;
        changes = m_changes;
    }
    if (!draft)
        return toResult(core()->model().mayEdit(m_session->id(), m_id.part1));
    const Answer<StoryPointer> saved = core()->model().save(m_session->id(), *draft);
    if (!saved.ok())
        return toResult(saved.refusal);
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_changes == changes)
        m_draft.reset();
    return S_OK;
}

} // namespace Newsroom
