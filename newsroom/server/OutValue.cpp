#include <quire/newsroom/server/OutValue.h>

#include <quire/newsroom/server/ObjectList.h>
#include <quire/newsroom/server/StrangerObject.h>
#include <quire/platform/SafeArray.h>

namespace Newsroom {

namespace {

/// Any number will do: what counts is its type.
constexpr LONG WrongNumber = 42;

SAFEARRAY *wrongArray()
{
    Platform::SafeArray array(SafeArrayCreateVector(VT_I4, 0, 1));
    LONG place = 0;
    LONG number = WrongNumber;
    if (array)
        SafeArrayPutElement(array.get(), &place, &number);
    return array.release();
}

void setWrongNumber(VARIANT &value)
{
    value.vt = VT_I4;
    value.lVal = WrongNumber;
}

void setWrongArray(VARIANT &value)
{
    value.parray = wrongArray();
    value.vt = VT_ARRAY | VT_I4;
}

} // namespace

OutValue OutValue::ofList(VARIANT *address)
{
    OutValue out(address);
    out.m_spoil = [](void *value, Fault::Kind kind, const std::shared_ptr<ServerCore> &core) {
        spoilList(*static_cast<VARIANT *>(value), kind, core);
    };
    return out;
}

void OutValue::spoil(VARIANT &value, Fault::Kind kind, const std::shared_ptr<ServerCore> &core)
{
    switch (kind) {
    case Fault::Kind::WrongType:
        return setWrongNumber(value);
    case Fault::Kind::WrongElements:
        return setWrongArray(value);
    case Fault::Kind::Strangers:
        value.pdispVal = makeOwned<StrangerObject>(core).release();
        value.vt = VT_DISPATCH;
        return;
    case Fault::Kind::NullElements:
        value.pdispVal = nullptr;
        value.vt = VT_DISPATCH;
        return;
    default:
        return;
    }
}

void OutValue::spoilList(VARIANT &value, Fault::Kind kind, const std::shared_ptr<ServerCore> &core)
{
    if (kind != Fault::Kind::Strangers && kind != Fault::Kind::NullElements)
        return spoil(value, kind, core);

    std::vector<Owned<IDispatch>> objects(1);
    if (kind == Fault::Kind::Strangers)
        objects[0] = makeOwned<StrangerObject>(core);
    value = ObjectList::make(objects, VT_DISPATCH).release();
}

void OutValue::spoil(IDispatch *&value, Fault::Kind kind, const std::shared_ptr<ServerCore> &core)
{
    if (kind == Fault::Kind::WrongType || kind == Fault::Kind::Strangers)
        value = makeOwned<StrangerObject>(core).release();
}

void OutValue::spoil(SAFEARRAY *&value, Fault::Kind kind, const std::shared_ptr<ServerCore> &)
{
    if (kind == Fault::Kind::WrongType || kind == Fault::Kind::WrongElements)
        value = wrongArray();
}

} // namespace Newsroom
