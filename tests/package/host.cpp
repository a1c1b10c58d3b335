// The smallest honest host: reads and writes an exported setting, catches what the library raises, makes a model, signs
// on to the stand-in and walks to the root. Exit code 0 when all of that works.

#include <cstdio>

#include <quire/Quire.h>
#include <quire/models/DirectoryModel.h>
#include <quire/newsroom/Newsroom.h>

namespace {

int fail(const char *what)
{
    std::fprintf(stderr, "host: %s\n", what);
    return 1;
}

bool raisesPointerError(Quire::QuireCOM *session)
{
    try {
        session->Search(QStringLiteral("{[S].*}((word))"));
    } catch (const _com_error &error) {
        return error.Error() == E_POINTER;
    }
    return false;
}

int signOnAndWalk()
{
    auto *session = Quire::QuireCOM::GetQuireCOM(true);
    if (!session || !session->IsLoaded())
        return fail("the stand-in is not loaded");
    const long result = session->Connect(QString(), QStringLiteral("journalist"), QStringLiteral("news"), 0);
    if (FAILED(static_cast<HRESULT>(result)))
        return fail(qPrintable(Quire::getErrorString(result, true)));
    if (!Quire::Dispatch2Dir(IDispatchPtr(session->GetCachedDir(QStringLiteral(".")))))
        return fail("the root is not a directory");
    return 0;
}

} // namespace

int main()
{
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);

    Quire::QuireCOM::sUseUnicodeInterface = false;
    if (Quire::QuireCOM::GetDLLName() != QStringLiteral("OrvexCOM.dll"))
        return fail("a setting written by the host does not reach the library");
    Quire::QuireCOM::SetUnicode(true);
    if (!Quire::QuireCOM::sUseUnicodeInterface)
        return fail("a setting written by the library does not reach the host");

    if (!raisesPointerError(Quire::QuireCOM::GetQuireCOM(false)))
        return fail("an error raised by the library is not caught in the host");

    if (Quire::DirectoryModel().rowCount() != 0)
        return fail("a model of nothing has rows");

    Newsroom::Server server(Newsroom::Model::fromText(QStringLiteral("user journalist password=news\n"
                                                                     "directory NEWS\n"
                                                                     "  queue TODAY\n")));
    const Newsroom::Registration registration = server.registerClass();
    const int code = signOnAndWalk();
    Quire::QuireCOM::UnloadCOM();
    if (code == 0)
        std::puts("host: all well");
    return code;
}
