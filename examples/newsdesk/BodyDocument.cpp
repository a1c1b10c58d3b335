#include "BodyDocument.h"

#include <QAbstractTextDocumentLayout>
#include <QFont>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextCursor>

#include <memory>

#include "BodyReader.h"
#include "BodyWriter.h"
#include "ChipObject.h"

namespace Desk {

namespace {

constexpr double paragraphGap = 9;
constexpr double lineHeight = 128; // per cent

std::unique_ptr<XML::Tag> parse(const QString &markup)
{
    return std::unique_ptr<XML::Tag>(XML::Parser().Parse(markup));
}

XML::Tag *bodyOf(XML::Tag &root)
{
    XML::Tag *const plain = root.FindTag(QStringLiteral("body"), QString(), QString());
    return plain ? plain : root.FindTag(QStringLiteral("zeko:body"), QString(), QString());
}

/// What is in a body, in a form in which two of them can be compared.
QString contentOf(const QString &markup)
{
    static const QRegularExpression layout(QStringLiteral("(^|</p>)\\s+(?=<|$)"));
    static const QRegularExpression neighbours(QStringLiteral("</(b|i|em|u)><\\1>"));
    const std::unique_ptr<XML::Tag> root = parse(markup);
    QString text;
    if (XML::Tag *const body = bodyOf(*root))
        body->TagToText(text, QChar(), true, false);
    text.replace(layout, QStringLiteral("\\1"));
    text.remove(neighbours);
    return text.replace(QLatin1Char('\n'), QLatin1Char(' '));
}

} // namespace

BodyDocument::BodyDocument(QObject *parent)
    : QTextDocument(parent)
{
    documentLayout()->registerHandler(chipObject, new ChipObject(this));
    setDocumentMargin(8);
}

void BodyDocument::setMarkup(const QString &markup)
{
    setUndoRedoEnabled(false);
    clear();
    const std::unique_ptr<XML::Tag> root = parse(markup);
    m_attributes.clear();
    if (XML::Tag *const body = bodyOf(*root)) {
        m_attributes = attributesOf(static_cast<const XML::NamedTag &>(*body));
        BodyReader(*this).read(*body);
    }
    QTextCursor all(this);
    all.select(QTextCursor::Document);
    QTextBlockFormat layout;
    layout.setBottomMargin(paragraphGap);
    layout.setLineHeight(lineHeight, QTextBlockFormat::ProportionalHeight);
    all.mergeBlockFormat(layout);
    m_faithful = shows(markup);
    setUndoRedoEnabled(true);
    setModified(false);
}

bool BodyDocument::shows(const QString &markup) const
{
    return contentOf(markup) == contentOf(this->markup());
}

QString BodyDocument::markup() const
{
    return QStringLiteral("<body%1>%2</body>").arg(m_attributes, bodyContent(*this));
}

} // namespace Desk
