// Arrays that a server hands out, on their way through the trace: what they hold counts, not what is said of it.

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

#include <quire/newsroom/sample/Sample.h>
#include <quire/newsroom/server/Server.h>
#include <quire/orvex/Orvex.h>
#include <quire/platform/Bstr.h>
#include <quire/platform/SafeArray.h>

#include "Apartment.h"
#include "Program.h"
#include "failing/StrangeArrays.h"
#include "trace/Tracing.h"

namespace {

class TracedArrayTest : public ProgramTest
{
protected:
    TracedArrayTest()
        : m_server(Newsroom::sampleModel())
    {}

    /// Sends \a array through the trace as the result of a call that says that it holds \a said.
    void pass(SAFEARRAY *array, VARTYPE said)
    {
        VARIANT value;
        VariantInit(&value);
        V_VT(&value) = static_cast<VARTYPE>(VT_ARRAY | said);
        V_ARRAY(&value) = array;
        EXPECT_EQ(Tool::traced(S_OK, &value, m_trace), S_OK);
        EXPECT_EQ(V_ARRAY(&value), array);
    }

    const Tool::Apartment m_apartment;
    Newsroom::Server m_server;
    const Tool::CallTracePtr m_trace = std::make_shared<Tool::CallTrace>(path("t.jsonl"));
};

TEST_F(TracedArrayTest, StrangeOnesPassWhateverIsSaidOfThem)
{
    for (const Failing::StrangeArray &each : Failing::strangeArrays()) {
        for (const int said : {VT_DISPATCH, VT_UNKNOWN, VT_VARIANT, VT_I4}) {
            SCOPED_TRACE(each.name);
            const Platform::SafeArray array(each.make());
            pass(array.get(), static_cast<VARTYPE>(said));
        }
    }
}

TEST_F(TracedArrayTest, NumbersAreNotTakenForObjects)
{
    for (const int said : {VT_DISPATCH, VT_UNKNOWN, VT_VARIANT}) {
        const Platform::SafeArray array(SafeArrayCreateVector(VT_I4, 0, 12));
        {
            const Platform::SafeArrayAccess access(array.get());
            for (ULONG i = 0; i < access.size(); ++i)
                access.as<LONG>()[i] = VT_DISPATCH;
        }
        pass(array.get(), static_cast<VARTYPE>(said));
    }
}

TEST_F(TracedArrayTest, PiecesOfObjectsAreNotTakenForObjects)
{
    const Platform::SafeArray array(SafeArrayCreateVector(VT_DISPATCH, 0, 24));
    const ULONG whole = array.get()->cbElements;
    array.get()->cbElements = 1;
    {
        const Platform::SafeArrayAccess access(array.get());
        ASSERT_NE(access.data(), nullptr);
        std::memset(access.data(), VT_DISPATCH, access.size());
    }
    pass(array.get(), VT_DISPATCH);
    {
        const Platform::SafeArrayAccess access(array.get());
        ASSERT_NE(access.data(), nullptr);
        std::memset(access.data(), 0, access.size());
    }
    array.get()->cbElements = whole;
}

TEST_F(TracedArrayTest, ObjectsAreTracedWhateverIsSaidOfThem)
{
    const Orvex::ISignon4Ptr signon = m_server.connect(QStringLiteral("producer"), QStringLiteral("air"));
    const Platform::Bstr path(QStringLiteral("WIRES.WORLD"));
    IDispatchPtr queue;
    ASSERT_EQ(signon->GetDirectory(path.get(), &queue), S_OK);
    const Platform::SafeArray array(SafeArrayCreateVector(VT_DISPATCH, 0, 1));
    LONG place = 0;
    ASSERT_EQ(SafeArrayPutElement(array.get(), &place, queue.GetInterfacePtr()), S_OK);
    pass(array.get(), VT_I4);
    IDispatchPtr traced;
    ASSERT_EQ(SafeArrayGetElement(array.get(), &place, &traced), S_OK);
    EXPECT_NE(traced.GetInterfacePtr(), queue.GetInterfacePtr());
    EXPECT_TRUE(Orvex::IQueue2Ptr(traced));
}

} // namespace
