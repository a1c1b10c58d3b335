/// \file
/// Trees of great depth and width, and texts made to be slow. A test that recursed or took quadratic time would crash
/// or run into the time limit of the whole program.

#include <gtest/gtest.h>

#include "markup/Support.h"

using namespace MarkupTest;
using XML::NamedTag;
using XML::Tag;

namespace {

constexpr int Deep = 1000000;
constexpr int Wide = 100000;
constexpr int Megabyte = 1 << 20;

QString nested(int depth)
{
    return text("<b>").repeated(depth) + QLatin1Char('x') + text("</b>").repeated(depth);
}

int visits = 0;

/// A host's class that overrides nothing.
class Plain : public NamedTag
{
public:
    Plain()
        : NamedTag(text("plain"))
    {}
};

class Depth : public testing::Test
{
protected:
    static void SetUpTestSuite() { s_Tree = parsed(nested(Deep)); }
    static void TearDownTestSuite() { s_Tree.reset(); }

    static TagPtr s_Tree;
};

TagPtr Depth::s_Tree;

} // namespace

TEST_F(Depth, IsParsedAndWritten)
{
    EXPECT_EQ(written(*s_Tree), nested(Deep));
}

TEST_F(Depth, IsWrittenAsTextAlone)
{
    QString out;
    s_Tree->TagToText(out, QChar(), false, true);
    EXPECT_EQ(out, text("x"));
}

TEST_F(Depth, IsSearched)
{
    const QString null;
    EXPECT_EQ(s_Tree->FindTag(text("none"), null, null), nullptr);
    EXPECT_EQ(s_Tree->FindChildTag(text("none"), null, null), nullptr);
    EXPECT_EQ(s_Tree->FindNthTag(text("b"), Deep, null, null, true), nullptr);
    EXPECT_EQ(Tag::FindNthTagCounter, Deep);
    Tag *deepest = s_Tree->FindNthTag(text("b"), Deep - 1, null, null, true);
    ASSERT_NE(deepest, nullptr);
    EXPECT_EQ(deepest->GetEnclosedTextItem(), text("x"));
    EXPECT_FALSE(deepest->IsChildOf(text("none")));
    EXPECT_FALSE(deepest->m_Child->Is_or_IsChildOf(text("none")));
}

TEST_F(Depth, IsDuplicatedAndDestroyed)
{
    const TagPtr copy(s_Tree->Duplicate());
    EXPECT_EQ(written(*copy), nested(Deep));
}

TEST_F(Depth, IsVisitedAndItsFlagsCleared)
{
    visits = 0;
    s_Tree->ForEachTag(
        [](Tag *tag, long) {
            tag->SetSkip(true);
            ++visits;
        },
        0);
    EXPECT_EQ(visits, Deep + 2);
    EXPECT_EQ(written(*s_Tree), text(""));
    s_Tree->ClearAllSkip();
    EXPECT_FALSE(s_Tree->m_Child->m_Child->m_Child->TestSkip());
}

TEST_F(Depth, IsDestroyedByDeleteChildren)
{
    const TagPtr copy(s_Tree->Duplicate());
    copy->DeleteChildren();
    EXPECT_EQ(copy->m_Child, nullptr);
}

TEST_F(Depth, OfAHostsNodesIsDestroyed)
{
    Tag root;
    Tag *innermost = &root;
    for (int i = 0; i < Deep; ++i) {
        auto *tag = new Plain;
        innermost->AddTag(tag, false);
        innermost = tag;
    }
    root.DeleteChildren();
    EXPECT_EQ(root.m_Child, nullptr);
}

TEST(Width, OfManyChildrenIsParsedWrittenAndDuplicated)
{
    const QString markup = QLatin1String("<a>") + text("<b></b>").repeated(Wide) + QLatin1String("</a>");
    const TagPtr root = parsed(markup);
    EXPECT_EQ(written(*root), markup);
    const TagPtr copy(root->Duplicate());
    EXPECT_EQ(written(*copy), markup);
}

TEST(Width, OfManyChildrenIsBuiltByAppending)
{
    Tag root;
    for (int i = 0; i < Wide; ++i)
        root.AddTag(new NamedTag(text("b")), false);
    EXPECT_EQ(written(root), text("<b></b>").repeated(Wide));
}

TEST(Width, OfAHostsNodesIsVisitedAndItsFlagsCleared)
{
    Tag root;
    for (int i = 0; i < Wide; ++i)
        root.AddTag(i % 2 == 0 ? new Plain : static_cast<NamedTag *>(element("b", {new Plain})), false);
    visits = 0;
    const auto skip = [](Tag *tag, long) {
        tag->SetSkip(true);
        ++visits;
    };
    root.ForEachTag(skip, 0);
    EXPECT_EQ(visits, 1 + Wide + Wide / 2);
    EXPECT_EQ(written(root), text(""));
    root.ClearAllSkip();
    EXPECT_EQ(written(root), text("<plain></plain><b><plain></plain></b>").repeated(Wide / 2));
}

TEST(Width, OfAHostsNodesIsVisitedFromItsFirst)
{
    Tag root;
    for (int i = 0; i < Wide; ++i)
        root.AddTag(new Plain, false);
    visits = 0;
    root.m_Child->ForEachTag([](Tag *, long) { ++visits; }, 0);
    EXPECT_EQ(visits, Wide);
    root.m_Child->ClearAllSkip();
}

TEST(Width, OfAHostsNodesIsSearchedWrittenAndDuplicated)
{
    const QString null;
    Tag root;
    for (int i = 0; i < Wide; ++i)
        root.AddTag(new Plain, false);
    EXPECT_EQ(root.FindTag(text("none"), null, null), nullptr);
    EXPECT_EQ(root.FindChildTag(text("none"), null, null), nullptr);
    EXPECT_EQ(root.FindNthTag(text("plain"), Wide, null, null, true), nullptr);
    const TagPtr copy(root.Duplicate());
    EXPECT_EQ(written(*copy), text("<plain></plain>").repeated(Wide));
}

TEST(Width, OfManyChildrenIsAdoptedOneAtATime)
{
    Tag to;
    for (int i = 0; i < Wide; ++i) {
        Tag from;
        from.AddTag(new NamedTag(text("b")), false);
        to.AdoptChildren(&from, true);
    }
    EXPECT_EQ(written(to), text("<b></b>").repeated(Wide));
}

TEST(Width, OfManyChildrenIsParsedOneAtATime)
{
    const QString markup = text("<b></b>");
    Tag root;
    for (int i = 0; i < Wide; ++i) {
        int pos = 0;
        XML::Parser().ParseTag(&root, markup, pos);
    }
    EXPECT_EQ(written(root), markup.repeated(Wide));
}

TEST(Width, OfManyChildrenIsAdopted)
{
    const TagPtr from = parsed(text("<b></b>").repeated(Wide));
    Tag to;
    to.AddTag(element("a"), false);
    to.AdoptChildren(from.get(), true);
    EXPECT_EQ(written(to), QLatin1String("<a></a>") + text("<b></b>").repeated(Wide));
}

TEST(Width, OfManyChildrenIsSorted)
{
    Tag root;
    for (int i = 0; i < Wide; ++i)
        root.AddTag(new NamedTag(QString::number(100000 + i)), false);
    root.ChildSort([](Tag *a, Tag *b, void *) { return short(b->GetName().compare(a->GetName())); }, nullptr);
    EXPECT_EQ(root.m_Child->GetName(), text("199999"));
    EXPECT_TRUE(isSound(root));
}

TEST(Width, OfManyAttributesIsParsedAndWalked)
{
    QString markup = text("<a");
    for (int i = 0; i < Wide; ++i)
        markup += QStringLiteral(" k%1=\"v%1\"").arg(i, 6, 10, QLatin1Char('0'));
    markup += QLatin1String("></a>");
    const TagPtr root = parsed(markup);
    EXPECT_EQ(written(*root), markup);
    auto &tag = static_cast<NamedTag &>(*root->m_Child);
    EXPECT_EQ(tag.AttributeCount(), Wide);
    int walked = 0;
    QString name;
    QString value;
    for (bool more = tag.FirstAttribute(name, value); more; more = tag.NextAttribute(name, value, false))
        ++walked;
    EXPECT_EQ(walked, Wide);
}

TEST(HostileText, OfOneThingRepeatedIsParsedInLinearTime)
{
    for (const char *piece :
         {"<",     "&",           "<!--", "<![CDATA[", "<!DOCTYPE", "<!DOCTYPE[", "<?xml", "<>",      "</",
          "<!-->", "<!DOCTYPE[>", "&;",   ";&",        "&#",        "\"",         "<a ",   "<a x=\"", "<a/>",
          "=",     "<!DOCTYPE>[", "]>",   "]]>",       "-->",       "&#0;",       "< ="}) {
        const QString unit = text(piece);
        const QString whole = unit.repeated(Megabyte / unit.size());
        for (const QString &markup : {whole, QString(QLatin1String("<a ") + whole), QString(whole + QLatin1Char('>')),
                                      QString(whole + QLatin1Char(';'))}) {
            const TagPtr root = parsed(markup);
            EXPECT_LE(written(*root).size(), 16 * markup.size()) << piece;
        }
    }
}

TEST(HostileText, IsDecodedInLinearTime)
{
    for (const char *piece : {"&", "&;", "&amp;", "&#0;", "&x", "&#", ";"}) {
        QString s = text(piece).repeated(Megabyte);
        XML::DecodeString(s);
        EXPECT_LE(s.size(), Megabyte * 5);
        s = text(piece).repeated(Megabyte) + QLatin1Char(';');
        XML::DecodeString(s);
    }
}

TEST(HostileText, IsEncodedInLinearTime)
{
    QString s = text("&").repeated(Megabyte);
    XML::EncodeString(s);
    EXPECT_EQ(s.size(), 5 * Megabyte);
    s = QString(Megabyte, QChar(0x80));
    XML::EncodeString(s);
    EXPECT_EQ(s.size(), 8 * Megabyte);
}

TEST(HostileText, IsReadByParamsInLinearTime)
{
    for (const char *piece : {" ", "a ", "a=\"", "a=b ", "\"", " =", "a= "}) {
        NamedTag tag{QString()};
        tag.SetParams(QLatin1String("p ") + text(piece).repeated(Megabyte));
        EXPECT_LE(tag.AttributeCount(), 2) << piece;
    }
}
