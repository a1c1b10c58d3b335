#pragma once

#include <QString>

#include <utility>
#include <vector>

#include <quire/orvex/Orvex.h>

/// What a host would write by hand: the same calls in the same order, the same texts kept, and nothing else, no lock,
/// no list that others may read, no attribute that has a name of its own.
namespace Floor {

struct StoryTexts
{
    QString name;
    QString id;
    QString head;
    QString fields;
};

struct EntryTexts
{
    QString name;
    int type = 0;
    std::vector<std::pair<QString, QString>> attributes;
};

/// Reads all stories of a queue, \a chunk at a time.
std::vector<StoryTexts> loadQueue(const IDispatchPtr &queue, int chunk);

/// Reads all entries of a directory.
std::vector<EntryTexts> readDirectory(const IDispatchPtr &directory);

} // namespace Floor
