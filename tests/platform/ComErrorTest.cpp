#include "ComFixture.h"
#include "CountedObject.h"

#include <quire/platform/Bstr.h>

namespace {

class ComError : public ComFixture
{
protected:
    ComError()
    {
        ICreateErrorInfoPtr writer;
        CreateErrorInfo(&writer);
        const Platform::Bstr text(QStringLiteral("The folder is locked."));
        writer->SetDescription(text.get());
        information = writer;
        SetErrorInfo(0, nullptr);
    }
    ~ComError() override { SetErrorInfo(0, nullptr); }

    /// What is attached to the error that _com_issue_errorex raises for `from`.
    static IErrorInfoPtr attached(IUnknown *from)
    {
        try {
            _com_issue_errorex(E_FAIL, from, __uuidof(IConnectionPointContainer));
        } catch (const _com_error &error) {
            return IErrorInfoPtr(error.ErrorInfo(), false);
        }
        ADD_FAILURE() << "nothing was raised";
        return IErrorInfoPtr();
    }

    IErrorInfoPtr information;
    CountedObject object;
};

std::string textOf(_bstr_t text)
{
    return Platform::toQString(text.GetBSTR()).toStdString();
}

} // namespace

TEST_F(ComError, TellsItsCode)
{
    EXPECT_EQ(_com_error(E_ACCESSDENIED).Error(), E_ACCESSDENIED);
}

TEST_F(ComError, WithoutInformationHasNone)
{
    EXPECT_EQ(_com_error(E_FAIL).ErrorInfo(), nullptr);
}

TEST_F(ComError, WithoutInformationHasNoDescription)
{
    EXPECT_EQ(_com_error(E_FAIL).Description().length(), 0u);
}

TEST_F(ComError, WithInformationTellsItsDescription)
{
    const _com_error error(E_FAIL, information, true);
    EXPECT_EQ(textOf(error.Description()), "The folder is locked.");
}

TEST_F(ComError, HandsItsInformationOutWithAReference)
{
    const _com_error error(E_FAIL, information, true);
    const IErrorInfoPtr handedOut(error.ErrorInfo(), false);
    EXPECT_EQ(handedOut.GetInterfacePtr(), information.GetInterfacePtr());
}

TEST_F(ComError, CopySharesCodeAndInformation)
{
    const _com_error error(E_ACCESSDENIED, information, true);
    const _com_error copy(error); // NOLINT(performance-unnecessary-copy-initialization): it is what is tested
    EXPECT_EQ(copy.Error(), E_ACCESSDENIED);
    EXPECT_EQ(textOf(copy.Description()), "The folder is locked.");
}

TEST_F(ComError, CopyOutlivesTheOriginal)
{
    _com_error copy(E_FAIL);
    {
        const _com_error error(E_ACCESSDENIED, information, true);
        copy = error;
    }
    EXPECT_EQ(copy.Error(), E_ACCESSDENIED);
    EXPECT_EQ(textOf(copy.Description()), "The folder is locked.");
}

TEST_F(ComError, IssuedIsRaisedWithItsCode)
{
    EXPECT_EQ(raisedBy([] { _com_issue_error(E_OUTOFMEMORY); }), E_OUTOFMEMORY);
}

TEST_F(ComError, IssuedForAnInterfaceIsRaisedWithItsCode)
{
    EXPECT_EQ(raisedBy([this] { _com_issue_errorex(E_ABORT, object.support(), __uuidof(IUnknown)); }), E_ABORT);
}

TEST_F(ComError, IssuedForAnObjectThatSupportsInformationCarriesTheThreadsOne)
{
    SetErrorInfo(0, information);
    EXPECT_TRUE(attached(object.support()) == information);
    EXPECT_EQ(object.references, 0);
}

TEST_F(ComError, IssuedForAnObjectThatDoesNotSupportInformationCarriesNone)
{
    object.supportResult = S_FALSE;
    SetErrorInfo(0, information);
    EXPECT_EQ(attached(object.support()).GetInterfacePtr(), nullptr);
    EXPECT_EQ(object.references, 0);
}

TEST_F(ComError, IssuedForAnObjectThatCannotBeAskedCarriesNone)
{
    SetErrorInfo(0, information);
    EXPECT_EQ(attached(information).GetInterfacePtr(), nullptr);
}

TEST_F(ComError, IssuedWithoutAnObjectCarriesNone)
{
    SetErrorInfo(0, information);
    EXPECT_EQ(attached(nullptr).GetInterfacePtr(), nullptr);
}

TEST_F(ComError, IssuedWhenTheThreadHasNoInformationCarriesNone)
{
    EXPECT_EQ(attached(object.support()).GetInterfacePtr(), nullptr);
}

TEST_F(ComError, TextOfAWideLiteralIsThatText)
{
    EXPECT_EQ(textOf(_bstr_t(L"caf\u00e9")), QStringLiteral("caf\u00e9").toStdString());
}
