#include "CountedDispatch.h"

#include <gtest/gtest.h>

#include <quire/platform/Bstr.h>
#include <quire/platform/SafeArray.h>
#include <quire/platform/Variant.h>

#include <cstring>
#include <utility>

using Platform::Bstr;
using Platform::SafeArray;
using Platform::Variant;

namespace {

/// A variant as a source of a copy, which MinGW's header takes without const.
VARIANT *readable(const Variant &variant)
{
    return const_cast<VARIANT *>(&variant.get()); // NOLINT(cppcoreguidelines-pro-type-const-cast): see above
}

Variant ofText(const char *text)
{
    Variant variant;
    VARIANT *const place = variant.out();
    V_VT(place) = VT_BSTR;
    V_BSTR(place) = Bstr(QString::fromUtf8(text)).release();
    return variant;
}

QString textOf(const Variant &variant)
{
    return Platform::toQString(V_BSTR(&variant.get()));
}

Variant ofObject(IDispatch *object, VARTYPE type)
{
    Variant variant;
    VARIANT *const place = variant.out();
    V_VT(place) = type;
    V_DISPATCH(place) = object;
    if (object)
        object->AddRef();
    return variant;
}

Variant ofReference(void *target, VARTYPE type)
{
    Variant variant;
    VARIANT *const place = variant.out();
    V_VT(place) = static_cast<VARTYPE>(type | VT_BYREF);
    V_BYREF(place) = target;
    return variant;
}

Variant ofByteArray()
{
    Variant variant;
    VARIANT *const place = variant.out();
    V_VT(place) = VT_ARRAY | VT_UI1;
    V_ARRAY(place) = SafeArray::ofBytes("abc", 3).release();
    return variant;
}

} // namespace

// ---- clearing -------------------------------------------------------------------------------------------------------

TEST(Variant, IsEmptyAfterInit)
{
    VARIANT variant{};
    V_VT(&variant) = VT_I4;
    VariantInit(&variant);
    EXPECT_EQ(V_VT(&variant), VT_EMPTY);
}

TEST(Variant, ClearedBecomesEmpty)
{
    VARIANT variant = Variant(7).release();
    EXPECT_EQ(VariantClear(&variant), S_OK);
    EXPECT_EQ(V_VT(&variant), VT_EMPTY);
}

TEST(Variant, ClearedReleasesItsDispatch)
{
    CountedDispatch object;
    VARIANT variant = ofObject(&object, VT_DISPATCH).release();
    ASSERT_EQ(object.references, 1);
    EXPECT_EQ(VariantClear(&variant), S_OK);
    EXPECT_EQ(object.references, 0);
}

TEST(Variant, ClearedReleasesItsUnknown)
{
    CountedDispatch object;
    VARIANT variant = ofObject(&object, VT_UNKNOWN).release();
    EXPECT_EQ(VariantClear(&variant), S_OK);
    EXPECT_EQ(object.references, 0);
}

TEST(Variant, ClearedOfANullObjectSucceeds)
{
    VARIANT variant = ofObject(nullptr, VT_DISPATCH).release();
    EXPECT_EQ(VariantClear(&variant), S_OK);
}

TEST(Variant, ClearedDoesNotReleaseWhatItRefersTo)
{
    CountedDispatch object;
    object.AddRef();
    IDispatch *pointer = &object;
    VARIANT variant = ofReference(&pointer, VT_DISPATCH).release();
    EXPECT_EQ(VariantClear(&variant), S_OK);
    EXPECT_EQ(object.references, 1);
    EXPECT_EQ(V_VT(&variant), VT_EMPTY);
}

TEST(Variant, ClearedDoesNotFreeTheTextItRefersTo)
{
    const Bstr text(QStringLiteral("text"));
    BSTR pointer = text.get();
    VARIANT variant = ofReference(&pointer, VT_BSTR).release();
    EXPECT_EQ(VariantClear(&variant), S_OK);
    EXPECT_EQ(text.toString(), QStringLiteral("text"));
}

#ifndef _WIN32 // Wine 8 clears it all the same.
TEST(Variant, ClearedWithALockedArrayStays)
{
    VARIANT variant = ofByteArray().release();
    ASSERT_EQ(SafeArrayLock(V_ARRAY(&variant)), S_OK);
    EXPECT_EQ(VariantClear(&variant), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(V_VT(&variant), VT_ARRAY | VT_UI1);
    SafeArrayUnlock(V_ARRAY(&variant));
    EXPECT_EQ(VariantClear(&variant), S_OK);
}
#endif

TEST(Variant, OfATypeThatDoesNotExistCannotBeCleared)
{
    for (const int type : {15, 24, 999, VT_VECTOR | VT_I4, VT_BYREF | VT_EMPTY, VT_ARRAY | VT_NULL}) {
        VARIANT variant = {};
        V_VT(&variant) = static_cast<VARTYPE>(type);
        EXPECT_EQ(VariantClear(&variant), DISP_E_BADVARTYPE) << type;
    }
}

// ---- copying --------------------------------------------------------------------------------------------------------

TEST(Variant, CopiedTextIsADifferentString)
{
    const Variant source = ofText("text");
    Variant copy;
    ASSERT_EQ(VariantCopy(copy.out(), readable(source)), S_OK);
    EXPECT_NE(V_BSTR(&copy.get()), V_BSTR(&source.get()));
    EXPECT_EQ(textOf(copy), QStringLiteral("text"));
}

TEST(Variant, CopiedArrayIsADifferentArray)
{
    const Variant source = ofByteArray();
    Variant copy;
    ASSERT_EQ(VariantCopy(copy.out(), readable(source)), S_OK);
    ASSERT_NE(V_ARRAY(&copy.get()), V_ARRAY(&source.get()));
    const Platform::SafeArrayAccess bytes(V_ARRAY(&copy.get()));
    ASSERT_EQ(bytes.size(), 3u);
    EXPECT_EQ(std::memcmp(bytes.data(), "abc", 3), 0);
}

TEST(Variant, CopiedObjectIsCountedOnceMore)
{
    CountedDispatch object;
    {
        const Variant source = ofObject(&object, VT_DISPATCH);
        Variant copy;
        ASSERT_EQ(VariantCopy(copy.out(), readable(source)), S_OK);
        EXPECT_EQ(object.references, 2);
    }
    EXPECT_EQ(object.references, 0);
}

TEST(Variant, CopiedReferenceStaysAReference)
{
    CountedDispatch object;
    IDispatch *pointer = &object;
    const Variant source = ofReference(&pointer, VT_DISPATCH);
    Variant copy;
    ASSERT_EQ(VariantCopy(copy.out(), readable(source)), S_OK);
    EXPECT_EQ(copy.type(), VT_DISPATCH | VT_BYREF);
    EXPECT_EQ(V_DISPATCHREF(&copy.get()), &pointer);
    EXPECT_EQ(object.references, 0);
}

TEST(Variant, CopyFreesWhatTheDestinationHeld)
{
    CountedDispatch object;
    VARIANT destination = ofObject(&object, VT_DISPATCH).release();
    const Variant source(7);
    ASSERT_EQ(VariantCopy(&destination, readable(source)), S_OK);
    EXPECT_EQ(object.references, 0);
    EXPECT_EQ(V_I4(&destination), 7);
}

TEST(Variant, CopiedToItselfStays)
{
    VARIANT variant = ofText("text").release();
    BSTR text = V_BSTR(&variant);
    EXPECT_EQ(VariantCopy(&variant, &variant), S_OK);
    EXPECT_EQ(V_BSTR(&variant), text);
    EXPECT_EQ(Platform::toQString(text), QStringLiteral("text"));
    VariantClear(&variant);
}

TEST(Variant, CopiedObjectToItselfIsNotCounted)
{
    CountedDispatch object;
    VARIANT variant = ofObject(&object, VT_DISPATCH).release();
    EXPECT_EQ(VariantCopy(&variant, &variant), S_OK);
    EXPECT_EQ(object.references, 1);
    VariantClear(&variant);
}

TEST(Variant, OfATypeThatDoesNotExistCannotBeCopied)
{
    VARIANT source = {};
    V_VT(&source) = 15;
    VARIANT destination = Variant(7).release();
    EXPECT_EQ(VariantCopy(&destination, &source), DISP_E_BADVARTYPE);
    EXPECT_EQ(V_I4(&destination), 7);
}

#ifndef _WIN32 // Wine 8 copies over it all the same.
TEST(Variant, CopyOverALockedArrayLeavesIt)
{
    VARIANT destination = ofByteArray().release();
    const Variant source(7);
    ASSERT_EQ(SafeArrayLock(V_ARRAY(&destination)), S_OK);
    EXPECT_EQ(VariantCopy(&destination, readable(source)), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(V_VT(&destination), VT_ARRAY | VT_UI1);
    SafeArrayUnlock(V_ARRAY(&destination));
    VariantClear(&destination);
}
#endif

// ---- following references -------------------------------------------------------------------------------------------

TEST(Variant, FollowedReferenceToANumberIsTheNumber)
{
    LONG number = 7;
    const Variant source = ofReference(&number, VT_I4);
    Variant copy;
    ASSERT_EQ(VariantCopyInd(copy.out(), readable(source)), S_OK);
    EXPECT_EQ(copy.type(), VT_I4);
    EXPECT_EQ(V_I4(&copy.get()), 7);
}

TEST(Variant, FollowedReferenceToATextIsACopy)
{
    const Bstr text(QStringLiteral("text"));
    BSTR pointer = text.get();
    const Variant source = ofReference(&pointer, VT_BSTR);
    Variant copy;
    ASSERT_EQ(VariantCopyInd(copy.out(), readable(source)), S_OK);
    EXPECT_EQ(copy.type(), VT_BSTR);
    EXPECT_NE(V_BSTR(&copy.get()), text.get());
    EXPECT_EQ(textOf(copy), QStringLiteral("text"));
}

TEST(Variant, FollowedReferenceToAnObjectIsCounted)
{
    CountedDispatch object;
    IDispatch *pointer = &object;
    const Variant source = ofReference(&pointer, VT_DISPATCH);
    Variant copy;
    ASSERT_EQ(VariantCopyInd(copy.out(), readable(source)), S_OK);
    EXPECT_EQ(copy.type(), VT_DISPATCH);
    EXPECT_EQ(object.references, 1);
}

TEST(Variant, FollowedReferenceToAVariantIsItsValue)
{
    VARIANT value = ofText("text").release();
    const Variant source = ofReference(&value, VT_VARIANT);
    Variant copy;
    ASSERT_EQ(VariantCopyInd(copy.out(), readable(source)), S_OK);
    EXPECT_EQ(copy.type(), VT_BSTR);
    EXPECT_NE(V_BSTR(&copy.get()), V_BSTR(&value));
    VariantClear(&value);
}

TEST(Variant, ReferenceToAReferenceToAVariantIsNotFollowed)
{
    VARIANT value = Variant(7).release();
    VARIANT inner = ofReference(&value, VT_VARIANT).release();
    const Variant source = ofReference(&inner, VT_VARIANT);
    Variant copy;
    EXPECT_EQ(VariantCopyInd(copy.out(), readable(source)), E_INVALIDARG);
}

TEST(Variant, ReferenceFollowedIntoItselfBecomesTheValue)
{
    LONG number = 7;
    VARIANT variant = ofReference(&number, VT_I4).release();
    EXPECT_EQ(VariantCopyInd(&variant, &variant), S_OK);
    EXPECT_EQ(V_VT(&variant), VT_I4);
    EXPECT_EQ(V_I4(&variant), 7);
}

TEST(Variant, ThatIsNoReferenceIsFollowedAsACopy)
{
    const Variant source = ofText("text");
    Variant copy;
    ASSERT_EQ(VariantCopyInd(copy.out(), readable(source)), S_OK);
    EXPECT_EQ(textOf(copy), QStringLiteral("text"));
    EXPECT_NE(V_BSTR(&copy.get()), V_BSTR(&source.get()));
}

// ---- the owner ------------------------------------------------------------------------------------------------------

TEST(Variant, OfALongIsAnI4)
{
    const Variant variant(LONG{-7});
    EXPECT_EQ(variant.type(), VT_I4);
    EXPECT_EQ(V_I4(&variant.get()), -7);
}

TEST(Variant, OfAnIntIsAnInt)
{
    const Variant variant = Variant::ofInt(-7);
    EXPECT_EQ(variant.type(), VT_INT);
    EXPECT_EQ(V_INT(&variant.get()), -7);
}

TEST(Variant, MovedFromIsEmpty)
{
    CountedDispatch object;
    Variant from = ofObject(&object, VT_DISPATCH);
    const Variant to(std::move(from));
    EXPECT_EQ(from.type(), VT_EMPTY); // NOLINT(bugprone-use-after-move): what is left is what this asks
    EXPECT_EQ(object.references, 1);
}

TEST(Variant, AssignedFreesWhatItHeld)
{
    CountedDispatch object;
    Variant variant = ofObject(&object, VT_DISPATCH);
    variant = Variant(7);
    EXPECT_EQ(object.references, 0);
    EXPECT_EQ(variant.type(), VT_I4);
}

TEST(Variant, AsOutParameterFreesWhatItHeld)
{
    CountedDispatch object;
    Variant variant = ofObject(&object, VT_DISPATCH);
    EXPECT_EQ(V_VT(variant.out()), VT_EMPTY);
    EXPECT_EQ(object.references, 0);
}

TEST(Variant, AsOutParameterForgetsALockedArray)
{
    Variant variant = ofByteArray();
    SafeArray array(V_ARRAY(&variant.get()));
    ASSERT_EQ(SafeArrayLock(array.get()), S_OK);
    EXPECT_EQ(V_VT(variant.out()), VT_EMPTY);
    EXPECT_EQ(array.size(), 3u);
    SafeArrayUnlock(array.get());
}

TEST(Variant, OfDispatchGivesTheObjectAReferenceOfItsOwn)
{
    CountedDispatch object;
    const Variant variant = ofObject(&object, VT_DISPATCH);
    const IDispatchPtr pointer = variant.toDispatch();
    EXPECT_EQ(pointer.GetInterfacePtr(), &object);
    EXPECT_EQ(object.references, 2);
}

TEST(Variant, OfUnknownIsAskedForDispatch)
{
    CountedDispatch object;
    const Variant variant = ofObject(&object, VT_UNKNOWN);
    const IDispatchPtr pointer = variant.toDispatch();
    EXPECT_EQ(pointer.GetInterfacePtr(), &object);
    EXPECT_EQ(object.references, 2);
}

TEST(Variant, OfUnknownWithoutDispatchGivesNothing)
{
    CountedDispatch object;
    object.dispatchResult = E_NOINTERFACE;
    const Variant variant = ofObject(&object, VT_UNKNOWN);
    EXPECT_FALSE(variant.toDispatch());
    EXPECT_EQ(object.references, 1);
}

TEST(Variant, OfUnknownWhoseQuestionFailsRaises)
{
    CountedDispatch object;
    object.dispatchResult = RPC_E_DISCONNECTED;
    const Variant variant = ofObject(&object, VT_UNKNOWN);
    try {
        variant.toDispatch();
        FAIL() << "nothing was raised";
    } catch (const _com_error &error) {
        EXPECT_EQ(error.Error(), RPC_E_DISCONNECTED);
    }
}

TEST(Variant, RefersToDispatchThatItGives)
{
    CountedDispatch object;
    IDispatch *pointer = &object;
    const Variant variant = ofReference(&pointer, VT_DISPATCH);
    const IDispatchPtr given = variant.toDispatch();
    EXPECT_EQ(given.GetInterfacePtr(), &object);
    EXPECT_EQ(object.references, 1);
}

TEST(Variant, RefersToUnknownThatItAsks)
{
    CountedDispatch object;
    IUnknown *pointer = &object;
    const Variant variant = ofReference(&pointer, VT_UNKNOWN);
    EXPECT_EQ(variant.toDispatch().GetInterfacePtr(), &object);
}

TEST(Variant, OfNullObjectsGivesNoDispatch)
{
    for (const int type : {VT_DISPATCH, VT_UNKNOWN})
        EXPECT_FALSE(ofObject(nullptr, static_cast<VARTYPE>(type)).toDispatch()) << type;
}

TEST(Variant, RefersToNothingAndGivesNoDispatch)
{
    for (const int type : {VT_DISPATCH, VT_UNKNOWN})
        EXPECT_FALSE(ofReference(nullptr, static_cast<VARTYPE>(type)).toDispatch()) << type;
}

TEST(Variant, OfAnyOtherTypeGivesNoDispatch)
{
    EXPECT_FALSE(Variant().toDispatch());
    EXPECT_FALSE(Variant(7).toDispatch());
    EXPECT_FALSE(ofText("text").toDispatch());
}
