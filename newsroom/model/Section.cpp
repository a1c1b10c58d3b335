#include <quire/newsroom/model/Section.h>

#include <quire/newsroom/model/Zeko.h>

namespace Newsroom {

namespace {

struct NamedSection
{
    qint32 bit = 0;
    QLatin1String name;
};

const NamedSection *namedSections()
{
    static const NamedSection table[] = {{Section::Head, QLatin1String("head")},
                                         {Section::Look, QLatin1String("look")},
                                         {Section::Fields, QLatin1String("fields")},
                                         {Section::Body, QLatin1String("body")},
                                         {Section::Aeset, QLatin1String("aeset")},
                                         {Section::FieldAtts, QLatin1String("field-atts")},
                                         {Section::AesetAtts, QLatin1String("aeset-atts")},
                                         {0, QLatin1String()}};
    return table;
}

} // namespace

QString sectionName(qint32 bit)
{
    for (const NamedSection *section = namedSections(); section->bit != 0; ++section) {
        if (section->bit == bit)
            return section->name;
    }
    return {};
}

qint32 sectionByName(const QString &name)
{
    const QString local = Zeko::localName(name);
    for (const NamedSection *section = namedSections(); section->bit != 0; ++section) {
        if (local == section->name)
            return section->bit;
    }
    return 0;
}

} // namespace Newsroom
