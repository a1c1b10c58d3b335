#include "FieldChanges.h"

#include <algorithm>

#include <quire/forms/AttributeCodec.h>

#include "Failure.h"
#include "Listing.h"
#include "Output.h"

namespace Tool {

namespace {

QString shown(const QString &value)
{
    return value.isEmpty() ? QStringLiteral("(empty)") : value;
}

/// A time that cannot be understood would silently become none.
bool isLostWhenStored(const QString &name, const QString &value)
{
    QString stored = value;
    Quire::EncodeAttribute(name, stored);
    return stored.isEmpty() && !value.isEmpty();
}

QString namesOf(const StoryFields &fields)
{
    QStringList names;
    for (const StoryField &field : fields.all())
        names += field.name;
    return names.isEmpty() ? QStringLiteral("no fields at all") : names.join(QStringLiteral(", "));
}

} // namespace

FieldChanges::FieldChanges(const QStringList &arguments)
{
    for (const QString &argument : arguments) {
        const int sign = argument.indexOf(QLatin1Char('='));
        if (sign < 1)
            throw Failure(
                ExitCode::Usage,
                QStringLiteral("\"%1\" is no change; write FIELD=VALUE, as in title=Headlines").arg(argument));
        const QString name = argument.left(sign);
        const bool isNamedTwice = std::any_of(m_changes.begin(), m_changes.end(), [&name](const Change &change) {
            return change.name.compare(name, Qt::CaseInsensitive) == 0;
        });
        if (isNamedTwice)
            throw Failure(ExitCode::Usage, QStringLiteral("the field \"%1\" is named twice").arg(name));
        m_changes.push_back({name, argument.mid(sign + 1), {}, {}});
    }
}

void FieldChanges::check(const Target &target, const StoryFields &fields)
{
    for (Change &change : m_changes) {
        const StoryField *const field = fields.find(change.name);
        if (!field)
            throw Failure(ExitCode::NotFound, QStringLiteral("there is no field \"%1\" in %2; it has %3")
                                                  .arg(change.name, target.title, namesOf(fields)));
        if (field->isReadOnly)
            throw Failure(ExitCode::Failed,
                          QStringLiteral("the field \"%1\" of %2 is read-only").arg(field->name, target.title));
        if (target.storesEncoded && isLostWhenStored(field->name, change.value))
            throw Failure(ExitCode::Usage,
                          QStringLiteral("\"%1\" is no time for the field \"%2\"; write SECONDS, M:SS or H:MM:SS")
                              .arg(change.value, field->name));
        change.before = *field;
    }
}

void FieldChanges::checkNew(const QString &path, const QString &form)
{
    const StoryFields fields(form);
    if (!fields.all().empty())
        check({QStringLiteral("a new story of %1").arg(path), true}, fields);
}

void FieldChanges::make(StoryAccess &story)
{
    check({story.title(), story.storesEncoded()}, StoryFields(story));
    story.lock();
    for (const Change &change : m_changes)
        story.setField(change.before.name, change.value);
    story.save();
    story.unlock();
    const StoryFields fields(story);
    for (Change &change : m_changes) {
        const StoryField *const field = fields.find(change.name);
        change.after = field ? *field : StoryField();
    }
}

void FieldChanges::print(Output &output) const
{
    Listing listing;
    for (const Change &change : m_changes)
        listing.add(change.before.caption(),
                    QStringLiteral("%1 → %2").arg(shown(change.before.value), shown(change.after.value)));
    for (const QString &line : listing.lines(output.columns()))
        output.line(line);
}

QJsonArray FieldChanges::json() const
{
    QJsonArray changes;
    for (const Change &change : m_changes)
        changes.append(QJsonObject{{QStringLiteral("field"), change.before.name},
                                   {QStringLiteral("before"), change.before.value},
                                   {QStringLiteral("after"), change.after.value}});
    return changes;
}

} // namespace Tool
