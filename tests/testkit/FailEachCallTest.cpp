#include <gtest/gtest.h>

#include <stdexcept>

#include <quire/testkit/TestKit.h>

#include "support/QtPrinting.h"
#include "testkit/FailureCapture.h"

using namespace Quire;
using namespace Quire::TestKit;

namespace {

/// An action that makes three calls of the server, and what they answer.
class FailEachCall : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_NE(newsroom.signOn(), nullptr); }

    void threeCalls()
    {
        const Orvex::ISignon4Ptr signon = QuireCOM::TheQuireCOM->GetSignon();
        LONG number = 0;
        VARIANT_BOOL connected = VARIANT_FALSE;
        QStringList run;
        run.append(QString::number(signon->get_SysReadRate(&number)));
        run.append(QString::number(signon->get_SysWordLength(&number)));
        run.append(QString::number(signon->get_Connected(&connected)));
        answers.append(run.join(QLatin1Char(' ')));
    }

    StandIn newsroom{"queue Q\n"};
    QStringList answers;
};

} // namespace

TEST_F(FailEachCall, FailsEachCallInARunOfItsOwnAndThenNone)
{
    EXPECT_EQ(failEachCall(newsroom, Fault::hresult(static_cast<HRESULT>(-7)), [&] { threeCalls(); }), 3);
    EXPECT_EQ(answers, (QStringList{text("-7 0 0"), text("0 -7 0"), text("0 0 -7"), text("0 0 0")}));
}

TEST_F(FailEachCall, RunsAnActionWithoutCallsOnce)
{
    int runs = 0;
    EXPECT_EQ(failEachCall(newsroom, Fault::hresult(E_FAIL), [&] { ++runs; }), 0);
    EXPECT_EQ(runs, 1);
}

TEST_F(FailEachCall, LeavesNoFaultBehind)
{
    failEachCall(newsroom, Fault::hresult(E_FAIL), [&] { threeCalls(); });
    answers.clear();
    threeCalls();
    EXPECT_EQ(answers, QStringList{text("0 0 0")});
}

TEST_F(FailEachCall, ReportsWhatLeavesTheActionWithTheCall)
{
    const FailureCapture capture;
    failEachCall(newsroom, Fault::raise(static_cast<HRESULT>(0x8004040B)), [&] { threeCalls(); });
    ASSERT_EQ(capture.texts().size(), 3);
    EXPECT_EQ(capture.texts().at(1), text("The action raised Entry no longer exists. (0x8004040b)\n"
                                          "  while call 2 of the server goes wrong"));
    EXPECT_EQ(capture.lines().at(1), __LINE__ - 4);
}

TEST_F(FailEachCall, ReportsEveryExceptionWithTheCallAndGoesOn)
{
    const FailureCapture capture;
    int runs = 0;
    EXPECT_EQ(failEachCall(newsroom, Fault::hresult(E_FAIL),
                           [&] {
                               threeCalls();
                               if (++runs == 1)
                                   throw std::runtime_error("no rundown");
                               if (runs == 2)
                                   throw 7;
                           }),
              3);
    EXPECT_EQ(capture.texts(), (QStringList{text("The action raised an exception: no rundown\n"
                                                 "  while call 1 of the server goes wrong"),
                                            text("The action raised something that is no std::exception\n"
                                                 "  while call 2 of the server goes wrong")}));
    EXPECT_EQ(capture.lines(), (QList<int>{__LINE__ - 13, __LINE__ - 13}));
}

TEST_F(FailEachCall, LeavesNoFaultBehindWhereTheReportOfAFailureThrows)
{
    const FailureHandler before =
        setFailureHandler([](const Failure &) { throw std::runtime_error("the test ends here"); });
    EXPECT_THROW(failEachCall(newsroom, Fault::hresult(E_FAIL),
                              [&] {
                                  report(Place::here(), text("wrong before any call"));
                                  threeCalls();
                              }),
                 std::runtime_error);
    setFailureHandler(before);
    threeCalls();
    EXPECT_EQ(answers, QStringList{text("0 0 0")});
}

TEST_F(FailEachCall, SaysInTheActionsOwnFailuresWhichCallWentWrong)
{
    const FailureCapture capture;
    failEachCall(newsroom, Fault::hresult(static_cast<HRESULT>(0x8004040B)), [&] {
        VARIANT_BOOL connected = VARIANT_FALSE;
        QUIRE_SUCCEEDED(QuireCOM::TheQuireCOM->GetSignon()->get_Connected(&connected));
    });
    EXPECT_EQ(capture.texts(), QStringList{text("QuireCOM::TheQuireCOM->GetSignon()->get_Connected(&connected)\n"
                                                "  failed: Entry no longer exists. (0x8004040b)\n"
                                                "  while call 1 of the server goes wrong")});
}

TEST_F(FailEachCall, GivesUpOnAnActionThatNeverEndsItsCalls)
{
    const FailureCapture capture;
    int runs = 0;
    EXPECT_EQ(failEachCall(newsroom, Fault::hresult(E_FAIL),
                           [&] {
                               newsroom.faults().clear();
                               newsroom.faults().failCall(1, Fault::hresult(E_FAIL));
                               threeCalls();
                               ++runs;
                           }),
              10000);
    EXPECT_EQ(runs, 10000);
    EXPECT_EQ(capture.texts(), QStringList{text("The action makes more than 10000 calls")});
}
