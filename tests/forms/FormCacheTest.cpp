#include <quire/forms/FormCache.h>

#include <QStringList>
#include <QVector>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include <quire/newsroom/Newsroom.h>
#include <quire/session/QuireCOMMutex.h>

#include "fuzz/forms/FormChecks.h"
#include "support/QtPrinting.h"
#include "support/SessionFixture.h"
#include "support/Text.h"

using Quire::FormCache;
using Quire::FormData;
using Quire::QuireCOM;

namespace {

const char *const oneCell = "<zeko:form><zeko:row><zeko:cell idref=title>Title</zeko:cell></zeko:row></zeko:form>";

/// A session on a fake server that answers every name with the same form, and an empty cache.
class FormCacheTest : public SessionTest
{
protected:
    void SetUp() override
    {
        SessionTest::SetUp();
        FormCache::Clear();
        server.form = text(oneCell);
    }
    void TearDown() override
    {
        FormCache::Clear();
        SessionTest::TearDown();
    }

    FormData *get(const char *name) { return FormCache::getForm(text(name)); }
    int fetches() const { return server.calls().filter(text("GetSystemForm(")).size(); }
};

class ConnectedFormCache : public FormCacheTest
{
protected:
    void SetUp() override
    {
        FormCacheTest::SetUp();
        connect();
    }
};

} // namespace

// ---- fetching -------------------------------------------------------------------------------------------------------

TEST_F(ConnectedFormCache, FetchesAndReadsAForm)
{
    const FormData *form = get("RUNDOWN");
    ASSERT_NE(form, nullptr);
    EXPECT_EQ(form->m_FormName, text("RUNDOWN"));
    ASSERT_EQ(form->m_Fields.size(), 1u);
    EXPECT_EQ(form->m_Fields[0].m_Id, text("title"));
    EXPECT_EQ(form->m_Fields[0].m_Label, text("Title"));
}

TEST_F(ConnectedFormCache, AsksForTheConnectionAndThenForTheForm)
{
    get("RUNDOWN");
    EXPECT_EQ(server.calls(),
              QStringList({text("get_Connected()"), text("get_Connected()"), text("GetSystemForm(RUNDOWN)")}));
}

TEST_F(ConnectedFormCache, FetchesUnderTheLockOfTheSession)
{
    const LockDebugging debugging;
    get("RUNDOWN");
    const QVector<FakeServer::Call> calls = server.callsWithLocks();
    ASSERT_FALSE(calls.isEmpty());
    EXPECT_TRUE(calls.last().lockedByCaller);
    EXPECT_EQ(calls.last().label, text("QuireCOM::GetSystemForm"));
}

TEST_F(ConnectedFormCache, MakesNoCallForAFormThatItHas)
{
    const FormData *form = get("RUNDOWN");
    server.forgetCalls();
    EXPECT_EQ(get("RUNDOWN"), form);
    EXPECT_EQ(get("RUNDOWN"), form);
    EXPECT_EQ(server.calls(), QStringList());
}

TEST_F(ConnectedFormCache, KeepsFormsByName)
{
    const FormData *rundown = get("RUNDOWN");
    server.form = text("<zeko:form/>");
    const FormData *wire = get("WIRE");
    ASSERT_NE(wire, nullptr);
    EXPECT_NE(rundown, wire);
    EXPECT_EQ(get("RUNDOWN"), rundown);
    EXPECT_EQ(get("WIRE"), wire);
    EXPECT_EQ(fetches(), 2);
}

TEST_F(ConnectedFormCache, LooksAtTheLetterCaseOfNames)
{
    const FormData *upper = get("RUNDOWN");
    const FormData *lower = get("rundown");
    EXPECT_NE(upper, lower);
    EXPECT_EQ(lower->m_FormName, text("rundown"));
    EXPECT_EQ(server.count(text("GetSystemForm(rundown)")), 1);
}

TEST_F(ConnectedFormCache, ComparesWholeNames)
{
    EXPECT_NE(get("RUNDOWN"), get("RUN"));
    EXPECT_NE(get("RUNDOWN"), get("RUNDOWN "));
    EXPECT_EQ(fetches(), 3);
}

TEST_F(ConnectedFormCache, KeepsAFormWithoutFields)
{
    server.form = text("no form at all");
    const FormData *form = get("EMPTY");
    ASSERT_NE(form, nullptr);
    EXPECT_TRUE(form->m_Fields.empty());
    EXPECT_EQ(get("EMPTY"), form);
    EXPECT_EQ(fetches(), 1);
}

TEST_F(ConnectedFormCache, TakesAnEmptyNameForAName)
{
    const FormData *form = get("");
    ASSERT_NE(form, nullptr);
    EXPECT_EQ(get(""), form);
    EXPECT_EQ(FormCache::getForm(QString()), form);
    EXPECT_EQ(server.count(text("GetSystemForm()")), 1);
}

// ---- nothing to fetch -----------------------------------------------------------------------------------------------

TEST_F(ConnectedFormCache, AnswersNullForAFormThatTheServerDoesNotHave)
{
    server.form = QString();
    EXPECT_EQ(get("POEM"), nullptr);
}

TEST_F(ConnectedFormCache, AnswersNullForAnEmptyText)
{
    server.form = text("");
    EXPECT_EQ(get("POEM"), nullptr);
}

TEST_F(ConnectedFormCache, AsksForAMissingFormEachTime)
{
    server.form = QString();
    EXPECT_EQ(get("POEM"), nullptr);
    EXPECT_EQ(get("POEM"), nullptr);
    EXPECT_EQ(server.count(text("GetSystemForm(POEM)")), 2);
    server.form = text(oneCell);
    EXPECT_NE(get("POEM"), nullptr);
    EXPECT_EQ(server.count(text("GetSystemForm(POEM)")), 3);
}

TEST_F(ConnectedFormCache, AnswersNullWhenTheServerRefuses)
{
    for (const HRESULT result : {E_FAIL, E_ACCESSDENIED, hresult(0x800706BA)}) {
        server.fail(text("GetSystemForm"), result);
        EXPECT_EQ(get("RUNDOWN"), nullptr);
    }
    server.mend();
    EXPECT_NE(get("RUNDOWN"), nullptr);
}

TEST_F(ConnectedFormCache, DoesNotKeepWhatARefusalBrings)
{
    server.failsWithAnswer = true;
    server.fail(text("GetSystemForm"), E_FAIL);
    EXPECT_EQ(get("RUNDOWN"), nullptr);
}

TEST_F(ConnectedFormCache, LeavesTheLockFreeWhenTheServerRaises)
{
    server.raise(text("GetSystemForm"), E_FAIL);
    EXPECT_THROW(get("RUNDOWN"), _com_error);
    server.mend();
    EXPECT_NE(get("RUNDOWN"), nullptr);
}

TEST_F(FormCacheTest, AnswersNullUntilTheServerCanBeReached)
{
    EXPECT_EQ(get("RUNDOWN"), nullptr);
    EXPECT_EQ(server.calls(), QStringList({text("get_Connected()")}));
    EXPECT_EQ(get("RUNDOWN"), nullptr);
    connect();
    const FormData *form = get("RUNDOWN");
    ASSERT_NE(form, nullptr);
    EXPECT_EQ(form->m_Fields.size(), 1u);
    EXPECT_EQ(fetches(), 1);
}

TEST_F(ConnectedFormCache, AnswersNullWhileTheConnectionIsLost)
{
    get("RUNDOWN");
    server.connected = false;
    EXPECT_EQ(get("WIRE"), nullptr);
    EXPECT_EQ(server.count(text("GetSystemForm(WIRE)")), 0);
    server.connected = true;
    EXPECT_NE(get("WIRE"), nullptr);
}

TEST_F(FormCacheTest, AnswersNullWhenTheServerIsNotLoaded)
{
    unload();
    EXPECT_EQ(get("RUNDOWN"), nullptr);
    EXPECT_EQ(server.calls(), QStringList());
}

TEST_F(FormCacheTest, AnswersNullWithoutASessionAndMakesNone)
{
    QuireCOM::UnloadCOM();
    server.forgetCalls();
    EXPECT_EQ(get("RUNDOWN"), nullptr);
    EXPECT_EQ(QuireCOM::TheQuireCOM, nullptr);
    EXPECT_EQ(server.calls(), QStringList());
}

// ---- keeping --------------------------------------------------------------------------------------------------------

TEST_F(ConnectedFormCache, KeepsFormsAcrossConnections)
{
    const FormData *form = get("RUNDOWN");
    session->Disconnect();
    EXPECT_EQ(get("RUNDOWN"), form);
    connect();
    EXPECT_EQ(get("RUNDOWN"), form);
    EXPECT_EQ(server.calls(), QStringList());
}

TEST_F(ConnectedFormCache, KeepsFormsWithoutASession)
{
    const FormData *form = get("RUNDOWN");
    QuireCOM::UnloadCOM();
    EXPECT_EQ(get("RUNDOWN"), form);
}

TEST_F(ConnectedFormCache, KeepsAFormWhereItIsWhenOthersCome)
{
    FormData *first = get("FIRST");
    const Quire::Field *field = &first->m_Fields.front();
    QVector<FormData *> others;
    for (int i = 0; i < 2000; ++i)
        others.append(FormCache::getForm(QString::number(i)));
    EXPECT_EQ(get("FIRST"), first);
    EXPECT_EQ(&first->m_Fields.front(), field);
    EXPECT_EQ(field->m_Id, text("title"));
    for (int i = 0; i < others.size(); ++i)
        ASSERT_EQ(others[i]->m_FormName, QString::number(i));
}

TEST_F(ConnectedFormCache, FetchesAgainAfterClear)
{
    server.form = text("<zeko:form/>");
    get("RUNDOWN");
    get("WIRE");
    FormCache::Clear();
    server.form = text(oneCell);
    ASSERT_NE(get("RUNDOWN"), nullptr);
    EXPECT_EQ(get("RUNDOWN")->m_Fields.size(), 1u);
    EXPECT_EQ(server.count(text("GetSystemForm(RUNDOWN)")), 2);
    EXPECT_EQ(server.count(text("GetSystemForm(WIRE)")), 1);
}

TEST_F(FormCacheTest, ClearsAnEmptyCache)
{
    FormCache::Clear();
    EXPECT_EQ(get("RUNDOWN"), nullptr);
}

// ---- copies ---------------------------------------------------------------------------------------------------------

TEST(FormCacheCopies, AreTheOnlyWayToAnotherCache)
{
    static_assert(!std::is_default_constructible<FormCache>::value, "there is one cache");
    static_assert(std::is_copy_constructible<FormCache>::value, "copies");
    static_assert(std::is_copy_assignable<FormCache>::value, "copies");
    static_assert(std::is_nothrow_move_constructible<FormCache>::value, "moves");
    static_assert(std::is_nothrow_move_assignable<FormCache>::value, "moves");
}

TEST_F(ConnectedFormCache, OutlivesItsCopies)
{
    EXPECT_NE(get("RUNDOWN"), nullptr);
    {
        const FormCache copy(FormCache::sFormCache);
        FormCache::Clear();
        EXPECT_EQ(fetches(), 1);
    }
    const FormData *const form = get("RUNDOWN");
    EXPECT_EQ(fetches(), 2);
    const FormCache copy(FormCache::sFormCache);
    EXPECT_EQ(get("RUNDOWN"), form);
}

TEST_F(ConnectedFormCache, TakesBackWhatWasMovedAway)
{
    const FormData *form = get("RUNDOWN");
    FormCache moved(std::move(FormCache::sFormCache));
    server.form = QString();
    EXPECT_EQ(get("RUNDOWN"), nullptr);
    FormCache::sFormCache = std::move(moved);
    EXPECT_EQ(get("RUNDOWN"), form);
}

TEST_F(ConnectedFormCache, TakesTheFormsOfACopy)
{
    get("RUNDOWN");
    const FormCache copy(FormCache::sFormCache);
    FormCache::Clear();
    FormCache::sFormCache = copy;
    server.forgetCalls();
    ASSERT_NE(get("RUNDOWN"), nullptr);
    EXPECT_EQ(get("RUNDOWN")->m_Fields.size(), 1u);
    EXPECT_EQ(server.calls(), QStringList());
    FormCache &same = FormCache::sFormCache;
    FormCache::sFormCache = same;
    EXPECT_EQ(get("RUNDOWN")->m_Fields.size(), 1u);
}

// ---- several at once ------------------------------------------------------------------------------------------------

TEST_F(ConnectedFormCache, AnswersTheFirstOfTwoCopies)
{
    // While one call fetches the form, another one does the same and is done first.
    FormData *first = nullptr;
    bool nested = false;
    server.onCall = [&](const QString &operation) {
        if (operation != text("GetSystemForm") || nested)
            return;
        nested = true;
        server.form = text("<zeko:form/>");
        first = get("RUNDOWN");
        server.form = text(oneCell);
    };
    EXPECT_EQ(get("RUNDOWN"), first);
    ASSERT_NE(first, nullptr);
    EXPECT_TRUE(first->m_Fields.empty());
    EXPECT_EQ(fetches(), 2);
    EXPECT_EQ(get("RUNDOWN"), first);
}

TEST_F(ConnectedFormCache, AnswersOtherThreadsWhileItFetches)
{
    const FormData *known = get("KNOWN");
    bool answered = false;
    server.onCall = [&](const QString &operation) {
        if (operation == text("GetSystemForm"))
            std::thread([&] { answered = FormCache::getForm(text("KNOWN")) == known; }).join();
    };
    EXPECT_NE(get("NEW"), nullptr);
    EXPECT_TRUE(answered);
    server.onCall = nullptr;
}

TEST_F(ConnectedFormCache, GivesAllThreadsTheSameForms)
{
    constexpr int names = 40;
    constexpr int threads = 4;
    std::vector<std::vector<FormData *>> answers(threads, std::vector<FormData *>(names));
    std::vector<std::thread> running;
    running.reserve(threads);
    std::atomic<int> waiting{threads};
    for (std::vector<FormData *> &answer : answers) {
        running.emplace_back([&answer, &waiting] {
            CoInitializeEx(nullptr, COINIT_MULTITHREADED);
            --waiting;
            while (waiting > 0)
                std::this_thread::yield();
            for (int i = 0; i < names; ++i)
                answer[std::size_t(i)] = FormCache::getForm(QString::number(i));
            CoUninitialize();
        });
    }
    for (std::thread &thread : running)
        thread.join();
    for (int i = 0; i < names; ++i) {
        FormData *form = FormCache::getForm(QString::number(i));
        ASSERT_NE(form, nullptr);
        EXPECT_EQ(form->m_FormName, QString::number(i));
        for (const std::vector<FormData *> &answer : answers)
            EXPECT_EQ(answer[std::size_t(i)], form);
    }
}

// ---- on the newsroom in a box ---------------------------------------------------------------------------------------

TEST(FormCacheNewsroom, ReadsEveryFormOfTheSample)
{
    FormCache::Clear();
    const std::shared_ptr<Newsroom::Model> model = Newsroom::sampleModel();
    ASSERT_NE(model, nullptr);
    {
        Newsroom::Server server(model);
        const Newsroom::Registration registration = server.registerClass();
        QuireCOM *session = QuireCOM::GetQuireCOM(true);
        ASSERT_EQ(session->Connect(model->system().serverName, text("journalist"), text("news"), 0), 0);
        ASSERT_FALSE(model->forms().isEmpty());
        for (const auto &form : model->forms()) {
            const FormData *read = FormCache::getForm(form.name);
            ASSERT_NE(read, nullptr) << form.name.toStdString();
            EXPECT_FALSE(read->m_Fields.empty()) << form.name.toStdString();
            EXPECT_EQ(FormFuzz::difference(read->m_Fields, FormFuzz::fieldsBySearching(form.markup)), QString())
                << form.name.toStdString();
        }
        EXPECT_EQ(FormCache::getForm(text("POEM")), nullptr);
        QuireCOM::UnloadCOM();
    }
    FormCache::Clear();
}
