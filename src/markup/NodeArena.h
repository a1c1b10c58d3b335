#pragma once

/// \file
/// Memory for nodes that are made together.

#include <cstddef>
#include <new>
#include <utility>

namespace XML {

struct NodeBlock;

/// Gives the nodes of one parse or one duplication places side by side, so that reading, walking and destroying the
/// tree go straight through memory.
///
/// The nodes are destroyed one by one like any others, by any thread; a block goes back once the arena and all its
/// nodes are done with it. A node that outlives its neighbours keeps its block, at most LastBlock bytes. Lives on the
/// stack of the function that makes the nodes.
class NodeArena
{
public:
    NodeArena() = default;
    ~NodeArena() { retire(); }
    NodeArena(const NodeArena &) = delete;
    NodeArena &operator=(const NodeArena &) = delete;

    /// A new node that is destroyed by delete.
    template<class Node, class... Arguments>
    Node *make(Arguments &&...arguments)
    {
        static_assert(sizeof(Node) <= FirstBlock / 4);
        static_assert(alignof(Node) <= sizeof(void *));
        return ::new (allocate(sizeof(Node))) Node(std::forward<Arguments>(arguments)...);
    }

    /// Memory for one node outside of any arena.
    static void *allocateSingle(std::size_t size);

    /// Takes back the memory of a node, be it from an arena or not.
    static void release(void *memory) noexcept;

private:
    void *allocate(std::size_t size);
    void begin();
    void retire() noexcept;

    // The first blocks have room for a dozen nodes; those of large trees are larger.
    static constexpr std::size_t FirstBlock = 1000;
    static constexpr std::size_t LastBlock = 8 * FirstBlock;

    NodeBlock *m_Block = nullptr;
    char *m_At = nullptr;
    char *m_End = nullptr;
    int m_Nodes = 0;
    std::size_t m_NextBlock = FirstBlock;
};

} // namespace XML
