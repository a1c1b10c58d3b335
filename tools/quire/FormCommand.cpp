#include "FormCommand.h"

#include <QJsonArray>

#include <quire/forms/FormCache.h>

#include "Failure.h"
#include "Output.h"
#include "Session.h"
#include "Table.h"

namespace Tool {

namespace {

// The bits of a style.
constexpr qint32 boldStyle = 1;
constexpr qint32 italicStyle = 2;
constexpr qint32 underlinedStyle = 4;

QString styleText(qint32 style)
{
    QStringList words;
    if (style & boldStyle)
        words += QStringLiteral("bold");
    if (style & italicStyle)
        words += QStringLiteral("italic");
    if (style & underlinedStyle)
        words += QStringLiteral("underlined");
    return words.join(QLatin1Char(' '));
}

QString alignmentText(qint32 alignment)
{
    switch (alignment) {
    case 1:
        return QStringLiteral("centre");
    case 2:
        return QStringLiteral("right");
    default:
        return QStringLiteral("left");
    }
}

QJsonObject fieldJson(const Quire::Field &field)
{
    return {{QStringLiteral("field"), field.m_Id},
            {QStringLiteral("label"), field.m_Label.isNull() ? QJsonValue() : QJsonValue(field.m_Label)},
            {QStringLiteral("width"), field.Width()},
            {QStringLiteral("length"), field.m_Length},
            {QStringLiteral("labelLength"), field.m_LabelLength},
            {QStringLiteral("style"), styleText(field.m_Style)},
            {QStringLiteral("labelStyle"), styleText(field.m_LabelStyle)},
            {QStringLiteral("alignment"), alignmentText(field.m_Align)},
            {QStringLiteral("readOnly"), field.m_ReadOnly}};
}

QJsonObject formJson(const Quire::FormData &form)
{
    QJsonArray fields;
    for (const Quire::Field &field : form.m_Fields)
        fields.append(fieldJson(field));
    return {{QStringLiteral("form"), form.m_FormName}, {QStringLiteral("fields"), fields}};
}

void draw(const Quire::FormData &form, Output &output)
{
    constexpr int width = 2;
    Table table({QStringLiteral("field"), QStringLiteral("label"), QStringLiteral("width"), QStringLiteral("style"),
                 QStringLiteral("alignment"), QStringLiteral("access")},
                {width});
    for (const Quire::Field &field : form.m_Fields)
        table.add({field.m_Id, field.m_Label, QString::number(field.Width()), styleText(field.m_Style),
                   alignmentText(field.m_Align), field.m_ReadOnly ? QStringLiteral("read-only") : QString()});
    output.table(table.lines(output.columns()));
}

} // namespace

void FormCommand::declare(CLI::App &app, Action &chosen)
{
    CLI::App *verb = addVerb(app, "form", "Show the fields of a story form",
                             "  quire form RUNDOWN\n"
                             "  quire form RUNDOWN --markup\n"
                             "  quire form RUNDOWN --json",
                             chosen, [this](Host &host) { run(host); });
    addText(*verb, "NAME", m_name, "The form; quire tree shows that of each queue")->required();
    verb->add_flag("--markup", m_markup, "Print the form's markup");
}

void FormCommand::run(Host &host) const
{
    Session session(host.options);
    session.signOn();
    const Quire::FormData *const form = Quire::FormCache::getForm(m_name);
    if (!form)
        throw Failure(ExitCode::NotFound,
                      QStringLiteral("there is no form \"%1\" on the server; quire tree shows the form of each queue")
                          .arg(m_name));
    if (m_markup)
        printMarkup(session, host);
    else if (host.options.json)
        host.output.json(formJson(*form));
    else
        draw(*form, host.output);
}

void FormCommand::printMarkup(Session &session, Host &host) const
{
    QString markup;
    session.com().GetSystemForm(m_name, markup);
    if (host.options.json)
        host.output.json({{QStringLiteral("form"), m_name}, {QStringLiteral("markup"), markup}});
    else
        host.output.document(markup);
}

} // namespace Tool
