/// \file
/// Nodes live as long as they are wanted, however they were made and whoever destroys them.

#include <thread>
#include <vector>

#include <gtest/gtest.h>

#ifdef __GLIBC__
#if __GLIBC_PREREQ(2, 33)
#include <malloc.h>
#define QUIRE_COUNTS_MEMORY
#endif
#endif

#include "markup/Support.h"

using namespace MarkupTest;
using XML::NamedTag;
using XML::Tag;
using XML::TextTag;

TEST(NodeMemory, OfAnExtractedNodeOutlivesItsTree)
{
    std::vector<TagPtr> kept;
    for (int i = 0; i < 100; ++i) {
        const TagPtr root = parsed(text("<a x=\"%1\">t</a>").arg(i).repeated(20));
        Tag *one = root->m_Child->m_Next;
        Tag::ExtractTagFromParent(one);
        kept.emplace_back(one);
    }
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(written(*kept[std::size_t(i)]), text("<a x=\"%1\">t</a>").arg(i));
}

TEST(NodeMemory, OfOneTreeIsGivenBackByDifferentThreads)
{
    const TagPtr root = parsed(text("<a><b>x</b><c/></a>").repeated(4000));
    std::vector<TagPtr> parts;
    while (Tag *child = root->m_Child) {
        Tag::ExtractTagFromParent(child);
        parts.emplace_back(child);
    }
    std::vector<std::thread> threads;
    for (std::size_t which = 0; which < 4; ++which) {
        threads.emplace_back([&parts, which] {
            for (std::size_t i = which; i < parts.size(); i += 4)
                parts[i].reset();
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(root->m_Child, nullptr);
}

TEST(NodeMemory, MixesParsedAndSingleNodes)
{
    const TagPtr root = parsed("<a><b/></a>");
    root->m_Child->ReplaceChildTag(root->m_Child->m_Child, element("c", {textNode("x")}));
    root->m_Child->AddTag(root->m_Child->Copy(), false);
    root->m_Child->AddTag(root->m_Child->m_Child->Duplicate(), true);
    EXPECT_EQ(written(*root), text("<a><c>x</c><c>x</c><a></a></a>"));
}

TEST(NodeMemory, FitsAnOveralignedSubclass)
{
    class alignas(64) Wide : public NamedTag
    {
    public:
        Wide()
            : NamedTag(text("wide"))
        {}
    };
    Tag root;
    auto *wide = new Wide;
    EXPECT_EQ(reinterpret_cast<quintptr>(wide) % 64, 0U);
    root.AddTag(wide, false);
}

TEST(NodeMemory, FitsASubclassWithStrictlyAlignedMembers)
{
    class Strict : public TextTag
    {
    public:
        long double m_Number = 0;
    };
    const std::unique_ptr<Strict> strict(new Strict);
    EXPECT_EQ(reinterpret_cast<quintptr>(strict.get()) % alignof(long double), 0U);
}

TEST(NodeMemory, MayBeThatOfSomebodyElse)
{
    alignas(NamedTag) unsigned char place[sizeof(NamedTag)];
    auto *tag = new (place) NamedTag(text("a"));
    EXPECT_EQ(written(*tag), text("<a></a>"));
    tag->~NamedTag();
}

TEST(NodeMemory, OfSingleAndSharedNodesIsAlike)
{
    NamedTag onTheStack(text("s"));
    EXPECT_EQ(written(onTheStack), text("<s></s>"));
    Tag *null = nullptr;
    delete null;
}

#ifdef QUIRE_COUNTS_MEMORY
// Leaks of the memory that nodes share would not be found otherwise: AddressSanitizer sees nodes of their own only.
TEST(NodeMemory, OfTreesThatAreGoneIsGivenBack)
{
    const QString markup = text("<a><b>x</b><c/></a>").repeated(1000);
    const auto used = [] {
        const struct mallinfo2 info = mallinfo2();
        return info.uordblks + info.hblkhd;
    };
    parsed(markup);
    const std::size_t before = used();
    for (int i = 0; i < 20; ++i) {
        const TagPtr root = parsed(markup);
        const TagPtr copy(root->Duplicate());
    }
    EXPECT_LT(used(), before + 20000);
}
#endif
