#pragma once

/// \file
/// Character data in a markup tree.

#include <quire/markup/Tag.h>

namespace XML {

/// Character data, with its entities already replaced. Ownership and threads as for Tag.
class QUIRE_EXPORT TextTag : public Tag
{
public:
    QString m_Text; ///< The text, decoded.

    /// A node of empty text.
    TextTag();
    TextTag(const TextTag &other);            ///< As Tag's.
    TextTag &operator=(const TextTag &other); ///< As Tag's.
    ~TextTag() override;

    /// The text after EncodeString, unless the node is skipped.
    void TagToText(QString &out, QChar terminator, bool contentOnly, bool textOnly) override;
    Tag *Copy() override;

    /// Replaces the text.
    virtual void SetText(const QString &text);

    /// The text, to be changed at will.
    virtual QString &GetText();
};

} // namespace XML
