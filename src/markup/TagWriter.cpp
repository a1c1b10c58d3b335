#include "TagWriter.h"

#include <quire/markup/Entities.h>

#include "EntityCodec.h"
#include "TagKind.h"
#include "TagWalk.h"

namespace XML {

namespace {

/// The flags of \a tag as its own functions tell them: a host's class may have its own idea.
bool isSkipped(Tag &tag, bool foreign)
{
    return foreign ? tag.TestSkip() : (tag.m_Flags >> Tag::Skip) & 1U;
}

bool isInvisible(Tag &tag, bool foreign)
{
    return foreign ? tag.TestInvisible() : (tag.m_Flags >> Tag::Invisible) & 1U;
}

bool isEmpty(const NamedTag &element)
{
    const TextTag *text = asText(element.m_Child);
    return !element.m_Child || (text && text->m_Text.isEmpty());
}

bool isClosedAtOnce(const NamedTag &element)
{
    return !element.m_Child && !element.m_WriteEndTag;
}

} // namespace

TagWriter::TagWriter(QString &out, QChar terminator, bool textOnly)
    : m_Sink(out)
    , m_Terminator(terminator)
    , m_TextOnly(textOnly)
{}

void TagWriter::writeChildren(Tag &parent)
{
    walkForest(
        parent.m_Child, [this](Tag *tag) { return enter(*tag) ? Walk::Enter : Walk::Pass; },
        [this](Tag *tag) { leave(*tag); });
}

void TagWriter::writeElement(NamedTag &element, bool contentOnly)
{
    const Opened opened = open(element, contentOnly);
    if (opened == Opened::Nothing)
        return;
    writeChildren(element);
    if (opened == Opened::Whole)
        close(element);
}

void TagWriter::writeText(TextTag &text)
{
    if (!isSkipped(text, kindOf(text) == TagKind::Foreign))
        putEncodedText(text.m_Text);
}

void TagWriter::writeExtra(ExtraTag &extra)
{
    if (m_TextOnly || isSkipped(extra, kindOf(extra) == TagKind::Foreign))
        return;
    switch (extra.m_Type) {
    case Tag::CData:
        m_Sink.put(u"<![CDATA[");
        m_Sink.put(extra.m_Text);
        m_Sink.put(u"]]>");
        break;
    case Tag::Comment:
        m_Sink.put(u"<!--");
        m_Sink.put(extra.m_Text);
        m_Sink.put(u"-->");
        break;
    case Tag::XmlDecl:
        m_Sink.put(u"<?xml");
        m_Sink.put(extra.m_Text);
        m_Sink.put(u"?>");
        break;
    case Tag::DocType:
        m_Sink.put(u"<!DOCTYPE");
        m_Sink.put(extra.m_Text);
        m_Sink.put(u">");
        break;
    default:
        m_Sink.put(extra.m_Text);
        break;
    }
    putTerminator();
}

// Whether the walk goes on with the children of \a tag.
bool TagWriter::enter(Tag &tag)
{
    switch (kindOf(tag)) {
    case TagKind::Named: {
        auto &element = static_cast<NamedTag &>(tag);
        if (!callbacksAgree(element))
            return false;
        const Opened opened = open(element, false);
        if (opened != Opened::Nothing)
            m_WithTags.append(opened == Opened::Whole);
        return opened != Opened::Nothing;
    }
    case TagKind::Text:
        writeText(static_cast<TextTag &>(tag));
        return false;
    case TagKind::Extra:
        writeExtra(static_cast<ExtraTag &>(tag));
        return false;
    case TagKind::Bare:
        m_WithTags.append(false);
        return true;
    case TagKind::Foreign:
        break;
    }
    writeForeign(tag);
    return false;
}

void TagWriter::leave(Tag &tag)
{
    const bool withTags = m_WithTags.last();
    m_WithTags.removeLast();
    if (withTags)
        close(static_cast<NamedTag &>(tag));
}

void TagWriter::writeForeign(Tag &tag)
{
    m_Sink.flush();
    tag.TagToText(m_Sink.text(), m_Terminator, false, m_TextOnly);
    m_Sink.resume();
}

bool TagWriter::callbacksAgree(NamedTag &element)
{
    if (!NamedTag::sTTT_CB && NamedTag::sTagCallbacksMap.isEmpty())
        return true;
    m_Sink.flush();
    const bool goOn = element.AskCallbacks(m_Sink.text(), m_Terminator, false, m_TextOnly);
    m_Sink.resume();
    return goOn;
}

TagWriter::Opened TagWriter::open(NamedTag &element, bool contentOnly)
{
    const bool foreign = kindOf(element) == TagKind::Foreign;
    if (isSkipped(element, foreign) || (element.m_OmitIfEmpty && isEmpty(element)))
        return Opened::Nothing;
    if (contentOnly || element.m_ContentOnly || m_TextOnly || isInvisible(element, foreign))
        return Opened::Content;
    m_Sink.put(u"<");
    m_Sink.put(element.m_Name);
    putAttributes(element);
    if (isClosedAtOnce(element))
        m_Sink.put(u"/");
    m_Sink.put(u">");
    return Opened::Whole;
}

void TagWriter::close(const NamedTag &element)
{
    if (!isClosedAtOnce(element)) {
        m_Sink.put(u"</");
        m_Sink.put(element.m_Name);
        m_Sink.put(u">");
    }
    putTerminator();
}

void TagWriter::putAttributes(const NamedTag &element)
{
    for (auto it = element.m_Attributes.constBegin(); it != element.m_Attributes.constEnd(); ++it) {
        if (!it.key().isEmpty())
            putAttribute(it.key(), it.value(), element.m_BareValues);
    }
}

void TagWriter::putAttribute(const QString &name, const QString &value, bool bareValues)
{
    m_Sink.put(u" ");
    m_Sink.put(name);
    // References hold no blank, so the value has one exactly when its encoded form has.
    if (bareValues && !value.contains(QLatin1Char(' '))) {
        if (value.isEmpty())
            return;
        m_Sink.put(u"=");
        putEncodedText(value);
        return;
    }
    m_Sink.put(u"=\"");
    putEncodedText(value);
    m_Sink.put(u"\"");
}

void TagWriter::putEncodedText(const QString &text)
{
    putEncoded(m_Sink, text.constData(), text.size(), xZEKO_Mode);
}

void TagWriter::putTerminator()
{
    if (!m_Terminator.isNull())
        m_Sink.put(m_Terminator);
}

} // namespace XML
