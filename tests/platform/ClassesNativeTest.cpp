#include "ComFixture.h"
#include "CountedFactory.h"

#include <thread>

namespace {

HRESULT create(IUnknownPtr &made, DWORD context = CLSCTX_INPROC_SERVER)
{
    return CoCreateInstance(countedClass, nullptr, context, IID_IUnknown, reinterpret_cast<void **>(&made));
}

/// Tells how often it was run.
class RunnableObject final : public IRunnableObject
{
public:
    virtual ~RunnableObject() = default;

    LONG references = 0;
    int runs = 0;
    HRESULT result = S_OK;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void **object) override
    {
        *object = iid == IID_IRunnableObject ? this : nullptr;
        references += *object ? 1 : 0;
        return *object ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references); }
    ULONG STDMETHODCALLTYPE Release() override { return static_cast<ULONG>(--references); }
    HRESULT STDMETHODCALLTYPE GetRunningClass(LPCLSID) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Run(LPBINDCTX) override
    {
        ++runs;
        return result;
    }
    BOOL STDMETHODCALLTYPE IsRunning() override { return runs > 0; }
    HRESULT STDMETHODCALLTYPE LockRunning(BOOL, BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetContainedObject(BOOL) override { return E_NOTIMPL; }
};

} // namespace

TEST(ClassesNative, RevokingACookieThatNobodyHasSaysNotRegistered)
{
    EXPECT_EQ(CoRevokeClassObject(0), CO_E_OBJNOTREG);
}

TEST(ClassesNative, RevokingTwiceSaysNotRegistered)
{
    CountedFactory factory;
    Registration registration(countedClass, &factory);
    const DWORD cookie = registration.cookie();
    EXPECT_EQ(registration.revoke(), S_OK);
    EXPECT_EQ(CoRevokeClassObject(cookie), CO_E_OBJNOTREG);
}

TEST(ClassesNative, FirstOfTwoRegistrationsIsUsed)
{
    CountedFactory first;
    CountedFactory second;
    const Registration one(countedClass, &first);
    const Registration two(countedClass, &second);
    EXPECT_NE(one.cookie(), two.cookie());
    IUnknownPtr made;
    EXPECT_EQ(create(made), S_OK);
    EXPECT_EQ(first.calls, 1);
    EXPECT_EQ(second.calls, 0);
}

TEST(ClassesNative, SecondOfTwoRegistrationsIsUsedOnceTheFirstIsRevoked)
{
    CountedFactory first;
    CountedFactory second;
    Registration one(countedClass, &first);
    const Registration two(countedClass, &second);
    one.revoke();
    IUnknownPtr made;
    EXPECT_EQ(create(made), S_OK);
    EXPECT_EQ(first.calls, 0);
    EXPECT_EQ(second.calls, 1);
}

TEST(ClassesNative, SecondRegistrationForSingleUseIsRefused)
{
    CountedFactory factory;
    const Registration registration(countedClass, &factory);
    DWORD cookie = 1;
    EXPECT_EQ(CoRegisterClassObject(countedClass, &factory, CLSCTX_INPROC_SERVER, REGCLS_SINGLEUSE, &cookie),
              CO_E_OBJISREG);
    EXPECT_EQ(cookie, 0u);
}

TEST(ClassesNative, RegistrationForAnotherContextIsNotFound)
{
    CountedFactory factory;
    const Registration registration(countedClass, &factory);
    IUnknownPtr made;
    EXPECT_EQ(create(made, CLSCTX_LOCAL_SERVER), REGDB_E_CLASSNOTREG);
}

TEST(ClassesNative, ThreadThatSaysNoKindBecomesAnApartmentOfItsOwn)
{
    std::thread thread([] {
        EXPECT_EQ(CoInitialize(nullptr), S_OK);
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), RPC_E_CHANGED_MODE);
        CoUninitialize();
        EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
        CoUninitialize();
    });
    thread.join();
}

TEST(ClassesNative, ResultsNeedAPlace)
{
    EXPECT_EQ(CoGetClassObject(countedClass, CLSCTX_ALL, nullptr, IID_IUnknown, nullptr), E_INVALIDARG);
    EXPECT_EQ(CoCreateInstance(countedClass, nullptr, CLSCTX_ALL, IID_IUnknown, nullptr), E_POINTER);
}

TEST(ClassesNative, ClassesAreToldApart)
{
    CountedFactory factory;
    CountedFactory other;
    const Registration one(IID_IRunnableObject, &other);
    const Registration two(countedClass, &factory);
    IUnknownPtr made;
    EXPECT_EQ(create(made), S_OK);
    EXPECT_EQ(factory.calls, 1);
    EXPECT_EQ(other.calls, 0);
}

TEST(ClassesNative, RegistrationForSingleUseIsTakenWhenItIsTheFirst)
{
    CountedFactory factory;
    DWORD cookie = 0;
    EXPECT_EQ(CoRegisterClassObject(countedClass, &factory, CLSCTX_INPROC_SERVER, REGCLS_SINGLEUSE, &cookie), S_OK);
    IUnknownPtr made;
    EXPECT_EQ(create(made), S_OK);
    made = nullptr;
    EXPECT_EQ(CoRevokeClassObject(cookie), S_OK);
}

TEST(ClassesNative, ThreadCannotPassWhatIsReserved)
{
    int reserved = 0;
    EXPECT_EQ(CoInitializeEx(&reserved, COINIT_MULTITHREADED), E_INVALIDARG);
}

TEST(ClassesNative, NothingCannotBeRun)
{
    EXPECT_EQ(OleRun(nullptr), E_INVALIDARG);
}

TEST(ClassesNative, ObjectThatNeedNotBeRunIsLeftAlone)
{
    CountedObject object;
    EXPECT_EQ(OleRun(object.support()), S_OK);
    EXPECT_EQ(object.references, 0);
}

TEST(ClassesNative, ObjectThatMustBeRunIsRunAndTellsHowThatWent)
{
    RunnableObject object;
    object.result = E_ACCESSDENIED;
    EXPECT_EQ(OleRun(&object), E_ACCESSDENIED);
    EXPECT_EQ(object.runs, 1);
    EXPECT_EQ(object.references, 0);
}
