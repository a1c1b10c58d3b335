// A node for which there is no memory.

#include <quire/markup/NamedTag.h>

#include <gtest/gtest.h>

#include <new>

#include "support/NoMemory.h"
#include "support/Text.h"

using namespace XML;

TEST(NodeWithoutMemory, IsNullForAHostThatAsksForThat)
{
    const QString name = text("p");
    Tag *node = nullptr;
    {
        const NoMemory memory(1);
        node = new (std::nothrow) NamedTag(name);
        EXPECT_TRUE(memory.hasFailed());
    }
    EXPECT_EQ(node, nullptr);
}

TEST(NodeWithoutMemory, RaisesOtherwise)
{
    const QString name = text("p");
    const auto make = [&name] {
        const NoMemory memory(1);
        return new NamedTag(name);
    };
    EXPECT_THROW(delete make(), std::bad_alloc);
}
