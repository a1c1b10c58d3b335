#pragma once

#include <QTextCursor>

#include <vector>

#include <quire/XML.h>

namespace Desk {

/// Writes the nodes of a body's markup into a document.
class BodyReader
{
public:
    explicit BodyReader(QTextDocument &document);

    /// Reads what is below \a root, without recursion.
    void read(XML::Tag &root);

private:
    struct Open
    {
        int depth = 0;
        QTextCharFormat format; // outside of it
        bool isParagraph = false;
    };

    /// False when what is below is not to be visited.
    bool enter(XML::Tag &node, int depth);
    void leave(int depth);
    void beginParagraph(const XML::NamedTag *element);
    void addText(const QString &text);
    void addChip(XML::Tag &node);

    QTextCursor m_cursor;
    QTextCharFormat m_format;
    std::vector<Open> m_open;
    enum { Nowhere, Paragraph, Loose } m_place = Nowhere;
    bool m_first = true;
};

/// The name of an element without the prefix of the server's.
QString localName(const QString &name);
/// The attributes of an element as its start tag has them, each with a blank before it.
QString attributesOf(const XML::NamedTag &element);

} // namespace Desk
