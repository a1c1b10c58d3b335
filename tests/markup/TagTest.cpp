#include <gtest/gtest.h>

#include "markup/Support.h"

using namespace MarkupTest;
using XML::ExtraTag;
using XML::NamedTag;
using XML::Tag;
using XML::TextTag;

namespace {

/// A node that counts its end in \a ended.
class Mortal : public NamedTag
{
public:
    Mortal(const char *name, QString *ended)
        : NamedTag(text(name))
        , m_Ended(ended)
    {}
    ~Mortal() override { *m_Ended += m_Name; }

private:
    QString *m_Ended;
};

/// A node that writes down whether it is in a tree when it ends.
class LinkWitness : public NamedTag
{
public:
    LinkWitness(const char *name, QString *seen)
        : NamedTag(text(name))
        , m_Seen(seen)
    {}
    ~LinkWitness() override { *m_Seen += m_Name + text(m_Parent || m_Next ? " in tree, " : " free, "); }

private:
    QString *m_Seen;
};

} // namespace

TEST(Tag, HasNoLinksAndNoFlagsAtFirst)
{
    Tag tag;
    EXPECT_EQ(tag.m_Child, nullptr);
    EXPECT_EQ(tag.m_Next, nullptr);
    EXPECT_EQ(tag.m_Parent, nullptr);
    EXPECT_EQ(tag.m_Flags, 0U);
}

TEST(Tag, KindsOfTokenHaveTheirNumbers)
{
    EXPECT_EQ(Tag::None, 0);
    EXPECT_EQ(Tag::Start, 2);
    EXPECT_EQ(Tag::End, 3);
    EXPECT_EQ(Tag::Empty, 4);
    EXPECT_EQ(Tag::CData, 5);
    EXPECT_EQ(Tag::Comment, 6);
    EXPECT_EQ(Tag::XmlDecl, 7);
    EXPECT_EQ(Tag::DocType, 8);
}

TEST(Tag, FlagsHaveTheirBits)
{
    Tag tag;
    tag.SetSkip(true);
    EXPECT_EQ(tag.m_Flags, 1U);
    tag.SetInvisible(true);
    EXPECT_EQ(tag.m_Flags, 3U);
    tag.SetSkip(false);
    EXPECT_EQ(tag.m_Flags, 2U);
    EXPECT_FALSE(tag.TestSkip());
    EXPECT_TRUE(tag.TestInvisible());
    tag.SetInvisible(false);
    EXPECT_EQ(tag.m_Flags, 0U);
}

TEST(Tag, ClearingAFlagThatIsClearLeavesItClear)
{
    Tag tag;
    tag.SetSkip(false);
    tag.SetInvisible(false);
    EXPECT_EQ(tag.m_Flags, 0U);
}

TEST(Tag, CopyConstructorTakesTheLinksAsTheyStand)
{
    Tag root;
    auto *first = element("first");
    root.AddTag(first, false);
    root.AddTag(element("second"), false);
    first->AddTag(element("inner"), false);
    first->SetSkip(true);
    NamedTag copy(*first);
    EXPECT_EQ(copy.m_Child, first->m_Child);
    EXPECT_EQ(copy.m_Next, first->m_Next);
    EXPECT_EQ(copy.m_Parent, &root);
    EXPECT_TRUE(copy.TestSkip());
    EXPECT_EQ(copy.m_Name, text("first"));
    copy.m_Child = nullptr;
}

TEST(Tag, CopyByValueWritesTheSharedChildren)
{
    const TagPtr root = parsed("<a><b>x</b><c/></a>after");
    NamedTag copy(static_cast<NamedTag &>(*root->m_Child));
    EXPECT_EQ(written(copy), text("<a><b>x</b><c></c></a>"));
    copy.m_Child = nullptr;
}

TEST(Tag, AssignmentTakesTheLinksAsTheyStand)
{
    Tag root;
    auto *child = element("child");
    root.AddTag(child, false);
    NamedTag other(text("other"));
    other = *child;
    EXPECT_EQ(other.m_Parent, &root);
    EXPECT_EQ(other.m_Name, text("child"));
}

TEST(Tag, AssignmentTakesTheFlags)
{
    Tag from;
    from.SetInvisible(true);
    Tag to;
    to.SetSkip(true);
    to = from;
    EXPECT_TRUE(to.TestInvisible());
    EXPECT_FALSE(to.TestSkip());
}

TEST(Tag, DestructionTakesTheSubtreeButNotTheSiblings)
{
    QString ended;
    Tag root;
    auto *first = new Mortal("a", &ended);
    first->AddTag(new Mortal("b", &ended), false);
    first->AddTag(new Mortal("c", &ended), false);
    root.AddTag(first, false);
    root.AddTag(new Mortal("d", &ended), false);
    Tag::ExtractTagFromParent(first);
    delete first;
    EXPECT_EQ(ended, text("abc"));
    EXPECT_EQ(childNames(root), text("d"));
}

TEST(Tag, DeleteChildrenDestroysFromFirstToLast)
{
    QString ended;
    Tag root;
    for (const char *name : {"a", "b", "c"})
        root.AddTag(new Mortal(name, &ended), false);
    root.m_Child->AddTag(new Mortal("1", &ended), false);
    root.DeleteChildren();
    EXPECT_EQ(ended, text("a1bc"));
    EXPECT_EQ(root.m_Child, nullptr);
    root.AddTag(element("again"), false);
    EXPECT_EQ(childNames(root), text("again"));
}

TEST(Tag, DestructionFindsHostNodesBelowOurs)
{
    QString ended;
    {
        const TagPtr root = parsed("<a><b></b></a>");
        root->m_Child->m_Child->AddTag(new Mortal("x", &ended), false);
        root->m_Child->AddTag(new Mortal("y", &ended), false);
        root->m_Child->m_Next = nullptr;
        root->m_Child->m_Child->m_Child->AddTag(element("z", {new Mortal("q", &ended)}), false);
    }
    EXPECT_EQ(ended, text("xqy"));
}

TEST(Tag, HostDestructorStillSeesItsChildren)
{
    class Looking : public NamedTag
    {
    public:
        Looking(int *seen)
            : NamedTag(text("looking"))
            , m_Seen(seen)
        {}
        ~Looking() override { *m_Seen += m_Child ? 1 : 0; }
        int *m_Seen;
    };
    int seen = 0;
    {
        Tag root;
        auto *outer = new Looking(&seen);
        auto *inner = new Looking(&seen);
        inner->AddTag(textNode("x"), false);
        outer->AddTag(inner, false);
        root.AddTag(outer, false);
    }
    EXPECT_EQ(seen, 2);
}

TEST(Tag, HostDestructorSeesNoParentThatIsGone)
{
    QString seen;
    Tag root;
    auto *outer = new LinkWitness("o", &seen);
    outer->AddTag(new LinkWitness("i", &seen), false);
    root.AddTag(outer, false);
    root.DeleteChildren();
    EXPECT_EQ(seen, text("o in tree, i free, "));
}

TEST(Tag, HostDestructorMayDestroyAnotherTree)
{
    class Owner : public NamedTag
    {
    public:
        explicit Owner(TagPtr tree)
            : NamedTag(text("owner"))
            , m_Tree(std::move(tree))
        {}
        TagPtr m_Tree;
    };
    QString ended;
    {
        TagPtr tree(element("t", {new Mortal("in", &ended)}));
        Tag root;
        auto *owner = new Owner(std::move(tree));
        owner->AddTag(new Mortal("child", &ended), false);
        root.AddTag(owner, false);
    }
    EXPECT_EQ(ended, text("inchild"));
}

TEST(Tag, AddTagAppends)
{
    Tag root;
    auto *a = element("a");
    auto *b = element("b");
    root.AddTag(a, false);
    b->m_Next = a;
    root.AddTag(b, false);
    EXPECT_EQ(root.m_Child, a);
    EXPECT_EQ(a->m_Next, b);
    EXPECT_EQ(b->m_Next, nullptr);
    EXPECT_EQ(b->m_Parent, &root);
}

TEST(Tag, AddTagAtFrontPrepends)
{
    Tag root;
    root.AddTag(element("a"), true);
    root.AddTag(element("b"), true);
    EXPECT_EQ(childNames(root), text("b a"));
    EXPECT_TRUE(isSound(root));
}

TEST(Tag, AddTagIgnoresNull)
{
    Tag root;
    root.AddTag(nullptr, false);
    root.AddTag(nullptr, true);
    EXPECT_EQ(root.m_Child, nullptr);
}

TEST(Tag, AppendingStaysRightWhileALongListIsEdited)
{
    Tag root;
    QStringList expected;
    const auto append = [&](int count) {
        for (int i = 0; i < count; ++i) {
            expected += QString::number(expected.size());
            root.AddTag(new NamedTag(expected.last()), false);
        }
    };
    const auto last = [&root] {
        Tag *tag = root.m_Child;
        while (tag->m_Next)
            tag = tag->m_Next;
        return tag;
    };
    append(50);
    Tag *extracted = last();
    Tag::ExtractTagFromParent(extracted);
    delete extracted;
    expected.removeLast();
    append(30);
    root.ReplaceChildTag(last(), nullptr);
    expected.removeLast();
    append(30);
    last()->AddSiblingTag(new NamedTag(text("s")));
    expected += text("s");
    append(30);
    root.ReplaceChildTag(last(), new NamedTag(text("r")));
    expected.last() = text("r");
    append(3);
    Tag other;
    other.AdoptChildren(&root, true);
    EXPECT_EQ(childNames(other), expected.join(QLatin1Char(' ')));
    EXPECT_EQ(root.m_Child, nullptr);
    root.AddTag(new NamedTag(text("x")), false);
    other.AddTag(new NamedTag(text("y")), false);
    EXPECT_EQ(childNames(root), text("x"));
    EXPECT_EQ(last()->GetName(), text("x"));
    EXPECT_TRUE(isSound(other));
}

TEST(Tag, AppendingStaysRightAfterSortingALongList)
{
    Tag root;
    for (int i = 99; i >= 0; --i)
        root.AddTag(new NamedTag(QString::number(i)), false);
    root.ChildSort([](Tag *a, Tag *b, void *) { return short(a->GetName().toInt() - b->GetName().toInt()); }, nullptr);
    root.AddTag(new NamedTag(text("end")), false);
    EXPECT_TRUE(childNames(root).endsWith(text("98 99 end")));
}

TEST(Tag, AddSiblingTagInsertsDirectlyBehind)
{
    Tag root;
    auto *a = element("a");
    root.AddTag(a, false);
    root.AddTag(element("c"), false);
    a->AddSiblingTag(element("b"));
    EXPECT_EQ(childNames(root), text("a b c"));
    EXPECT_TRUE(isSound(root));
}

TEST(Tag, AddSiblingTagTakesTheParentAsItIs)
{
    Tag lone;
    auto *b = element("b");
    lone.AddSiblingTag(b);
    EXPECT_EQ(lone.m_Next, b);
    EXPECT_EQ(b->m_Parent, nullptr);
    lone.AddSiblingTag(nullptr);
    EXPECT_EQ(lone.m_Next, b);
    delete b;
}

TEST(Tag, ReplaceChildTagPutsTheNewInPlaceOfTheOld)
{
    QString ended;
    Tag root;
    auto *old = new Mortal("old", &ended);
    old->AddTag(new Mortal("inner", &ended), false);
    root.AddTag(element("a"), false);
    root.AddTag(old, false);
    root.AddTag(element("c"), false);
    root.ReplaceChildTag(old, element("new"));
    EXPECT_EQ(childNames(root), text("a new c"));
    EXPECT_EQ(ended, text("oldinner"));
    EXPECT_TRUE(isSound(root));
}

TEST(Tag, ReplaceChildTagByNullRemoves)
{
    QString ended;
    Tag root;
    auto *old = new Mortal("old", &ended);
    root.AddTag(old, false);
    root.AddTag(element("b"), false);
    root.ReplaceChildTag(old, nullptr);
    EXPECT_EQ(childNames(root), text("b"));
    EXPECT_EQ(ended, text("old"));
}

TEST(Tag, ReplaceChildTagDestroysTheOldOneOutsideOfTheTree)
{
    QString seen;
    Tag root;
    auto *old = new LinkWitness("old", &seen);
    root.AddTag(old, false);
    root.AddTag(element("b"), false);
    root.ReplaceChildTag(old, element("new"));
    EXPECT_EQ(seen, text("old free, "));
}

TEST(Tag, ReplaceChildTagOfAStrangerDoesNothing)
{
    QString ended;
    Tag root;
    root.AddTag(element("a"), false);
    Mortal stranger("s", &ended);
    root.ReplaceChildTag(&stranger, nullptr);
    NamedTag unused(text("u"));
    root.ReplaceChildTag(&stranger, &unused);
    root.ReplaceChildTag(nullptr, &unused);
    EXPECT_EQ(ended, QString());
    EXPECT_EQ(childNames(root), text("a"));
    EXPECT_EQ(unused.m_Parent, nullptr);
}

TEST(Tag, ReplaceChildTagByItselfKeepsIt)
{
    Tag root;
    auto *a = element("a");
    root.AddTag(a, false);
    root.ReplaceChildTag(a, a);
    EXPECT_EQ(childNames(root), text("a"));
}

TEST(Tag, AdoptChildrenDestroysItsOwnFirst)
{
    QString ended;
    Tag to;
    to.AddTag(new Mortal("own", &ended), false);
    Tag from;
    from.AddTag(element("a"), false);
    from.AddTag(element("b"), false);
    to.AdoptChildren(&from, false);
    EXPECT_EQ(ended, text("own"));
    EXPECT_EQ(childNames(to), text("a b"));
    EXPECT_EQ(from.m_Child, nullptr);
    EXPECT_TRUE(isSound(to));
}

TEST(Tag, AdoptChildrenPutsThemBehindItsOwn)
{
    Tag to;
    to.AddTag(element("own"), false);
    Tag from;
    from.AddTag(element("a"), false);
    from.AddTag(element("b"), false);
    to.AdoptChildren(&from, true);
    EXPECT_EQ(childNames(to), text("own a b"));
}

TEST(Tag, AdoptChildrenOfNullMovesNothing)
{
    Tag to;
    to.AddTag(element("own"), false);
    to.AdoptChildren(nullptr, true);
    EXPECT_EQ(childNames(to), text("own"));
    to.AdoptChildren(nullptr, false);
    EXPECT_EQ(to.m_Child, nullptr);
}

TEST(Tag, AdoptChildrenOfItselfKeepsThem)
{
    Tag tag;
    tag.AddTag(element("own"), false);
    tag.AdoptChildren(&tag, true);
    EXPECT_EQ(childNames(tag), text("own"));
}

TEST(Tag, ExtractTagFromParentClearsTheLinks)
{
    Tag root;
    auto *b = element("b");
    root.AddTag(element("a"), false);
    root.AddTag(b, false);
    root.AddTag(element("c"), false);
    Tag::ExtractTagFromParent(b);
    EXPECT_EQ(childNames(root), text("a c"));
    EXPECT_EQ(b->m_Parent, nullptr);
    EXPECT_EQ(b->m_Next, nullptr);
    delete b;
}

TEST(Tag, ExtractTagFromParentClearsTheParentOfTheLastChild)
{
    Tag root;
    const TagPtr only(element("a"));
    root.AddTag(only.get(), false);
    Tag::ExtractTagFromParent(only.get());
    EXPECT_EQ(only->m_Parent, nullptr);
    EXPECT_EQ(root.m_Child, nullptr);
}

TEST(Tag, ExtractTagFromParentIgnoresNullAndTheFree)
{
    Tag::ExtractTagFromParent(nullptr);
    Tag lone;
    Tag next;
    lone.m_Next = &next;
    Tag::ExtractTagFromParent(&lone);
    EXPECT_EQ(lone.m_Next, &next);
}

TEST(Tag, ExtractTagFromParentClearsTheLinksOfAnUnlistedNode)
{
    Tag root;
    root.AddTag(element("a"), false);
    Tag unlisted;
    unlisted.m_Parent = &root;
    unlisted.m_Next = root.m_Child;
    Tag::ExtractTagFromParent(&unlisted);
    EXPECT_EQ(unlisted.m_Parent, nullptr);
    EXPECT_EQ(unlisted.m_Next, nullptr);
    EXPECT_EQ(childNames(root), text("a"));
}

TEST(Tag, CopyTakesOnlyTheFlags)
{
    Tag root;
    root.AddTag(element("a"), false);
    root.SetInvisible(true);
    const TagPtr copy(root.Copy());
    EXPECT_TRUE(copy->TestInvisible());
    EXPECT_EQ(copy->m_Child, nullptr);
    const Tag &made = *copy;
    EXPECT_TRUE(typeid(made) == typeid(Tag));
}

TEST(Tag, CopyOfTextAndExtraTakesTheirData)
{
    TextTag plain;
    plain.SetText(text("x"));
    plain.SetSkip(true);
    const TagPtr plainCopy(plain.Copy());
    EXPECT_EQ(dynamic_cast<TextTag &>(*plainCopy).m_Text, text("x"));
    EXPECT_TRUE(plainCopy->TestSkip());
    ExtraTag extra(Tag::Comment);
    extra.SetText(text("y"));
    extra.SetInvisible(true);
    const TagPtr extraCopy(extra.Copy());
    EXPECT_EQ(dynamic_cast<ExtraTag &>(*extraCopy).m_Type, Tag::Comment);
    EXPECT_EQ(dynamic_cast<ExtraTag &>(*extraCopy).m_Text, text("y"));
    EXPECT_TRUE(extraCopy->TestInvisible());
}

TEST(Tag, DuplicateTakesTheSubtreeButNoSiblings)
{
    const TagPtr root = parsed("<a x=\"1\">t<!--c--><b><c/></b></a><d/>");
    root->m_Child->m_Child->SetSkip(true);
    const TagPtr copy(root->m_Child->Duplicate());
    EXPECT_EQ(copy->m_Parent, nullptr);
    EXPECT_EQ(copy->m_Next, nullptr);
    EXPECT_EQ(outline(*copy), outline(*root->m_Child));
    EXPECT_TRUE(copy->m_Child->TestSkip());
    EXPECT_TRUE(isSound(*copy));
}

TEST(Tag, DuplicateSharesNothingThatChanges)
{
    const TagPtr root = parsed("<a x=\"1\">t</a>");
    const TagPtr copy(root->Duplicate());
    copy->m_Child->AddAttribute(text("x"), text("2"));
    static_cast<TextTag *>(copy->m_Child->m_Child)->GetText() += text("!");
    EXPECT_EQ(outline(*root), text("<a x=\"1\">[\"t\"]"));
    EXPECT_EQ(outline(*copy), text("<a x=\"2\">[\"t!\"]"));
}

TEST(Tag, ChildSortSortsInPlace)
{
    const TagPtr root = parsed("<c/><a/><b/><e/><d/>");
    root->ChildSort([](Tag *a, Tag *b, void *) { return short(a->GetName().compare(b->GetName())); }, nullptr);
    EXPECT_EQ(childNames(*root), text("a b c d e"));
    EXPECT_TRUE(isSound(*root));
}

TEST(Tag, ChildSortOfEqualsKeepsTheOrder)
{
    const TagPtr root = parsed("<c/><a/><b/><e/><d/>");
    root->ChildSort([](Tag *, Tag *, void *) { return short(0); }, nullptr);
    EXPECT_EQ(childNames(*root), text("c a b e d"));
}

TEST(Tag, ChildSortIsStable)
{
    Tag root;
    for (int i = 0; i < 1000; ++i)
        root.AddTag(new NamedTag(QString::number(i * 7919 % 1000)), false);
    const auto lastDigit = [](Tag *a, Tag *b, void *) {
        return short(a->GetName().rightRef(1).compare(b->GetName().rightRef(1)));
    };
    QStringList expected;
    for (Tag *child = root.m_Child; child; child = child->m_Next)
        expected += child->GetName();
    std::stable_sort(expected.begin(), expected.end(),
                     [](const QString &a, const QString &b) { return a.rightRef(1) < b.rightRef(1); });
    root.ChildSort(lastDigit, nullptr);
    EXPECT_EQ(childNames(root), expected.join(QLatin1Char(' ')));
}

TEST(Tag, ChildSortByAlwaysNegativeTurnsTheListRound)
{
    const TagPtr root = parsed("<a/><b/><c/><d/><e/><f/><g/>");
    root->ChildSort([](Tag *, Tag *, void *) { return short(-1); }, nullptr);
    EXPECT_EQ(childNames(*root), text("g f e d c b a"));
}

TEST(Tag, ChildSortHandsTheContextThrough)
{
    const TagPtr root = parsed("<a/><b/>");
    int calls = 0;
    root->ChildSort(
        [](Tag *, Tag *, void *context) {
            ++*static_cast<int *>(context);
            return short(0);
        },
        &calls);
    EXPECT_EQ(calls, 1);
}

TEST(Tag, ChildSortByNullOrOfNothingDoesNothing)
{
    const TagPtr root = parsed("<b/><a/>");
    root->ChildSort(nullptr, nullptr);
    EXPECT_EQ(childNames(*root), text("b a"));
    Tag empty;
    empty.ChildSort([](Tag *, Tag *, void *) { return short(0); }, nullptr);
    EXPECT_EQ(empty.m_Child, nullptr);
}

TEST(Tag, TagMatchIsFalseForAllButElements)
{
    const QString null;
    EXPECT_FALSE(Tag().TagMatch(null, null, null));
    EXPECT_FALSE(TextTag().TagMatch(text(""), null, null));
    EXPECT_FALSE(ExtraTag(Tag::Comment).TagMatch(text(""), null, null));
}

TEST(Tag, AttributesOfABareNodeAreNotThere)
{
    Tag tag;
    tag.AddAttribute(text("a"), text("1"));
    EXPECT_TRUE(tag.FindAttribute(text("a")).isNull());
    tag.DeleteAttribute(text("a"));
    tag.ClearAttributes();
}

TEST(Tag, NameAndEnclosedTextOfABareNodeAreEmptyNotNull)
{
    for (const TagPtr &tag : {TagPtr(new Tag), TagPtr(new TextTag), TagPtr(new ExtraTag(Tag::CData))}) {
        EXPECT_EQ(tag->GetName(), text(""));
        EXPECT_FALSE(tag->GetName().isNull());
        EXPECT_EQ(tag->GetEnclosedTextItem(), text(""));
        EXPECT_FALSE(tag->GetEnclosedTextItem().isNull());
    }
}

TEST(Tag, FindTagTestsTheNodeItselfFirst)
{
    const TagPtr root = parsed("<a><a/></a>");
    EXPECT_EQ(root->m_Child->FindTag(text("a"), QString(), QString()), root->m_Child);
}

TEST(Tag, FindTagRunsOnPastTheSubtree)
{
    const TagPtr root = parsed("<a><b/></a><c><d/></c>");
    Tag *b = root->m_Child->m_Child;
    EXPECT_EQ(b->FindTag(text("d"), QString(), QString()), root->m_Child->m_Next->m_Child);
    EXPECT_EQ(b->FindTag(text("a"), QString(), QString()), nullptr);
}

TEST(Tag, FindTagIsCaseSensitive)
{
    const TagPtr root = parsed("<A/>");
    EXPECT_EQ(root->FindTag(text("a"), QString(), QString()), nullptr);
    EXPECT_NE(root->FindTag(text("A"), QString(), QString()), nullptr);
}

TEST(Tag, FindTagLeavesALookedUpAttributeBehindWhenItFails)
{
    const TagPtr root = parsed("<p/>");
    EXPECT_EQ(root->FindTag(text("p"), text("x"), text("1")), nullptr);
    EXPECT_EQ(written(*root), text("<p x=\"\"></p>"));
}

TEST(Tag, FindTagByNameAloneAddsNothing)
{
    const TagPtr root = parsed("<p/>");
    EXPECT_EQ(root->FindTag(text("p"), QString(), QString()), root->m_Child);
    EXPECT_EQ(written(*root), text("<p></p>"));
}

TEST(Tag, FindTagTakesEitherNullForAnything)
{
    const TagPtr root = parsed("<p a=\"1\"/>");
    EXPECT_EQ(root->FindTag(text("p"), QString(), text("1")), root->m_Child);
    EXPECT_EQ(root->FindTag(text("p"), text("b"), QString()), root->m_Child);
    EXPECT_EQ(written(*root), text("<p a=\"1\"></p>"));
}

TEST(Tag, FindTagByAnEmptyValueMatchesAnEmptyAttribute)
{
    const TagPtr root = parsed("<p x=\"\"/>");
    EXPECT_EQ(root->FindTag(text("p"), text("x"), text("")), root->m_Child);
}

TEST(Tag, FindTagByAnEmptyValueMatchesAndAddsAMissingAttribute)
{
    const TagPtr root = parsed("<p/>");
    EXPECT_EQ(root->FindTag(text("p"), text("x"), text("")), root->m_Child);
    EXPECT_EQ(written(*root), text("<p x=\"\"></p>"));
}

TEST(Tag, FindTagComparesValuesExactly)
{
    const TagPtr root = parsed("<p x=\"One\"/><p x=\"one\"/>");
    EXPECT_EQ(root->FindTag(text("p"), text("x"), text("one")), root->m_Child->m_Next);
}

TEST(Tag, FindNextTagFromTheLastNodeGoesOnBehindTheParent)
{
    const TagPtr root = parsed("<a><b><x/></b></a><x/>");
    Tag *inner = root->m_Child->m_Child->m_Child;
    EXPECT_EQ(Tag::FindNextTag(inner, text("x"), QString(), QString()), root->m_Child->m_Next);
}

TEST(Tag, FindNextTagNeverAnswersWhereItBegan)
{
    const TagPtr root = parsed("<x/>");
    EXPECT_EQ(Tag::FindNextTag(root->m_Child, text("x"), QString(), QString()), nullptr);
}

TEST(Tag, FindNextTagGoesThroughAllInDocumentOrder)
{
    const TagPtr root = parsed("<x n=1><x n=2><y/><x n=3></x></x></x>t<x n=4></x>");
    QString order;
    for (Tag *tag = root.get(); (tag = Tag::FindNextTag(tag, text("x"), QString(), QString()));)
        order += tag->FindAttribute(text("n"));
    EXPECT_EQ(order, text("1234"));
}

TEST(Tag, FindNextTagFromNullFindsNothing)
{
    EXPECT_EQ(Tag::FindNextTag(nullptr, text("x"), QString(), QString()), nullptr);
}

TEST(Tag, FindChildTagStaysWithinTheSubtree)
{
    const TagPtr root = parsed("<a><b/></a><c/>");
    EXPECT_EQ(root->m_Child->FindChildTag(text("c"), QString(), QString()), nullptr);
    EXPECT_EQ(root->m_Child->FindChildTag(text("a"), QString(), QString()), nullptr);
    EXPECT_EQ(root->m_Child->FindChildTag(text("b"), QString(), QString()), root->m_Child->m_Child);
}

TEST(Tag, FindChildTagFindsTheFirstInDocumentOrder)
{
    const TagPtr root = parsed("<a><x n=1/></a><x n=2/>");
    EXPECT_EQ(root->FindChildTag(text("x"), QString(), QString()), root->m_Child->m_Child);
    EXPECT_EQ(root->FindChildTag(text("x"), text("n"), text("2")), root->m_Child->m_Next);
}

TEST(Tag, FindNthTagOfZeroIsTheMatchingNodeItself)
{
    const TagPtr root = parsed("<a><a/></a>");
    EXPECT_EQ(root->m_Child->FindNthTag(text("a"), 0, QString(), QString(), true), root->m_Child);
}

TEST(Tag, FindNthTagCountsInPreOrder)
{
    const TagPtr root = parsed("<a><a><b/><a/></a></a><a/>");
    Tag *third = root->m_Child->m_Child->m_Child->m_Next;
    EXPECT_EQ(root->FindNthTag(text("a"), 2, QString(), QString(), true), third);
    EXPECT_EQ(root->FindNthTag(text("a"), 3, QString(), QString(), true), root->m_Child->m_Next);
    EXPECT_EQ(root->FindNthTag(text("a"), 4, QString(), QString(), true), nullptr);
}

TEST(Tag, FindNthTagStaysWithinTheSubtree)
{
    const TagPtr root = parsed("<a/><a/>");
    EXPECT_EQ(root->m_Child->FindNthTag(text("a"), 1, QString(), QString(), true), nullptr);
}

TEST(Tag, FindNthTagCounterStartsAtNothingAndStopsAtTheFound)
{
    const TagPtr root = parsed("<a/><a/><a/>");
    root->FindNthTag(text("a"), 1, QString(), QString(), true);
    EXPECT_EQ(Tag::FindNthTagCounter, 1);
    root->FindNthTag(text("a"), 9, QString(), QString(), true);
    EXPECT_EQ(Tag::FindNthTagCounter, 3);
    Tag::FindNthTagCounter = 0;
}

TEST(Tag, FindNthTagGoesOnCountingWithoutReset)
{
    const TagPtr root = parsed("<a n=0/><a n=1/><a n=2/>");
    Tag::FindNthTagCounter = 3;
    EXPECT_EQ(root->FindNthTag(text("a"), 4, QString(), QString(), false), root->m_Child->m_Next);
    EXPECT_EQ(Tag::FindNthTagCounter, 4);
    Tag::FindNthTagCounter = 0;
}

TEST(Tag, FindNthTagFindsNothingOnceTheCounterIsPastTheNumber)
{
    const TagPtr root = parsed("<p/><p/><p/>");
    EXPECT_EQ(root->FindNthTag(text("p"), 1, QString(), QString(), true), root->m_Child->m_Next);
    Tag::FindNthTagCounter = 2;
    EXPECT_EQ(root->FindNthTag(text("p"), 1, QString(), QString(), false), nullptr);
    EXPECT_EQ(Tag::FindNthTagCounter, 5);
}

TEST(Tag, FindNthTagOfAnEmptyNameTouchesNothing)
{
    const TagPtr root = parsed("<>");
    Tag::FindNthTagCounter = 5;
    EXPECT_EQ(root->FindNthTag(text(""), 0, QString(), QString(), true), nullptr);
    EXPECT_EQ(root->FindNthTag(QString(), 0, QString(), QString(), true), nullptr);
    EXPECT_EQ(Tag::FindNthTagCounter, 5);
    Tag::FindNthTagCounter = 0;
}

TEST(Tag, FindNthTagAsksForTheAttributeToo)
{
    const TagPtr root = parsed("<a k=x/><a k=y/><a k=x/>");
    EXPECT_EQ(root->FindNthTag(text("a"), 1, text("k"), text("x"), true), root->m_Child->m_Next->m_Next);
}

TEST(Tag, FindTagAttributeAnswersThatOfTheFirstElement)
{
    const TagPtr root = parsed("<p x=\"1\"/><p x=\"2\"/>");
    EXPECT_EQ(root->FindTagAttribute(text("p"), text("x")), text("1"));
}

TEST(Tag, FindTagAttributeWithoutElementIsNull)
{
    const TagPtr root = parsed("<p/>");
    EXPECT_TRUE(root->FindTagAttribute(text("q"), text("x")).isNull());
}

TEST(Tag, FindTagAttributeAddsAMissingOne)
{
    const TagPtr root = parsed("<p/>");
    EXPECT_TRUE(root->FindTagAttribute(text("p"), text("x")).isNull());
    EXPECT_EQ(written(*root), text("<p x=\"\"></p>"));
}

TEST(Tag, FindTagTextAnswersTheEnclosedText)
{
    const TagPtr root = parsed("<p k=1>one</p><p k=2>two</p>");
    EXPECT_EQ(root->FindTagText(text("p"), QString(), QString()), text("one"));
    EXPECT_EQ(root->FindTagText(text("p"), text("k"), text("2")), text("two"));
}

TEST(Tag, FindTagTextOfNothingIsEmptyNotNull)
{
    Tag root;
    const QString found = root.FindTagText(text("p"), QString(), QString());
    EXPECT_TRUE(found.isEmpty());
    EXPECT_FALSE(found.isNull());
}

TEST(Tag, FindTagTextOfAnElementWithoutTextIsNull)
{
    const TagPtr root = parsed("<p><b/>x</p>");
    EXPECT_TRUE(root->FindTagText(text("p"), QString(), QString()).isNull());
}

TEST(Tag, IsChildOfLooksAtTheAncestorsOnly)
{
    const TagPtr root = parsed("<a><b>x</b></a>");
    Tag *b = root->m_Child->m_Child;
    EXPECT_TRUE(b->IsChildOf(text("a")));
    EXPECT_FALSE(b->IsChildOf(text("b")));
    EXPECT_TRUE(b->m_Child->IsChildOf(text("b")));
    EXPECT_TRUE(b->m_Child->IsChildOf(text("a")));
    EXPECT_FALSE(root->IsChildOf(text("a")));
}

TEST(Tag, IsChildOfIsCaseSensitive)
{
    const TagPtr root = parsed("<a><b/></a>");
    EXPECT_TRUE(root->m_Child->m_Child->IsChildOf(text("a")));
    EXPECT_FALSE(root->m_Child->m_Child->IsChildOf(text("A")));
}

TEST(Tag, IsOrIsChildOfLooksAtTheNodeToo)
{
    const TagPtr root = parsed("<a><b>x</b></a>");
    Tag *b = root->m_Child->m_Child;
    EXPECT_TRUE(b->Is_or_IsChildOf(text("b")));
    EXPECT_TRUE(b->Is_or_IsChildOf(text("a")));
    EXPECT_FALSE(b->Is_or_IsChildOf(text("c")));
    EXPECT_TRUE(b->m_Child->Is_or_IsChildOf(text("b")));
    EXPECT_FALSE(root->Is_or_IsChildOf(text("a")));
}

namespace {

QString visited;

void note(Tag *tag, long data)
{
    visited += tag->GetName() + QString::number(data);
}

} // namespace

TEST(Tag, ForEachTagVisitsSubtreeAndFollowingSiblings)
{
    const TagPtr root = parsed("<a><b/></a><c><d/></c><e/>");
    visited.clear();
    root->m_Child->m_Next->ForEachTag(note, 7);
    EXPECT_EQ(visited, text("c7d7e7"));
}

TEST(Tag, ForEachTagVisitsInDocumentOrder)
{
    const TagPtr root = parsed("<a><b><c/></b><d/></a><e/>");
    visited.clear();
    root->ForEachTag(note, 0);
    EXPECT_EQ(visited, text("0a0b0c0d0e0"));
}

TEST(Tag, ForEachTagWithoutFunctionDoesNothing)
{
    const TagPtr root = parsed("<a><b/></a>");
    root->ForEachTag(nullptr, 0);
    EXPECT_EQ(outline(*root), text("<a>[<b>[]]"));
}

TEST(Tag, ClearAllSkipReachesFollowingSiblingsButNotThoseBefore)
{
    const TagPtr root = parsed("<a/><b><c/></b><d><e/></d>");
    root->ForEachTag([](Tag *tag, long) { tag->SetSkip(true); }, 0);
    root->m_Child->m_Next->ClearAllSkip();
    QString skipped;
    for (const char *name : {"a", "b", "c", "d", "e"})
        skipped += QString::number(root->FindTag(text(name), QString(), QString())->TestSkip());
    EXPECT_EQ(skipped, text("10000"));
    EXPECT_TRUE(root->TestSkip());
}

TEST(TextTag, IsEmptyAtFirst)
{
    TextTag tag;
    EXPECT_TRUE(tag.GetText().isEmpty());
}

TEST(TextTag, GetTextMayBeChanged)
{
    TextTag tag;
    tag.SetText(text("a"));
    tag.GetText() += text("b");
    EXPECT_EQ(tag.m_Text, text("ab"));
}

TEST(ExtraTag, HasItsKindAndNoContentAtFirst)
{
    ExtraTag tag(Tag::DocType);
    EXPECT_EQ(tag.m_Type, Tag::DocType);
    EXPECT_TRUE(tag.GetText().isEmpty());
}

TEST(ExtraTag, GetTextMayBeChanged)
{
    ExtraTag tag(Tag::CData);
    tag.SetText(text("a"));
    tag.GetText() += text("b");
    EXPECT_EQ(tag.m_Text, text("ab"));
}

TEST(ExtraTag, OffsetsAreTheWidthsOfTheDelimiters)
{
    struct Widths
    {
        Tag::TagType_t type;
        int start, end;
    };
    for (const Widths &widths :
         {Widths{Tag::CData, 9, 2}, {Tag::Comment, 4, 2}, {Tag::XmlDecl, 5, 1}, {Tag::DocType, 9, 0}}) {
        int start = -7;
        int end = -7;
        ExtraTag::GetOffsets(widths.type, &start, &end);
        EXPECT_EQ(start, widths.start);
        EXPECT_EQ(end, widths.end);
    }
}

TEST(ExtraTag, OffsetsOfOtherKindsStayUntouched)
{
    for (const Tag::TagType_t type : {Tag::None, Tag::Start, Tag::End, Tag::Empty}) {
        int start = -7;
        int end = -8;
        ExtraTag::GetOffsets(type, &start, &end);
        EXPECT_EQ(start, -7);
        EXPECT_EQ(end, -8);
    }
}

TEST(ExtraTag, OffsetsTakeNullPointers)
{
    int start = 0;
    int end = 0;
    ExtraTag::GetOffsets(Tag::Comment, nullptr, &end);
    ExtraTag::GetOffsets(Tag::Comment, &start, nullptr);
    ExtraTag::GetOffsets(Tag::Comment, nullptr, nullptr);
    EXPECT_EQ(start, 4);
    EXPECT_EQ(end, 2);
}

TEST(Tag, AssignedItselfKeepsItsLinks)
{
    const TagPtr parent(element("parent", {element("child")}));
    Tag &same = *parent;
    Tag *const child = parent->m_Child;
    *parent = same;
    EXPECT_EQ(parent->m_Child, child);
    EXPECT_TRUE(isSound(*parent));
}

TEST(Tag, ContentNodesAreAssignedWithTheirContent)
{
    TextTag words;
    TextTag otherWords;
    otherWords.SetText(text("words"));
    words = otherWords;
    EXPECT_EQ(words.GetText(), text("words"));
    ExtraTag extra(Tag::CData);
    ExtraTag otherExtra(Tag::Comment);
    otherExtra.SetText(text("remark"));
    extra = otherExtra;
    EXPECT_EQ(extra.m_Type, Tag::Comment);
    EXPECT_EQ(extra.GetText(), text("remark"));
}

TEST(Tag, DuplicateHasTheBareNodesBelowIt)
{
    const TagPtr root(element("root"));
    auto *const bare = new Tag;
    root->AddTag(bare, false);
    bare->AddTag(textNode("below"), false);
    const TagPtr copy(root->Duplicate());
    ASSERT_NE(copy->m_Child, nullptr);
    EXPECT_NE(copy->m_Child, bare);
    EXPECT_EQ(written(*copy), text("<root>below</root>"));
    EXPECT_TRUE(isSound(*copy));
}

TEST(Tag, DuplicateOfWhatCannotBeCopiedIsNothing)
{
    class Unique : public NamedTag
    {
    public:
        using NamedTag::NamedTag;
        Tag *Copy() override { return nullptr; }
    };
    Unique unique(text("unique"));
    unique.AddTag(textNode("text"), false);
    EXPECT_EQ(unique.Duplicate(), nullptr);
}
