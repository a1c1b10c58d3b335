// A host's own test with GoogleTest: including one header leads the kit's failures to the running test.

#include <gtest/gtest-spi.h>

#include <quire/testkit/GoogleTest.h>

#include "testkit/FailureCapture.h"

TEST(GoogleTest, GetsTheFailuresWithTheirPlace)
{
    EXPECT_NONFATAL_FAILURE(QUIRE_SUCCEEDED(static_cast<HRESULT>(0x8004040B)), "Entry no longer exists. (0x8004040b)");
}

TEST(GoogleTest, AnswersTheCheckSoThatATestCanEnd)
{
    EXPECT_TRUE(QUIRE_SUCCEEDED(S_OK));
}

TEST(GoogleTest, GetsWhatThePlaceIsNotKnownOf)
{
    EXPECT_NONFATAL_FAILURE(Quire::TestKit::report({nullptr, 0}, text("what")), "what");
}
