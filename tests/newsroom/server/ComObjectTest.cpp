#include "newsroom/server/ServerFixture.h"

namespace Newsroom {

class ComObjectTest : public ServerFixture
{
protected:
    /// One object of each kind that a client reaches.
    std::vector<IUnknownPtr> everyKind()
    {
        std::vector<IUnknownPtr> objects{signon, directory(signon, "NEWS"), queue(signon), story(queue(signon), 0),
                                         server->classFactory()};
        const IConnectionPointContainerPtr container = signon;
        IConnectionPointPtr point;
        EXPECT_EQ(S_OK, container->FindConnectionPoint(__uuidof(Orvex::_IAnNotifyFast), &point));
        objects.push_back(point);
        IEnumConnectionPointsPtr points;
        EXPECT_EQ(S_OK, container->EnumConnectionPoints(&points));
        objects.push_back(points);
        IEnumConnectionsPtr connections;
        EXPECT_EQ(S_OK, point->EnumConnections(&connections));
        objects.push_back(connections);
        return objects;
    }

    Orvex::ISignon4Ptr signon = signOn();
};

const IID Interfaces[] = {IID_IUnknown,
                          IID_IDispatch,
                          IID_ISupportErrorInfo,
                          IID_IClassFactory,
                          IID_IConnectionPointContainer,
                          IID_IConnectionPoint,
                          IID_IEnumConnectionPoints,
                          IID_IEnumConnections,
                          __uuidof(Orvex::ISignon4),
                          __uuidof(Orvex::IDirectory2),
                          __uuidof(Orvex::IQueue),
                          __uuidof(Orvex::IQueue2),
                          __uuidof(Orvex::IStory2)};

TEST_F(ComObjectTest, IdentityIsTheSameFromEveryInterface)
{
    for (const IUnknownPtr &object : everyKind()) {
        IUnknown *const identity = object;
        int found = 0;
        for (const IID &iid : Interfaces) {
            IUnknownPtr other;
            IUnknown *pointer = nullptr;
            if (FAILED(object->QueryInterface(iid, reinterpret_cast<void **>(&pointer))))
                continue;
            other.Attach(pointer);
            ++found;
            IUnknownPtr again;
            EXPECT_EQ(S_OK, pointer->QueryInterface(IID_IUnknown, reinterpret_cast<void **>(&again)));
            EXPECT_EQ(identity, again.GetInterfacePtr());
        }
        EXPECT_GE(found, 2);
    }
}

TEST_F(ComObjectTest, EveryInterfaceLeadsToEveryOther)
{
    for (const IUnknownPtr &object : everyKind()) {
        std::vector<IUnknownPtr> reached;
        std::vector<IID> known;
        for (const IID &iid : Interfaces) {
            IUnknown *pointer = nullptr;
            if (FAILED(object->QueryInterface(iid, reinterpret_cast<void **>(&pointer))))
                continue;
            reached.emplace_back(pointer, false);
            known.push_back(iid);
        }
        for (const IUnknownPtr &from : reached) {
            for (const IID &iid : known) {
                IUnknownPtr to;
                EXPECT_EQ(S_OK, from->QueryInterface(iid, reinterpret_cast<void **>(&to)));
            }
        }
    }
}

TEST_F(ComObjectTest, UnknownInterfaceIsRefusedWithANullPointer)
{
    for (const IUnknownPtr &object : everyKind()) {
        void *pointer = &pointer;
        EXPECT_EQ(E_NOINTERFACE, object->QueryInterface(__uuidof(Orvex::_IAnNotifyFast), &pointer));
        EXPECT_EQ(nullptr, pointer);
        EXPECT_EQ(E_POINTER, object->QueryInterface(IID_IUnknown, static_cast<void **>(nullptr)));
    }
}

TEST_F(ComObjectTest, ReferencesAreCounted)
{
    for (const IUnknownPtr &object : everyKind()) {
        const ULONG before = object->AddRef();
        EXPECT_EQ(before + 1, object->AddRef());
        EXPECT_EQ(before, object->Release());
        EXPECT_EQ(before - 1, object->Release());
    }
}

TEST_F(ComObjectTest, NewObjectHasOneReference)
{
    Platform::Variant item;
    ASSERT_EQ(S_OK, queue(signon)->get_Item(index(0), item.out()));
    IDispatch *const object = item.get().pdispVal;
    EXPECT_EQ(2U, object->AddRef());
    EXPECT_EQ(1U, object->Release());
}

TEST_F(ComObjectTest, LateBindingHasNoTypeInformation)
{
    const IDispatchPtr object = directory(signon, "NEWS");
    UINT count = 7;
    EXPECT_EQ(S_OK, object->GetTypeInfoCount(&count));
    EXPECT_EQ(0U, count);
    EXPECT_EQ(E_POINTER, object->GetTypeInfoCount(nullptr));
    ITypeInfo *info = reinterpret_cast<ITypeInfo *>(1);
    EXPECT_EQ(E_NOTIMPL, object->GetTypeInfo(0, 0, &info));
    EXPECT_EQ(nullptr, info);
}

TEST_F(ComObjectTest, LateBindingKnowsNoNamesAndNoMembers)
{
    const IDispatchPtr object = directory(signon, "NEWS");
    Platform::Bstr name(QStringLiteral("Count"));
    LPOLESTR names[] = {name.get()};
    DISPID ids[] = {7};
    EXPECT_EQ(DISP_E_UNKNOWNNAME, object->GetIDsOfNames(IID_NULL, names, 1, 0, ids));
    EXPECT_EQ(DISPID_UNKNOWN, ids[0]);
    DISPPARAMS none = {};
    Platform::Variant result(1);
    EXPECT_EQ(DISP_E_MEMBERNOTFOUND,
              object->Invoke(1, IID_NULL, 0, DISPATCH_METHOD, &none, result.out(), nullptr, nullptr));
    EXPECT_EQ(VT_EMPTY, result.type());
}

TEST_F(ComObjectTest, ErrorInformationIsSupportedForTheObjectsOwnInterfaces)
{
    const ISupportErrorInfoPtr support = queue(signon);
    ASSERT_TRUE(support);
    EXPECT_EQ(S_OK, support->InterfaceSupportsErrorInfo(__uuidof(Orvex::IQueue2)));
    EXPECT_EQ(S_OK, support->InterfaceSupportsErrorInfo(__uuidof(Orvex::IQueue)));
    EXPECT_EQ(S_FALSE, support->InterfaceSupportsErrorInfo(__uuidof(Orvex::IStory2)));
    const ISupportErrorInfoPtr ofSignon = signon;
    EXPECT_EQ(S_OK, ofSignon->InterfaceSupportsErrorInfo(__uuidof(Orvex::ISignon4)));
    EXPECT_EQ(S_FALSE, ofSignon->InterfaceSupportsErrorInfo(__uuidof(Orvex::IQueue)));
}

TEST_F(ComObjectTest, ErrorInformationReachesARaisedError)
{
    try {
        IDispatchPtr object;
        const HRESULT result = signon->GetDirectory(In("NOWHERE"), &object);
        if (FAILED(result))
            _com_issue_errorex(result, signon, __uuidof(Orvex::ISignon4));
        FAIL();
    } catch (const _com_error &error) {
        EXPECT_EQ(Gone, error.Error());
        IErrorInfoPtr info(error.ErrorInfo(), false);
        ASSERT_TRUE(info);
        EXPECT_EQ(QStringLiteral("Orvex"), textOf([&](BSTR *text) { return info->GetSource(text); }));
    }
}

} // namespace Newsroom
