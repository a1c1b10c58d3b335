#include <quire/session/DispatchCache.h>

#include <QMutexLocker>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <thread>

#include "support/QtPrinting.h"

using namespace Quire;

namespace {

/// An object that counts its references and can do something when one is added or released.
class Counted : public IDispatch
{
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void **object) override
    {
        const bool known = IsEqualGUID(iid, __uuidof(IUnknown)) || IsEqualGUID(iid, __uuidof(IDispatch));
        *object = known ? static_cast<IDispatch *>(this) : nullptr;
        if (known)
            AddRef();
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override
    {
        if (onCall)
            onCall();
        return ++references;
    }
    ULONG STDMETHODCALLTYPE Release() override
    {
        if (onCall)
            onCall();
        return --references;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT *) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo **) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR *, UINT, LCID, DISPID *) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS *, VARIANT *, EXCEPINFO *, UINT *) override
    {
        return E_NOTIMPL;
    }

    virtual ~Counted() = default;

    std::atomic<ULONG> references{0};
    std::function<void()> onCall;
};

const QString sportPath = QStringLiteral("NEWS.SPORT");

} // namespace

// ---- one handle -----------------------------------------------------------------------------------------------------

TEST(DispatchWrapper, HoldsOneReference)
{
    Counted object;
    {
        const DispatchWrapper wrapper{IDispatchPtr(&object)};
        EXPECT_EQ(object.references, 1u);
        EXPECT_EQ(wrapper.Handle().GetInterfacePtr(), &object);
    }
    EXPECT_EQ(object.references, 0u);
}

TEST(DispatchWrapper, ACopyAddsAReference)
{
    Counted object;
    const DispatchWrapper wrapper{IDispatchPtr(&object)};
    {
        const DispatchWrapper copy(wrapper); // NOLINT(performance-unnecessary-copy-initialization): it is what counts
        EXPECT_EQ(object.references, 2u);
        EXPECT_EQ(copy.Handle().GetInterfacePtr(), &object);
    }
    EXPECT_EQ(object.references, 1u);
}

TEST(DispatchWrapper, AssignmentReleasesWhatItHeld)
{
    Counted first;
    Counted second;
    DispatchWrapper wrapper{IDispatchPtr(&first)};
    wrapper = DispatchWrapper{IDispatchPtr(&second)};
    EXPECT_EQ(first.references, 0u);
    EXPECT_EQ(second.references, 1u);
    wrapper = DispatchWrapper();
    EXPECT_EQ(second.references, 0u);
}

TEST(DispatchWrapper, HasAVirtualDestructor)
{
    EXPECT_TRUE(std::has_virtual_destructor_v<DispatchWrapper>);
    EXPECT_TRUE(std::has_virtual_destructor_v<DispatchCache>);
}

// ---- the tables -----------------------------------------------------------------------------------------------------

TEST(DispatchCache, KeepsOneReferenceForEachEntry)
{
    Counted object;
    {
        DispatchCache cache;
        cache.AddDir(sportPath, IDispatchPtr(&object));
        cache.AddStory(sportPath, 7, IDispatchPtr(&object));
        EXPECT_EQ(object.references, 2u);
    }
    EXPECT_EQ(object.references, 0u);
}

TEST(DispatchCache, ALookUpAddsAReference)
{
    Counted object;
    DispatchCache cache;
    cache.AddDir(sportPath, IDispatchPtr(&object));
    IDispatchPtr handle;
    EXPECT_TRUE(cache.FindDir(sportPath, handle));
    EXPECT_EQ(object.references, 2u);
}

TEST(DispatchCache, AMissLeavesTheHandleAlone)
{
    Counted object;
    const DispatchCache cache;
    IDispatchPtr handle(&object);
    EXPECT_FALSE(cache.FindDir(sportPath, handle));
    EXPECT_FALSE(cache.FindStory(sportPath, 7, handle));
    EXPECT_EQ(handle.GetInterfacePtr(), &object);
}

TEST(DispatchCache, FindsAnEmptyHandleThatWasAdded)
{
    DispatchCache cache;
    cache.AddDir(sportPath, IDispatchPtr());
    IDispatchPtr handle;
    EXPECT_TRUE(cache.FindDir(sportPath, handle));
    EXPECT_FALSE(handle);
}

TEST(DispatchCache, ReplacingReleasesTheEarlierHandle)
{
    Counted first;
    Counted second;
    DispatchCache cache;
    cache.AddDir(sportPath, IDispatchPtr(&first));
    cache.AddDir(sportPath, IDispatchPtr(&second));
    cache.AddStory(sportPath, 7, IDispatchPtr(&first));
    cache.AddStory(sportPath, 7, IDispatchPtr(&second));
    EXPECT_EQ(first.references, 0u);
    EXPECT_EQ(second.references, 2u);
}

TEST(DispatchCache, TakesAnEmptyPathForTheRootAmongDirectoriesOnly)
{
    Counted object;
    DispatchCache cache;
    cache.AddDir(QString(), IDispatchPtr(&object));
    cache.AddStory(QString(), 7, IDispatchPtr(&object));
    IDispatchPtr handle;
    EXPECT_TRUE(cache.FindDir(QStringLiteral("."), handle));
    EXPECT_FALSE(cache.FindStory(QStringLiteral("."), 7, handle));
    EXPECT_TRUE(cache.FindStory(QString(), 7, handle));
}

TEST(DispatchCache, ClearDropsBothTables)
{
    Counted object;
    DispatchCache cache;
    cache.AddDir(sportPath, IDispatchPtr(&object));
    cache.AddStory(sportPath, 7, IDispatchPtr(&object));
    cache.Clear();
    EXPECT_EQ(object.references, 0u);
    IDispatchPtr handle;
    EXPECT_FALSE(cache.FindDir(sportPath, handle));
    EXPECT_FALSE(cache.FindStory(sportPath, 7, handle));
}

// A server's object may itself use the session while a reference is added or released.
TEST(DispatchCache, CallsObjectsOutsideItsMutex)
{
    Counted object;
    DispatchCache cache;
    int calls = 0;
    object.onCall = [&] {
        IDispatchPtr handle; // would hang if the tables' mutex were held
        cache.FindDir(QStringLiteral("elsewhere"), handle);
        ++calls;
    };
    cache.AddDir(sportPath, IDispatchPtr(&object));
    cache.AddDir(sportPath, IDispatchPtr(&object));
    cache.AddStory(sportPath, 7, IDispatchPtr(&object));
    cache.AddStory(sportPath, 7, IDispatchPtr(&object));
    IDispatchPtr handle;
    cache.FindDir(sportPath, handle);
    cache.FindStory(sportPath, 7, handle);
    cache.RemoveStory(sportPath, 7);
    cache.AddStory(sportPath, 8, IDispatchPtr(&object));
    cache.Remove(sportPath);
    cache.AddDir(sportPath, IDispatchPtr(&object));
    cache.AddStory(sportPath, 7, IDispatchPtr(&object));
    cache.Clear();
    handle = nullptr;
    EXPECT_EQ(object.references, 0u);
    EXPECT_GT(calls, 10);
}

TEST(DispatchCache, MayBeUsedByManyThreadsAtOnce)
{
    Counted object;
    {
        DispatchCache cache;
        std::thread threads[8];
        for (int t = 0; t < 8; ++t) {
            threads[t] = std::thread([t, &cache, &object] {
                for (int i = 0; i < 500; ++i) {
                    const QString own = QString::number((i + t) % 5);
                    IDispatchPtr handle;
                    cache.AddDir(own, IDispatchPtr(&object));
                    cache.AddStory(own, i % 3, IDispatchPtr(&object));
                    if (cache.FindDir(own, handle)) {
                        EXPECT_EQ(handle.GetInterfacePtr(), &object);
                    }
                    if (cache.FindStory(own, i % 3, handle)) {
                        EXPECT_EQ(handle.GetInterfacePtr(), &object);
                    }
                    cache.RemoveStory(own, i % 3);
                    if (i % 7 == 0)
                        cache.Remove(own);
                    if (i % 50 == 0)
                        cache.Clear();
                }
            });
        }
        for (std::thread &thread : threads)
            thread.join();
    }
    EXPECT_EQ(object.references, 0u);
}
