// `quire new`: what becomes of the new story when its fields are refused. Within this process, so that the tests see
// what the server was asked for.

#include "RegisteredServer.h"

namespace {

class NewCommandTest : public RegisteredServerTest
{
protected:
    NewCommandTest() { m_server.calls().start(); }

    int madeStories() const { return model().storyCount() - m_storiesBefore; }

    /// Expects that \a run was refused before the server was asked to make a story.
    void expectNoneMade(const Outcome &run, int code, const char *words)
    {
        ProgramTest::expectFailure(run, code, words);
        EXPECT_TRUE(m_server.calls().takeTexts().filter(QStringLiteral("CreateStory")).isEmpty());
    }

    const int m_storiesBefore = model().storyCount();
    const Newsroom::Fault m_refusal = Newsroom::Fault::hresult(static_cast<HRESULT>(0x80040405));
};

TEST_F(NewCommandTest, AFieldThatTheFormDoesNotHaveMakesNoStory)
{
    expectNoneMade(runAsProducer("new SPORT.RESULTS.CUP nosuch=1"), 4,
                   "there is no field \"nosuch\" in a new story of SPORT.RESULTS.CUP; it has title, ");
    EXPECT_EQ(madeStories(), 0);
}

TEST_F(NewCommandTest, AFieldThatIsReadOnlyMakesNoStory)
{
    expectNoneMade(runAsProducer("new SPORT.FOOTBALL create-by=me"), 1,
                   "the field \"create-by\" of a new story of SPORT.FOOTBALL is read-only");
}

TEST_F(NewCommandTest, ATimeThatIsNoneMakesNoStory)
{
    expectNoneMade(runAsProducer("new SHOWS.EVENING.RUNDOWN tape-time=abc"), 2, "\"abc\" is no time");
}

TEST_F(NewCommandTest, AStoryThatTheServerDoesNotSaveIsDeletedAgain)
{
    m_server.faults().failNext(QStringLiteral("IStory2::Save"), m_refusal);
    ProgramTest::expectFailure(runAsProducer("new SPORT.RESULTS.CUP title=New"), 1,
                               "Command is not authorized. Nothing was saved.\n");
    EXPECT_EQ(madeStories(), 0);
}

TEST_F(NewCommandTest, AStoryIsDeletedAgainAlsoWhenTheServerRaises)
{
    m_server.faults().failEvery(QStringLiteral("IStory2::Save"),
                                Newsroom::Fault::raise(static_cast<HRESULT>(0x800706BA)));
    ProgramTest::expectFailure(runAsProducer("new SPORT.RESULTS.CUP title=New"), 1, "the server failed: ");
    EXPECT_EQ(madeStories(), 0);
}

TEST_F(NewCommandTest, AStoryThatCannotBeDeletedAgainIsTold)
{
    m_server.faults().failNext(QStringLiteral("IStory2::Save"), m_refusal);
    m_server.faults().failNext(QStringLiteral("ISignon4::DeleteStory"), m_refusal);
    const Outcome run = runAsProducer("new SPORT.RESULTS.CUP title=New");
    ProgramTest::expectFailure(run, 1, "Nothing was saved; the new story ");
    EXPECT_TRUE(run.errors.endsWith(QLatin1String(" is left in SPORT.RESULTS.CUP\n"))) << qPrintable(run.errors);
    EXPECT_EQ(madeStories(), 1);
}

} // namespace
