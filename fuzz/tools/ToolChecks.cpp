#include "ToolChecks.h"

#include <limits>

#include <QFile>
#include <QRegularExpression>

#include "BodyText.h"
#include "EditFile.h"
#include "Failure.h"
#include "FieldChanges.h"
#include "SectionName.h"
#include "StoryNumber.h"
#include "TextWidth.h"
#include "Words.h"
#include "fuzz/Input.h"
#include "shell/Completion.h"

namespace ToolFuzz {

namespace {

using namespace Tool;

/// Whether \a use refuses what it is given as a mistake of the user's.
template<class Use>
bool isRefused(const Use &use)
{
    try {
        use();
        return false;
    } catch (const Failure &failure) {
        return failure.code() == ExitCode::Usage && !failure.message().contains(QLatin1Char('\n'));
    }
}

std::optional<qint32> decimal(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral("^\\s*[-+]?[0-9]+\\s*\\z"));
    bool fits = false;
    const qint64 value = text.toLongLong(&fits);
    fits = fits && value >= std::numeric_limits<qint32>::min() && value <= std::numeric_limits<qint32>::max();
    return fits && pattern.match(text).hasMatch() ? std::optional<qint32>(value) : std::nullopt;
}

QString checkCode(const QString &text)
{
    static const QRegularExpression hexadecimal(QStringLiteral("^0?[xX]([0-9a-fA-F]+)\\z"));
    const std::optional<qint32> code = parseCode(text);
    if (code && parseCode(hexCode(*code)) != code)
        return QStringLiteral("a code is not read as it is written");
    const QRegularExpressionMatch match = hexadecimal.match(text);
    bool fits = false;
    const quint32 bits = match.captured(1).toUInt(&fits, 16);
    if (text.contains(QLatin1Char('x'), Qt::CaseInsensitive) &&
        (code.has_value() != fits || (fits && *code != static_cast<qint32>(bits))))
        return QStringLiteral("another hexadecimal code");
    return QString();
}

QString withoutBlanks(QString text)
{
    return text.remove(QLatin1Char(' ')).remove(QLatin1Char('\n'));
}

QString checkWrapping(const QString &text)
{
    for (const int columns : {2, 7, 20}) {
        const QStringList lines = wrapText(text, columns);
        for (const QString &line : lines) {
            if (textWidth(line) > columns)
                return QStringLiteral("a line is wider than %1").arg(columns);
        }
        if (lines.isEmpty() || withoutBlanks(lines.join(QLatin1Char('\n'))) != withoutBlanks(text))
            return QStringLiteral("words were lost in breaking lines");
    }
    return QString();
}

/// A command line with all that one can have.
VerbText describedProgram()
{
    CLI::App app("A program", "quire");
    std::string text;
    app.add_flag("--json", "Machine form");
    app.add_option("--newsroom", text, "DIR  A folder");
    CLI::App *const edit = app.add_subcommand("edit", "Edits");
    edit->add_option("--section", text, "NAME  A section")->check(CLI::IsMember({"head", "body"}));
    edit->add_option("PATH", text, "A queue")->required();
    CLI::App *const blob = app.add_subcommand("blob", "Blobs");
    blob->add_subcommand("put", "Stores")->add_option("FILE", text, "A file");
    blob->add_subcommand("get", "Fetches");
    app.add_subcommand("tree", "Shows");
    return describe(app);
}

} // namespace

QString checkWords(const QString &text)
{
    const std::optional<qint32> number = parseNumber(text);
    if (number && parseNumber(QString::number(*number)) != number)
        return QStringLiteral("a number is not read as it is written");
    if (number != decimal(text))
        return QStringLiteral("another number");
    if (isRefused([&] { sectionNumber(text); }) == sectionNames().contains(text, Qt::CaseInsensitive))
        return QStringLiteral("a section taken or refused wrongly");
    if (isRefused([&] { StoryNumber::parse(text); }) !=
        !decimal(text.startsWith(QLatin1Char('#')) ? text.mid(1) : text).has_value())
        return QStringLiteral("a story's number taken or refused wrongly");
    return checkCode(text);
}

QString checkChanges(const QString &text)
{
    const QStringList changes = text.split(QLatin1Char('\n'));
    QStringList names;
    bool isMistaken = false;
    for (const QString &change : changes) {
        const QString name = change.section(QLatin1Char('='), 0, 0);
        isMistaken = isMistaken || name.isEmpty() || name == change || names.contains(name, Qt::CaseInsensitive);
        names.append(name);
    }
    if (isRefused([&] { FieldChanges made(changes); }) != isMistaken)
        return isMistaken ? QStringLiteral("a mistake was taken") : QStringLiteral("a change was refused");
    return QString();
}

QString checkWidth(const QString &text)
{
    const int width = textWidth(text);
    const QChar ellipsis(0x2026);
    for (const int columns : {0, 1, 2, 5, 20}) {
        const QString fitted = fitText(text, columns);
        if (textWidth(fitted) > columns)
            return QStringLiteral("wider than %1").arg(columns);
        if (columns > 0 && width <= columns && fitted != text)
            return QStringLiteral("cut although it fits");
        if (columns > 0 && width > columns && (!fitted.endsWith(ellipsis) || !text.startsWith(fitted.chopped(1))))
            return QStringLiteral("not its beginning");
        if (textWidth(padText(text, columns)) != qMax(width, columns) || !padText(text, columns).startsWith(text) ||
            !padTextLeft(text, columns).endsWith(text) || textWidth(padTextLeft(text, columns)) != qMax(width, columns))
            return QStringLiteral("padded to another width");
    }
    QString wrong = checkWrapping(text);
    if (!wrong.isEmpty())
        return wrong;
    const QString shown = visible(text);
    for (const QChar c : shown) {
        if (c.category() == QChar::Other_Control)
            return QStringLiteral("a control character is left");
    }
    if (shown.size() != text.size() || !isolate(text).contains(text))
        return QStringLiteral("characters were lost");
    return QString();
}

QString checkBody(const QString &text)
{
    if (unescapeMarkup(escapeMarkup(text)) != text)
        return QStringLiteral("what was escaped does not come back");
    const QString body = textToBody(text);
    if (bodyToText(body) != text)
        return QStringLiteral("a text does not come back from its body");
    if (!isPlainBody(body))
        return QStringLiteral("plain text is said to be more");
    const QString plain = bodyToText(text);
    if (isPlainBody(text) && textToBody(plain) != text.trimmed() && bodyToText(textToBody(plain)) != plain)
        return QStringLiteral("said to be plain, and something is lost");
    return QString();
}

QString checkEditing(const QByteArray &input)
{
    const int end = qMax(input.indexOf('\n'), 0);
    const QString text = Fuzz::textOf(input.left(end)).replace(QLatin1Char('|'), QLatin1Char('\n'));
    QString path;
    try {
        EditFile edited(QStringLiteral("story.txt"), text);
        path = edited.path();
        if (edited.isChanged() || edited.read() != text)
            return QStringLiteral("changed before anybody edited it");
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(input.mid(end)) < 0)
            return QStringLiteral("cannot be edited");
        file.close();
        edited.discard();
        edited.read();
    } catch (const Failure &failure) {
        return failure.code() == ExitCode::Failed ? QString() : QStringLiteral("failed with another code");
    }
    return QFile::exists(path) ? QStringLiteral("the file stayed behind") : QString();
}

QString checkCompletion(const QString &text)
{
    static const VerbText program = describedProgram();
    const QStringList typed = text.split(QLatin1Char('\n'));
    QStringList seen;
    for (const Completion::Word &word : complete(program, typed).words) {
        const QString last = typed.last().mid(typed.last().indexOf(QLatin1Char('=')) + 1);
        if (!word.text.startsWith(typed.last()) && !word.text.startsWith(last))
            return QStringLiteral("\"%1\" does not fit").arg(word.text);
        if (word.text.isEmpty() || seen.contains(word.text))
            return QStringLiteral("\"%1\" twice, or nothing").arg(word.text);
        seen.append(word.text);
    }
    return QString();
}

} // namespace ToolFuzz
