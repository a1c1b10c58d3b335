#include <quire/newsroom/server/ErrorInfo.h>

#include <quire/newsroom/model/Refusal.h>
#include <quire/newsroom/server/Owned.h>
#include <quire/platform/Bstr.h>

namespace Newsroom {
namespace ErrorInfo {

namespace {

struct Sentence
{
    HRESULT code;
    const char *text;
};

/// What is the server's to refuse; what is the newsroom's has its words in the model.
const Sentence Sentences[] = {
    {E_POINTER, "An out-value has no address."},
    {E_NOTIMPL, "The operation is reserved."},
    {E_OUTOFMEMORY, "Out of memory."},
    {E_UNEXPECTED, "Something went wrong inside the server."},
    {DISP_E_TYPEMISMATCH, "An argument has the wrong type."},
    {RPC_E_DISCONNECTED, "The newsroom is gone."},
    {CONNECT_E_NOCONNECTION, "There is no such connection."},
    {CONNECT_E_CANNOTCONNECT, "The sink does not have the interface of this connection point."},
    {CLASS_E_NOAGGREGATION, "Sign-on objects cannot be aggregated."},
};

} // namespace

QString text(HRESULT code)
{
    QString refusal = description(static_cast<Refusal>(code));
    if (!refusal.isEmpty())
        return refusal;
    for (const Sentence &sentence : Sentences) {
        if (sentence.code == code)
            return QLatin1String(sentence.text);
    }
    return QStringLiteral("Error 0x%1.").arg(static_cast<quint32>(code), 8, 16, QLatin1Char('0'));
}

void set(HRESULT code, REFIID iid) noexcept
try {
    ICreateErrorInfo *made = nullptr;
    if (FAILED(CreateErrorInfo(&made)))
        return;
    const Owned<ICreateErrorInfo> creator(made);
    creator->SetGUID(iid);
    creator->SetSource(Platform::Bstr(QStringLiteral("Orvex")).get());
    creator->SetDescription(Platform::Bstr(text(code)).get());
    void *queried = nullptr;
    if (FAILED(creator->QueryInterface(IID_IErrorInfo, &queried)))
        return;
    const Owned<IErrorInfo> info(static_cast<IErrorInfo *>(queried));
    SetErrorInfo(0, info.get());
} catch (...) { // NOLINT(bugprone-empty-catch): without memory for the sentence the code alone must do
}

} // namespace ErrorInfo
} // namespace Newsroom
