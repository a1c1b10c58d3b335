#pragma once

#include <algorithm>
#include <mutex>
#include <vector>

#include <quire/newsroom/server/ComObject.h>

namespace Newsroom {

/// An enumerator over what was there when it was made: of connections (`Item` is CONNECTDATA) or of connection points
/// (`Item` is IConnectionPoint *). It holds a reference to each.
template<class Interface, class Item>
class Enumerator final : public ComObject<Interface, Interface>
{
    using Base = ComObject<Interface, Interface>;

public:
    /// Takes over the references in `items`.
    Enumerator(const std::shared_ptr<ServerCore> &core, const CallInterface &answering, std::vector<Item> items)
        : Base(core, ObjectKind::Enumerator, answering)
        , m_items(std::move(items))
    {}
    Enumerator(const Enumerator &) = delete;
    Enumerator &operator=(const Enumerator &) = delete;

    STDMETHODIMP Next(ULONG count, Item *items, ULONG *fetched) override
    {
        if (fetched)
            *fetched = 0;
        if (!items || (!fetched && count != 1))
            return E_POINTER;
        std::fill_n(items, count, Item());
        return this->call("Next").run([&] {
            const std::lock_guard<std::mutex> lock(m_mutex);
            ULONG given = 0;
            for (; given < count && m_position < m_items.size(); ++given, ++m_position)
                items[given] = shared(m_items[m_position]);
            if (fetched)
                *fetched = given;
            return given == count ? S_OK : S_FALSE;
        });
    }

    STDMETHODIMP Skip(ULONG count) override
    {
        return this->call("Skip").run([&] {
            const std::lock_guard<std::mutex> lock(m_mutex);
            const std::size_t left = m_items.size() - m_position;
            m_position += std::min<std::size_t>(count, left);
            return count <= left ? S_OK : S_FALSE;
        });
    }

    STDMETHODIMP Reset() override
    {
        return this->call("Reset").run([&] {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_position = 0;
            return S_OK;
        });
    }

    STDMETHODIMP Clone(Interface **clone) override
    {
        return this->call("Clone").out(clone).run([&] {
            std::vector<Item> items;
            for (const Item &item : m_items)
                items.push_back(shared(item));
            auto made = makeOwned<Enumerator>(this->core(), this->answering(), std::move(items));
            const std::lock_guard<std::mutex> lock(m_mutex);
            made->m_position = m_position;
            *clone = made.release();
            return S_OK;
        });
    }

private:
    ~Enumerator() override
    {
        for (const Item &item : m_items)
            pointerOf(item)->Release();
    }

    static IUnknown *pointerOf(const CONNECTDATA &item) { return item.pUnk; }
    static IUnknown *pointerOf(IConnectionPoint *item) { return item; }

    static Item shared(const Item &item)
    {
        pointerOf(item)->AddRef();
        return item;
    }

    const std::vector<Item> m_items;
    std::mutex m_mutex; // guards what follows; a leaf
    std::size_t m_position = 0;
};

} // namespace Newsroom
