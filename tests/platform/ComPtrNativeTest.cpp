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
