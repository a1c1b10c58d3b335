#include "Options.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace Desk {

namespace {

QString optionText(const char *text)
{
    return QCoreApplication::translate("Desk::Options", text);
}

void declare(QCommandLineParser &parser)
{
    parser.setApplicationDescription(
        optionText("A newsroom in a window. Without options it opens the registered server, or the "
                   "built-in sample newsroom where none is registered."));
    parser.addHelpOption();
    parser.addOptions({
        {QStringLiteral("newsroom"), optionText("Open this newsroom folder."), QStringLiteral("DIR")},
        {QStringLiteral("built-in"), optionText("Open the built-in sample newsroom.")},
        {QStringLiteral("stories"), optionText("Open a newsroom made up by rule, with that many stories."),
         QStringLiteral("N")},
        {QStringLiteral("user"), optionText("Sign on as this user."), QStringLiteral("NAME")},
        {QStringLiteral("password"), optionText("Better: in QUIRE_PASSWORD."), QStringLiteral("TEXT")},
        {QStringLiteral("server"), optionText("The news server to sign on to."), QStringLiteral("NAME")},
        {QStringLiteral("open"), optionText("Begin with this queue."), QStringLiteral("PATH")},
        {QStringLiteral("dark"), optionText("Begin in dark colours.")},
        {QStringLiteral("screenshots"), optionText("Take pictures of the sample newsroom into this folder, and end."),
         QStringLiteral("DIR")},
    });
}

} // namespace

Options readOptions(const QStringList &arguments)
{
    QCommandLineParser parser;
    declare(parser);
    parser.process(arguments);
    Options options;
    options.newsroom = parser.value(QStringLiteral("newsroom"));
    options.builtIn = parser.isSet(QStringLiteral("built-in"));
    options.stories = parser.value(QStringLiteral("stories")).toInt();
    options.server = parser.value(QStringLiteral("server"));
    options.user = parser.value(QStringLiteral("user"));
    options.password = parser.isSet(QStringLiteral("password")) ? parser.value(QStringLiteral("password"))
                                                                : qEnvironmentVariable("QUIRE_PASSWORD");
    options.dark = parser.isSet(QStringLiteral("dark"));
    options.open = parser.value(QStringLiteral("open"));
    options.screenshots = parser.value(QStringLiteral("screenshots"));
    return options;
}

} // namespace Desk
