#pragma once

/// \file
/// Writes subtrees as text.

#include <QVarLengthArray>

#include "TextSink.h"

namespace XML {

class ExtraTag;
class NamedTag;
class Tag;
class TextTag;

/// Appends the text of nodes to a string. Lives for one call of TagToText.
class TagWriter
{
public:
    /// Appends to \a out, with the arguments of TagToText.
    TagWriter(QString &out, QChar terminator, bool textOnly);

    /// Writes the children of \a parent.
    void writeChildren(Tag &parent);

    /// Writes \a element without asking its own callbacks, \a contentOnly without its own tags.
    void writeElement(NamedTag &element, bool contentOnly);

    void writeText(TextTag &text);
    void writeExtra(ExtraTag &extra);

private:
    enum class Opened { Nothing, Content, Whole };

    bool enter(Tag &tag);
    void leave(Tag &tag);
    void writeForeign(Tag &tag);
    bool callbacksAgree(NamedTag &element);

    Opened open(NamedTag &element, bool contentOnly);
    void close(const NamedTag &element);
    void putAttributes(const NamedTag &element);
    void putAttribute(const QString &name, const QString &value, bool bareValues);
    void putEncodedText(const QString &text);
    void putTerminator();

    TextSink m_Sink;
    QChar m_Terminator;
    bool m_TextOnly;
    // For each entered element whether its tags are written: a callback may change what that depends on meanwhile.
    QVarLengthArray<bool, 64> m_WithTags;
};

} // namespace XML
