#include <quire/XML.h>

#include "Library.h"

namespace MarkupBench {

namespace {

class QuireTree : public Tree
{
public:
    explicit QuireTree(XML::Tag *root)
        : m_Root(root)
    {}

    QString toText() override
    {
        QString out;
        m_Root->TagToText(out, QChar(), false, false);
        return out;
    }

private:
    std::unique_ptr<XML::Tag> m_Root;
};

class Quire : public Library
{
public:
    const char *name() const override { return "quire"; }
    std::unique_ptr<Tree> parse(const QString &text) const override
    {
        return std::make_unique<QuireTree>(XML::Parser().Parse(text));
    }
};

} // namespace

std::unique_ptr<Library> quireLibrary()
{
    return std::make_unique<Quire>();
}

} // namespace MarkupBench
