#include <quire/newsroom/model/Story.h>

namespace Newsroom {

namespace {

constexpr int longestName = 60;

QString firstLine(const QString &text)
{
    QString line = text.section(QLatin1Char('\n'), 0, 0).trimmed();
    if (line.size() <= longestName)
        return line;
    const int cut = line.at(longestName - 1).isHighSurrogate() ? longestName - 1 : longestName;
    return line.left(cut);
}

} // namespace

Story::Story(Identity identity, StoryText text)
    : m_identity(std::move(identity))
    , m_text(std::move(text))
    , m_name(nameOf(m_text, m_identity.id))
{}

QString Story::markup(qint32 sections) const
{
    if (sections != Section::Whole)
        return markupOf(m_text, header(), sections);
    std::call_once(m_composed, [this] { m_whole = markupOf(m_text, header(), Section::Whole); });
    return m_whole;
}

QString Story::plain(qint32 sections) const
{
    return plainOf(m_text, header(), sections);
}

QString Story::nameOf(const StoryText &text, const StoryId &id)
{
    for (const char *field : {"title", "slug", "subject"}) {
        QString name = text.fieldValue(QLatin1String(field)).simplified();
        if (!name.isEmpty())
            return name;
    }
    const QString line = firstLine(text.plainBody());
    return line.isEmpty() ? QStringLiteral("Story %1").arg(id.part1) : line;
}

} // namespace Newsroom
