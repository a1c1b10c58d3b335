#pragma once

#include <vector>

#include <QJsonArray>
#include <QString>
#include <QStringList>

#include "StoryAccess.h"
#include "StoryFields.h"

namespace Tool {

class Output;

/// New values for some fields of a story, as people give them: "FIELD=VALUE".
class FieldChanges
{
public:
    /// Reads \a arguments; Failure Usage for one without field or "=", and for a field that is named twice.
    explicit FieldChanges(const QStringList &arguments);

    /// Looks whether all of the changes are allowed in a story that is yet to be made in the queue at \a path, which
    /// has the form called \a form. Failure when one is not. Of a form that the server does not deliver nothing is
    /// known.
    void checkNew(const QString &path, const QString &form);

    /// Makes the changes: looks whether all of them are allowed, and only then locks the story, sets the fields, saves,
    /// and gives the lock back. Whatever goes wrong raises Failure, with nothing saved.
    void make(StoryAccess &story);

    /// What make() did, a line for each field: its old and its new value.
    void print(Output &output) const;
    QJsonArray json() const;

private:
    struct Change
    {
        QString name;
        QString value;
        StoryField before;
        StoryField after;
    };

    /// The story that the changes are for: what to call it, and whether it stores fields encoded.
    struct Target
    {
        QString title;
        bool storesEncoded;
    };

    void check(const Target &target, const StoryFields &fields);

    std::vector<Change> m_changes;
};

} // namespace Tool
