#pragma once

/// \file
/// From the server's record of a search hit to the item of a list.

#include <QString>

#include <cstddef>
#include <vector>

#include <quire/notify/RecordArray.h>
#include <quire/orvex/Orvex.h>
#include <quire/tree/Item.h>

namespace Quire {

/// Reads the records of one event. The hits of an event mostly have the same fields, whose names are kept between two
/// records, so that the items share them. One thread at a time.
class SearchHitReader
{
public:
    /// An item of type Item_SearchHit for \a hit: its name; "_queue", "_storyid" and the fields with a value as
    /// attributes; queue and story identifier as its sort key.
    Item read(const Orvex::SearchHit &hit);

    /// Puts items for the hits from \a next on into \a batch in place of what is there, at most 64. Returns where to go
    /// on; that is \a end also when a hit could not be read.
    const Orvex::SearchHit *readBatch(const Orvex::SearchHit *next, const Orvex::SearchHit *end,
                                      std::vector<Item> &batch);

private:
    void addFields(const RecordArray<Orvex::FieldValue> &fields, Item &item);
    const QString &fieldName(std::size_t position, BSTR name);

    std::vector<QString> m_fieldNames; // of the last record that had so many fields, by their places
};

} // namespace Quire
