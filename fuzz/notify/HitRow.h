#pragma once

/// \file
/// Hits as a hostile server sends them.

#include <memory>
#include <vector>

#include <quire/orvex/Orvex.h>
#include <quire/tree/Item.h>

#include "fuzz/StrangeArray.h"

namespace NotifyFuzz {

/// What a list has to get for a hit without fields.
Quire::Item itemOf(const QString &name, const QString &queue, const Orvex::StoryIdentifier &id);

/// One row of hits, as an input says, as plain memory, and the items that a list has to get for them. The arrays of
/// their fields may be of any shape. Owns everything.
class HitRow
{
public:
    HitRow(Fuzz::Input &input, IDispatch *object);
    ~HitRow();
    HitRow(const HitRow &) = delete;
    HitRow &operator=(const HitRow &) = delete;

    SAFEARRAY *get() const { return m_array; }
    const std::vector<Quire::Item> &expected() const { return m_expected; }

private:
    void fill(Fuzz::Input &input, Orvex::SearchHit *hit, IDispatch *object);
    void putFields(Fuzz::Input &input, Orvex::SearchHit *hit, Quire::Item *item);

    SAFEARRAY *m_array = nullptr;
    ULONG m_size;
    std::vector<SAFEARRAY *> m_fields;                          // with texts of ours
    std::vector<std::unique_ptr<Fuzz::StrangeArray>> m_strange; // in place of fields
    std::vector<Quire::Item> m_expected;
};

} // namespace NotifyFuzz
