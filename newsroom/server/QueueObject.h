#pragma once

#include <quire/newsroom/server/ComObject.h>
#include <quire/newsroom/server/DispatchBase.h>

namespace Newsroom {

/// A queue as one session sees it: what the newsroom holds under its number at the time of each call.
class QueueObject final
    : public ComObject<DispatchBase<Orvex::IQueue2>, Orvex::IQueue2, Orvex::IQueue, IDispatch, ISupportErrorInfo>
{
public:
    QueueObject(const std::shared_ptr<Session> &session, LONG number);

    STDMETHODIMP get_Item(VARIANT index, VARIANT *item) override;
    STDMETHODIMP get_Count(LONG *count) override;
    STDMETHODIMP GetList(LONG first, LONG count, VARIANT *list) override;
    STDMETHODIMP get_Name(BSTR *name) override;
    STDMETHODIMP get_Flags(LONG *flags1, LONG *flags2, LONG *flags3) override;
    STDMETHODIMP get_QueueID(Orvex::QueueIdentifier *id) override;
    STDMETHODIMP get_FormName(BSTR *name) override;
    STDMETHODIMP get_Update(VARIANT_BOOL *on) override;
    STDMETHODIMP put_Update(VARIANT_BOOL on) override;
    STDMETHODIMP CreateStory(LONG position, VARIANT *story) override;
    STDMETHODIMP Delete(VARIANT index) override;
    STDMETHODIMP DeleteAll() override;

private:
    Answer<Entry> entry() const;

    const std::shared_ptr<Session> m_session;
    const LONG m_number;
};

} // namespace Newsroom
