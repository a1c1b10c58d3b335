#include "ParseCommand.h"

#include <memory>

#include <QJsonArray>

#include <quire/XML.h>

#include "Files.h"
#include "MarkupDrawing.h"
#include "MarkupWalk.h"
#include "Output.h"

namespace Tool {

namespace {

QLatin1String kindOf(const XML::ExtraTag &extra)
{
    switch (extra.m_Type) {
    case XML::Tag::CData:
        return QLatin1String("cdata");
    case XML::Tag::XmlDecl:
        return QLatin1String("declaration");
    case XML::Tag::DocType:
        return QLatin1String("doctype");
    default:
        return QLatin1String("comment");
    }
}

QJsonObject attributesJson(const XML::NamedTag &element)
{
    QJsonObject attributes;
    for (auto it = element.m_Attributes.constBegin(); it != element.m_Attributes.constEnd(); ++it)
        attributes.insert(it.key(), it.value().isNull() ? QJsonValue() : QJsonValue(it.value()));
    return attributes;
}

QJsonObject nodeJson(XML::Tag &node, int depth)
{
    QJsonObject object{{QStringLiteral("depth"), depth}};
    if (const auto *element = dynamic_cast<XML::NamedTag *>(&node)) {
        object.insert(QStringLiteral("kind"), QStringLiteral("element"));
        object.insert(QStringLiteral("name"), element->m_Name);
        object.insert(QStringLiteral("attributes"), attributesJson(*element));
    } else if (const auto *text = dynamic_cast<XML::TextTag *>(&node)) {
        object.insert(QStringLiteral("kind"), QStringLiteral("text"));
        object.insert(QStringLiteral("text"), text->m_Text);
    } else if (const auto *extra = dynamic_cast<XML::ExtraTag *>(&node)) {
        object.insert(QStringLiteral("kind"), kindOf(*extra));
        object.insert(QStringLiteral("text"), extra->m_Text);
    }
    return object;
}

/// A list, not a nest: readers of JSON give up long before markup does.
QJsonArray nodesJson(XML::Tag &root)
{
    QJsonArray nodes;
    MarkupWalk walk(root);
    while (walk.next())
        nodes.append(nodeJson(walk.node(), walk.depth()));
    return nodes;
}

/// The character data as a person reads it: the writer's own text form would put the references in again.
QString textOf(XML::Tag &root)
{
    QString all;
    MarkupWalk walk(root);
    while (walk.next())
        if (const auto *text = dynamic_cast<XML::TextTag *>(&walk.node()))
            all += text->m_Text;
    return all;
}

QString markupOf(XML::Tag &root)
{
    QString markup;
    root.TagToText(markup, QChar(), false, false);
    return markup;
}

} // namespace

void ParseCommand::declare(CLI::App &app, Action &chosen)
{
    CLI::App *verb = addVerb(app, "parse", "Parse markup and show its tree",
                             "  quire parse story.xml\n"
                             "  quire cat WIRES.WORLD '#1' | quire parse -\n"
                             "  quire parse story.xml --write > again.xml\n"
                             "  quire parse story.xml --text",
                             chosen, [this](Host &host) { run(host); });
    addFileName(*verb, "FILE", m_file, "UTF-8, or UTF-16 with its mark; - for the standard input")->required();
    CLI::Option *write = verb->add_flag("--write", m_write, "Print the markup, written back from the tree");
    verb->add_flag("--text", m_text, "Print the text alone")->excludes(write);
}

void ParseCommand::run(Host &host) const
{
    const QString markup = readText(m_file);
    const std::unique_ptr<XML::Tag> root(XML::Parser().Parse(markup));
    if (m_write)
        return tell(host, "markup", markupOf(*root));
    if (m_text)
        return tell(host, "text", textOf(*root));
    if (host.options.json)
        return host.output.json({{QStringLiteral("file"), m_file}, {QStringLiteral("nodes"), nodesJson(*root)}});
    drawMarkup(*root, host.output);
}

void ParseCommand::tell(Host &host, const char *key, const QString &text) const
{
    if (host.options.json)
        host.output.json({{QStringLiteral("file"), m_file}, {QLatin1String(key), text}});
    else
        host.output.document(text);
}

} // namespace Tool
