#include <libxml/parser.h>
#include <libxml/tree.h>

#include "Library.h"

namespace MarkupBench {

namespace {

class Libxml2Tree : public Tree
{
public:
    explicit Libxml2Tree(const QByteArray &text)
        : m_Document(xmlReadMemory(text.constData(), text.size(), nullptr, "UTF-8",
                                   XML_PARSE_HUGE | XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING))
    {}
    ~Libxml2Tree() override { xmlFreeDoc(m_Document); }
    Libxml2Tree(const Libxml2Tree &) = delete;
    Libxml2Tree &operator=(const Libxml2Tree &) = delete;

    QString toText() override
    {
        const Dump dump(m_Document);
        return QString::fromUtf8(dump.data(), dump.size);
    }
    QByteArray toUtf8() override
    {
        const Dump dump(m_Document);
        return QByteArray(dump.data(), dump.size);
    }

private:
    struct Dump
    {
        explicit Dump(xmlDocPtr document) { xmlDocDumpMemory(document, &memory, &size); }
        ~Dump() { xmlFree(memory); }
        Dump(const Dump &) = delete;
        Dump &operator=(const Dump &) = delete;
        const char *data() const { return reinterpret_cast<const char *>(memory); }

        xmlChar *memory = nullptr;
        int size = 0;
    };

    xmlDocPtr m_Document;
};

class Libxml2 : public Library
{
public:
    const char *name() const override { return "libxml2"; }
    std::unique_ptr<Tree> parse(const QString &text) const override { return parseUtf8(text.toUtf8()); }
    std::unique_ptr<Tree> parseUtf8(const QByteArray &text) const override
    {
        return std::make_unique<Libxml2Tree>(text);
    }
};

} // namespace

std::unique_ptr<Library> libxml2Library()
{
    return std::make_unique<Libxml2>();
}

} // namespace MarkupBench
