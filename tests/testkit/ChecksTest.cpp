#include <gtest/gtest.h>

#include <memory>

#include <quire/testkit/TestKit.h>

#include "support/QtPrinting.h"
#include "testkit/FailureCapture.h"

using namespace Quire::TestKit;

namespace {

const auto noLongerThere = static_cast<HRESULT>(0x8004040B);

long answer(HRESULT code)
{
    return code;
}

void raiseError(HRESULT code)
{
    throw _com_error(code);
}

QString only(const FailureCapture &capture)
{
    return capture.texts().size() == 1 ? capture.texts().first() : capture.texts().join(text("\n--\n"));
}

} // namespace

TEST(InWords, TellsTextAndCode)
{
    EXPECT_EQ(inWords(noLongerThere), text("Entry no longer exists. (0x8004040b)"));
}

TEST(InWords, ACodeWithoutTextIsItsDigits)
{
    EXPECT_EQ(inWords(static_cast<HRESULT>(0x80040403)), text("0x80040403"));
}

TEST(InWords, TellsWhatSigningOnMeansByIt)
{
    const QString words = inWords(E_INVALIDARG);
    EXPECT_TRUE(words.endsWith(text("; when signing on: Invalid user name or password."))) << words.toStdString();
    EXPECT_EQ(words.count(text("80070057")), 1) << words.toStdString();
}

TEST(QuireSucceeded, HoldsForSuccessWithoutAReport)
{
    const FailureCapture capture;
    EXPECT_TRUE(QUIRE_SUCCEEDED(answer(S_OK)));
    EXPECT_TRUE(QUIRE_SUCCEEDED(answer(S_FALSE)));
    EXPECT_TRUE(QUIRE_SUCCEEDED(static_cast<void>(answer(E_FAIL))));
    EXPECT_EQ(capture.texts(), QStringList());
}

TEST(QuireSucceeded, ReportsTheCallWithTheErrorInWords)
{
    const FailureCapture capture;
    EXPECT_FALSE(QUIRE_SUCCEEDED(answer(noLongerThere)));
    EXPECT_EQ(only(capture), text("answer(noLongerThere)\n  failed: Entry no longer exists. (0x8004040b)"));
    EXPECT_EQ(capture.lines(), QList<int>{__LINE__ - 2});
}

TEST(QuireSucceeded, ReportsWhatIsRaised)
{
    const FailureCapture capture;
    EXPECT_FALSE(QUIRE_SUCCEEDED(raiseError(noLongerThere)));
    EXPECT_EQ(only(capture), text("raiseError(noLongerThere)\n  raised Entry no longer exists. (0x8004040b)"));
}

TEST(QuireSucceeded, ReportsFalse)
{
    const FailureCapture capture;
    EXPECT_FALSE(QUIRE_SUCCEEDED(answer(S_OK) != S_OK));
    EXPECT_EQ(only(capture), text("answer(S_OK) != S_OK\n  answered false"));
}

TEST(QuireSucceeded, TakesArgumentsWithCommas)
{
    const FailureCapture capture;
    EXPECT_TRUE(QUIRE_SUCCEEDED(std::pair<int, int>(0, 1).first));
    EXPECT_EQ(capture.texts(), QStringList());
}

TEST(QuireFailedWith, HoldsForThatCodeAnsweredOrRaised)
{
    const FailureCapture capture;
    EXPECT_TRUE(QUIRE_FAILED_WITH(0x8004040B, answer(noLongerThere)));
    EXPECT_TRUE(QUIRE_FAILED_WITH(noLongerThere, raiseError(noLongerThere)));
    EXPECT_EQ(capture.texts(), QStringList());
}

TEST(QuireFailedWith, ReportsSuccess)
{
    const FailureCapture capture;
    EXPECT_FALSE(QUIRE_FAILED_WITH(noLongerThere, answer(S_OK)));
    EXPECT_EQ(only(capture), text("answer(S_OK)\n  succeeded\n  expected: Entry no longer exists. (0x8004040b)"));
}

TEST(QuireFailedWith, ReportsAnotherCode)
{
    const FailureCapture capture;
    EXPECT_FALSE(QUIRE_FAILED_WITH(noLongerThere, answer(static_cast<HRESULT>(0x8004040E))));
    EXPECT_EQ(only(capture), text("answer(static_cast<HRESULT>(0x8004040E))\n"
                                  "  failed: Story currently being edited. (0x8004040e)\n"
                                  "  expected: Entry no longer exists. (0x8004040b)"));
}

namespace {

/// A session with one story, 7, of the queue Q.
class QuireStorySucceeded : public ::testing::Test
{
protected:
    StandIn newsroom{"form F\n  <zeko:form/>\nqueue Q form=F\n  story id=7:1:1\n    title: Rain\n\n    Text.\n"};
    Quire::QuireCOM *session = newsroom.signOn();
    Quire::StoryID id{7, 1, 1};
    std::unique_ptr<Quire::Story> story = std::make_unique<Quire::Story>(text("Q"), &id);
};

} // namespace

TEST_F(QuireStorySucceeded, HoldsForCallsThatAnswerNothingOrTrue)
{
    QString title;
    EXPECT_TRUE(QUIRE_STORY_SUCCEEDED(*story, story->GetField(text("title"), title)));
    EXPECT_EQ(title, text("Rain"));
    EXPECT_TRUE(QUIRE_STORY_SUCCEEDED(*story, story->Save(true)));
}

TEST_F(QuireStorySucceeded, ReportsTheStorysError)
{
    const FailureCapture capture;
    newsroom.faults().failNext(text("Save"), Fault::hresult(noLongerThere));
    EXPECT_FALSE(QUIRE_STORY_SUCCEEDED(*story, story->Save(true)));
    EXPECT_EQ(only(capture), text("story->Save(true)\n  failed: Entry no longer exists. (0x8004040b)"));
}

TEST_F(QuireStorySucceeded, ReportsWhatIsRaised)
{
    const FailureCapture capture;
    newsroom.faults().failNext(text("Save"), Fault::raise(noLongerThere));
    EXPECT_FALSE(QUIRE_STORY_SUCCEEDED(*story, story->Save(true)));
    EXPECT_EQ(only(capture), text("story->Save(true)\n  raised Entry no longer exists. (0x8004040b)"));
}
