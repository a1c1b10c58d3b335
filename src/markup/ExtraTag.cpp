#include <quire/markup/ExtraTag.h>

#include "TagCopy.h"
#include "TagWriter.h"

namespace XML {

ExtraTag::ExtraTag(TagType_t type)
    : m_Type(type)
{}

ExtraTag::ExtraTag(const ExtraTag &other) = default;
ExtraTag &ExtraTag::operator=(const ExtraTag &other) = default;
ExtraTag::~ExtraTag() = default;

void ExtraTag::TagToText(QString &out, QChar terminator, bool, bool textOnly)
{
    TagWriter(out, terminator, textOnly).writeExtra(*this);
}

Tag *ExtraTag::Copy()
{
    return withoutLinks(new ExtraTag(*this));
}

void ExtraTag::SetText(const QString &text)
{
    m_Text = text;
}

QString &ExtraTag::GetText()
{
    return m_Text;
}

void ExtraTag::GetOffsets(TagType_t type, int *startOffset, int *endOffset)
{
    const auto set = [=](int start, int end) {
        if (startOffset)
            *startOffset = start;
        if (endOffset)
            *endOffset = end;
    };
    switch (type) {
    case CData:
        return set(9, 2);
    case Comment:
        return set(4, 2);
    case XmlDecl:
        return set(5, 1);
    case DocType:
        return set(9, 0);
    default:
        return;
    }
}

} // namespace XML
