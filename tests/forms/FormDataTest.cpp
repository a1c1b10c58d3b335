#include <quire/forms/FormData.h>

#include <QElapsedTimer>
#include <QStringList>

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>

#include <quire/XML.h>
#include <quire/forms/AttributeCodec.h>

#include "fuzz/forms/FormChecks.h"
#include "support/QtPrinting.h"
#include "support/Text.h"

using Quire::Field;
using Quire::FormData;

namespace {

std::vector<Field> fieldsOf(const QString &markup)
{
    return FormData(text("FORM"), markup).m_Fields;
}

std::vector<Field> fieldsOf(const char *markup)
{
    return fieldsOf(text(markup));
}

QStringList namesOf(const std::vector<Field> &fields)
{
    QStringList names;
    for (const Field &field : fields)
        names.append(field.m_Id);
    return names;
}

QStringList names(const char *markup)
{
    return namesOf(fieldsOf(markup));
}

QStringList list(const char *words)
{
    return text(words).split(QLatin1Char(' '));
}

/// The one field of a form of one cell, with these attributes and this content of form, row and cell.
Field cell(const char *cellAttributes, const char *rowAttributes = "", const char *formAttributes = "",
           const char *content = "")
{
    const std::string markup = std::string("<zeko:form ") + formAttributes + "><zeko:row " + rowAttributes +
                               "><zeko:cell idref=a " + cellAttributes + ">" + content +
                               "</zeko:cell></zeko:row></zeko:form>";
    const std::vector<Field> fields = fieldsOf(markup.c_str());
    EXPECT_EQ(fields.size(), 1u) << markup;
    return fields.empty() ? Field() : fields.front();
}

} // namespace

// ---- the form -------------------------------------------------------------------------------------------------------

TEST(FormData, KeepsTheNameItIsGiven)
{
    EXPECT_EQ(FormData(text("Rundown"), text("<zeko:form name=other/>")).m_FormName, text("Rundown"));
}

TEST(FormData, HasNoFieldsWithoutText)
{
    EXPECT_TRUE(fieldsOf("").empty());
    EXPECT_TRUE(fieldsOf(QString()).empty());
}

TEST(FormData, HasNoFieldsWithoutAForm)
{
    EXPECT_TRUE(fieldsOf("no markup").empty());
    EXPECT_TRUE(fieldsOf("<form><zeko:row><zeko:cell idref=a/></zeko:row></form>").empty());
    EXPECT_TRUE(fieldsOf("<zeko:row><zeko:cell idref=a/></zeko:row>").empty());
}

TEST(FormData, LooksAtTheLetterCaseOfElements)
{
    EXPECT_TRUE(fieldsOf("<zeko:Form><zeko:row><zeko:cell idref=a/></zeko:row></zeko:Form>").empty());
    EXPECT_TRUE(fieldsOf("<zeko:form><ZEKO:ROW><zeko:cell idref=a/></ZEKO:ROW></zeko:form>").empty());
    EXPECT_TRUE(fieldsOf("<zeko:form><zeko:row><zeko:Cell idref=a/></zeko:row></zeko:form>").empty());
}

TEST(FormData, IsFoundAtAnyDepth)
{
    EXPECT_EQ(names("<?xml version=1?><a><b><zeko:form><zeko:row><zeko:cell idref=a/></zeko:row></zeko:form></b></a>"),
              list("a"));
}

TEST(FormData, IsTheFirstOfSeveral)
{
    EXPECT_EQ(names("<x><zeko:form><zeko:row><zeko:cell idref=a/></zeko:row></zeko:form></x>"
                    "<zeko:form><zeko:row><zeko:cell idref=b/></zeko:row></zeko:form>"),
              list("a"));
}

TEST(FormData, IsTheFirstEvenWhenThatIsEmpty)
{
    EXPECT_TRUE(
        fieldsOf("<zeko:form></zeko:form><zeko:form><zeko:row><zeko:cell idref=b/></zeko:row></zeko:form>").empty());
}

TEST(FormData, CopiesAndMoves)
{
    FormData original(text("F"), text("<zeko:form><zeko:row><zeko:cell idref=a/></zeko:row></zeko:form>"));
    FormData copy(original);
    copy.m_Fields.front().m_Id = text("b");
    EXPECT_EQ(namesOf(original.m_Fields), list("a"));
    FormData assigned(text("G"), QString());
    assigned = copy;
    EXPECT_EQ(assigned.m_FormName, text("F"));
    EXPECT_EQ(namesOf(assigned.m_Fields), list("b"));
    const FormData moved(std::move(assigned));
    EXPECT_EQ(moved.m_FormName, text("F"));
    EXPECT_EQ(namesOf(moved.m_Fields), list("b"));
}

// ---- rows and cells -------------------------------------------------------------------------------------------------

TEST(FormDataCells, ComeInOrderWithoutThoseThatNameNoField)
{
    EXPECT_EQ(names("<zeko:form><zeko:row><zeko:cell idref=a/><zeko:cell idref=b/><zeko:cell idref=c/><zeko:cell/>"
                    "</zeko:row></zeko:form>"),
              list("a b c"));
}

TEST(FormDataCells, ComeRowByRow)
{
    EXPECT_EQ(names("<zeko:form><zeko:row><zeko:cell idref=a/><zeko:cell idref=b/></zeko:row>"
                    "<zeko:row/><zeko:row><zeko:cell idref=c/></zeko:row></zeko:form>"),
              list("a b c"));
}

TEST(FormDataCells, OutsideOfRowsDoNotCount)
{
    EXPECT_EQ(names("<zeko:form><zeko:cell idref=x/><zeko:row><zeko:cell idref=a/></zeko:row><zeko:cell idref=y/>"
                    "</zeko:form><zeko:row><zeko:cell idref=z/></zeko:row>"),
              list("a"));
}

TEST(FormDataCells, WithoutAValueForTheirFieldDoNotCount)
{
    EXPECT_TRUE(
        fieldsOf("<zeko:form><zeko:row><zeko:cell idref/><zeko:cell idref=\"\"/></zeko:row></zeko:form>").empty());
}

TEST(FormDataCells, DoNotTakeTheirFieldFromTheRow)
{
    EXPECT_EQ(names("<zeko:form idref=f><zeko:row idref=r><zeko:cell/><zeko:cell idref=a/></zeko:row></zeko:form>"),
              list("a"));
}

TEST(FormDataCells, MayShowOneFieldTwice)
{
    EXPECT_EQ(names("<zeko:form><zeko:row><zeko:cell idref=a/><zeko:cell idref=a/></zeko:row></zeko:form>"),
              list("a a"));
}

TEST(FormDataCells, KeepTheLetterCaseOfTheirField)
{
    EXPECT_EQ(names("<zeko:form><zeko:row><zeko:cell idref=Title/></zeko:row></zeko:form>"), list("Title"));
}

TEST(FormDataCells, LieAtAnyDepthInTheirRow)
{
    EXPECT_EQ(
        names("<zeko:form><x><zeko:row><y><zeko:cell idref=a/></y><zeko:cell idref=b/></zeko:row></x></zeko:form>"),
        list("a b"));
}

TEST(FormDataCells, WithinCellsCountOnTheirOwn)
{
    EXPECT_EQ(names("<zeko:form><zeko:row><zeko:cell idref=a><zeko:cell idref=b><zeko:cell idref=c/></zeko:cell>"
                    "</zeko:cell><zeko:cell idref=d/></zeko:row></zeko:form>"),
              list("a b c d"));
}

TEST(FormDataCells, OfARowWithinARowBelongToBoth)
{
    EXPECT_EQ(names("<zeko:form><zeko:row><zeko:cell idref=a/><zeko:row><zeko:cell idref=b/></zeko:row>"
                    "<zeko:cell idref=c/></zeko:row><zeko:row><zeko:cell idref=d/></zeko:row></zeko:form>"),
              list("a b c b d"));
}

TEST(FormDataCells, OfARowWithinACellBelongToBothRows)
{
    EXPECT_EQ(names("<zeko:form><zeko:row><zeko:cell idref=a><zeko:row><zeko:cell idref=b/></zeko:row></zeko:cell>"
                    "</zeko:row></zeko:form>"),
              list("a b b"));
}

TEST(FormDataCells, OfARowWithinARowTakeWhatEitherSays)
{
    const std::vector<Field> fields =
        fieldsOf("<zeko:form align=right><zeko:row length=40 style=b><zeko:row style=i llength=8><zeko:cell idref=a/>"
                 "</zeko:row></zeko:row></zeko:form>");
    ASSERT_EQ(fields.size(), 2u);
    EXPECT_EQ(fields[0].m_Length, 10); // of the outer row
    EXPECT_EQ(fields[0].m_Style, 1);
    EXPECT_EQ(fields[0].m_LabelLength, 0);
    EXPECT_EQ(fields[1].m_Length, 0); // of the inner row, which takes nothing from the outer one
    EXPECT_EQ(fields[1].m_Style, 2);
    EXPECT_EQ(fields[1].m_LabelLength, 2);
    EXPECT_EQ(fields[1].m_Align, 2);
}

TEST(FormDataCells, OfAFormWithinTheFormCountToo)
{
    EXPECT_EQ(names("<zeko:form><zeko:form><zeko:row><zeko:cell idref=a/></zeko:row></zeko:form></zeko:form>"),
              list("a"));
}

TEST(FormDataCells, OfUnclosedMarkupCount)
{
    EXPECT_EQ(names("<zeko:form><zeko:row><zeko:cell idref=a/><zeko:cell idref=b>B"), list("a b"));
}

// ---- lengths --------------------------------------------------------------------------------------------------------

TEST(FormDataLength, IsAQuarterOfTheNumberRoundedTowardsZero)
{
    EXPECT_EQ(cell("length=40").m_Length, 10);
    EXPECT_EQ(cell("length=42").m_Length, 10);
    EXPECT_EQ(cell("length=3").m_Length, 0);
    EXPECT_EQ(cell("length=-3").m_Length, 0);
    EXPECT_EQ(cell("length=-42").m_Length, -10);
}

TEST(FormDataLength, IsZeroForWhatIsNoNumber)
{
    EXPECT_EQ(cell("length=wide", "length=40").m_Length, 0);
    EXPECT_EQ(cell("length=4.5", "length=40").m_Length, 0);
    EXPECT_EQ(cell("length=0x28", "length=40").m_Length, 0);
}

TEST(FormDataLength, IsZeroForANumberOfMoreThan32Bits)
{
    EXPECT_EQ(cell("length=2147483647").m_Length, 536870911);
    EXPECT_EQ(cell("length=2147483648").m_Length, 0);
    EXPECT_EQ(cell("length=-2147483648").m_Length, -536870912);
}

TEST(FormDataLength, TakesWhiteSpaceAroundTheNumber)
{
    EXPECT_EQ(cell("length=\" 40 \"").m_Length, 10);
}

TEST(FormDataLength, ComesFromFormAndRowUnlessTheCellHasOne)
{
    EXPECT_EQ(cell("", "", "length=40").m_Length, 10);
    EXPECT_EQ(cell("", "length=20", "length=40").m_Length, 5);
    EXPECT_EQ(cell("length=8", "length=20", "length=40").m_Length, 2);
    EXPECT_EQ(cell("length=0", "length=20").m_Length, 0);
}

TEST(FormDataLength, WithoutAValueCountsAsMissing)
{
    EXPECT_EQ(cell("length", "length=20").m_Length, 5);
    EXPECT_EQ(cell("length=\"\"", "length=20").m_Length, 5);
}

TEST(FormDataLength, OfTheLabelIsReadTheSameWay)
{
    EXPECT_EQ(cell("llength=42").m_LabelLength, 10);
    EXPECT_EQ(cell("llength=-3").m_LabelLength, 0);
    EXPECT_EQ(cell("llength=wide", "llength=40").m_LabelLength, 0);
    EXPECT_EQ(cell("", "llength=20", "llength=40").m_LabelLength, 5);
    EXPECT_EQ(cell("llength", "", "llength=40").m_LabelLength, 10);
}

TEST(FormDataLength, OfValueAndLabelAreApart)
{
    const Field field = cell("length=40 llength=80");
    EXPECT_EQ(field.m_Length, 10);
    EXPECT_EQ(field.m_LabelLength, 20);
    EXPECT_EQ(field.Width(), 20);
}

// ---- styles ---------------------------------------------------------------------------------------------------------

TEST(FormDataStyle, IsABitForEachLetter)
{
    EXPECT_EQ(cell("style=b").m_Style, 1);
    EXPECT_EQ(cell("style=i").m_Style, 2);
    EXPECT_EQ(cell("style=u").m_Style, 4);
    EXPECT_EQ(cell("").m_Style, 0);
}

TEST(FormDataStyle, MayBeACapital)
{
    EXPECT_EQ(cell("", "", "style=B").m_Style, 1);
    EXPECT_EQ(cell("style=I").m_Style, 2);
    EXPECT_EQ(cell("style=U").m_Style, 4);
}

TEST(FormDataStyle, OfSeveralLettersIsNone)
{
    EXPECT_EQ(cell("style=bi").m_Style, 0);
    EXPECT_EQ(cell("style=bi", "style=b").m_Style, 0);
    EXPECT_EQ(cell("style=\"b i\"").m_Style, 0);
    EXPECT_EQ(cell("style=\" b\"").m_Style, 0);
    EXPECT_EQ(cell("style=bold").m_Style, 0);
}

TEST(FormDataStyle, ReplacesThatOfTheElementAbove)
{
    EXPECT_EQ(cell("style=u", "style=i", "style=b").m_Style, 4);
    EXPECT_EQ(cell("", "style=i", "style=b").m_Style, 2);
    EXPECT_EQ(cell("", "", "style=b").m_Style, 1);
    EXPECT_EQ(cell("style=none", "style=i").m_Style, 0);
}

TEST(FormDataStyle, WithoutAValueCountsAsMissing)
{
    EXPECT_EQ(cell("style", "style=i").m_Style, 2);
    EXPECT_EQ(cell("style=\"\"", "style=i").m_Style, 2);
}

TEST(FormDataStyle, OfTheLabelIsReadTheSameWay)
{
    EXPECT_EQ(cell("lstyle=B").m_LabelStyle, 1);
    EXPECT_EQ(cell("lstyle=i").m_LabelStyle, 2);
    EXPECT_EQ(cell("lstyle=u").m_LabelStyle, 4);
    EXPECT_EQ(cell("lstyle=bi", "lstyle=b").m_LabelStyle, 0);
    EXPECT_EQ(cell("", "", "lstyle=u").m_LabelStyle, 4);
    EXPECT_EQ(cell("lstyle", "lstyle=u").m_LabelStyle, 4);
}

TEST(FormDataStyle, OfValueAndLabelAreApart)
{
    const Field field = cell("style=b lstyle=u");
    EXPECT_EQ(field.m_Style, 1);
    EXPECT_EQ(field.m_LabelStyle, 4);
}

// ---- alignment ------------------------------------------------------------------------------------------------------

TEST(FormDataAlign, IsRightCentreOrLeft)
{
    EXPECT_EQ(cell("align=right").m_Align, 2);
    EXPECT_EQ(cell("align=center").m_Align, 1);
    EXPECT_EQ(cell("align=left").m_Align, 0);
    EXPECT_EQ(cell("").m_Align, 0);
}

TEST(FormDataAlign, DoesNotLookAtLetterCase)
{
    EXPECT_EQ(cell("align=RIGHT").m_Align, 2);
    EXPECT_EQ(cell("align=Center").m_Align, 1);
}

TEST(FormDataAlign, IsLeftForAnyOtherValue)
{
    EXPECT_EQ(cell("align=middle", "align=right").m_Align, 0);
    EXPECT_EQ(cell("align=centre", "align=right").m_Align, 0);
    EXPECT_EQ(cell("align=\"right \"", "align=right").m_Align, 0);
}

TEST(FormDataAlign, ReplacesThatOfTheElementAbove)
{
    EXPECT_EQ(cell("", "", "align=right").m_Align, 2);
    EXPECT_EQ(cell("", "align=center", "align=right").m_Align, 1);
    EXPECT_EQ(cell("align=left", "align=center").m_Align, 0);
    EXPECT_EQ(cell("align", "align=center").m_Align, 1);
}

TEST(FormDataAlign, OfTheLabelIsAlwaysLeft)
{
    EXPECT_EQ(cell("lalign=right").m_LabelAlign, 0);
    EXPECT_EQ(cell("lalign=center", "lalign=right", "lalign=right").m_LabelAlign, 0);
    EXPECT_EQ(cell("", "lalign=right").m_LabelAlign, 0);
    EXPECT_EQ(cell("align=right").m_LabelAlign, 0);
}

// ---- labels ---------------------------------------------------------------------------------------------------------

TEST(FormDataLabel, IsTheTextOfTheCell)
{
    EXPECT_EQ(cell("", "", "", "Slug").m_Label, text("Slug"));
}

TEST(FormDataLabel, IsDecodedAndNotTrimmed)
{
    EXPECT_EQ(cell("", "", "", " A &amp; B ").m_Label, text(" A & B "));
}

TEST(FormDataLabel, IsNullInAnEmptyCell)
{
    EXPECT_TRUE(cell("").m_Label.isNull());
    EXPECT_TRUE(fieldsOf("<zeko:form><zeko:row><zeko:cell idref=a/></zeko:row></zeko:form>").front().m_Label.isNull());
}

TEST(FormDataLabel, IsNullWhenTheCellBeginsWithAnEmptyText)
{
    EXPECT_TRUE(cell("", "", "", "&unknown;").m_Label.isNull());
    EXPECT_TRUE(cell("", "", "", "&unknown;<b>bold</b>").m_Label.isNull());
}

TEST(FormDataLabel, IsNullWhenTheCellBeginsWithAnElement)
{
    EXPECT_TRUE(cell("", "", "", "<b>bold</b>text").m_Label.isNull());
}

TEST(FormDataLabel, IsNullWhenTheCellBeginsWithAComment)
{
    EXPECT_TRUE(cell("", "", "", "<!--x-->text").m_Label.isNull());
}

TEST(FormDataLabel, IsOnlyTheTextThatTheCellBeginsWith)
{
    EXPECT_EQ(cell("", "", "", "Sl<b>u</b>g").m_Label, text("Sl"));
}

TEST(FormDataLabel, DoesNotComeFromFormOrRow)
{
    const std::vector<Field> fields =
        fieldsOf("<zeko:form>form<zeko:row>row<zeko:cell idref=a/></zeko:row></zeko:form>");
    ASSERT_EQ(fields.size(), 1u);
    EXPECT_TRUE(fields[0].m_Label.isNull());
}

// ---- read-only ------------------------------------------------------------------------------------------------------

TEST(FormDataReadOnly, IsFalseForNoInAnyLetterCase)
{
    EXPECT_FALSE(cell("ro=No").m_ReadOnly);
    EXPECT_FALSE(cell("ro=no").m_ReadOnly);
    EXPECT_FALSE(cell("ro=NO").m_ReadOnly);
}

TEST(FormDataReadOnly, IsTrueForEveryOtherValue)
{
    EXPECT_TRUE(cell("ro=yes").m_ReadOnly);
    EXPECT_TRUE(cell("ro=false").m_ReadOnly);
    EXPECT_TRUE(cell("ro=0").m_ReadOnly);
    EXPECT_TRUE(cell("ro=\"no \"").m_ReadOnly);
}

TEST(FormDataReadOnly, IsTrueForAnEmptyValue)
{
    EXPECT_TRUE(cell("ro=\"\"").m_ReadOnly);
}

TEST(FormDataReadOnly, IsTrueForABareAttribute)
{
    EXPECT_TRUE(cell("ro").m_ReadOnly);
}

TEST(FormDataReadOnly, IsFalseWithoutTheAttribute)
{
    EXPECT_FALSE(cell("").m_ReadOnly);
}

TEST(FormDataReadOnly, IsFalseWithoutTheAttributeEvenForAFieldThatTheServerKeeps)
{
    ASSERT_TRUE(Quire::IsAttributeReadOnly(text("modify-date")));
    const std::vector<Field> fields =
        fieldsOf("<zeko:form><zeko:row><zeko:cell idref=modify-date/><zeko:cell idref=modify-date ro=no/>"
                 "<zeko:cell idref=modify-date ro/></zeko:row></zeko:form>");
    ASSERT_EQ(fields.size(), 3u);
    EXPECT_FALSE(fields[0].m_ReadOnly);
    EXPECT_FALSE(fields[1].m_ReadOnly);
    EXPECT_TRUE(fields[2].m_ReadOnly);
}

TEST(FormDataReadOnly, DoesNotComeFromFormOrRow)
{
    EXPECT_FALSE(cell("", "ro=yes", "ro").m_ReadOnly);
    EXPECT_TRUE(cell("ro", "ro=no", "ro=no").m_ReadOnly);
}

TEST(FormDataReadOnly, IsTheSameForACellOfTwoRows)
{
    const std::vector<Field> fields =
        fieldsOf("<zeko:form><zeko:row><zeko:row><zeko:cell idref=a/><zeko:cell idref=b ro/></zeko:row></zeko:row>"
                 "</zeko:form>");
    ASSERT_EQ(namesOf(fields), list("a b a b"));
    EXPECT_FALSE(fields[0].m_ReadOnly);
    EXPECT_TRUE(fields[1].m_ReadOnly);
    EXPECT_FALSE(fields[2].m_ReadOnly);
    EXPECT_TRUE(fields[3].m_ReadOnly);
}

// ---- attributes -----------------------------------------------------------------------------------------------------

TEST(FormDataAttributes, HaveNamesInTheirOwnLetterCase)
{
    const Field field = cell("LENGTH=40 Style=b Align=right RO Llength=40 LStyle=u");
    EXPECT_EQ(field.m_Length, 0);
    EXPECT_EQ(field.m_Style, 0);
    EXPECT_EQ(field.m_Align, 0);
    EXPECT_FALSE(field.m_ReadOnly);
    EXPECT_EQ(field.m_LabelLength, 0);
    EXPECT_EQ(field.m_LabelStyle, 0);
    EXPECT_TRUE(fieldsOf("<zeko:form><zeko:row><zeko:cell IDREF=a/></zeko:row></zeko:form>").empty());
}

TEST(FormDataAttributes, OfOneCellDoNotReachTheNext)
{
    const std::vector<Field> fields =
        fieldsOf("<zeko:form><zeko:row length=8><zeko:cell idref=a length=40 style=b align=right ro>A</zeko:cell>"
                 "<zeko:cell idref=b/></zeko:row><zeko:row><zeko:cell idref=c/></zeko:row></zeko:form>");
    ASSERT_EQ(fields.size(), 3u);
    EXPECT_EQ(fields[1].m_Length, 2);
    EXPECT_EQ(fields[1].m_Style, 0);
    EXPECT_EQ(fields[1].m_Align, 0);
    EXPECT_FALSE(fields[1].m_ReadOnly);
    EXPECT_TRUE(fields[1].m_Label.isNull());
    EXPECT_EQ(fields[2].m_Length, 0);
}

TEST(FormDataAttributes, LeaveTheExtraAlone)
{
    EXPECT_EQ(cell("extra=5 m_Extra=5").m_Extra, 0);
}

// ---- against the long way, and large --------------------------------------------------------------------------------

namespace {

/// A form made up from a seed: rows, cells and other elements in and beside each other, with and without attributes.
class RandomForm
{
public:
    explicit RandomForm(unsigned seed)
        : m_Random(seed)
    {}

    QString make()
    {
        const QString form = element("zeko:form", 0);
        return below(4) ? form : element("x", 5) + QStringLiteral("<y>") + form + QStringLiteral("</y>") + form;
    }

private:
    int below(int limit) { return int(m_Random() % unsigned(limit)); }

    QString attributes()
    {
        static const char *const all[] = {" idref=a",      " idref=b",   " idref=modify-date",
                                          " idref=c",      " idref",     " idref=\"\"",
                                          " ro",           " ro=no",     " ro=Yes",
                                          " length=17",    " length",    " length=x",
                                          " style=b",      " style=BI",  " align=right",
                                          " align=left",   " llength=9", " lstyle=U",
                                          " lalign=right", " other=1"};
        QString text;
        for (int n = below(5); n > 0; --n)
            text += QLatin1String(all[below(int(std::size(all)))]);
        return text;
    }

    QString element(const char *name, int depth)
    {
        static const char *const inside[] = {"zeko:row", "zeko:row", "zeko:cell", "zeko:cell", "zeko:cell", "x"};
        QString markup = QLatin1Char('<') + QLatin1String(name) + attributes() + QLatin1Char('>');
        for (int n = depth < 5 ? below(5) : 0; n > 0; --n) {
            if (below(4) == 0)
                markup += QStringLiteral("text");
            markup += element(inside[below(int(std::size(inside)))], depth + 1);
        }
        return markup + QStringLiteral("</") + QLatin1String(name) + QLatin1Char('>');
    }

    std::mt19937 m_Random;
};

/// Rows and cells, so many of each, with whatever stands between \a before and \a after.
QString largeForm(int rows, int cells, const char *before = "", const char *after = "")
{
    QString markup = QStringLiteral("<zeko:form length=8>");
    for (int row = 0; row < rows; ++row) {
        markup += QStringLiteral("<zeko:row style=b>");
        for (int column = 0; column < cells; ++column)
            markup += QLatin1String(before) + QStringLiteral("<zeko:cell idref=f%1>Label</zeko:cell>").arg(column) +
                      QLatin1String(after);
        markup += QStringLiteral("</zeko:row>");
    }
    return markup + QStringLiteral("</zeko:form>");
}

constexpr int endless = 60000; // milliseconds that only a quadratic reading takes

} // namespace

TEST(FormDataAndTheLongWay, AgreeOnRandomForms)
{
    int fields = 0;
    for (unsigned seed = 0; seed < 1500; ++seed) {
        const QString markup = RandomForm(seed).make();
        ASSERT_EQ(FormFuzz::checkForm(markup), QString()) << seed << ' ' << markup.toStdString();
        fields += int(fieldsOf(markup).size());
    }
    EXPECT_GT(fields, 10000) << "the random forms show too little";
}

TEST(FormDataAndTheLongWay, AgreeOnAWideForm)
{
    EXPECT_EQ(FormFuzz::checkForm(largeForm(30, 30)), QString());
}

TEST(FormDataOfManyCells, IsReadInOneGo)
{
    QElapsedTimer timer;
    timer.start();
    const std::vector<Field> fields = fieldsOf(largeForm(1, 100000));
    ASSERT_EQ(fields.size(), 100000u);
    EXPECT_EQ(fields.back().m_Id, text("f99999"));
    EXPECT_EQ(fields.back().m_Style, 1);
    EXPECT_LT(timer.elapsed(), endless);
}

TEST(FormDataOfManyCells, MayHaveThemInManyRows)
{
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(fieldsOf(largeForm(100000, 1)).size(), 100000u);
    EXPECT_LT(timer.elapsed(), endless);
}

TEST(FormDataOfManyCells, MayBeDeep)
{
    constexpr int depth = 100000;
    QElapsedTimer timer;
    timer.start();
    const QString open = QStringLiteral("<zeko:cell idref=a>").repeated(depth);
    EXPECT_EQ(fieldsOf(QStringLiteral("<zeko:form><zeko:row>") + open).size(), std::size_t(depth));
    EXPECT_LT(timer.elapsed(), endless);
}

TEST(FormDataOfManyCells, MayBeInADeepRow)
{
    constexpr int depth = 100000;
    QElapsedTimer timer;
    timer.start();
    const QString open = QStringLiteral("<zeko:row>").repeated(depth);
    EXPECT_EQ(fieldsOf(QStringLiteral("<zeko:form>") + open + QStringLiteral("<zeko:cell idref=a/>")).size(),
              std::size_t(depth)); // the cell belongs to every row around it
    EXPECT_LT(timer.elapsed(), endless);
}

TEST(FormDataOfManyCells, MayNameNoFieldInDeepRows)
{
    constexpr int depth = 100000;
    QElapsedTimer timer;
    timer.start();
    const QString open = QStringLiteral("<zeko:row><zeko:cell>").repeated(depth);
    EXPECT_TRUE(fieldsOf(QStringLiteral("<zeko:form>") + open).empty());
    EXPECT_LT(timer.elapsed(), endless);
}

TEST(FormData, DoesNotTouchTheCounterOfOthersSearches)
{
    XML::Tag::FindNthTagCounter = 7;
    EXPECT_EQ(fieldsOf(largeForm(3, 3)).size(), 9u);
    EXPECT_EQ(XML::Tag::FindNthTagCounter, 7);
}
