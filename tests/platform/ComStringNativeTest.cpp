#include <gtest/gtest.h>

#include <quire/platform/Automation.h>
#include <quire/platform/Bstr.h>
#include <quire/platform/System.h>

#include <string>

namespace {

std::string local(const _bstr_t &text)
{
    const char *characters = text;
    return characters ? characters : "(null)";
}

BSTR newText()
{
    return SysAllocString(u"late");
}

} // namespace

TEST(ComStringNative, ComesFromLocalTextAndGoesBack)
{
    EXPECT_EQ(local(_bstr_t("desk")), "desk");
}

TEST(ComStringNative, NullStaysNull)
{
    EXPECT_EQ(local(_bstr_t()), "(null)");
    EXPECT_EQ(local(_bstr_t(static_cast<const char *>(nullptr))), "(null)");
    EXPECT_TRUE(!_bstr_t(static_cast<const OLECHAR *>(nullptr)));
    EXPECT_EQ(_bstr_t().copy(), nullptr);
}

TEST(ComStringNative, CharactersOutsideTheBasicPlaneComeFromWideText)
{
    const _bstr_t text(L"a\U0001F4F0");
    ASSERT_EQ(text.length(), 3u);
    EXPECT_EQ(Platform::toQString(text.copy(false)), QString::fromUtf8("a\xF0\x9F\x93\xB0"));
}

TEST(ComStringNative, IsAssignedEveryKindOfText)
{
    _bstr_t text;
    text = "eight";
    EXPECT_EQ(local(text), "eight");
    text = u"sixteen";
    EXPECT_EQ(local(text), "sixteen");
    text += _bstr_t(" bits");
    EXPECT_EQ(local(text), "sixteen bits");
}

TEST(ComStringNative, JoinsOnEitherSide)
{
    EXPECT_EQ(local("a" + _bstr_t("b")), "ab");
    EXPECT_EQ(local(u"a" + _bstr_t("b")), "ab");
}

TEST(ComStringNative, SortsNullFirstAndThenByCharacters)
{
    const _bstr_t none;
    const _bstr_t a("a");
    const _bstr_t b("b");
    EXPECT_TRUE(none < a);
    EXPECT_TRUE(a < b);
    EXPECT_TRUE(b > a);
    EXPECT_TRUE(a <= a);
    EXPECT_TRUE(b >= a);
    EXPECT_TRUE(a == _bstr_t("a"));
    EXPECT_TRUE(none == _bstr_t());
    EXPECT_TRUE(a != none);
}

TEST(ComStringNative, CopyIsTheCallersOwn)
{
    const _bstr_t text("mine");
    const BSTR copy = text.copy();
    EXPECT_NE(copy, text.copy(false));
    EXPECT_EQ(Platform::toQString(copy), QStringLiteral("mine"));
    SysFreeString(copy);
}

TEST(ComStringNative, AssignCopiesAndAttachTakesOver)
{
    const BSTR string = newText();
    _bstr_t text;
    text.Assign(string);
    EXPECT_NE(text.copy(false), string);
    text.Attach(string);
    EXPECT_EQ(text.copy(false), string);
}

TEST(ComStringNative, AddressTakesTheTextOfAnOutParameter)
{
    _bstr_t text("early");
    *text.GetAddress() = newText();
    EXPECT_EQ(local(text), "late");
}

TEST(ComStringNative, DetachHandsTheTextOver)
{
    _bstr_t text(newText(), false);
    const BSTR string = text.Detach();
    EXPECT_TRUE(!text);
    EXPECT_EQ(Platform::toQString(string), QStringLiteral("late"));
    SysFreeString(string);
}

TEST(ComStringNative, DetachRefusesASharedTextAndNone)
{
    _bstr_t text(newText(), false);
    const _bstr_t other = text;
    EXPECT_THROW(text.Detach(), _com_error);
    EXPECT_THROW(_bstr_t().Detach(), _com_error);
    EXPECT_EQ(local(other), "late");
}

TEST(ComStringNative, NullIsConvertedToNull)
{
    EXPECT_EQ(_com_util::ConvertStringToBSTR(nullptr), nullptr);
    EXPECT_EQ(_com_util::ConvertBSTRToString(nullptr), nullptr);
    EXPECT_TRUE(!_bstr_t(static_cast<const wchar_t *>(nullptr)));
}

TEST(ComStringNative, CopiesTheTextItIsMadeOf)
{
    const BSTR string = newText();
    const _bstr_t copy(string, true);
    EXPECT_NE(copy.copy(false), string);
    SysFreeString(string);
    EXPECT_EQ(local(copy), "late");
}

TEST(ComStringNative, LocalFormIsMadeOnce)
{
    const _bstr_t text("desk");
    const char *const first = text;
    const char *const second = text;
    EXPECT_EQ(first, second);
}

TEST(ComStringNative, NothingHasAPlaceForAText)
{
    _bstr_t text;
    text.GetBSTR() = newText();
    EXPECT_EQ(local(text), "late");
    EXPECT_EQ(text.GetBSTR(), text.copy(false));
}

TEST(ComStringNative, TextForWhichThereIsNoMemoryRaises)
{
    const _bstr_t text("desk");
    const auto raises = [](auto call) {
        Platform::failAllocation(1);
        HRESULT raised = S_OK;
        try {
            call();
        } catch (const _com_error &error) {
            raised = error.Error();
        }
        Platform::failAllocation(0);
        return raised == E_OUTOFMEMORY;
    };
    EXPECT_TRUE(raises([] { _bstr_t(u"desk"); }));
    EXPECT_TRUE(raises([&] { text.copy(); }));
    EXPECT_TRUE(raises([&] { text + text; }));
}
