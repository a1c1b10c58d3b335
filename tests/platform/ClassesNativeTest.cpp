#include "ComFixture.h"
#include "CountedFactory.h"

#include <thread>

namespace {

HRESULT create(IUnknownPtr &made, DWORD context = CLSCTX_INPROC_SERVER)
{
    return CoCreateInstance(countedClass, nullptr, context, IID_IUnknown, reinterpret_cast<void **>(&made));
}

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
