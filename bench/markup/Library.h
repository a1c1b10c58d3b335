#pragma once

/// \file
/// What the markup benchmark asks of a library.

#include <memory>
#include <vector>

#include <QByteArray>
#include <QString>

namespace MarkupBench {

/// A document in the memory of a library, which its destruction gives back.
class Tree
{
public:
    virtual ~Tree() = default;

    /// The markup as a host would hold it.
    virtual QString toText() = 0;

    /// The markup in the library's own encoding, as far as that is UTF-8; otherwise empty.
    virtual QByteArray toUtf8() { return {}; }
};

/// One way to read and write markup.
class Library
{
public:
    virtual ~Library() = default;
    virtual const char *name() const = 0;

    /// Reads a host's string, conversion included. Null for libraries that only write.
    virtual std::unique_ptr<Tree> parse(const QString &text) const = 0;

    /// Reads the encoding of the library, without a conversion. Null for libraries that read UTF-16.
    virtual std::unique_ptr<Tree> parseUtf8(const QByteArray &) const { return nullptr; }
};

/// All of them, ours first.
const std::vector<std::unique_ptr<Library>> &libraries();

/// For each family its own file.
std::unique_ptr<Library> quireLibrary();
std::unique_ptr<Library> pugixmlLibrary();
std::unique_ptr<Library> rapidxmlLibrary();
std::unique_ptr<Library> libxml2Library();
std::unique_ptr<Library> tinyxml2Library();
std::unique_ptr<Library> qDomLibrary();
std::unique_ptr<Library> qXmlStreamLibrary();
std::unique_ptr<Library> qXmlStreamNodesLibrary();

} // namespace MarkupBench
