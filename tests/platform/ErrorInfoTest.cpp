#include "ComFixture.h"

#include <quire/platform/Bstr.h>

#include <thread>

namespace {

/// With an empty slot before and after each test.
class ErrorInfo : public ComFixture
{
protected:
    ErrorInfo()
    {
        EXPECT_EQ(CreateErrorInfo(&writer), S_OK);
        information = writer;
        SetErrorInfo(0, nullptr);
    }
    ~ErrorInfo() override { SetErrorInfo(0, nullptr); }

    ICreateErrorInfoPtr writer;
    IErrorInfoPtr information;
};

} // namespace

TEST_F(ErrorInfo, CreatedIsReadableThroughItsOtherInterface)
{
    EXPECT_NE(information.GetInterfacePtr(), nullptr);
    EXPECT_TRUE(information == writer);
}

TEST_F(ErrorInfo, CreatedHasNoDescription)
{
    Platform::Bstr description;
    EXPECT_EQ(information->GetDescription(description.out()), S_OK);
    EXPECT_EQ(SysStringLen(description.get()), 0u);
}

TEST_F(ErrorInfo, KeepsItsDescription)
{
    const Platform::Bstr text(QStringLiteral("No such story."));
    EXPECT_EQ(writer->SetDescription(text.get()), S_OK);
    Platform::Bstr description;
    EXPECT_EQ(information->GetDescription(description.out()), S_OK);
    EXPECT_EQ(description.toString(), QStringLiteral("No such story."));
}

TEST_F(ErrorInfo, KeepsItsSource)
{
    const Platform::Bstr text(QStringLiteral("Newsroom"));
    EXPECT_EQ(writer->SetSource(text.get()), S_OK);
    Platform::Bstr source;
    EXPECT_EQ(information->GetSource(source.out()), S_OK);
    EXPECT_EQ(source.toString(), QStringLiteral("Newsroom"));
}

TEST_F(ErrorInfo, KeepsItsHelpFileAndContext)
{
    const Platform::Bstr text(QStringLiteral("help.chm"));
    EXPECT_EQ(writer->SetHelpFile(text.get()), S_OK);
    EXPECT_EQ(writer->SetHelpContext(17), S_OK);
    Platform::Bstr file;
    DWORD context = 0;
    EXPECT_EQ(information->GetHelpFile(file.out()), S_OK);
    EXPECT_EQ(information->GetHelpContext(&context), S_OK);
    EXPECT_EQ(file.toString(), QStringLiteral("help.chm"));
    EXPECT_EQ(context, 17u);
}

TEST_F(ErrorInfo, KeepsItsInterface)
{
    EXPECT_EQ(writer->SetGUID(__uuidof(IDispatch)), S_OK);
    GUID guid = {};
    EXPECT_EQ(information->GetGUID(&guid), S_OK);
    EXPECT_TRUE(guid == __uuidof(IDispatch));
}

TEST_F(ErrorInfo, OfAThreadWithoutAnyIsNullAndFalse)
{
    IErrorInfoPtr found(information);
    EXPECT_EQ(GetErrorInfo(0, &found), S_FALSE);
    EXPECT_EQ(found.GetInterfacePtr(), nullptr);
}

TEST_F(ErrorInfo, SetIsWhatTheThreadGets)
{
    EXPECT_EQ(SetErrorInfo(0, information), S_OK);
    IErrorInfoPtr found;
    EXPECT_EQ(GetErrorInfo(0, &found), S_OK);
    EXPECT_TRUE(found == information);
}

TEST_F(ErrorInfo, GotIsGoneAfterwards)
{
    SetErrorInfo(0, information);
    IErrorInfoPtr found;
    GetErrorInfo(0, &found);
    EXPECT_EQ(GetErrorInfo(0, &found), S_FALSE);
}

TEST_F(ErrorInfo, SetReplacesWhatWasThere)
{
    ICreateErrorInfoPtr later;
    CreateErrorInfo(&later);
    SetErrorInfo(0, information);
    SetErrorInfo(0, IErrorInfoPtr(later));
    IErrorInfoPtr found;
    GetErrorInfo(0, &found);
    EXPECT_TRUE(found == later);
}

TEST_F(ErrorInfo, SetToNothingEmptiesTheSlot)
{
    SetErrorInfo(0, information);
    EXPECT_EQ(SetErrorInfo(0, nullptr), S_OK);
    IErrorInfoPtr found;
    EXPECT_EQ(GetErrorInfo(0, &found), S_FALSE);
}

TEST_F(ErrorInfo, OfOneThreadIsNotSeenByAnother)
{
    SetErrorInfo(0, information);
    HRESULT elsewhere = E_FAIL;
    std::thread([&elsewhere] {
        const Apartment apartment;
        IErrorInfoPtr found;
        elsewhere = GetErrorInfo(0, &found);
    }).join();
    EXPECT_EQ(elsewhere, S_FALSE);
    IErrorInfoPtr found;
    EXPECT_EQ(GetErrorInfo(0, &found), S_OK);
}
