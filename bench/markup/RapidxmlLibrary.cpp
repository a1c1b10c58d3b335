#include <iterator>
#include <string>

#include <rapidxml/rapidxml.hpp>

// The printer calls functions that it declares further down; compilers want to see them first.
namespace rapidxml::internal {
template<class OutIt, class Ch>
OutIt print_children(OutIt out, const xml_node<Ch> *node, int flags, int indent);
template<class OutIt, class Ch>
OutIt print_attributes(OutIt out, const xml_node<Ch> *node, int flags);
template<class OutIt, class Ch>
OutIt print_data_node(OutIt out, const xml_node<Ch> *node, int flags, int indent);
template<class OutIt, class Ch>
OutIt print_cdata_node(OutIt out, const xml_node<Ch> *node, int flags, int indent);
template<class OutIt, class Ch>
OutIt print_element_node(OutIt out, const xml_node<Ch> *node, int flags, int indent);
template<class OutIt, class Ch>
OutIt print_declaration_node(OutIt out, const xml_node<Ch> *node, int flags, int indent);
template<class OutIt, class Ch>
OutIt print_comment_node(OutIt out, const xml_node<Ch> *node, int flags, int indent);
template<class OutIt, class Ch>
OutIt print_doctype_node(OutIt out, const xml_node<Ch> *node, int flags, int indent);
template<class OutIt, class Ch>
OutIt print_pi_node(OutIt out, const xml_node<Ch> *node, int flags, int indent);
} // namespace rapidxml::internal

#include <rapidxml/rapidxml_print.hpp>

#include "Library.h"

namespace MarkupBench {

namespace {

class RapidxmlTree : public Tree
{
public:
    explicit RapidxmlTree(const QByteArray &text)
        : m_Text(text)
    {
        m_Document.parse<0>(m_Text.data()); // In place: data() makes the bytes its own, as it has to.
    }

    QString toText() override
    {
        const std::string out = print();
        return QString::fromUtf8(out.data(), int(out.size()));
    }
    QByteArray toUtf8() override
    {
        const std::string out = print();
        return QByteArray(out.data(), int(out.size()));
    }

private:
    std::string print() const
    {
        std::string out;
        rapidxml::print(std::back_inserter(out), m_Document, rapidxml::print_no_indenting);
        return out;
    }

    QByteArray m_Text;
    rapidxml::xml_document<char> m_Document;
};

class Rapidxml : public Library
{
public:
    const char *name() const override { return "rapidxml"; }
    std::unique_ptr<Tree> parse(const QString &text) const override { return parseUtf8(text.toUtf8()); }
    std::unique_ptr<Tree> parseUtf8(const QByteArray &text) const override
    {
        return std::make_unique<RapidxmlTree>(text);
    }
};

} // namespace

std::unique_ptr<Library> rapidxmlLibrary()
{
    return std::make_unique<Rapidxml>();
}

} // namespace MarkupBench
