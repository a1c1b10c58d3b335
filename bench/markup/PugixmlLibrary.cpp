#include <pugixml.hpp>

#include "Library.h"

namespace MarkupBench {

namespace {

constexpr unsigned ParseFlags = pugi::parse_default;

class TextOut : public pugi::xml_writer
{
public:
    explicit TextOut(QString &out)
        : m_Out(out)
    {}
    void write(const void *data, size_t size) override
    {
        m_Out.append(static_cast<const QChar *>(data), int(size / sizeof(QChar)));
    }

private:
    QString &m_Out;
};

class BytesOut : public pugi::xml_writer
{
public:
    explicit BytesOut(QByteArray &out)
        : m_Out(out)
    {}
    void write(const void *data, size_t size) override { m_Out.append(static_cast<const char *>(data), int(size)); }

private:
    QByteArray &m_Out;
};

class PugixmlTree : public Tree
{
public:
    QString toText() override
    {
        QString out;
        TextOut writer(out);
        m_Document.save(writer, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf16);
        return out;
    }
    QByteArray toUtf8() override
    {
        QByteArray out;
        BytesOut writer(out);
        m_Document.save(writer, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
        return out;
    }

    pugi::xml_document m_Document;
};

class Pugixml : public Library
{
public:
    const char *name() const override { return "pugixml"; }
    std::unique_ptr<Tree> parse(const QString &text) const override
    {
        auto tree = std::make_unique<PugixmlTree>();
        tree->m_Document.load_buffer(text.constData(), size_t(text.size()) * sizeof(QChar), ParseFlags,
                                     pugi::encoding_utf16);
        return tree;
    }
    std::unique_ptr<Tree> parseUtf8(const QByteArray &text) const override
    {
        auto tree = std::make_unique<PugixmlTree>();
        tree->m_Document.load_buffer(text.constData(), size_t(text.size()), ParseFlags, pugi::encoding_utf8);
        return tree;
    }
};

} // namespace

std::unique_ptr<Library> pugixmlLibrary()
{
    return std::make_unique<Pugixml>();
}

} // namespace MarkupBench
