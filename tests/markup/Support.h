#pragma once

/// \file
/// What the tests of the markup toolkit share.

#include <initializer_list>
#include <memory>
#include <ostream>

#include <QString>

#include <quire/XML.h>

#include "support/QtPrinting.h"
#include "support/Text.h"

namespace MarkupTest {

using TagPtr = std::unique_ptr<XML::Tag>;

/// The tree of \a markup.
TagPtr parsed(const QString &markup);
TagPtr parsed(const char *utf8);

/// The text of \a tag by the plain TagToText.
QString written(XML::Tag &tag, QChar terminator = QChar());

/// The children of \a tag on one line: "text", an element as <name key="value" key-of-null-value>[children], any other
/// node as its kind's number and content, as in 6"comment".
QString outline(const XML::Tag &tag);

/// An element \a name with the given children, the text nodes as their bare text.
XML::NamedTag *element(const char *name, std::initializer_list<XML::Tag *> children = {});

/// A text node.
XML::TextTag *textNode(const char *utf8);

/// Whether the links of the whole tree agree with each other.
bool isSound(const XML::Tag &root);

/// The names of the children, separated by blanks.
QString childNames(const XML::Tag &parent);

/// Keeps xZEKO_Mode at a value for the length of a test.
class ZekoMode
{
public:
    explicit ZekoMode(bool on)
        : m_Before(XML::xZEKO_Mode)
    {
        XML::xZEKO_Mode = on;
    }
    ~ZekoMode() { XML::xZEKO_Mode = m_Before; }
    ZekoMode(const ZekoMode &) = delete;
    ZekoMode &operator=(const ZekoMode &) = delete;

private:
    bool m_Before;
};

} // namespace MarkupTest
