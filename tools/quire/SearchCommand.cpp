#include "SearchCommand.h"

#include <QJsonArray>
#include <QSet>

#include <chrono>
#include <thread>

#include <quire/notify/Search.h>
#include <quire/tree/SearchList.h>

#include "Failure.h"
#include "Interrupt.h"
#include "Notices.h"
#include "Output.h"
#include "Session.h"
#include "TextWidth.h"
#include "Words.h"

namespace Tool {

namespace {

/// What the server is to search for a path: a queue itself, a directory with everything below.
QString scopeOf(const TreeEntry &entry)
{
    if (entry.isQueue())
        return entry.path;
    return entry.path == QLatin1String(".") ? QStringLiteral(".*") : entry.path + QLatin1String(".*");
}

struct Hit
{
    QString queue;
    QString number; ///< First number of the story, as `quire story` takes it.
    QString name;
    QJsonObject fields;
};

Hit readHit(const Quire::Item &item)
{
    Hit hit{QString(), QString(), item.name, {}};
    for (const Quire::Attribute &attribute : item.attributes) {
        if (attribute.name == QLatin1String(Quire::Attr_Queue))
            hit.queue = attribute.value;
        else if (attribute.name == QLatin1String(Quire::Attr_Storyid))
            hit.number = attribute.value.section(QLatin1Char(':'), 0, 0);
        else
            hit.fields.insert(attribute.name, attribute.value);
    }
    return hit;
}

/// One search from its start to its deletion, which stops it if it is still running.
class RunningSearch
{
public:
    RunningSearch(const QString &scope, const QString &query)
        : m_list(searcher().StartSearch(scope, query))
    {
        if (!m_list)
            throw Failure(ExitCode::Failed, QStringLiteral("the server does not search for this"));
    }
    RunningSearch(const RunningSearch &) = delete;
    RunningSearch &operator=(const RunningSearch &) = delete;
    ~RunningSearch() { searcher().DeleteSearch(m_list->SearchID()); }

    /// The hits that were not handed out before. False when there will be no more.
    bool takeNew(std::vector<Hit> &hits)
    {
        hits.clear();
        const int id = m_list->SearchID();
        searcher().AccessSearchResults(id);
        const bool running = !m_list->IsSearchComplete();
        if (!running)
            m_next = 0; // the hits have been sorted
        for (; m_next < m_list->u_Size(); ++m_next) {
            const Quire::Item &item = *m_list->u_Nth(m_next);
            if (m_seen.contains(item.sortKey))
                continue;
            m_seen.insert(item.sortKey);
            hits.push_back(readHit(item));
        }
        searcher().EndAccessSearchResults(id);
        return running;
    }

private:
    static Quire::Search &searcher() { return *Quire::Search::GetSearcher(); }

    Quire::SearchList *const m_list;
    int m_next = 0;
    QSet<QString> m_seen;
};

void print(Output &output, const Hit &hit)
{
    const QString place = QStringLiteral("%1 %2  ").arg(isolate(visible(hit.queue)), hit.number);
    output.line(fitText(place + isolate(visible(hit.name)), output.columns()));
}

QJsonObject toJson(const Hit &hit)
{
    return {{QStringLiteral("queue"), hit.queue},
            {QStringLiteral("number"), hit.number.toInt()},
            {QStringLiteral("name"), hit.name},
            {QStringLiteral("fields"), hit.fields}};
}

QString storyCount(int number)
{
    return counted(number, QStringLiteral("story"), QStringLiteral("stories"));
}

} // namespace

void SearchCommand::declare(CLI::App &app, Action &chosen)
{
    CLI::App *verb = addVerb(app, "search", "Find stories by their words",
                             "  quire search . rain\n"
                             "  quire search SPORT 'title:final OR title:cup'\n"
                             "  quire search WIRES.WORLD '\"a phrase\"' --limit 10 --json",
                             chosen, [this](Host &host) { run(host); });
    addText(*verb, "PATH", m_path, "A queue, or a directory with all below")->required();
    addText(*verb, "QUERY", m_query, "Words to find")->required();
    addNumber(*verb, "--limit", m_limit, 0, "N  Find at most so many stories; 0 for all");
}

void SearchCommand::run(Host &host) const
{
    Session session(host.options);
    session.signOn();
    const QString scope = scopeOf(session.open(m_path));
    const Interrupt interrupt;
    const Notices notices;
    if (!Quire::Search::GetSearcher()->CanSearch())
        throw Failure(ExitCode::Failed, QStringLiteral("the server gives no notices, so that nothing can be found"));

    Quire::Search::SetSearchLimit(m_limit);
    RunningSearch search(scope, m_query);
    QJsonArray all;
    std::vector<Hit> hits;
    int found = 0;
    for (bool running = true; running;) {
        if (notices.isLoggedOut() || interrupt.isRequested())
            throw Failure(ExitCode::Failed,
                          QStringLiteral("%1 after %2")
                              .arg(notices.isLoggedOut() ? QStringLiteral("logged out") : QStringLiteral("stopped"),
                                   storyCount(found)));
        running = search.takeNew(hits);
        for (const Hit &hit : hits) {
            ++found;
            if (host.options.json)
                all.append(toJson(hit));
            else
                print(host.output, hit);
        }
        host.output.flush();
        if (running)
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    if (host.options.json)
        return host.output.json({{QStringLiteral("scope"), scope},
                                 {QStringLiteral("query"), m_query},
                                 {QStringLiteral("limit"), m_limit},
                                 {QStringLiteral("count"), found},
                                 {QStringLiteral("hits"), all}});
    host.output.line();
    host.output.line(storyCount(found));
}

} // namespace Tool
