#pragma once

/// \file
/// Comments, CDATA sections, XML declarations and DOCTYPEs in a markup tree.

#include <quire/markup/Tag.h>

namespace XML {

/// A comment, CDATA section, XML declaration or DOCTYPE. Ownership and threads as for Tag.
class QUIRE_EXPORT ExtraTag : public Tag
{
public:
    TagType_t m_Type; ///< CData, Comment, XmlDecl or DocType.
    QString m_Text;   ///< What stands between the delimiters of the kind; never encoded or decoded.

    /// A node of the given kind without content.
    explicit ExtraTag(TagType_t type);
    ExtraTag(const ExtraTag &other);            ///< As Tag's.
    ExtraTag &operator=(const ExtraTag &other); ///< As Tag's.
    ~ExtraTag() override;

    /// The content between its delimiters, then \a terminator; nothing with \a textOnly or when the node is skipped.
    void TagToText(QString &out, QChar terminator, bool contentOnly, bool textOnly) override;
    Tag *Copy() override;

    /// Replaces the content.
    virtual void SetText(const QString &text);

    /// The content, to be changed at will.
    virtual QString &GetText();

    /// How far the content of a token of kind \a type lies behind its first character and before its final ">". Either
    /// pointer may be null; for other kinds both targets stay untouched.
    static void GetOffsets(TagType_t type, int *startOffset, int *endOffset);
};

} // namespace XML
