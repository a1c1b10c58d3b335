#include <QDomDocument>
#include <QMap>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include "Library.h"

namespace MarkupBench {

namespace {

class QDomTree : public Tree
{
public:
    explicit QDomTree(const QString &text) { m_Document.setContent(text, false); }
    QString toText() override { return m_Document.toString(-1); }

private:
    QDomDocument m_Document;
};

class QDom : public Library
{
public:
    const char *name() const override { return "qdom"; }
    std::unique_ptr<Tree> parse(const QString &text) const override { return std::make_unique<QDomTree>(text); }
};

/// What is left of a document that was only read through: the number of its tokens, which keeps the reading from being
/// optimised away.
class Nothing : public Tree
{
public:
    explicit Nothing(const QString &text)
    {
        QXmlStreamReader reader(text);
        reader.setNamespaceProcessing(false);
        while (!reader.atEnd()) {
            reader.readNext();
            ++m_Tokens;
        }
    }
    QString toText() override { return QString::number(m_Tokens); }

private:
    int m_Tokens = 0;
};

class QXmlStreamAlone : public Library
{
public:
    const char *name() const override { return "qxmlstream"; }
    std::unique_ptr<Tree> parse(const QString &text) const override { return std::make_unique<Nothing>(text); }
};

struct Node
{
    QString name; // Empty for a text.
    QString text;
    QMap<QString, QString> attributes;
    std::vector<std::unique_ptr<Node>> children;
};

class NodesTree : public Tree
{
public:
    explicit NodesTree(const QString &text)
    {
        QXmlStreamReader reader(text);
        reader.setNamespaceProcessing(false);
        std::vector<Node *> open{&m_Root};
        while (!reader.atEnd()) {
            switch (reader.readNext()) {
            case QXmlStreamReader::StartElement:
                open.push_back(add(*open.back()));
                open.back()->name = reader.qualifiedName().toString();
                for (const QXmlStreamAttribute &attribute : reader.attributes())
                    open.back()->attributes.insert(attribute.qualifiedName().toString(), attribute.value().toString());
                break;
            case QXmlStreamReader::EndElement:
                open.pop_back();
                break;
            case QXmlStreamReader::Characters:
                add(*open.back())->text = reader.text().toString();
                break;
            default:
                break;
            }
        }
    }

    QString toText() override
    {
        QString out;
        QXmlStreamWriter writer(&out);
        for (const auto &child : m_Root.children)
            write(writer, *child);
        return out;
    }

private:
    static Node *add(Node &parent)
    {
        parent.children.push_back(std::make_unique<Node>());
        return parent.children.back().get();
    }

    static void write(QXmlStreamWriter &writer, const Node &node)
    {
        if (node.name.isEmpty()) {
            writer.writeCharacters(node.text);
            return;
        }
        writer.writeStartElement(node.name);
        for (auto it = node.attributes.constBegin(); it != node.attributes.constEnd(); ++it)
            writer.writeAttribute(it.key(), it.value());
        for (const auto &child : node.children)
            write(writer, *child);
        writer.writeEndElement();
    }

    Node m_Root;
};

class QXmlStreamNodes : public Library
{
public:
    const char *name() const override { return "qxmlstream-nodes"; }
    std::unique_ptr<Tree> parse(const QString &text) const override { return std::make_unique<NodesTree>(text); }
};

} // namespace

std::unique_ptr<Library> qDomLibrary()
{
    return std::make_unique<QDom>();
}

std::unique_ptr<Library> qXmlStreamLibrary()
{
    return std::make_unique<QXmlStreamAlone>();
}

std::unique_ptr<Library> qXmlStreamNodesLibrary()
{
    return std::make_unique<QXmlStreamNodes>();
}

} // namespace MarkupBench
