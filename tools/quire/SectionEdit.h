#pragma once

#include <QString>

#include "StoryAccess.h"

namespace Tool {

class EditFile;

/// Which form of the body the editor gets.
enum class EditForm {
    Fitting,  ///< Plain text when that holds all of it, else markup.
    Markup,   ///< Markup in any case.
    PlainText ///< Plain text; whatever is not words goes when it is saved.
};

/// One section of a story in the user's editor.
class SectionEdit
{
public:
    /// \a form counts for the body; other sections are edited as markup.
    SectionEdit(StoryAccess &story, int section, EditForm form);

    /// Locks the story, lets the user edit the section, saves it when it was changed, and gives the lock back. True
    /// when there was a change. Failure when anything goes wrong; an edit that is not saved stays in a file that the
    /// message names. \a name is what the file is called, without extension.
    bool run(const QString &name);

    /// Whether the editor got markup; known after run().
    bool isMarkup() const { return m_markup; }

private:
    QString load();
    bool editAndSave(const QString &name);
    bool edit(const EditFile &file, const QString &before);

    StoryAccess &m_story;
    int m_section;
    EditForm m_form;
    bool m_markup = true;
};

} // namespace Tool
