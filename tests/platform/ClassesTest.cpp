#include "ComFixture.h"
#include "CountedFactory.h"

namespace {

class Classes : public ComFixture
{
protected:
    CountedFactory factory;
};

/// Something that a failing function has to overwrite.
void *const rubbish = reinterpret_cast<void *>(0x10);

HRESULT create(void **object, REFIID iid = __uuidof(IUnknown))
{
    return CoCreateInstance(countedClass, nullptr, CLSCTX_INPROC_SERVER, iid, object);
}

HRESULT classObject(void **object, REFIID iid = __uuidof(IClassFactory))
{
    return CoGetClassObject(countedClass, CLSCTX_INPROC_SERVER, nullptr, iid, object);
}

} // namespace

TEST_F(Classes, RegisteringGivesACookieThatIsNotZero)
{
    const Registration registration(countedClass, &factory);
    EXPECT_EQ(registration.result(), S_OK);
    EXPECT_NE(registration.cookie(), 0u);
}

TEST_F(Classes, RegisteringReferencesTheFactoryUntilItIsRevoked)
{
    Registration registration(countedClass, &factory);
    EXPECT_GE(factory.references, 1);
    EXPECT_EQ(registration.revoke(), S_OK);
    EXPECT_EQ(factory.references, 0);
}

TEST_F(Classes, RegisteringNothingIsRefused)
{
    DWORD cookie = 0;
    EXPECT_EQ(CoRegisterClassObject(countedClass, nullptr, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie),
              E_INVALIDARG);
}

TEST_F(Classes, RegisteringWithoutAPlaceForTheCookieIsRefused)
{
    EXPECT_EQ(CoRegisterClassObject(countedClass, &factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, nullptr),
              E_INVALIDARG);
    EXPECT_EQ(factory.references, 0);
}

TEST_F(Classes, ClassObjectIsTheRegisteredFactory)
{
    const Registration registration(countedClass, &factory);
    IClassFactoryPtr found;
    EXPECT_EQ(classObject(reinterpret_cast<void **>(&found)), S_OK);
    EXPECT_EQ(found.GetInterfacePtr(), &factory);
}

TEST_F(Classes, ClassObjectWithoutTheInterfaceIsNull)
{
    const Registration registration(countedClass, &factory);
    void *found = rubbish;
    EXPECT_EQ(classObject(&found, __uuidof(IDispatch)), E_NOINTERFACE);
    EXPECT_EQ(found, nullptr);
}

TEST_F(Classes, ClassObjectOfAnUnknownClassIsNullAndNotRegistered)
{
    void *found = rubbish;
    EXPECT_EQ(classObject(&found), static_cast<HRESULT>(0x80040154));
    EXPECT_EQ(found, nullptr);
}

TEST_F(Classes, InstanceComesFromTheFactory)
{
    const Registration registration(countedClass, &factory);
    ISupportErrorInfoPtr made;
    EXPECT_EQ(create(reinterpret_cast<void **>(&made), __uuidof(ISupportErrorInfo)), S_OK);
    EXPECT_EQ(made.GetInterfacePtr(), factory.object.support());
    EXPECT_EQ(factory.calls, 1);
    EXPECT_EQ(factory.object.references, 1);
}

TEST_F(Classes, InstanceOfAnUnknownClassIsNullAndNotRegistered)
{
    void *made = rubbish;
    EXPECT_EQ(create(&made), static_cast<HRESULT>(0x80040154));
    EXPECT_EQ(made, nullptr);
}

TEST_F(Classes, InstanceWithoutTheInterfaceIsNull)
{
    const Registration registration(countedClass, &factory);
    void *made = rubbish;
    EXPECT_EQ(create(&made, __uuidof(IDispatch)), E_NOINTERFACE);
    EXPECT_EQ(made, nullptr);
}

TEST_F(Classes, InstanceOfAFailingFactoryIsNullWithItsResult)
{
    factory.result = E_ACCESSDENIED;
    const Registration registration(countedClass, &factory);
    void *made = rubbish;
    EXPECT_EQ(create(&made), E_ACCESSDENIED);
    EXPECT_EQ(made, nullptr);
}

TEST_F(Classes, RevokedClassIsNotRegistered)
{
    Registration registration(countedClass, &factory);
    registration.revoke();
    void *made = rubbish;
    EXPECT_EQ(create(&made), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(made, nullptr);
}

TEST_F(Classes, RevokingACookieThatNobodyHasFails)
{
    EXPECT_TRUE(FAILED(CoRevokeClassObject(0)));
}
