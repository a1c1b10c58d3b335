#include <tinyxml2.h>

#include "Library.h"

namespace MarkupBench {

namespace {

class Tinyxml2Tree : public Tree
{
public:
    QString toText() override
    {
        tinyxml2::XMLPrinter printer(nullptr, true);
        m_Document.Print(&printer);
        return QString::fromUtf8(printer.CStr(), printer.CStrSize() - 1);
    }
    QByteArray toUtf8() override
    {
        tinyxml2::XMLPrinter printer(nullptr, true);
        m_Document.Print(&printer);
        return QByteArray(printer.CStr(), printer.CStrSize() - 1);
    }

    tinyxml2::XMLDocument m_Document;
};

class Tinyxml2 : public Library
{
public:
    const char *name() const override { return "tinyxml2"; }
    std::unique_ptr<Tree> parse(const QString &text) const override { return parseUtf8(text.toUtf8()); }
    std::unique_ptr<Tree> parseUtf8(const QByteArray &text) const override
    {
        auto tree = std::make_unique<Tinyxml2Tree>();
        tree->m_Document.Parse(text.constData(), size_t(text.size()));
        return tree;
    }
};

} // namespace

std::unique_ptr<Library> tinyxml2Library()
{
    return std::make_unique<Tinyxml2>();
}

} // namespace MarkupBench
