#include <gtest/gtest.h>

#include <stdexcept>

#include <quire/testkit/Failure.h>

#include "support/QtPrinting.h"
#include "testkit/FailureCapture.h"

using namespace Quire::TestKit;

namespace {

int lineOf(const Place &place = Place::here())
{
    return place.line;
}

void throwing(const Failure &)
{
    throw std::runtime_error("no further");
}

} // namespace

TEST(Failure, PlaceIsTheLineThatCallsTheFunction)
{
    EXPECT_EQ(lineOf(), __LINE__);
}

TEST(Failure, EachIsCounted)
{
    const FailureCapture capture;
    const int before = failureCount();
    report(Place::here(), text("one"));
    report(Place::here(), text("two"));
    EXPECT_EQ(failureCount(), before + 2);
}

TEST(Failure, HandlerGetsPlaceAndText)
{
    const FailureCapture capture;
    report({"host.cpp", 17}, text("what"));
    EXPECT_EQ(capture.texts(), QStringList{text("what")});
    EXPECT_EQ(capture.lines(), QList<int>{17});
}

TEST(Failure, WithoutHandlerItGoesToStandardError)
{
    const FailureHandler before = setFailureHandler(nullptr);
    ::testing::internal::CaptureStderr();
    report({"host.cpp", 17}, text("Élection"));
    report({nullptr, 0}, text("nowhere"));
    const std::string written = ::testing::internal::GetCapturedStderr();
    setFailureHandler(before);
    EXPECT_EQ(written, "host.cpp:17: Élection\n?:0: nowhere\n");
}

TEST(Failure, SettingAHandlerAnswersTheOneBefore)
{
    const FailureHandler before = setFailureHandler(throwing);
    EXPECT_EQ(setFailureHandler(before), throwing);
}

TEST(Failure, WhatTheHandlerThrowsLeavesTheCheck)
{
    const FailureHandler before = setFailureHandler(throwing);
    EXPECT_THROW(report(Place::here(), text("what")), std::runtime_error);
    setFailureHandler(before);
}

TEST(Failure, NotesAreToldInTheirOrderForAsLongAsTheyLive)
{
    const FailureCapture capture;
    {
        const Note outer(text("the phone rings"));
        const Note inner(text("it rains"));
        report(Place::here(), text("what"));
    }
    report(Place::here(), text("then"));
    EXPECT_EQ(capture.texts(), (QStringList{text("what\n  while the phone rings\n  while it rains"), text("then")}));
}
