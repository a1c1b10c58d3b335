#include "ComFixture.h"

#include <quire/platform/Bstr.h>
#include <quire/platform/System.h>

namespace {

class ErrorInfoNative : public ComFixture
{
protected:
    ErrorInfoNative()
    {
        EXPECT_EQ(CreateErrorInfo(&writer), S_OK);
        information = writer;
    }
    ~ErrorInfoNative() override
    {
        Platform::failAllocation(0);
        SetErrorInfo(0, nullptr);
    }

    ICreateErrorInfoPtr writer;
    IErrorInfoPtr information;
};

} // namespace

TEST_F(ErrorInfoNative, ResultsNeedAPlace)
{
    EXPECT_EQ(information->GetGUID(nullptr), E_INVALIDARG);
    EXPECT_EQ(information->GetSource(nullptr), E_INVALIDARG);
    EXPECT_EQ(information->GetDescription(nullptr), E_INVALIDARG);
    EXPECT_EQ(information->GetHelpFile(nullptr), E_INVALIDARG);
    EXPECT_EQ(information->GetHelpContext(nullptr), E_INVALIDARG);
    EXPECT_EQ(CreateErrorInfo(nullptr), E_INVALIDARG);
    EXPECT_EQ(GetErrorInfo(0, nullptr), E_INVALIDARG);
    EXPECT_EQ(information->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(ErrorInfoNative, ReservedArgumentsAreRefusedAndChangeNothing)
{
    SetErrorInfo(0, information);
    EXPECT_EQ(SetErrorInfo(1, nullptr), E_INVALIDARG);
    IErrorInfo *found = nullptr;
    EXPECT_EQ(GetErrorInfo(1, &found), E_INVALIDARG);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(GetErrorInfo(0, &found), S_OK);
    EXPECT_EQ(found, information.GetInterfacePtr());
    IErrorInfoPtr(found, false);
}

TEST_F(ErrorInfoNative, IsAskedForEachOfItsInterfacesAndForNoOther)
{
    const IUnknownPtr unknown = information;
    const ICreateErrorInfoPtr back = information;
    EXPECT_TRUE(unknown == information);
    EXPECT_EQ(back.GetInterfacePtr(), writer.GetInterfacePtr());
    void *object = &writer;
    EXPECT_EQ(information->QueryInterface(IID_IDispatch, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
}

TEST_F(ErrorInfoNative, TextForWhichThereIsNoMemoryIsNotKept)
{
    OLECHAR text[] = u"No such story.";
    Platform::failAllocation(1);
    EXPECT_EQ(writer->SetDescription(text), E_OUTOFMEMORY);
    Platform::Bstr description;
    EXPECT_EQ(information->GetDescription(description.out()), S_OK);
    EXPECT_TRUE(description.isNull());
}

TEST_F(ErrorInfoNative, TextForWhichThereIsNoMemoryIsNotGiven)
{
    OLECHAR text[] = u"No such story.";
    ASSERT_EQ(writer->SetDescription(text), S_OK);
    Platform::Bstr description;
    Platform::failAllocation(1);
    EXPECT_EQ(information->GetDescription(description.out()), E_OUTOFMEMORY);
    EXPECT_TRUE(description.isNull());
}
