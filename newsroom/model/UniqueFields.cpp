#include "UniqueFields.h"

namespace Newsroom {

UniqueFields::UniqueFields(const StoryText &story)
{
    for (const StoryField &field : story.fields)
        add(field);
}

void UniqueFields::add(const StoryField &field)
{
    const QString key = field.id.toCaseFolded();
    const auto place = m_places.constFind(key);
    if (place != m_places.constEnd()) {
        m_fields[*place] = field;
        return;
    }
    m_places.insert(key, m_fields.size());
    m_fields.append(field);
}

QVector<NameValue> UniqueFields::attributesOf(const QString &id) const
{
    const int place = m_places.value(id.toCaseFolded(), -1);
    return place < 0 ? QVector<NameValue>() : m_fields.at(place).attributes;
}

} // namespace Newsroom
