#include "NodeArena.h"

#include <algorithm>
#include <atomic>

#if defined(__has_feature)
#define QUIRE_HAS_FEATURE(feature) __has_feature(feature)
#else
#define QUIRE_HAS_FEATURE(feature) 0
#endif

namespace XML {

/// What a block of nodes begins with.
struct NodeBlock
{
    // While the arena still hands out places all that it may ever hand out count as used.
    static constexpr int Unlimited = 1 << 30;

    std::atomic<int> used{Unlimited};
};

namespace {

// Before each node lies the address of its block, null for a node that has its memory to itself.
constexpr std::size_t Prefix = sizeof(void *);

// A node that has its memory to itself may be of a host's class, with members that need any alignment.
constexpr std::size_t SinglePrefix = alignof(std::max_align_t);

// AddressSanitizer only sees what happens to nodes that have their memory to themselves.
#if defined(__SANITIZE_ADDRESS__) || QUIRE_HAS_FEATURE(address_sanitizer)
constexpr bool AllSingle = true;
#else
constexpr bool AllSingle = false;
#endif

NodeBlock **prefixOf(void *memory)
{
    return static_cast<NodeBlock **>(memory) - 1;
}

/// Ends \a count uses of \a block, and with the last one the block.
void endUses(NodeBlock *block, int count) noexcept
{
    if (block->used.fetch_sub(count, std::memory_order_acq_rel) == count) {
        block->~NodeBlock();
        ::operator delete(block);
    }
}

} // namespace

void *NodeArena::allocateSingle(std::size_t size)
{
    void *memory = static_cast<char *>(::operator new(size + SinglePrefix)) + SinglePrefix;
    *prefixOf(memory) = nullptr;
    return memory;
}

void NodeArena::release(void *memory) noexcept
{
    if (NodeBlock *block = *prefixOf(memory))
        endUses(block, 1);
    else
        ::operator delete(static_cast<char *>(memory) - SinglePrefix);
}

void *NodeArena::allocate(std::size_t size)
{
    if (AllSingle)
        return allocateSingle(size);
    const std::size_t need = Prefix + (size + Prefix - 1) / Prefix * Prefix;
    if (std::size_t(m_End - m_At) < need)
        begin();
    void *memory = m_At + Prefix;
    *prefixOf(memory) = m_Block;
    m_At += need;
    ++m_Nodes;
    return memory;
}

void NodeArena::begin()
{
    retire();
    const std::size_t size = m_NextBlock;
    m_NextBlock = std::min(size * 2, LastBlock);
    char *memory = static_cast<char *>(::operator new(size));
    m_Block = ::new (memory) NodeBlock;
    m_At = memory + (sizeof(NodeBlock) + Prefix - 1) / Prefix * Prefix;
    m_End = memory + size;
}

void NodeArena::retire() noexcept
{
    if (m_Block)
        endUses(m_Block, NodeBlock::Unlimited - m_Nodes);
    m_Block = nullptr;
    m_At = m_End = nullptr;
    m_Nodes = 0;
}

} // namespace XML
