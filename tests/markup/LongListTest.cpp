/// \file
/// Lists so long that a place near their end is remembered.

#include <gtest/gtest.h>

#include "markup/Support.h"

using namespace MarkupTest;
using XML::NamedTag;
using XML::Tag;

namespace {

/// With children c0, c1 and so on.
class LongList : public ::testing::Test
{
protected:
    LongList()
    {
        for (int number = 0; number < 20; ++number)
            list.AddTag(child(number), false);
    }

    static NamedTag *child(int number) { return new NamedTag(text("c") + QString::number(number)); }

    Tag *last()
    {
        Tag *tag = list.m_Child;
        while (tag->m_Next)
            tag = tag->m_Next;
        return tag;
    }

    void readOn(const QString &markup)
    {
        int position = 0;
        XML::Parser().ParseTag(&list, markup, position);
    }

    /// Goes through every child as the last one, as each may be the one that is remembered.
    template<typename Change>
    void takeAllFromTheEnd(const Change &change)
    {
        for (int number = 19; number > 0; --number) {
            change(last());
            EXPECT_EQ(last()->GetName(), text("c") + QString::number(number - 1));
            NamedTag *const added = child(100);
            list.AddTag(added, false);
            EXPECT_EQ(last(), added);
            EXPECT_EQ(added->m_Next, nullptr);
            Tag::ExtractTagFromParent(added);
            delete added;
        }
        EXPECT_EQ(childNames(list), text("c0"));
        EXPECT_TRUE(isSound(list));
    }

    NamedTag list{text("list")};
};

} // namespace

TEST_F(LongList, IsAppendedToAfterItsLastWereTakenOut)
{
    takeAllFromTheEnd([](Tag *last) {
        Tag::ExtractTagFromParent(last);
        delete last;
    });
}

TEST_F(LongList, IsAppendedToAfterItsLastWereReplacedByNothing)
{
    takeAllFromTheEnd([this](Tag *last) { list.ReplaceChildTag(last, nullptr); });
}

TEST_F(LongList, IsAppendedToAfterEachWasReplaced)
{
    for (int number = 0; number < 20; ++number) {
        list.ReplaceChildTag(list.FindChildTag(text("c") + QString::number(number), QString(), QString()),
                             new NamedTag(text("r")));
        list.AddTag(new NamedTag(text("e")), false);
    }
    QString names;
    for (int number = 0; number < 20; ++number)
        names += text("r ");
    for (int number = 0; number < 20; ++number)
        names += text("e ");
    EXPECT_EQ(childNames(list), names.trimmed());
    EXPECT_TRUE(isSound(list));
}

TEST_F(LongList, IsReadOnAtItsEnd)
{
    readOn(text("<x/><y/>"));
    EXPECT_TRUE(childNames(list).endsWith(text("c18 c19 x y")));
    EXPECT_TRUE(isSound(list));
}

TEST_F(LongList, IsReadOnAfterItsLastWereTakenOut)
{
    list.DeleteChildren();
    for (int number = 0; number < 20; ++number)
        readOn(text("<c%1/>").arg(number));
    takeAllFromTheEnd([](Tag *last) {
        Tag::ExtractTagFromParent(last);
        delete last;
    });
}

TEST_F(LongList, IsAppendedToAfterItsAdoptedLastWereReplacedByNothing)
{
    NamedTag all{text("all")};
    all.AdoptChildren(&list, true);
    list.AdoptChildren(&all, true);
    takeAllFromTheEnd([this](Tag *last) { list.ReplaceChildTag(last, nullptr); });
}

TEST_F(LongList, IsReadOnAfterItWasSortedAndEmptied)
{
    readOn(text("<x/>"));
    list.ChildSort([](Tag *a, Tag *b, void *) { return short(b->GetName().compare(a->GetName())); }, nullptr);
    EXPECT_EQ(last()->GetName(), text("c0"));
    readOn(text("<y/>"));
    EXPECT_EQ(last()->GetName(), text("y"));
    list.DeleteChildren();
    readOn(text("<z/>"));
    EXPECT_EQ(childNames(list), text("z"));
}

TEST_F(LongList, IsAppendedToWhenAHostLinksChildrenAfterItWasEmptied)
{
    list.DeleteChildren();
    list.m_Child = child(0);
    list.m_Child->m_Parent = &list;
    list.AddTag(child(1), false);
    EXPECT_EQ(childNames(list), text("c0 c1"));
    EXPECT_TRUE(isSound(list));
}

TEST_F(LongList, OfACopyThatGaveItUpIsNotAppendedToByReading)
{
    NamedTag copy(list);
    copy.AddTag(new NamedTag(text("t")), false);
    copy.m_Child = nullptr;
    int position = 0;
    XML::Parser().ParseTag(&copy, text("<x/>"), position);
    copy.AddTag(new NamedTag(text("y")), false);
    EXPECT_EQ(childNames(copy), text("x y"));
    EXPECT_TRUE(childNames(list).endsWith(text("c18 c19 t")));
}

TEST_F(LongList, OfACopyThatGaveItUpIsNotAppendedToAfterAFirstChild)
{
    NamedTag copy(list);
    copy.AddTag(new NamedTag(text("t")), false);
    copy.m_Child = nullptr;
    copy.AddTag(new NamedTag(text("x")), true);
    copy.AddTag(new NamedTag(text("y")), false);
    EXPECT_EQ(childNames(copy), text("x y"));
}

TEST_F(LongList, OfACopyThatGaveItUpIsNotAppendedToByAdopting)
{
    NamedTag copy(list);
    copy.AddTag(new NamedTag(text("t")), false);
    copy.m_Child = nullptr;
    const TagPtr from = parsed("<x/>");
    copy.AdoptChildren(from.get(), true);
    copy.AddTag(new NamedTag(text("y")), false);
    EXPECT_EQ(childNames(copy), text("x y"));
    EXPECT_TRUE(childNames(list).endsWith(text("c18 c19 t")));
}

TEST_F(LongList, GrowsWhereItGoesOnOnceItIsAnothersByAssignment)
{
    NamedTag other(text("other"));
    other.AddTag(child(1), false);
    Tag *const former = list.m_Child;
    list = other;
    list.AddTag(child(2), false);
    EXPECT_EQ(childNames(other), text("c1 c2"));
    list.m_Child = former; // which nobody else owns
    EXPECT_EQ(childNames(list).section(QLatin1Char(' '), -1), text("c19"));
}

TEST_F(LongList, IsAppendedToAtItsOwnEndWhileAHostAdoptsIt)
{
    class Adopting : public Tag
    {
    public:
        explicit Adopting(Tag *from)
            : m_From(from)
        {}
        void AddTag(Tag *tag, bool atFront) override
        {
            Tag::AddTag(tag, atFront);
            if (tag->GetName() == text("c20"))
                m_From->AddTag(element("late"), false);
        }
        Tag *m_From;
    };
    last()->AddSiblingTag(child(21));
    list.FindChildTag(text("c19"), QString(), QString())->AddSiblingTag(child(20));
    Adopting adopting(&list);
    adopting.AdoptChildren(&list, true);
    EXPECT_TRUE(childNames(adopting).endsWith(text("c19 c20 c21 late")));
    EXPECT_TRUE(isSound(adopting));
}
