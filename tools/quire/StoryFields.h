#pragma once

#include <vector>

#include <QString>

#include "StoryAccess.h"

namespace Tool {

/// One field of a story for people.
struct StoryField
{
    QString name;
    QString label; ///< Null when the form does not show the field, or shows it without a label.
    QString value; ///< As people read it.
    bool isInForm = false;
    bool isReadOnly = false;

    /// What to call it: its label, else its name.
    const QString &caption() const { return label.isEmpty() ? name : label; }
};

/// The fields of a story: those of its form in the form's order, then those that only the story has, in its order. A
/// plain value.
class StoryFields
{
public:
    /// Reads the fields and, from the form cache, the form. Raises as StoryAccess does.
    explicit StoryFields(StoryAccess &story);
    /// The fields of a story that is yet to be made with the form called \a form, without values. None at all when the
    /// server does not deliver the form.
    explicit StoryFields(const QString &form);

    const std::vector<StoryField> &all() const { return m_fields; }
    /// The field called \a name, letter case aside; null when neither the form nor the story has it.
    const StoryField *find(const QString &name) const;

private:
    void addForm(const QString &name);
    void addStored(StoryAccess &story);
    void addComputed(StoryAccess &story);
    StoryField *findField(const QString &name);

    std::vector<StoryField> m_fields;
};

} // namespace Tool
