#include <quire/markup/TextTag.h>

#include "TagCopy.h"
#include "TagWriter.h"

namespace XML {

TextTag::TextTag() = default;
TextTag::TextTag(const TextTag &other) = default;
TextTag &TextTag::operator=(const TextTag &other) = default;
TextTag::~TextTag() = default;

void TextTag::TagToText(QString &out, QChar terminator, bool, bool textOnly)
{
    TagWriter(out, terminator, textOnly).writeText(*this);
}

Tag *TextTag::Copy()
{
    return withoutLinks(new TextTag(*this));
}

void TextTag::SetText(const QString &text)
{
    m_Text = text;
}

QString &TextTag::GetText()
{
    return m_Text;
}

} // namespace XML
