#pragma once

#include <quire/models/SearchModel.h>

#include "models/ModelFixture.h"

/// A session with notices on a newsroom with the indexed directory NEWS, in which the search for "storm" finds
///     NEWS.WORLD  "Storm one", "Storm two"
///     NEWS.LOCAL  "Storm three"
class SearchModelTest : public ModelTest
{
protected:
    void SetUp() override;

    /// Searches for "storm".
    static void start(Quire::SearchModel &model, const char *path = "NEWS",
                      Quire::ItemType type = Quire::Item_Directory);
    using ModelTest::start;
    /// Starts a search of which nothing is delivered until the server is told to resume.
    void startSilently(Quire::SearchModel &model);

    /// What the first column shows, row by row.
    static QStringList names(const Quire::SearchModel &model);
    /// Puts a hit into the list of the search that runs, as if the server had sent it.
    static void addHit(const char *name, const char *key);
};
