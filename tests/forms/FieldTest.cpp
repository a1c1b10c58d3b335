#include <quire/forms/Field.h>

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

#include "support/QtPrinting.h"

using Quire::Field;

namespace {

Field ofWidths(int length, int labelLength)
{
    Field field;
    field.m_Length = length;
    field.m_LabelLength = labelLength;
    return field;
}

} // namespace

TEST(Field, HasDefaults)
{
    const Field field;
    EXPECT_TRUE(field.m_Id.isNull());
    EXPECT_EQ(field.m_Length, 0);
    EXPECT_EQ(field.m_Style, 0);
    EXPECT_EQ(field.m_Align, 0);
    EXPECT_TRUE(field.m_Label.isNull());
    EXPECT_EQ(field.m_LabelLength, 0);
    EXPECT_EQ(field.m_LabelStyle, 0);
    EXPECT_EQ(field.m_LabelAlign, 0);
    EXPECT_FALSE(field.m_ReadOnly);
    EXPECT_EQ(field.m_Extra, 0);
}

TEST(Field, NumbersHave32Bits)
{
    static_assert(std::is_same<decltype(Field::m_Length), qint32>::value, "length");
    static_assert(std::is_same<decltype(Field::m_Style), qint32>::value, "style");
    static_assert(std::is_same<decltype(Field::m_Align), qint32>::value, "align");
    static_assert(std::is_same<decltype(Field::m_LabelLength), qint32>::value, "label length");
    static_assert(std::is_same<decltype(Field::m_LabelStyle), qint32>::value, "label style");
    static_assert(std::is_same<decltype(Field::m_LabelAlign), qint32>::value, "label align");
    static_assert(std::is_same<decltype(Field::m_Extra), qint32>::value, "extra");
}

TEST(Field, WidthIsTheLargerOfBothLengths)
{
    EXPECT_EQ(ofWidths(10, 4).Width(), 10);
    EXPECT_EQ(ofWidths(4, 10).Width(), 10);
}

TEST(Field, WidthOfEqualLengthsIsThatLength)
{
    EXPECT_EQ(ofWidths(7, 7).Width(), 7);
    EXPECT_EQ(Field().Width(), 0);
}

TEST(Field, WidthTakesNegativeLengths)
{
    EXPECT_EQ(ofWidths(-3, -5).Width(), -3);
    EXPECT_EQ(ofWidths(-3, 0).Width(), 0);
}

TEST(Field, CopiesAndMovesEveryMember)
{
    Field original;
    original.m_Id = QStringLiteral("title");
    original.m_Length = 1;
    original.m_Style = 2;
    original.m_Align = 3;
    original.m_Label = QStringLiteral("Title");
    original.m_LabelLength = 4;
    original.m_LabelStyle = 5;
    original.m_LabelAlign = 6;
    original.m_ReadOnly = true;
    original.m_Extra = 7;

    Field copy(original);
    Field assigned;
    assigned = copy;
    const Field moved(std::move(assigned));
    for (const Field *field : {&std::as_const(copy), &moved}) {
        EXPECT_EQ(field->m_Id, QStringLiteral("title"));
        EXPECT_EQ(field->m_Length, 1);
        EXPECT_EQ(field->m_Style, 2);
        EXPECT_EQ(field->m_Align, 3);
        EXPECT_EQ(field->m_Label, QStringLiteral("Title"));
        EXPECT_EQ(field->m_LabelLength, 4);
        EXPECT_EQ(field->m_LabelStyle, 5);
        EXPECT_EQ(field->m_LabelAlign, 6);
        EXPECT_TRUE(field->m_ReadOnly);
        EXPECT_EQ(field->m_Extra, 7);
    }
    copy.m_Id = QStringLiteral("other");
    EXPECT_EQ(original.m_Id, QStringLiteral("title"));
}
