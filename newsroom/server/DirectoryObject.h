#pragma once

#include <quire/newsroom/server/ComObject.h>
#include <quire/newsroom/server/DispatchBase.h>

namespace Newsroom {

/// A directory as one session sees it: what the newsroom holds at its path at the time of each call.
class DirectoryObject final
    : public ComObject<DispatchBase<Orvex::IDirectory2>, Orvex::IDirectory2, IDispatch, ISupportErrorInfo>
{
public:
    DirectoryObject(const std::shared_ptr<Session> &session, QString path);

    STDMETHODIMP get_Item(VARIANT index, VARIANT *item) override;
    STDMETHODIMP get_Count(LONG *count) override;
    STDMETHODIMP GetList(LONG first, LONG count, VARIANT *list) override;
    STDMETHODIMP get_Name(BSTR *name) override;
    STDMETHODIMP get_Flags(LONG *flags1, LONG *flags2, LONG *flags3) override;

private:
    Answer<Entry> entry() const;

    const std::shared_ptr<Session> m_session;
    const QString m_path;
};

} // namespace Newsroom
