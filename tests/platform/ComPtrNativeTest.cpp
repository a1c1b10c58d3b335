#include "ComFixture.h"
#include "CountedFactory.h"

TEST(ComPtrNative, CreatingInAnyContextAsksForIUnknownFirst)
{
    CountedFactory factory;
    const Registration registration(countedClass, &factory);
    ISupportErrorInfoPtr pointer;
    EXPECT_EQ(pointer.CreateInstance(countedClass, nullptr, CLSCTX_ALL), S_OK);
    EXPECT_TRUE(factory.asked == IID_IUnknown);
}

TEST(ComPtrNative, CreatingInTheProcessAsksForTheInterfaceAtOnce)
{
    CountedFactory factory;
    const Registration registration(countedClass, &factory);
    ISupportErrorInfoPtr pointer;
    EXPECT_EQ(pointer.CreateInstance(countedClass, nullptr, CLSCTX_INPROC_SERVER), S_OK);
    EXPECT_TRUE(factory.asked == IID_ISupportErrorInfo);
}

TEST(ComPtrNative, CreatingInAnyContextFailsWhenTheFactoryGivesNoObject)
{
    CountedFactory factory;
    factory.givesNothing = true;
    const Registration registration(countedClass, &factory);
    ISupportErrorInfoPtr pointer;
    EXPECT_EQ(pointer.CreateInstance(countedClass, nullptr, CLSCTX_ALL), E_INVALIDARG);
    EXPECT_EQ(pointer.GetInterfacePtr(), nullptr);
}

TEST(ComPtrNative, CreatingInTheProcessIsEmptyWhenTheFactoryGivesNoObject)
{
    CountedFactory factory;
    factory.givesNothing = true;
    const Registration registration(countedClass, &factory);
    ISupportErrorInfoPtr pointer;
    EXPECT_EQ(pointer.CreateInstance(countedClass, nullptr, CLSCTX_INPROC_SERVER), S_OK);
    EXPECT_EQ(pointer.GetInterfacePtr(), nullptr);
}

namespace {

/// Does not tell who it is.
class Nameless final : public IUnknown
{
public:
    virtual ~Nameless() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void **object) override
    {
        *object = nullptr;
        return E_ACCESSDENIED;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
};

} // namespace

TEST(ComPtrNative, ComparingRaisesWhenAnObjectDoesNotTellWhoItIs)
{
    Nameless one;
    Nameless other;
    IUnknown *const first = &one;
    IUnknown *const second = &other;
    const IUnknownPtr pointer(first);
    EXPECT_TRUE(pointer == first);
    HRESULT raised = S_OK;
    try {
        static_cast<void>(pointer == second);
    } catch (const _com_error &error) {
        raised = error.Error();
    }
    EXPECT_EQ(raised, E_ACCESSDENIED);
}
