#pragma once

#include <mutex>

#include <quire/newsroom/server/ComObject.h>
#include <quire/newsroom/server/ConnectionPoint.h>
#include <quire/newsroom/server/DispatchBase.h>

namespace Newsroom {

class Session;

/// What the sign-on object implements.
class SignonBase : public DispatchBase<Orvex::ISignon4>, public IConnectionPointContainer
{
protected:
    ~SignonBase() = default;
};

/// The sign-on object: one client's way into the newsroom, and the container of its connection points.
///
/// Any number of them share one newsroom. Its last Release ends the session and lets the sinks go.
class SignonObject final
    : public ComObject<SignonBase, Orvex::ISignon4, IDispatch, ISupportErrorInfo, IConnectionPointContainer>
{
public:
    static Owned<SignonObject> make(const std::shared_ptr<ServerCore> &core);

    SignonObject(const std::shared_ptr<ServerCore> &core, const std::shared_ptr<Connections> &connections);
    SignonObject(const SignonObject &) = delete;
    SignonObject &operator=(const SignonObject &) = delete;

    STDMETHODIMP Reserved1() override;
    STDMETHODIMP Disconnect() override;
    STDMETHODIMP get_Connected(VARIANT_BOOL *connected) override;
    STDMETHODIMP Reserved4() override;
    STDMETHODIMP Reserved5() override;
    STDMETHODIMP GetDirectory(BSTR path, IDispatch **directory) override;
    STDMETHODIMP Search(BSTR query, LONG *searchId) override;
    STDMETHODIMP StopSearch(LONG searchId) override;
    STDMETHODIMP GetStory(BSTR queuePath, LONG number, LONG zero1, LONG zero2, IDispatch **story) override;
    STDMETHODIMP DeleteStory(BSTR queuePath, LONG part1, LONG part2, LONG part3) override;
    STDMETHODIMP LoadBlob(BSTR name, SAFEARRAY **data, LONG *value) override;
    STDMETHODIMP SaveBlob(BSTR name, SAFEARRAY *data, LONG *value) override;
    STDMETHODIMP DeleteBlob(BSTR name) override;
    STDMETHODIMP GetSystemForm(BSTR name, BSTR *form) override;
    STDMETHODIMP Reserved15() override;
    STDMETHODIMP get_ServerName(BSTR *name) override;
    STDMETHODIMP GetUserInfo(BSTR *text1, BSTR *text2, BSTR *text3, BSTR *text4, LONG *number1, LONG *number2) override;
    STDMETHODIMP LoadUserBlob(SAFEARRAY **data, LONG *value) override;
    STDMETHODIMP SaveUserBlob(SAFEARRAY *data, LONG *value) override;
    STDMETHODIMP get_SysReadRate(LONG *rate) override;
    STDMETHODIMP get_SysWordLength(LONG *length) override;
    STDMETHODIMP Connect(BSTR user, BSTR password, BSTR server, LONG option) override;

    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints **points) override;
    STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint **point) override;

private:
    ~SignonObject() override;

    std::shared_ptr<Session> session() const;
    std::shared_ptr<Session> takeSession();
    HRESULT connect(const QString &user, const QString &password, const QString &server);
    HRESULT reserved(const char *operation);

    const std::shared_ptr<Connections> m_connections;
    ConnectionPoint m_fast;
    ConnectionPoint m_fast2;

    mutable std::mutex m_mutex; // guards what follows; a leaf
    std::shared_ptr<Session> m_session;
};

} // namespace Newsroom
