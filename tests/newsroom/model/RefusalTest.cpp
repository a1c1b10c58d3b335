#include <gtest/gtest.h>

#include <quire/newsroom/model/Answer.h>

#include "Printers.h"

using namespace Newsroom;

namespace {

struct Expected
{
    Refusal refusal;
    quint32 code;
};

const Expected all[] = {{Refusal::None, 0},
                        {Refusal::InvalidArgument, 0x80070057u},
                        {Refusal::BadPassword, 0x80070057u},
                        {Refusal::ServerNotFound, 0x80072741u},
                        {Refusal::NotAuthorized, 0x80040405u},
                        {Refusal::BadSyntax, 0x80040406u},
                        {Refusal::EntryExists, 0x8004040Au},
                        {Refusal::EntryGone, 0x8004040Bu},
                        {Refusal::StoryBeingEdited, 0x8004040Eu},
                        {Refusal::Locked, 0x8004040Fu},
                        {Refusal::PurgeLocked, 0x80040410u},
                        {Refusal::NotSignedOn, 0x80040416u},
                        {Refusal::PartialFailure, 0x80040450u},
                        {Refusal::ReadOnlyWire, 0x80040455u},
                        {Refusal::NoForm, 0x80040457u},
                        {Refusal::MarkupSyntax, 0x80040458u},
                        {Refusal::Offline, 0x80040802u},
                        {Refusal::OutOfSessions, 0x80040806u}};

} // namespace

TEST(RefusalTest, NumbersAreTheServersHresults)
{
    for (const Expected &expected : all)
        EXPECT_EQ(static_cast<quint32>(code(expected.refusal)), expected.code);
}

TEST(RefusalTest, EveryRefusalHasADescription)
{
    for (const Expected &expected : all)
        EXPECT_EQ(description(expected.refusal).isEmpty(), expected.refusal == Refusal::None);
}

TEST(RefusalTest, DescriptionOfAForeignNumberIsEmpty)
{
    EXPECT_TRUE(description(static_cast<Refusal>(static_cast<qint32>(0x80004005u))).isEmpty());
}

TEST(RefusalTest, AnswerHoldsAValueOrARefusal)
{
    const Answer<int> fine(7);
    EXPECT_TRUE(fine.ok());
    EXPECT_EQ(fine.value, 7);
    const Answer<int> refused(Refusal::Locked);
    EXPECT_FALSE(refused);
    EXPECT_EQ(refused.refusal, Refusal::Locked);
    EXPECT_EQ(refused.value, 0);
}
