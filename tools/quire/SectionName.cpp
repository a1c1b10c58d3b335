#include "SectionName.h"

#include "Failure.h"

namespace Tool {

namespace {

struct NamedSection
{
    int number = 0;
    QLatin1String name;
};

const NamedSection sections[] = {{StorySection::Head, QLatin1String("head")},
                                 {2, QLatin1String("look")},
                                 {StorySection::Fields, QLatin1String("fields")},
                                 {StorySection::Body, QLatin1String("body")},
                                 {16, QLatin1String("aeset")},
                                 {32, QLatin1String("field-atts")},
                                 {64, QLatin1String("aeset-atts")},
                                 {StorySection::Whole, QLatin1String("all")}};

} // namespace

QStringList sectionNames()
{
    QStringList names;
    for (const NamedSection &section : sections)
        names += section.name;
    return names;
}

int sectionNumber(const QString &name)
{
    for (const NamedSection &section : sections) {
        if (name.compare(section.name, Qt::CaseInsensitive) == 0)
            return section.number;
    }
    throw Failure(ExitCode::Usage, QStringLiteral("there is no section \"%1\"; the sections are %2")
                                       .arg(name, sectionNames().join(QStringLiteral(", "))));
}

} // namespace Tool
