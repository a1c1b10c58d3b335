#include "ListCommand.h"

#include <memory>

#include <QJsonArray>

#include <quire/tree/Directory.h>

#include "Failure.h"
#include "Output.h"
#include "QueueLoading.h"
#include "Session.h"
#include "StoryTable.h"
#include "Table.h"
#include "Words.h"

namespace Tool {

namespace {

constexpr int usualLimit = 200;

QString kindText(const Quire::Item &item)
{
    switch (item.type) {
    case Quire::Item_Directory:
        return QStringLiteral("directory");
    case Quire::Item_Queue:
        return QStringLiteral("queue");
    default:
        return QString();
    }
}

/// The flags of an entry in words.
QStringList flagTexts(const Quire::Item &item)
{
    QStringList words;
    for (const Quire::Attribute &attribute : item.attributes) {
        if (attribute.name == QLatin1String(Quire::Attr_NumItems))
            continue;
        QString word = attribute.name.mid(1);
        word.replace(QLatin1Char('_'), QLatin1Char('-'));
        words += attribute.value.isEmpty() ? word : word + QLatin1Char('=') + attribute.value;
    }
    return words;
}

QString countText(const Quire::Item &item)
{
    Quire::Attribute count;
    return item.FindAttr(QLatin1String(Quire::Attr_NumItems), count) ? count.value : QString();
}

QJsonObject entryJson(const Quire::Item &item)
{
    QJsonObject entry{{QStringLiteral("path"), item.name},
                      {QStringLiteral("kind"), kindText(item)},
                      {QStringLiteral("flags"), QJsonArray::fromStringList(flagTexts(item))}};
    if (!countText(item).isNull())
        entry.insert(QStringLiteral("entries"), countText(item).toInt());
    return entry;
}

} // namespace

void ListCommand::declare(CLI::App &app, Action &chosen)
{
    CLI::App *verb = addVerb(app, "ls", "List a directory's entries or a queue's stories",
                             "  quire ls\n"
                             "  quire ls SHOWS.EVENING.RUNDOWN --columns title,total-time\n"
                             "  quire ls WIRES.WORLD --all --sort -title\n"
                             "  quire ls WIRES.WORLD --limit 20 --csv > wires.csv",
                             chosen, [this](Host &host) { run(host); });
    addText(*verb, "PATH", m_path, "The directory or queue; the root without it");
    CLI::Option *all = verb->add_flag("--all", m_all, "All stories of a queue, however many");
    addNumber(*verb, "--limit", m_limit, 1, "N  At most so many stories; 200 without it")->excludes(all);
    addText(*verb, "--columns", m_columns, "A,B,...  Show these fields instead of the form's");
    addText(*verb, "--sort", m_sort, "COLUMN  Sort by a column; -COLUMN the other way round");
    verb->add_flag("--csv", m_csv, "Print comma-separated values");
}

int ListCommand::limit() const
{
    if (m_all)
        return -1;
    return m_limit > 0 ? m_limit : usualLimit;
}

void ListCommand::run(Host &host) const
{
    Session session(host.options);
    session.signOn();
    const TreeEntry entry = session.open(m_path);
    if (entry.isQueue())
        return listQueue(session, entry.path, host);
    if (m_csv || !m_columns.isNull() || !m_sort.isNull())
        throw Failure(ExitCode::Usage,
                      QStringLiteral("%1 is a directory; --columns, --sort and --csv are for queues").arg(entry.path));
    Quire::Directory directory(IDispatchPtr(entry.directory.GetInterfacePtr()));
    listDirectory(directory, host);
}

void ListCommand::listDirectory(Quire::Directory &directory, Host &host) const
{
    QJsonArray entries;
    Table table({QStringLiteral("name"), QStringLiteral("kind"), QStringLiteral("entries"), QStringLiteral("flags")},
                {2});
    for (int index = 0; index < directory.Size(); ++index) {
        const Quire::Item &item = *directory.Nth(index);
        entries.append(entryJson(item));
        table.add({item.name.section(QLatin1Char('.'), -1), kindText(item), countText(item),
                   flagTexts(item).join(QLatin1Char(' '))});
    }
    if (host.options.json)
        return host.output.json({{QStringLiteral("path"), directory.Name()}, {QStringLiteral("entries"), entries}});
    if (directory.Size() == 0)
        return host.output.line(QStringLiteral("%1 is empty").arg(directory.Name()));
    host.output.table(table.lines(host.output.columns()));
}

void ListCommand::listQueue(Session &session, const QString &path, Host &host) const
{
    const std::unique_ptr<Quire::Queue> queue = loadQueue(session, path, {limit()}, host.output);
    StoryTable table(*queue, m_columns.split(QLatin1Char(','), Qt::SkipEmptyParts), limit());
    if (!m_sort.isNull())
        table.sort(m_sort);
    const bool more = queue->MoreStoriesAvailable() || table.size() < queue->Size();
    if (host.options.json)
        return host.output.json({{QStringLiteral("path"), path},
                                 {QStringLiteral("stories"), table.json()},
                                 {QStringLiteral("more"), more}});
    int left = 0;
    host.output.table(m_csv ? table.csv() : table.lines(host.output.columns(), &left));
    if (m_csv)
        return;
    host.output.line();
    host.output.line(counted(table.size(), QStringLiteral("story"), QStringLiteral("stories")) +
                     (more ? QStringLiteral(", there are more: --all shows them") : QString()));
    if (left > 0)
        host.output.line(counted(left, QStringLiteral("field"), QStringLiteral("fields")) +
                         QStringLiteral(" not shown for want of room: --columns chooses"));
}

} // namespace Tool
