#pragma once

#include <QJsonObject>
#include <QString>

#include "StoryAccess.h"
#include "StoryFields.h"

namespace Tool {

class Output;

/// A story as people look at it: what its header says, its fields, its text.
class StoryPage
{
public:
    /// Reads the story. Raises as StoryAccess does.
    explicit StoryPage(StoryAccess &story);

    /// Prints the whole page, the text wrapped to the output's columns.
    void print(Output &output) const;
    void printFields(Output &output) const;
    /// Prints \a text as paragraphs with an empty line between, wrapped to the output's columns.
    static void printText(const QString &text, Output &output);

    /// The keys are listed in docs/cli.md.
    QJsonObject json() const;
    QJsonArray fieldsJson() const;

private:
    void readHead(StoryAccess &story);
    QString identifierText() const;
    QString lockText() const;
    bool hasKeyLock() const;

    QString m_title;
    QString m_id;
    QString m_headerId;
    QString m_form;
    QJsonObject m_meta;
    int m_readRate;
    bool m_isLocked;
    StoryFields m_fields;
    QString m_text;
};

} // namespace Tool
