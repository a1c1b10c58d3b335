#include "MarkupDrawing.h"

#include <algorithm>

#include "MarkupWalk.h"
#include "Output.h"
#include "TextWidth.h"
#include "Words.h"

namespace Tool {

namespace {

constexpr int levelIndent = 2;
constexpr int deepestIndented = 16;

/// What a drawing has shown.
struct Counts
{
    int elements = 0;
    int texts = 0;
    int others = 0;
    int deepest = 0;

    QString text() const
    {
        QString line =
            QStringLiteral("%1, %2").arg(counted(elements, QStringLiteral("element"), QStringLiteral("elements")),
                                         counted(texts, QStringLiteral("text"), QStringLiteral("texts")));
        if (others > 0)
            line += QStringLiteral(", %1").arg(counted(others, QStringLiteral("other"), QStringLiteral("others")));
        return line + QStringLiteral(", %1").arg(counted(deepest, QStringLiteral("level"), QStringLiteral("levels")));
    }
};

QString startTag(const XML::NamedTag &element)
{
    QString text = QLatin1Char('<') + element.m_Name;
    for (auto it = element.m_Attributes.constBegin(); it != element.m_Attributes.constEnd(); ++it) {
        text += QLatin1Char(' ') + it.key();
        if (!it.value().isNull())
            text += QLatin1String("=\"") + it.value() + QLatin1Char('"');
    }
    return text + QLatin1Char('>');
}

QString describe(XML::Tag &node, Counts &counts)
{
    if (const auto *element = dynamic_cast<XML::NamedTag *>(&node)) {
        ++counts.elements;
        return startTag(*element);
    }
    if (const auto *text = dynamic_cast<XML::TextTag *>(&node)) {
        ++counts.texts;
        return QLatin1Char('"') + text->m_Text + QLatin1Char('"');
    }
    ++counts.others;
    QString markup;
    node.TagToText(markup, QChar(), false, false);
    return markup;
}

QString indentation(int depth)
{
    const int level = depth - 1;
    const QString blanks(std::min(level, deepestIndented) * levelIndent, QLatin1Char(' '));
    return level > deepestIndented ? blanks + QStringLiteral("(%1) ").arg(depth) : blanks;
}

} // namespace

void drawMarkup(XML::Tag &root, Output &output)
{
    const int columns = output.columns();
    Counts counts;
    MarkupWalk walk(root);
    while (walk.next()) {
        const QString lead = indentation(walk.depth());
        const QString text = visible(describe(walk.node(), counts));
        const QString shown = isolate(fitText(text, std::max(columns - lead.size(), 1)));
        const bool isText = dynamic_cast<XML::TextTag *>(&walk.node()) != nullptr;
        output.line(lead + (isText ? shown : output.inLook(Output::Look::Markup, shown)));
        counts.deepest = std::max(counts.deepest, walk.depth());
    }
    if (counts.deepest > 0)
        output.line();
    output.line(counts.text());
}

} // namespace Tool
