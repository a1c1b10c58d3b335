#pragma once

#include <mutex>
#include <optional>

#include <quire/newsroom/server/ComObject.h>
#include <quire/newsroom/server/DispatchBase.h>

namespace Newsroom {

/// A story as one session sees it, with the changes that were put through this object and not saved yet. They go with
/// the object; other objects of the same story do not see them.
class StoryObject final : public ComObject<DispatchBase<Orvex::IStory2>, Orvex::IStory2, IDispatch, ISupportErrorInfo>
{
public:
    StoryObject(const std::shared_ptr<Session> &session, const StoryId &id);

    STDMETHODIMP get_StoryName(BSTR *name) override;
    STDMETHODIMP get_StoryUnique(BSTR *identifier) override;
    STDMETHODIMP Unlock() override;
    STDMETHODIMP get_FormName(BSTR *name) override;
    STDMETHODIMP get_Field(BSTR name, BSTR *value) override;
    STDMETHODIMP put_Field(BSTR name, BSTR value) override;
    STDMETHODIMP Save(VARIANT_BOOL flag) override;
    STDMETHODIMP IsLocked(LONG lockType, VARIANT_BOOL *locked) override;
    STDMETHODIMP get_Section(LONG section, BSTR *text) override;
    STDMETHODIMP put_Section(LONG section, BSTR text) override;
    STDMETHODIMP get_SectionXml(LONG section, BSTR *text) override;
    STDMETHODIMP put_SectionXml(LONG section, BSTR text) override;
    STDMETHODIMP Lock(LONG lockType, BSTR *holder) override;

private:
    template<class Use>
    HRESULT read(const Use &use) const;
    template<class Put>
    HRESULT change(const Put &put);
    HRESULT save();

    const std::shared_ptr<Session> m_session;
    const StoryId m_id;

    mutable std::mutex m_mutex; // guards what follows; a leaf
    std::optional<StoryDraft> m_draft;
    unsigned m_changes = 0; // counts the puts, to see whether there was one during a save
};

} // namespace Newsroom
