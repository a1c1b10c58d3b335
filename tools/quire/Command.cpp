#include "Command.h"

#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include <QByteArray>

#include "Words.h"

namespace Tool {

namespace {

constexpr char protection = '\0'; // the one character that no argument of a program has

} // namespace

CLI::App *Command::addVerb(CLI::App &app, const char *name, const char *description, const char *examples,
                           Action &chosen, Action action)
{
    CLI::App *verb = app.add_subcommand(name, description);
    verb->footer(QByteArray("Examples:\n").append(examples).toStdString());
    verb->callback([&chosen, action = std::move(action)] { chosen = action; });
    return verb;
}

std::string protectedArgument(const QString &argument)
{
    std::string text = argument.toStdString();
    if (!text.empty() && text.front() == '[' && text.back() == ']')
        text += protection;
    return text;
}

QString plainArgument(std::string given)
{
    if (!given.empty() && given.back() == protection)
        given.pop_back();
    return QString::fromStdString(given);
}

CLI::Option *addText(CLI::App &app, const char *name, QString &target, const char *description)
{
    const auto keep = [&target](const std::string &value) { target = plainArgument(value); };
    return app.add_option_function<std::string>(name, keep, description)->type_name("");
}

CLI::Option *addFileName(CLI::App &app, const char *name, QString &target, const char *description)
{
    const auto isWrong = [](const std::string &given) {
        return given.empty() ? std::string("wants the name of a file or folder, not an empty one") : std::string();
    };
    return addText(app, name, target, description)->check(isWrong);
}

CLI::Option *addTexts(CLI::App &app, const char *name, QStringList &target, const char *description)
{
    const auto keep = [&target](const std::vector<std::string> &values) {
        target.clear();
        for (const std::string &value : values)
            target += plainArgument(value);
    };
    return app.add_option_function<std::vector<std::string>>(name, keep, description)->type_name("");
}

CLI::Option *addNumber(CLI::App &app, const char *name, int &target, int least, const char *description)
{
    const auto isWrong = [least](const std::string &given) {
        const std::optional<qint32> number = parseNumber(QString::fromStdString(given));
        if (number && *number >= least)
            return std::string();
        return "wants a whole number from " + std::to_string(least) + " on, not " + given;
    };
    return app.add_option(name, target, description)->type_name("")->check(isWrong);
}

CLI::Option *addSeconds(CLI::App &app, const char *name, double &target, const char *description)
{
    const auto isWrong = [](const std::string &given) {
        bool isNumber = false;
        const double seconds = QString::fromStdString(given).toDouble(&isNumber);
        if (isNumber && std::isfinite(seconds) && seconds > 0)
            return std::string();
        return "wants a number of seconds above 0, not " + given;
    };
    return app.add_option(name, target, description)->type_name("")->check(isWrong);
}

CLI::Option *addChoice(CLI::App &app, const char *name, QString &target, const QStringList &choices)
{
    const QByteArray shown = choices.join(QLatin1Char(' ')).toUtf8();
    return addText(app, name, target, shown.constData())->type_name(choices.join(QLatin1Char('|')).toStdString());
}

} // namespace Tool
