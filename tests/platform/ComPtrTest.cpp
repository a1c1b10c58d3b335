#include "ComFixture.h"
#include "CountedFactory.h"

#include <utility>

namespace {

class ComPtr : public ComFixture
{
protected:
    CountedObject object;
    CountedObject other;
};

constexpr HRESULT someFailure = E_ACCESSDENIED;

} // namespace

TEST_F(ComPtr, MadeWithoutAnythingIsEmpty)
{
    const ISupportErrorInfoPtr pointer;
    EXPECT_EQ(pointer.GetInterfacePtr(), nullptr);
    EXPECT_FALSE(static_cast<bool>(pointer));
}

TEST_F(ComPtr, MadeFromItsInterfaceAddsOneReferenceAndReleasesIt)
{
    {
        const ISupportErrorInfoPtr pointer(object.support());
        EXPECT_EQ(object.references, 1);
        EXPECT_EQ(pointer.GetInterfacePtr(), object.support());
    }
    EXPECT_EQ(object.references, 0);
    EXPECT_EQ(object.changes, 2);
}

TEST_F(ComPtr, MadeFromANullInterfaceIsEmpty)
{
    const ISupportErrorInfoPtr pointer(static_cast<ISupportErrorInfo *>(nullptr));
    EXPECT_EQ(pointer.GetInterfacePtr(), nullptr);
}

TEST_F(ComPtr, MadeWithoutAddingTakesTheReferenceOver)
{
    object.AddRef();
    {
        const ISupportErrorInfoPtr pointer(object.support(), false);
        EXPECT_EQ(object.references, 1);
    }
    EXPECT_EQ(object.references, 0);
}

TEST_F(ComPtr, MadeWithAddingHasAReferenceOfItsOwn)
{
    const ISupportErrorInfoPtr pointer(object.support(), true);
    EXPECT_EQ(object.references, 1);
}

TEST_F(ComPtr, CopiedAddsOneReference)
{
    const ISupportErrorInfoPtr pointer(object.support());
    {
        // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): it is what is tested
        const ISupportErrorInfoPtr copy(pointer);
        EXPECT_EQ(object.references, 2);
        EXPECT_EQ(copy.GetInterfacePtr(), object.support());
    }
    EXPECT_EQ(object.references, 1);
}

TEST_F(ComPtr, MovedHoldsTheObjectAndLeavesNoReferenceBehind)
{
    {
        ISupportErrorInfoPtr pointer(object.support());
        // NOLINTNEXTLINE(performance-move-const-arg): on Windows it is no move either
        const ISupportErrorInfoPtr moved(std::move(pointer));
        EXPECT_EQ(moved.GetInterfacePtr(), object.support());
    }
    EXPECT_EQ(object.references, 0);
}

TEST_F(ComPtr, MadeFromAnotherInterfaceAsksTheObject)
{
    {
        const IConnectionPointContainerPtr pointer(object.support());
        EXPECT_EQ(pointer.GetInterfacePtr(), object.container());
        EXPECT_EQ(object.references, 1);
    }
    EXPECT_EQ(object.references, 0);
}

TEST_F(ComPtr, MadeFromAPointerToAnotherInterfaceAsksTheObject)
{
    const ISupportErrorInfoPtr support(object.support());
    const IConnectionPointContainerPtr pointer(support);
    EXPECT_EQ(pointer.GetInterfacePtr(), object.container());
    EXPECT_EQ(object.references, 2);
}

TEST_F(ComPtr, MadeFromAnObjectWithoutTheInterfaceIsEmpty)
{
    object.containerResult = E_NOINTERFACE;
    const IConnectionPointContainerPtr pointer(object.support());
    EXPECT_EQ(pointer.GetInterfacePtr(), nullptr);
    EXPECT_EQ(object.references, 0);
}

TEST_F(ComPtr, MadeFromAnObjectThatFailsRaisesItsResult)
{
    object.containerResult = someFailure;
    EXPECT_EQ(raisedBy([&] { const IConnectionPointContainerPtr pointer(object.support()); }), someFailure);
    EXPECT_EQ(object.references, 0);
}

TEST_F(ComPtr, AssignedAnInterfaceReleasesTheOldOne)
{
    ISupportErrorInfoPtr pointer(object.support());
    pointer = other.support();
    EXPECT_EQ(object.references, 0);
    EXPECT_EQ(other.references, 1);
}

TEST_F(ComPtr, AssignedAPointerReleasesTheOldOne)
{
    ISupportErrorInfoPtr pointer(object.support());
    const ISupportErrorInfoPtr source(other.support());
    pointer = source;
    EXPECT_EQ(object.references, 0);
    EXPECT_EQ(other.references, 2);
}

TEST_F(ComPtr, AssignedItselfChangesNothing)
{
    ISupportErrorInfoPtr pointer(object.support());
    const ISupportErrorInfoPtr &same = pointer;
    pointer = same;
    EXPECT_EQ(pointer.GetInterfacePtr(), object.support());
    EXPECT_EQ(object.references, 1);
}

TEST_F(ComPtr, AssignedItsOwnInterfaceChangesNothing)
{
    ISupportErrorInfoPtr pointer(object.support());
    pointer = object.support();
    EXPECT_EQ(pointer.GetInterfacePtr(), object.support());
    EXPECT_EQ(object.references, 1);
}

TEST_F(ComPtr, MoveAssignedHoldsTheObjectAndLeavesNoReferenceBehind)
{
    {
        ISupportErrorInfoPtr pointer(object.support());
        ISupportErrorInfoPtr source(other.support());
        pointer = std::move(source); // NOLINT(performance-move-const-arg): on Windows it is no move either
        EXPECT_EQ(pointer.GetInterfacePtr(), other.support());
        EXPECT_EQ(object.references, 0);
    }
    EXPECT_EQ(other.references, 0);
}

TEST_F(ComPtr, AssignedNullReleases)
{
    ISupportErrorInfoPtr pointer(object.support());
    pointer = static_cast<ISupportErrorInfo *>(nullptr);
    EXPECT_EQ(pointer.GetInterfacePtr(), nullptr);
    EXPECT_EQ(object.references, 0);
}

TEST_F(ComPtr, AssignedAnObjectWithoutTheInterfaceBecomesEmpty)
{
    other.containerResult = E_NOINTERFACE;
    IConnectionPointContainerPtr pointer(object.container());
    pointer = other.support();
    EXPECT_EQ(pointer.GetInterfacePtr(), nullptr);
    EXPECT_EQ(object.references, 0);
    EXPECT_EQ(other.references, 0);
}

TEST_F(ComPtr, AssignedAnObjectThatFailsRaisesItsResult)
{
    other.containerResult = someFailure;
    IConnectionPointContainerPtr pointer(object.container());
    EXPECT_EQ(raisedBy([&] { pointer = other.support(); }), someFailure);
    EXPECT_EQ(pointer.GetInterfacePtr(), nullptr);
    EXPECT_EQ(object.references, 0);
}

TEST_F(ComPtr, AttachReleasesTheOldOneAndTakesTheReferenceOver)
{
    ISupportErrorInfoPtr pointer(object.support());
    other.AddRef();
    pointer.Attach(other.support());
    EXPECT_EQ(object.references, 0);
    EXPECT_EQ(other.references, 1);
}

TEST_F(ComPtr, AttachWithAddingHasAReferenceOfItsOwn)
{
    ISupportErrorInfoPtr pointer;
    pointer.Attach(object.support(), true);
    EXPECT_EQ(object.references, 1);
}

TEST_F(ComPtr, DetachHandsTheReferenceOver)
{
    ISupportErrorInfoPtr pointer(object.support());
    EXPECT_EQ(pointer.Detach(), object.support());
    EXPECT_EQ(pointer.GetInterfacePtr(), nullptr);
    EXPECT_EQ(object.references, 1);
}

TEST_F(ComPtr, AddressForAnOutParameterReleasesFirst)
{
    ISupportErrorInfoPtr pointer(object.support());
    ISupportErrorInfo **place = &pointer;
    EXPECT_EQ(object.references, 0);
    EXPECT_EQ(*place, nullptr);
}

TEST_F(ComPtr, ReleaseEmptiesIt)
{
    ISupportErrorInfoPtr pointer(object.support());
    pointer.Release();
    EXPECT_EQ(pointer.GetInterfacePtr(), nullptr);
    EXPECT_EQ(object.references, 0);
}

TEST_F(ComPtr, CallThroughAnEmptyOneRaisesInvalidPointer)
{
    const ISupportErrorInfoPtr empty;
    EXPECT_EQ(raisedBy([&] { empty->InterfaceSupportsErrorInfo(__uuidof(IUnknown)); }), E_POINTER);
}

TEST_F(ComPtr, DereferencingAnEmptyOneRaisesInvalidPointer)
{
    const ISupportErrorInfoPtr empty;
    EXPECT_EQ(raisedBy([&] { static_cast<void>(*empty); }), E_POINTER);
}

TEST_F(ComPtr, ReleasingAnEmptyOneRaisesInvalidPointer)
{
    ISupportErrorInfoPtr empty;
    EXPECT_EQ(raisedBy([&] { empty.Release(); }), E_POINTER);
}

TEST_F(ComPtr, AddingAReferenceToAnEmptyOneRaisesInvalidPointer)
{
    ISupportErrorInfoPtr empty;
    EXPECT_EQ(raisedBy([&] { empty.AddRef(); }), E_POINTER);
}

// Compared while they are not constant: MinGW's operators compare constant pointers only for being empty.

TEST_F(ComPtr, EqualsAnotherInterfaceOfTheSameObject)
{
    ISupportErrorInfoPtr support(object.support());
    IConnectionPointContainerPtr container(object.container());
    EXPECT_TRUE(support == container);
    EXPECT_FALSE(support != container);
    EXPECT_EQ(object.references, 2);
}

TEST_F(ComPtr, DiffersFromAnotherObject)
{
    ISupportErrorInfoPtr first(object.support());
    IConnectionPointContainerPtr second(other.container());
    EXPECT_TRUE(first != second);
    EXPECT_FALSE(first == second);
}

TEST_F(ComPtr, DiffersFromAnEmptyOne)
{
    ISupportErrorInfoPtr pointer(object.support());
    IConnectionPointContainerPtr empty;
    EXPECT_TRUE(pointer != empty);
}

TEST_F(ComPtr, CreatesAnInstanceByItsFactory)
{
    CountedFactory factory;
    const Registration registration(countedClass, &factory);
    ISupportErrorInfoPtr pointer;
    EXPECT_EQ(pointer.CreateInstance(countedClass, nullptr, CLSCTX_INPROC_SERVER), S_OK);
    EXPECT_EQ(pointer.GetInterfacePtr(), factory.object.support());
    EXPECT_EQ(factory.object.references, 1);
}

TEST_F(ComPtr, CreatesAnInstanceInAnyContext)
{
    CountedFactory factory;
    const Registration registration(countedClass, &factory);
    IConnectionPointContainerPtr pointer;
    EXPECT_EQ(pointer.CreateInstance(countedClass, nullptr, CLSCTX_ALL), S_OK);
    EXPECT_EQ(pointer.GetInterfacePtr(), factory.object.container());
    EXPECT_EQ(factory.object.references, 1);
}

TEST_F(ComPtr, CreatingReleasesTheOldOneEvenIfItFails)
{
    ISupportErrorInfoPtr pointer(object.support());
    EXPECT_EQ(pointer.CreateInstance(countedClass, nullptr, CLSCTX_INPROC_SERVER), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(pointer.GetInterfacePtr(), nullptr);
    EXPECT_EQ(object.references, 0);
}

TEST_F(ComPtr, CreatingInAnyContextWithoutTheInterfaceLeavesNoReferenceBehind)
{
    CountedFactory factory;
    factory.object.containerResult = E_NOINTERFACE;
    const Registration registration(countedClass, &factory);
    IConnectionPointContainerPtr pointer;
    EXPECT_EQ(pointer.CreateInstance(countedClass, nullptr, CLSCTX_ALL), E_NOINTERFACE);
    EXPECT_EQ(pointer.GetInterfacePtr(), nullptr);
    EXPECT_EQ(factory.object.references, 0);
}

TEST_F(ComPtr, MadeFromAnUnknownClassRaisesClassNotRegistered)
{
    EXPECT_EQ(raisedBy([] { const ISupportErrorInfoPtr pointer(countedClass, nullptr, CLSCTX_INPROC_SERVER); }),
              REGDB_E_CLASSNOTREG);
}
