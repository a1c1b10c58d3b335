#include <algorithm>
#include <limits>

#include <quire/newsroom/server/CallArgument.h>
#include <quire/newsroom/server/VariantIndex.h>
#include <quire/platform/Bstr.h>
#include <quire/platform/SafeArray.h>
#include <quire/platform/System.h>
#include <quire/platform/Variant.h>

#include "PlatformChecks.h"
#include "fuzz/StrangeArray.h"
#include "tests/platform/CountedDispatch.h"

namespace PlatformFuzz {

namespace {

constexpr VARTYPE types[] = {VT_EMPTY, VT_NULL, VT_I2,  VT_I4,  VT_R8, VT_BSTR,     VT_ERROR,
                             VT_BOOL,  VT_UI1,  VT_UI4, VT_INT, VT_I8, VT_DISPATCH, VT_UNKNOWN};

/// A value, and what it refers to if it is a reference.
struct Value
{
    VARIANT target{};
    VARIANT value{};
    bool isReference = false;

    Value(Fuzz::Input &input, IDispatch *object)
    {
        target.vt = types[input.byte() % std::size(types)];
        if (target.vt == VT_BSTR) {
            target.bstrVal = Platform::toBstr(input.text());
        } else if (target.vt == VT_DISPATCH || target.vt == VT_UNKNOWN) {
            object->AddRef();
            target.pdispVal = object;
        } else {
            target.llVal = LONGLONG{input.number()} * input.number();
        }
        const int kind = input.below(3);
        isReference = kind != 0 && target.vt > VT_NULL;
        if (!isReference) {
            value = target;
        } else if (kind == 1) {
            value.vt = static_cast<VARTYPE>(target.vt | VT_BYREF);
            value.byref = &target.llVal;
        } else {
            value.vt = VT_VARIANT | VT_BYREF;
            value.pvarVal = &target;
        }
    }
    ~Value() { VariantClear(&target); }
    Value(const Value &) = delete;
    Value &operator=(const Value &) = delete;
};

bool isSame(const VARIANT &a, const VARIANT &b)
{
    if (a.vt != b.vt)
        return false;
    switch (a.vt) {
    case VT_EMPTY:
    case VT_NULL:
        return true;
    case VT_BSTR:
        return a.bstrVal != b.bstrVal && Platform::toQString(a.bstrVal) == Platform::toQString(b.bstrVal);
    case VT_I2:
    case VT_BOOL:
        return a.iVal == b.iVal;
    case VT_UI1:
        return a.bVal == b.bVal;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_ERROR:
        return a.lVal == b.lVal;
    default:
        return a.llVal == b.llVal;
    }
}

QString checkCopies(const Value &value)
{
    Platform::Variant copy;
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): not written to, whatever some headers say
    auto *const original = const_cast<VARIANT *>(&value.value);
    if (FAILED(VariantCopy(copy.out(), original)) ||
        (value.isReference ? copy.get().vt != value.value.vt || copy.get().byref != value.value.byref
                           : !isSame(copy.get(), value.value)))
        return QStringLiteral("a copy is another value");
    if (FAILED(VariantCopyInd(copy.out(), original)) || !isSame(copy.get(), value.target))
        return QStringLiteral("a copy of what is referred to is another value");
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): out() would clear it
    auto *const itself = const_cast<VARIANT *>(&copy.get());
    if (FAILED(VariantCopy(itself, itself)))
        return QStringLiteral("a value cannot be copied to itself");
    return QString();
}

/// The position that a number means, -1 for none.
LONG positionIn(const VARIANT &target)
{
    long long number = -1;
    if (target.vt == VT_I4 || target.vt == VT_INT)
        number = target.lVal;
    else if (target.vt == VT_I2)
        number = target.iVal;
    else if (target.vt == VT_UI4)
        number = target.ulVal;
    return number < 0 ? -1 : static_cast<LONG>(std::min<long long>(number, std::numeric_limits<LONG>::max()));
}

QString checkReading(const Value &value, IDispatch *object)
{
    LONG position = -1;
    const HRESULT result = Newsroom::readIndex(value.value, &position);
    if (position != positionIn(value.target) || SUCCEEDED(result) != (position >= 0))
        return QStringLiteral("another position");
    if (Newsroom::CallArgument::text(value.value).isEmpty())
        return QStringLiteral("no text for the record of calls");
    const bool isObject = value.target.vt == VT_DISPATCH || value.target.vt == VT_UNKNOWN;
    const bool isReached = isObject && value.value.vt != (VT_VARIANT | VT_BYREF);
    return Platform::toDispatch(value.value).GetInterfacePtr() == (isReached ? object : nullptr)
               ? QString()
               : QStringLiteral("taken for an object, or not");
}

} // namespace

QString checkVariants(const QByteArray &bytes)
{
    const auto before = Platform::liveBstrs();
    Fuzz::Input input(bytes);
    CountedDispatch object;
    while (!input.atEnd()) {
        const Value value(input, &object);
        QString wrong = checkCopies(value);
        if (wrong.isEmpty())
            wrong = checkReading(value, &object);
        if (!wrong.isEmpty())
            return wrong + QStringLiteral(" (type %1)").arg(value.value.vt);
    }
    const bool left = object.references != 0 || Platform::liveBstrs() != before;
    return left ? QStringLiteral("something is left") : QString();
}

} // namespace PlatformFuzz
