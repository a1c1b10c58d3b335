#pragma once

/// \file
/// Gathers the fields of a story that is read; the model's own.

#include <QHash>
#include <QVector>

#include <quire/newsroom/model/StoryText.h>

namespace Newsroom {

/// A list of fields in which no identifier stands twice, however many there are.
class UniqueFields
{
public:
    UniqueFields() = default;
    explicit UniqueFields(const StoryText &story);

    /// Appends a field; one of that identifier, ignoring letter case, is replaced at its place.
    void add(const StoryField &field);

    /// The attributes of the field \a id; none when it is not there.
    QVector<NameValue> attributesOf(const QString &id) const;

    const QVector<StoryField> &fields() const { return m_fields; }

private:
    QVector<StoryField> m_fields;
    QHash<QString, int> m_places; ///< By folded identifier.
};

} // namespace Newsroom
