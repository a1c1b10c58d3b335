#include <gtest/gtest.h>

#include <quire/newsroom/Newsroom.h>

using namespace Newsroom;

TEST(SampleTest, LoadsWithoutAnError)
{
    QString error;
    EXPECT_NE(sampleModel(&error), nullptr) << error.toStdString();
}

TEST(SampleTest, EachCallGivesAFreshModel)
{
    const auto first = sampleModel();
    const auto second = sampleModel();
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    ASSERT_EQ(first->removeEntry(QStringLiteral("SHOWS")), Refusal::None);
    EXPECT_FALSE(first->entry(QStringLiteral("SHOWS")).ok());
    EXPECT_TRUE(second->entry(QStringLiteral("SHOWS")).ok());
}
