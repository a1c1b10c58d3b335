#include "BlobCommand.h"

#include "Failure.h"
#include "Files.h"
#include "Output.h"
#include "Words.h"

namespace Tool {

namespace {

QJsonObject describe(const BlobName &blob, int size)
{
    QJsonObject object{{QStringLiteral("mine"), blob.mine}, {QStringLiteral("bytes"), size}};
    if (!blob.mine)
        object.insert(QStringLiteral("name"), blob.name);
    return object;
}

QString bytesText(int size)
{
    return counted(size, QStringLiteral("byte"), QStringLiteral("bytes"));
}

/// The one line or object that says what has been done.
void report(Host &host, const QString &done, const QJsonObject &object)
{
    if (host.options.json)
        host.output.json(object);
    else
        host.output.line(done);
}

} // namespace

void BlobCommand::declare(CLI::App &app, Action &chosen)
{
    CLI::App *family = app.add_subcommand("blob", "Store, fetch and remove blobs");
    family->require_subcommand(1);

    CLI::App *put = addVerb(*family, "put", "Store a file as a blob",
                            "  quire --newsroom nr blob put prefs prefs.ini\n"
                            "  date | quire --newsroom nr blob put --mine -",
                            chosen, [this](Host &host) { this->put(host); });
    addText(*put, "NAME", m_first, "The blob; left out with --mine")->required();
    addText(*put, "FILE", m_second, "What to store, - for the standard input");

    CLI::App *get = addVerb(*family, "get", "Fetch a blob",
                            "  quire --newsroom nr blob get prefs\n"
                            "  quire --newsroom nr blob get prefs prefs.ini\n"
                            "  quire --newsroom nr blob get --mine --json",
                            chosen, [this](Host &host) { this->get(host); });
    addText(*get, "NAME", m_first, "The blob; left out with --mine");
    addText(*get, "FILE", m_second, "Where to write it, - for the standard output");

    CLI::App *remove =
        addVerb(*family, "rm", "Remove a blob; with --mine empty it", "  quire --newsroom nr blob rm prefs", chosen,
                [this](Host &host) { this->remove(host); });
    addText(*remove, "NAME", m_first, "The blob; left out with --mine");

    for (CLI::App *verb : {put, get, remove})
        verb->add_flag("--mine", m_mine, "The user's own blob, which has no name");
}

BlobCommand::Target BlobCommand::target(bool needsFile) const
{
    const auto failUsage = [](const QString &message) { throw Failure(ExitCode::Usage, message); };
    if (m_mine && !m_second.isNull())
        failUsage(QStringLiteral("with --mine a blob has no name: give the file only"));
    if (!m_mine && m_first.isEmpty())
        failUsage(QStringLiteral("name the blob, or give --mine for the user's own"));
    const QString file = m_mine ? m_first : m_second;
    if (needsFile && file.isEmpty())
        failUsage(QStringLiteral("name the file to store, - for the standard input"));
    return {{m_mine ? QString() : m_first, m_mine}, file.isEmpty() ? QString(standardStream) : file};
}

void BlobCommand::put(Host &host) const
{
    const Target where = target(true);
    const QByteArray bytes = readFile(where.file);
    Session session(host.options, Access::Write);
    session.signOn();
    saveBlob(session, where.blob, bytes);
    session.keep();
    report(host, QStringLiteral("stored %1 as %2").arg(bytesText(bytes.size()), where.blob.text()),
           describe(where.blob, bytes.size()));
}

void BlobCommand::get(Host &host) const
{
    const Target where = target(false);
    Session session(host.options);
    session.signOn();
    const BlobContent content = loadBlob(session, where.blob);
    const bool toOutput = where.file == standardStream;
    QJsonObject object = describe(where.blob, content.bytes.size());
    object.insert(QStringLiteral("value"), content.value);
    if (toOutput) {
        object.insert(QStringLiteral("base64"), QString::fromLatin1(content.bytes.toBase64()));
        return host.options.json ? host.output.json(object) : host.output.bytes(content.bytes);
    }
    writeFile(where.file, content.bytes, host.output);
    object.insert(QStringLiteral("file"), where.file);
    report(host, QStringLiteral("wrote %1 to %2").arg(bytesText(content.bytes.size()), where.file), object);
}

void BlobCommand::remove(Host &host) const
{
    const Target where = target(false);
    if (m_mine && !m_first.isNull())
        throw Failure(ExitCode::Usage, QStringLiteral("with --mine a blob has no name"));
    Session session(host.options, Access::Write);
    session.signOn();
    removeBlob(session, where.blob);
    session.keep();
    report(
        host,
        QStringLiteral("%1 %2").arg(m_mine ? QStringLiteral("emptied") : QStringLiteral("removed"), where.blob.text()),
        describe(where.blob, 0));
}

} // namespace Tool
