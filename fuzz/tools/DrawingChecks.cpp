#include <memory>

#include <quire/XML.h>

#include "CapturedOutput.h"
#include "MarkupDrawing.h"
#include "MarkupWalk.h"
#include "Output.h"
#include "TextWidth.h"
#include "ToolChecks.h"

namespace ToolFuzz {

namespace {

using namespace Tool;

QStringList drawn(XML::Tag &root, int columns)
{
    const bool wasSet = qEnvironmentVariableIsSet("COLUMNS");
    const QByteArray former = qgetenv("COLUMNS");
    qputenv("COLUMNS", QByteArray::number(columns));
    QStringList lines;
    {
        CapturedOutput captured;
        Output output;
        drawMarkup(root, output);
        output.flush();
        lines = captured.text().split(QLatin1Char('\n'));
    }
    if (wasSet)
        qputenv("COLUMNS", former);
    else
        qunsetenv("COLUMNS");
    return lines;
}

QString wrongIn(const QStringList &lines, int nodes, int elements, int columns)
{
    // Behind the nodes an empty line, the counts, and the end of that line.
    const int expected = nodes + (nodes > 0 ? 3 : 2);
    if (lines.size() != expected || !lines.last().isEmpty())
        return QStringLiteral("%1 lines for %2 nodes").arg(lines.size()).arg(nodes);
    if (!lines.at(expected - 2).startsWith(QStringLiteral("%1 element").arg(elements)))
        return QStringLiteral("miscounted: ") + lines.at(expected - 2);
    for (const QString &line : lines.mid(0, nodes)) {
        if (textWidth(line) > columns)
            return QStringLiteral("wider than %1").arg(columns);
        if (visible(line) != line)
            return QStringLiteral("a control character is left");
    }
    return QString();
}

} // namespace

QString checkDrawing(const QString &text)
{
    const std::unique_ptr<XML::Tag> root(XML::Parser().Parse(text));
    int nodes = 0;
    int elements = 0;
    for (MarkupWalk walk(*root); walk.next(); ++nodes)
        elements += dynamic_cast<XML::NamedTag *>(&walk.node()) ? 1 : 0;
    for (const int columns : {40, 80}) {
        QString wrong = wrongIn(drawn(*root, columns), nodes, elements, columns);
        if (!wrong.isEmpty())
            return wrong;
    }
    return QString();
}

} // namespace ToolFuzz
