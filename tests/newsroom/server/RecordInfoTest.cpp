#include "newsroom/server/ServerFixture.h"
#include "newsroom/server/TestSink.h"

#include <quire/newsroom/server/RecordInfo.h>

namespace Newsroom {

/// The records of search hits, as a client may keep them.
class RecordInfoTest : public ServerFixture
{
protected:
    /// A client's own copy of the hits of a search.
    Platform::SafeArray hits(const char *query)
    {
        Platform::SafeArray copy;
        auto sink = makeSink();
        const DWORD cookie = advise(signon, __uuidof(Orvex::_IAnNotifyFast), sink.get());
        sink->onResults = [&](SAFEARRAY *results) { EXPECT_EQ(S_OK, SafeArrayCopy(results, copy.out())); };
        LONG id = 0;
        EXPECT_EQ(S_OK, signon->Search(In(query), &id));
        EXPECT_TRUE(server->waitForEvents());
        unadvise(signon, __uuidof(Orvex::_IAnNotifyFast), cookie);
        return copy;
    }

    static IRecordInfoPtr infoOf(const Platform::SafeArray &array)
    {
        IRecordInfoPtr info;
        EXPECT_EQ(S_OK, SafeArrayGetRecordInfo(array.get(), &info));
        return info;
    }

    Orvex::ISignon4Ptr signon = signOn();
};

TEST_F(RecordInfoTest, HitHasNameQueueIdentifierAndFields)
{
    const auto array = hits("{[]}((rain))");
    const Platform::SafeArrayAccess access(array.get());
    ASSERT_EQ(1U, access.size());
    const auto &hit = access.as<Orvex::SearchHit>()[0];
    EXPECT_EQ(QStringLiteral("Rain delays the final"), Platform::toQString(hit.name));
    EXPECT_EQ(QStringLiteral("NEWS.SPORT.TODAY"), Platform::toQString(hit.queuePath));
    EXPECT_EQ(100, hit.id.part1);
    EXPECT_EQ(12, hit.id.part2);
    EXPECT_EQ(0, hit.id.part3);
    const Platform::SafeArrayAccess fields(hit.fields);
    ASSERT_EQ(2U, fields.size());
    EXPECT_EQ(QStringLiteral("title"), Platform::toQString(fields.as<Orvex::FieldValue>()[0].name));
    EXPECT_EQ(QStringLiteral("slug"), Platform::toQString(fields.as<Orvex::FieldValue>()[1].name));
    EXPECT_EQ(QStringLiteral("rain"), Platform::toQString(fields.as<Orvex::FieldValue>()[1].value));
}

TEST_F(RecordInfoTest, HitWithoutFieldsHasNoArray)
{
    Model::NewStory story;
    story.queueNumber = 15;
    story.text.setPlainBody(QStringLiteral("bare"));
    ASSERT_TRUE(server->model()->addStory(story).ok());
    const auto array = hits("{[]NEWS.EMPTY}((bare))");
    const Platform::SafeArrayAccess access(array.get());
    ASSERT_EQ(1U, access.size());
    EXPECT_EQ(nullptr, access.as<Orvex::SearchHit>()[0].fields);
}

TEST_F(RecordInfoTest, EmptyFieldIsKept)
{
    const auto array = hits("{[]}((coach))");
    const Platform::SafeArrayAccess access(array.get());
    const Platform::SafeArrayAccess fields(access.as<Orvex::SearchHit>()[0].fields);
    ASSERT_EQ(2U, fields.size());
    EXPECT_EQ(QStringLiteral("note"), Platform::toQString(fields.as<Orvex::FieldValue>()[1].name));
    EXPECT_EQ(0U, SysStringLen(fields.as<Orvex::FieldValue>()[1].value));
}

TEST_F(RecordInfoTest, ArrayKnowsItsRecords)
{
    const auto array = hits("{[]}((rain))");
    VARTYPE type = VT_EMPTY;
    EXPECT_EQ(S_OK, SafeArrayGetVartype(array.get(), &type));
    EXPECT_EQ(VT_RECORD, type);
    EXPECT_EQ(sizeof(Orvex::SearchHit), SafeArrayGetElemsize(array.get()));
    const auto info = infoOf(array);
    GUID guid = {};
    EXPECT_EQ(S_OK, info->GetGuid(&guid));
    EXPECT_TRUE(guid == __uuidof(Orvex::SearchHit));
    EXPECT_EQ(QStringLiteral("SearchHit"), textOf([&](BSTR *name) { return info->GetName(name); }));
    ULONG size = 0;
    EXPECT_EQ(S_OK, info->GetSize(&size));
    EXPECT_EQ(sizeof(Orvex::SearchHit), size);

    const Platform::SafeArrayAccess access(array.get());
    IRecordInfoPtr fields;
    EXPECT_EQ(S_OK, SafeArrayGetRecordInfo(access.as<Orvex::SearchHit>()[0].fields, &fields));
    EXPECT_EQ(QStringLiteral("FieldValue"), textOf([&](BSTR *name) { return fields->GetName(name); }));
    EXPECT_FALSE(info->IsMatchingType(fields));
    EXPECT_TRUE(info->IsMatchingType(info));
    EXPECT_FALSE(info->IsMatchingType(nullptr));
}

TEST_F(RecordInfoTest, FieldNamesInOrder)
{
    const auto array = hits("{[]}((rain))");
    const auto info = infoOf(array);
    ULONG count = 0;
    EXPECT_EQ(S_OK, info->GetFieldNames(&count, nullptr));
    EXPECT_EQ(4U, count);
    BSTR names[4] = {};
    count = 2;
    EXPECT_EQ(S_OK, info->GetFieldNames(&count, names));
    EXPECT_EQ(2U, count);
    EXPECT_EQ(QStringLiteral("name"), Platform::toQString(names[0]));
    EXPECT_EQ(QStringLiteral("queuePath"), Platform::toQString(names[1]));
    for (BSTR name : names)
        SysFreeString(name);
}

TEST_F(RecordInfoTest, RecordsAreMadeCopiedAndDestroyed)
{
    const auto array = hits("{[]}((rain))");
    const auto info = infoOf(array);
    const Platform::SafeArrayAccess access(array.get());
    PVOID copy = nullptr;
    ASSERT_EQ(S_OK, info->RecordCreateCopy(access.data(), &copy));
    auto *hit = static_cast<Orvex::SearchHit *>(copy);
    EXPECT_EQ(QStringLiteral("Rain delays the final"), Platform::toQString(hit->name));
    EXPECT_NE(access.as<Orvex::SearchHit>()->name, hit->name);
    EXPECT_NE(access.as<Orvex::SearchHit>()->fields, hit->fields);
    EXPECT_EQ(S_OK, info->RecordCopy(access.data(), copy)); // frees what was there
    EXPECT_EQ(S_OK, info->RecordCopy(copy, copy));
    EXPECT_EQ(S_OK, info->RecordClear(copy));
    EXPECT_EQ(nullptr, hit->name);
    EXPECT_EQ(nullptr, hit->fields);
    EXPECT_EQ(S_OK, info->RecordDestroy(copy));

    PVOID made = info->RecordCreate();
    ASSERT_TRUE(made);
    EXPECT_EQ(nullptr, static_cast<Orvex::SearchHit *>(made)->name);
    EXPECT_EQ(S_OK, info->RecordDestroy(made));
}

TEST_F(RecordInfoTest, NullAddressesAreRefused)
{
    const auto array = hits("{[]}((rain))");
    const auto info = infoOf(array);
    EXPECT_EQ(E_POINTER, info->RecordInit(nullptr));
    EXPECT_EQ(E_POINTER, info->RecordClear(nullptr));
    EXPECT_EQ(E_POINTER, info->RecordCopy(nullptr, nullptr));
    EXPECT_EQ(E_POINTER, info->RecordCreateCopy(nullptr, nullptr));
    EXPECT_EQ(E_POINTER, info->GetGuid(nullptr));
    EXPECT_EQ(E_POINTER, info->GetName(nullptr));
    EXPECT_EQ(E_POINTER, info->GetSize(nullptr));
    EXPECT_EQ(E_POINTER, info->GetFieldNames(nullptr, nullptr));
    EXPECT_EQ(E_POINTER, info->GetTypeInfo(nullptr));
}

TEST_F(RecordInfoTest, ArrayOutlivesTheServer)
{
    const auto array = hits("{[]}((rain))");
    server.reset();
    const Platform::SafeArrayAccess access(array.get());
    EXPECT_EQ(QStringLiteral("Rain delays the final"), Platform::toQString(access.as<Orvex::SearchHit>()[0].name));
    EXPECT_EQ(2, census->live(ObjectKind::RecordInfo));
}

TEST_F(RecordInfoTest, LockedFieldArrayIsNotDestroyed)
{
    auto array = hits("{[]}((rain))");
    const auto info = infoOf(array);
    Orvex::SearchHit *hit = nullptr;
    ASSERT_EQ(S_OK, SafeArrayAccessData(array.get(), reinterpret_cast<void **>(&hit)));
    ASSERT_EQ(S_OK, SafeArrayLock(hit->fields));
    EXPECT_EQ(DISP_E_ARRAYISLOCKED, info->RecordClear(hit));
    EXPECT_NE(nullptr, hit->fields);
    ASSERT_EQ(S_OK, SafeArrayUnlock(hit->fields));
    EXPECT_EQ(S_OK, info->RecordClear(hit));
    EXPECT_EQ(S_OK, SafeArrayUnaccessData(array.get()));
}

} // namespace Newsroom
