#include "NewsroomCommand.h"

#include <QJsonArray>

#include <quire/newsroom/store/Importer.h>
#include <quire/newsroom/store/Store.h>

#include "Failure.h"
#include "Output.h"
#include "ServerSource.h"
#include "TextWidth.h"
#include "Words.h"

namespace Tool {

namespace {

/// The counts of a newsroom, for people and as JSON.
struct Contents
{
    int directories = 0;
    int queues = 0;
    int stories = 0;

    QString text() const
    {
        return QStringLiteral("%1, %2, %3")
            .arg(counted(directories, QStringLiteral("directory"), QStringLiteral("directories")),
                 counted(queues, QStringLiteral("queue"), QStringLiteral("queues")),
                 counted(stories, QStringLiteral("story"), QStringLiteral("stories")));
    }

    QJsonObject json(const QString &folder) const
    {
        return {{QStringLiteral("folder"), folder},
                {QStringLiteral("directories"), directories},
                {QStringLiteral("queues"), queues},
                {QStringLiteral("stories"), stories}};
    }
};

Contents contentsOf(const Newsroom::Model &model)
{
    Contents contents;
    contents.stories = model.storyCount();
    contents.queues = static_cast<int>(model.queues().size());
    QStringList toVisit{QStringLiteral(".")};
    while (!toVisit.isEmpty()) {
        const QVector<Newsroom::Entry> entries = model.children(toVisit.takeLast()).value;
        for (const Newsroom::Entry &entry : entries) {
            if (entry.isQueue())
                continue;
            ++contents.directories;
            toVisit += entry.path;
        }
    }
    return contents;
}

void tell(Host &host, const QString &line, const QJsonObject &object)
{
    if (host.options.json)
        host.output.json(object);
    else
        host.output.line(line);
}

/// A line for each, or for the first of many.
void tellStrays(Output &output, const QStringList &strays)
{
    constexpr int most = 10;
    const QString lead = QStringLiteral("no part of it: ");
    for (const QString &stray : strays.mid(0, most))
        output.line(lead + isolate(visible(stray)));
    if (strays.size() > most)
        output.line(lead + counted(strays.size() - most, QStringLiteral("more file"), QStringLiteral("more files")));
}

/// What an import made, counted as everywhere: it counts the root, which every newsroom has, as a directory, too.
Contents contentsOf(const Newsroom::ImportReport &report)
{
    return {report.directories - 1, report.queues, report.stories};
}

/// "3 compressed, 1 binary"; empty when nothing was left out.
QString skippedText(const Newsroom::ImportReport &report)
{
    const std::pair<int, const char *> kinds[] = {
        {report.skippedCompressed, "compressed"},     {report.skippedBinary, "binary"},
        {report.skippedTooLarge, "too large"},        {report.skippedLinks, "links"},
        {report.skippedSpecial, "no ordinary files"}, {report.unreadable, "unreadable"}};
    QStringList parts;
    for (const auto &[number, kind] : kinds) {
        if (number > 0)
            parts += QStringLiteral("%1 %2").arg(QString::number(number), QLatin1String(kind));
    }
    return parts.join(QStringLiteral(", "));
}

QJsonObject reportJson(const Newsroom::ImportReport &report, const QString &folder)
{
    QJsonObject object = contentsOf(report).json(folder);
    object.insert(QStringLiteral("bytes"), static_cast<double>(report.bytes));
    object.insert(QStringLiteral("skippedCompressed"), report.skippedCompressed);
    object.insert(QStringLiteral("skippedBinary"), report.skippedBinary);
    object.insert(QStringLiteral("skippedTooLarge"), report.skippedTooLarge);
    object.insert(QStringLiteral("skippedLinks"), report.skippedLinks);
    object.insert(QStringLiteral("skippedSpecial"), report.skippedSpecial);
    object.insert(QStringLiteral("unreadable"), report.unreadable);
    object.insert(QStringLiteral("unreadableNames"), QJsonArray::fromStringList(report.unreadableNames));
    return object;
}

} // namespace

void NewsroomCommand::declare(CLI::App &app, Action &chosen)
{
    CLI::App *family = app.add_subcommand("newsroom", "Make, write and check newsroom folders");
    family->require_subcommand(1);

    CLI::App *import = addVerb(*family, "import", "Turn a folder of texts into a newsroom folder",
                               "  quire newsroom import ~/texts nr\n"
                               "  quire --newsroom nr tree",
                               chosen, [this](Host &host) { this->import(host); });
    addFileName(*import, "SRC", m_source, "The folder of text, XML or HTML files")->required();
    addFileName(*import, "DIR", m_folder, "The newsroom folder to make; new or empty")->required();

    CLI::App *generating = addVerb(*family, "generate", "Make up a newsroom folder of any size",
                                   "  quire newsroom generate --stories 100000 nr\n"
                                   "  quire --newsroom nr ls WIRES.W1 --limit 20",
                                   chosen, [this](Host &host) { generate(host); });
    addFileName(*generating, "DIR", m_folder, "The newsroom folder to make; new or empty")->required();
    addNumber(*generating, "--stories", m_size.stories, 0, "N  So many stories; 1000 without it");
    addNumber(*generating, "--queues", m_size.queues, 1, "N  In so many queues; one without it");

    CLI::App *exporting = addVerb(*family, "export", "Write the newsroom in use as a folder",
                                  "  quire newsroom export nr\n"
                                  "  quire --newsroom nr newsroom export copy",
                                  chosen, [this](Host &host) { exportTo(host); });
    addFileName(*exporting, "DIR", m_folder, "The newsroom folder to make; new or empty")->required();

    CLI::App *check = addVerb(*family, "check", "Read a newsroom folder whole, change nothing",
                              "  quire newsroom check nr", chosen, [this](Host &host) { this->check(host); });
    addFileName(*check, "DIR", m_folder, "The newsroom folder")->required();
}

void NewsroomCommand::import(Host &host) const
{
    Newsroom::ImportReport report;
    QString error;
    if (!Newsroom::Importer::import(m_source, m_folder, &report, &error))
        throw Failure(ExitCode::Failed, QStringLiteral("cannot import: %1").arg(error));
    QString line = QStringLiteral("%1: %2").arg(m_folder, contentsOf(report).text());
    if (report.skipped() > 0)
        line += QStringLiteral("; left out: %1").arg(skippedText(report));
    tell(host, line, reportJson(report, m_folder));
}

void NewsroomCommand::generate(Host &host) const
{
    save(*Newsroom::generatedModel(m_size), QStringLiteral("generate"), host);
}

void NewsroomCommand::exportTo(Host &host) const
{
    const ServerSource source(host.options, Access::Read);
    const std::shared_ptr<Newsroom::Model> model = source.model();
    if (!model)
        throw Failure(ExitCode::Failed,
                      QStringLiteral("a registered server cannot be exported; give --built-in or --newsroom"));
    save(*model, QStringLiteral("export"), host);
}

/// Writes the newsroom into the folder and says what is in it; \a what names the work in a failure.
void NewsroomCommand::save(const Newsroom::Model &model, const QString &what, Host &host) const
{
    QString error;
    if (!Newsroom::Store::save(model, m_folder, &error))
        throw Failure(ExitCode::Failed, QStringLiteral("cannot %1: %2").arg(what, error));
    const Contents contents = contentsOf(model);
    tell(host, QStringLiteral("%1: %2").arg(m_folder, contents.text()), contents.json(m_folder));
}

void NewsroomCommand::check(Host &host) const
{
    QString error;
    const std::shared_ptr<Newsroom::Model> model = Newsroom::Store::read(m_folder, &error);
    if (!model)
        throw Failure(ExitCode::Failed, error);
    const Contents contents = contentsOf(*model);
    const QStringList strays = Newsroom::Store::strays(m_folder, *model);
    QJsonObject object = contents.json(m_folder);
    object.insert(QStringLiteral("strays"), QJsonArray::fromStringList(strays));
    tell(host, QStringLiteral("%1 is in order: %2").arg(m_folder, contents.text()), object);
    if (!host.options.json)
        tellStrays(host.output, strays);
}

} // namespace Tool
