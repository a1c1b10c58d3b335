#include "models/SearchModelFixture.h"

using namespace Quire;

void SearchModelTest::SetUp()
{
    start(text("directory NEWS indexed\n"
               "  queue WORLD number=12\n"
               "    story id=1:1:1\n"
               "      title: Storm one\n"
               "      note[urgency=2]: first\n"
               "    story id=2:1:1\n"
               "      title: Storm two\n"
               "  queue LOCAL number=13\n"
               "    story id=3:1:1 locked=desk\n"
               "      title: Storm three\n"
               "    story id=4:1:1\n"
               "      title: Calm\n"));
    NotificationInit(nullptr, nullptr, nullptr);
}

void SearchModelTest::start(SearchModel &model, const char *path, ItemType type)
{
    model.setPollInterval(5);
    model.start(text(path), type, text("storm"));
}

void SearchModelTest::startSilently(SearchModel &model)
{
    server->delivery().pause();
    start(model);
    ASSERT_TRUE(comes([] { return Search::GetSearcher()->AccessSearchResults(1) != nullptr; }));
    Search::GetSearcher()->EndAccessSearchResults(1);
}

QStringList SearchModelTest::names(const SearchModel &model)
{
    QStringList all;
    for (int row = 0; row < model.rowCount(); ++row)
        all.append(model.index(row, 0).data().toString());
    return all;
}

void SearchModelTest::addHit(const char *name, const char *key)
{
    Item hit(text(name), Item_SearchHit);
    hit.sortKey = text(key);
    Search *const searcher = Search::GetSearcher();
    for (long id = 1; id < 100; ++id) {
        if (ItemList *const list = searcher->AccessSearchResults(id)) {
            list->Append(hit);
            searcher->EndAccessSearchResults(id);
            return;
        }
    }
    FAIL() << "no search runs";
}
