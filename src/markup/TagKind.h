#pragma once

/// \file
/// Which of our own classes a node is of.

#include <typeinfo>

#include <quire/markup/ExtraTag.h>
#include <quire/markup/NamedTag.h>
#include <quire/markup/TextTag.h>

namespace XML {

/// The exact class of a node. Foreign is any subclass that a host made: its overrides have to be called, where the
/// walks do the work of our own classes in place.
enum class TagKind { Bare, Named, Text, Extra, Foreign };

/// The exact class of \a tag. Compares addresses of type information, which is all that speed allows; should a class of
/// ours ever have two of them, it is taken for foreign and its functions are called, which is slower and just as right.
inline TagKind kindOf(const Tag &tag)
{
    const std::type_info *type = &typeid(tag);
    if (type == &typeid(NamedTag))
        return TagKind::Named;
    if (type == &typeid(TextTag))
        return TagKind::Text;
    if (type == &typeid(ExtraTag))
        return TagKind::Extra;
    return type == &typeid(Tag) ? TagKind::Bare : TagKind::Foreign;
}

/// \a tag as a TextTag or a subclass of it, otherwise null.
inline TextTag *asText(Tag *tag)
{
    if (!tag)
        return nullptr;
    switch (kindOf(*tag)) {
    case TagKind::Text:
        return static_cast<TextTag *>(tag);
    case TagKind::Foreign:
        return dynamic_cast<TextTag *>(tag);
    default:
        return nullptr;
    }
}

} // namespace XML
