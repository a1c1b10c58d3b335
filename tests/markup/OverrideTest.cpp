/// \file
/// Overrides in a host's classes take effect in every walk.

#include <functional>

#include <gtest/gtest.h>

#include "markup/Support.h"

using namespace MarkupTest;
using XML::NamedTag;
using XML::Tag;
using XML::TextTag;

namespace {

/// An element that notes which of its functions are called, then does the usual.
class Noting : public NamedTag
{
public:
    explicit Noting(QString *notes)
        : NamedTag(text("noting"))
        , m_Notes(notes)
    {}

    void AddTag(Tag *tag, bool atFront) override
    {
        note("AddTag");
        NamedTag::AddTag(tag, atFront);
    }
    void TagToText(QString &out, QChar terminator, bool contentOnly, bool textOnly) override
    {
        note("TagToText");
        NamedTag::TagToText(out, terminator, contentOnly, textOnly);
    }
    Tag *FindChildTag(const QString &name, const QString &attrName, const QString &attrValue) override
    {
        note("FindChildTag");
        return NamedTag::FindChildTag(name, attrName, attrValue);
    }
    bool TagMatch(const QString &name, const QString &attrName, const QString &attrValue) override
    {
        note("TagMatch");
        return NamedTag::TagMatch(name, attrName, attrValue);
    }
    Tag *FindNthTag(const QString &name, int n, const QString &attrName, const QString &attrValue, bool reset) override
    {
        note(reset ? "FindNthTag!" : "FindNthTag");
        return NamedTag::FindNthTag(name, n, attrName, attrValue, reset);
    }
    bool Is_or_IsChildOf(const QString &name) override
    {
        note("Is_or_IsChildOf");
        return NamedTag::Is_or_IsChildOf(name);
    }
    bool TestSkip() override
    {
        note("TestSkip");
        return NamedTag::TestSkip();
    }
    bool TestInvisible() override
    {
        note("TestInvisible");
        return NamedTag::TestInvisible();
    }
    void ClearAllSkip() override
    {
        note("ClearAllSkip");
        NamedTag::ClearAllSkip();
    }
    QString GetName() override
    {
        note("GetName");
        return NamedTag::GetName();
    }
    Tag *Duplicate() override
    {
        note("Duplicate");
        return NamedTag::Duplicate();
    }
    Tag *Copy() override
    {
        note("Copy");
        auto *copy = new Noting(m_Notes);
        copy->m_Name = m_Name;
        return copy;
    }
    void ForEachTag(void (*fn)(Tag *, long), long data) override
    {
        note("ForEachTag");
        NamedTag::ForEachTag(fn, data);
    }
    void TagToTextNoCB(QString &out, QChar terminator, bool contentOnly, bool textOnly) override
    {
        note("TagToTextNoCB");
        NamedTag::TagToTextNoCB(out, terminator, contentOnly, textOnly);
    }

private:
    void note(const char *what) { *m_Notes += text(what) + QLatin1Char(' '); }

    QString *m_Notes;
};

/// <outer><noting><inner/></noting><after/></outer>, and what the middle one noted.
class Override : public testing::Test
{
protected:
    Override()
        : m_Root(new Tag)
        , m_Noting(new Noting(&m_Notes))
    {
        m_Root->AddTag(element("outer", {m_Noting, element("after")}), false);
        m_Noting->AddTag(element("inner"), false);
        m_Notes.clear();
    }

    QString m_Notes;
    TagPtr m_Root;
    Noting *m_Noting;
};

} // namespace

TEST_F(Override, OfTheWriterIsCalled)
{
    EXPECT_EQ(written(*m_Root), text("<outer><noting><inner></inner></noting><after></after></outer>"));
    EXPECT_EQ(m_Notes, text("TagToText TagToTextNoCB TestSkip TestInvisible "));
}

TEST_F(Override, OfTheWriterGetsTheArgumentsOfTheCall)
{
    class Showing : public Tag
    {
    public:
        void TagToText(QString &out, QChar terminator, bool contentOnly, bool textOnly) override
        {
            out += terminator + QString::number(contentOnly) + QString::number(textOnly);
        }
    };
    Tag root;
    root.AddTag(new Showing, false);
    QString out;
    root.TagToText(out, QLatin1Char('|'), true, true);
    root.TagToText(out, QLatin1Char('/'), false, false);
    EXPECT_EQ(out, text("|01/00"));
}

TEST_F(Override, OfTagMatchIsCalledByFindTag)
{
    EXPECT_NE(m_Root->FindTag(text("after"), QString(), QString()), nullptr);
    EXPECT_EQ(m_Notes, text("TagMatch "));
}

TEST_F(Override, OfFindChildTagIsCalled)
{
    EXPECT_NE(m_Root->FindChildTag(text("inner"), QString(), QString()), nullptr);
    EXPECT_EQ(m_Notes, text("TagMatch FindChildTag "));
    m_Notes.clear();
    EXPECT_NE(m_Root->FindChildTag(text("after"), QString(), QString()), nullptr);
    EXPECT_EQ(m_Notes, text("TagMatch FindChildTag "));
}

TEST_F(Override, OfFindChildTagIsNotCalledWithoutChildren)
{
    m_Noting->DeleteChildren();
    EXPECT_NE(m_Root->FindChildTag(text("after"), QString(), QString()), nullptr);
    EXPECT_EQ(m_Notes, text("TagMatch "));
}

TEST_F(Override, OfASearchMayHideTheNodesChildren)
{
    class Closed : public NamedTag
    {
    public:
        Closed()
            : NamedTag(text("closed"))
        {}
        Tag *FindChildTag(const QString &, const QString &, const QString &) override { return nullptr; }
        Tag *FindNthTag(const QString &, int, const QString &, const QString &, bool) override { return nullptr; }
    };
    Tag root;
    auto *closed = new Closed;
    closed->AddTag(element("p"), false);
    root.AddTag(closed, false);
    root.AddTag(element("p"), false);
    EXPECT_EQ(root.FindChildTag(text("p"), QString(), QString()), closed->m_Next);
    EXPECT_EQ(root.FindNthTag(text("p"), 0, QString(), QString(), true), closed->m_Next);
    EXPECT_EQ(root.FindNthTag(text("p"), 1, QString(), QString(), true), nullptr);
}

TEST_F(Override, OfFindNthTagIsCalledWithoutReset)
{
    EXPECT_EQ(m_Root->FindNthTag(text("inner"), 0, QString(), QString(), true), m_Noting->m_Child);
    EXPECT_EQ(m_Notes, text("FindNthTag TagMatch "));
    EXPECT_NE(m_Root->FindNthTag(text("after"), 0, QString(), QString(), true), nullptr);
}

TEST_F(Override, OfIsOrIsChildOfIsCalled)
{
    EXPECT_TRUE(m_Noting->m_Child->IsChildOf(text("outer")));
    EXPECT_EQ(m_Notes, text("Is_or_IsChildOf "));
}

TEST_F(Override, OfClearAllSkipIsCalled)
{
    m_Noting->m_Next->SetSkip(true);
    m_Root->ClearAllSkip();
    EXPECT_EQ(m_Notes, text("ClearAllSkip "));
    EXPECT_FALSE(m_Noting->m_Next->TestSkip());
}

TEST_F(Override, OfForEachTagIsCalled)
{
    static QString names;
    names.clear();
    m_Root->ForEachTag([](Tag *tag, long) { names += tag->GetName() + QLatin1Char(' '); }, 0);
    EXPECT_EQ(names, text(" outer noting inner after "));
    EXPECT_EQ(m_Notes, text("ForEachTag GetName "));
}

TEST_F(Override, OfCopyAndDuplicateIsCalled)
{
    const TagPtr copy(m_Root->Duplicate());
    EXPECT_EQ(m_Notes, text("Duplicate Copy AddTag "));
    EXPECT_NE(dynamic_cast<Noting *>(copy->m_Child->m_Child), nullptr);
    EXPECT_EQ(outline(*copy), outline(*m_Root));
}

TEST_F(Override, OfAddTagIsCalledByAdoptChildren)
{
    const TagPtr from = parsed("<a/><b/>");
    m_Noting->AdoptChildren(from.get(), true);
    EXPECT_EQ(m_Notes, text("AddTag AddTag "));
    EXPECT_EQ(childNames(*m_Noting), text("inner a b"));
}

TEST_F(Override, OfAddTagGetsNodesThatAreInNoTree)
{
    class Asking : public Tag
    {
    public:
        void AddTag(Tag *tag, bool atFront) override
        {
            m_Free += !tag->m_Parent && !tag->m_Next ? 1 : 0;
            Tag::AddTag(tag, atFront);
        }
        int m_Free = 0;
    };
    const TagPtr from = parsed("<a/><b/>");
    Asking asking;
    asking.AdoptChildren(from.get(), true);
    EXPECT_EQ(asking.m_Free, 2);
    EXPECT_EQ(childNames(asking), text("a b"));
}

TEST_F(Override, OfAddTagAndGetNameIsCalledByTheParser)
{
    int pos = 0;
    XML::Parser().ParseTag(m_Noting, text("<a><b/></a></noting>rest"), pos);
    EXPECT_EQ(m_Notes, text("AddTag GetName "));
    EXPECT_EQ(pos, 20);
}

TEST_F(Override, OfFindAttributeIsCalledByTagMatch)
{
    class Answering : public NamedTag
    {
    public:
        Answering()
            : NamedTag(text("p"))
        {}
        QString FindAttribute(const QString &name) override { return name + QLatin1Char('!'); }
    };
    m_Root->AddTag(new Answering, false);
    EXPECT_NE(m_Root->FindTag(text("p"), text("x"), text("x!")), nullptr);
    EXPECT_NE(m_Root->FindChildTag(text("p"), text("x"), text("x!")), nullptr);
}

TEST_F(Override, OfDeleteChildrenIsCalledByAdoptChildren)
{
    class Keeping : public Tag
    {
    public:
        void DeleteChildren() override { m_Asked = true; }
        bool m_Asked = false;
    };
    Keeping keeping;
    keeping.AddTag(element("kept"), false);
    keeping.AdoptChildren(nullptr, false);
    EXPECT_TRUE(keeping.m_Asked);
    EXPECT_EQ(childNames(keeping), text("kept"));
}

TEST_F(Override, OfGetTextIsCalledForTheEnclosedText)
{
    class Shouting : public TextTag
    {
    public:
        QString &GetText() override
        {
            m_Text = m_Text.toUpper();
            return m_Text;
        }
    };
    auto *shouting = new Shouting;
    shouting->SetText(text("x"));
    m_Root->AddTag(element("p", {shouting}), false);
    EXPECT_EQ(m_Root->FindTagText(text("p"), QString(), QString()), text("X"));
}

TEST_F(Override, OfPrivateFlagFunctionsIsCalled)
{
    class Flagless : public NamedTag
    {
    public:
        Flagless()
            : NamedTag(text("f"))
        {}

    private:
        bool TestFlag(TagFlag_t flag) override { return flag == Skip; }
        void SetFlag(TagFlag_t, bool) override {}
    };
    auto *flagless = new Flagless;
    m_Root->AddTag(flagless, false);
    flagless->SetInvisible(true);
    EXPECT_EQ(flagless->m_Flags, 0U);
    EXPECT_TRUE(flagless->TestSkip());
    EXPECT_FALSE(written(*m_Root).contains(text("<f>")));
}

TEST_F(Override, OfASubclassWithoutAnyChangesNothing)
{
    class Plain : public NamedTag
    {
    public:
        Plain()
            : NamedTag(text("plain"))
        {}
    };
    auto *plain = new Plain;
    plain->AddTag(element("x", {new Plain}), false);
    m_Root->AddTag(plain, false);
    m_Root->AddTag(element("end"), false);
    EXPECT_TRUE(written(*m_Root).endsWith(text("<plain><x><plain></plain></x></plain><end></end>")));
    EXPECT_NE(m_Root->FindChildTag(text("end"), QString(), QString()), nullptr);
    EXPECT_EQ(m_Root->FindNthTag(text("plain"), 1, QString(), QString(), true), plain->m_Child->m_Child);
}

namespace {

QString visited;

void noteName(Tag *tag, long)
{
    visited += tag->GetName() + QLatin1Char(' ');
}

/// An element whose ForEachTag does what a test says.
class Visited : public NamedTag
{
public:
    using NamedTag::NamedTag;

    void ForEachTag(void (*fn)(Tag *, long), long data) override { m_Operation(*this, fn, data); }

    std::function<void(NamedTag &, void (*)(Tag *, long), long)> m_Operation;
};

/// <before/><visited><inner/></visited><after/>
class OverrideOfForEachTag : public testing::Test
{
protected:
    OverrideOfForEachTag()
        : m_Visited(new Visited(text("visited")))
    {
        visited.clear();
        m_Root.AddTag(element("before"), false);
        m_Root.AddTag(m_Visited, false);
        m_Visited->AddTag(element("inner"), false);
        m_Root.AddTag(element("after"), false);
    }

    NamedTag m_Root{text("root")};
    Visited *m_Visited;
};

} // namespace

TEST_F(OverrideOfForEachTag, EnclosesTheNodesOwnSubtree)
{
    m_Visited->m_Operation = [](NamedTag &tag, void (*fn)(Tag *, long), long data) {
        visited += text("( ");
        tag.NamedTag::ForEachTag(fn, data);
        visited += text(") ");
    };
    m_Root.ForEachTag(noteName, 0);
    EXPECT_EQ(visited, text("root before ( visited inner ) after "));
    visited.clear();
    m_Root.m_Child->ForEachTag(noteName, 0);
    EXPECT_EQ(visited, text("before ( visited inner ) after "));
}

TEST_F(OverrideOfForEachTag, GoesOnToTheSiblingsWhenTheHostCallsIt)
{
    m_Visited->m_Operation = [](NamedTag &tag, void (*fn)(Tag *, long), long data) {
        tag.NamedTag::ForEachTag(fn, data);
        visited += text(") ");
    };
    m_Visited->ForEachTag(noteName, 0);
    EXPECT_EQ(visited, text("visited inner after ) "));
}

TEST_F(OverrideOfForEachTag, ThatDoesNotCallTheOriginalHidesTheFollowingSiblings)
{
    m_Visited->m_Operation = [](NamedTag &, void (*)(Tag *, long), long) { visited += text("own "); };
    m_Root.ForEachTag(noteName, 0);
    EXPECT_EQ(visited, text("root before own "));
}

TEST_F(OverrideOfForEachTag, MayHandOnOtherArguments)
{
    m_Visited->m_Operation = [](NamedTag &tag, void (*fn)(Tag *, long), long data) {
        tag.NamedTag::ForEachTag(fn, data + 1);
    };
    m_Root.ForEachTag([](Tag *tag, long data) { visited += tag->GetName() + QString::number(data); }, 0);
    EXPECT_EQ(visited, text("root0before0visited1inner1after1"));
    visited.clear();
    m_Visited->m_Operation = [](NamedTag &tag, void (*)(Tag *, long), long data) {
        tag.NamedTag::ForEachTag([](Tag *, long) { visited += text("other "); }, data);
    };
    m_Root.ForEachTag(noteName, 0);
    EXPECT_EQ(visited, text("root before other other other "));
}

TEST_F(OverrideOfForEachTag, MayWalkBeforeItCallsTheOriginal)
{
    m_Visited->m_Operation = [](NamedTag &tag, void (*fn)(Tag *, long), long data) {
        tag.m_Child->ForEachTag(fn, data);
        tag.m_Next->ForEachTag(fn, data);
        tag.ClearAllSkip();
        tag.NamedTag::ForEachTag(fn, data);
    };
    m_Visited->m_Next->SetSkip(true);
    m_Root.ForEachTag(noteName, 0);
    EXPECT_EQ(visited, text("root before inner after visited inner after "));
    EXPECT_FALSE(m_Visited->m_Next->TestSkip());
}

TEST_F(OverrideOfForEachTag, MayWalkTheChildrenInsteadOfTheOriginal)
{
    m_Visited->m_Operation = [](NamedTag &tag, void (*fn)(Tag *, long), long data) {
        tag.m_Child->ForEachTag(fn, data);
    };
    m_Visited->AddTag(element("second"), false);
    m_Root.ForEachTag(noteName, 0);
    EXPECT_EQ(visited, text("root before inner second "));
}

TEST_F(OverrideOfForEachTag, MayChangeTheFollowingSiblings)
{
    m_Visited->m_Operation = [](NamedTag &tag, void (*fn)(Tag *, long), long data) {
        tag.NamedTag::ForEachTag(fn, data);
        Tag *next = tag.m_Next;
        Tag::ExtractTagFromParent(next);
        delete next;
        tag.AddSiblingTag(element("new"));
    };
    m_Root.ForEachTag(noteName, 0);
    EXPECT_EQ(visited, text("root before visited inner new "));
}

TEST_F(OverrideOfForEachTag, MayRaise)
{
    m_Visited->m_Operation = [](NamedTag &, void (*)(Tag *, long), long) { throw 1; };
    EXPECT_THROW(m_Root.ForEachTag(noteName, 0), int);
    m_Visited->m_Operation = [](NamedTag &tag, void (*fn)(Tag *, long), long data) {
        tag.NamedTag::ForEachTag(fn, data);
    };
    visited.clear();
    m_Visited->ForEachTag(noteName, 0);
    EXPECT_EQ(visited, text("visited inner after "));
}

TEST_F(OverrideOfForEachTag, IsCalledForAWalkOfItsOwnFunction)
{
    m_Visited->m_Operation = [](NamedTag &tag, void (*fn)(Tag *, long), long data) {
        tag.NamedTag::ForEachTag(fn, data);
    };
    m_Root.ForEachTag(
        [](Tag *tag, long) {
            noteName(tag, 0);
            if (tag->GetName() == text("visited"))
                tag->ForEachTag(noteName, 0);
        },
        0);
    EXPECT_EQ(visited, text("root before visited visited inner after inner after "));
}
