#include "InfoCommand.h"

#include <QJsonArray>

#include "Output.h"
#include "Session.h"
#include "TextWidth.h"
#include "Words.h"

namespace Tool {

namespace {

struct Info
{
    QString newsroom;
    QString folder;
    QString server;
    QString user;
    Quire::UserInfo about;
    qint32 readRate;
    qint32 wordLength;
    QString library;

    QStringList aboutTexts() const { return {about.text1, about.text2, about.text3, about.text4}; }
};

Info readInfo(Session &session)
{
    Quire::QuireCOM &com = session.com();
    Info info{};
    info.newsroom = session.source().description();
    info.folder = session.source().folder();
    QString password;
    com.GetConnectInfo(info.server, info.user, password);
    com.GetUserInfo(info.about);
    info.readRate = static_cast<qint32>(com.GetSysReadRate());
    info.wordLength = static_cast<qint32>(com.GetSysWordLength());
    info.library = Quire::QuireCOM::GetDLLName();
    return info;
}

void print(Output &output, const char *label, const QString &value)
{
    constexpr int labelColumns = 14;
    const QString padded = padText(QString::fromLatin1(label), labelColumns);
    output.line(padded + isolate(fitText(visible(value), output.columns() - labelColumns)));
}

void printAll(Output &output, const Info &info)
{
    print(output, "newsroom", info.newsroom);
    print(output, "server", info.server);
    print(output, "user", info.user);
    QStringList about = info.aboutTexts();
    about.removeAll(QString());
    about += QString::number(info.about.number1);
    about += QString::number(info.about.number2);
    print(output, "user details", about.join(QStringLiteral(", ")));
    print(output, "read rate", QString::number(info.readRate));
    print(output, "word length", QString::number(info.wordLength));
    print(output, "server file", info.library);
    print(output, "quire", QStringLiteral(QUIRE_VERSION));
}

QJsonObject toJson(const Info &info)
{
    return {{QStringLiteral("newsroom"), info.newsroom},
            {QStringLiteral("folder"), info.folder},
            {QStringLiteral("server"), info.server},
            {QStringLiteral("user"), info.user},
            {QStringLiteral("userTexts"), QJsonArray::fromStringList(info.aboutTexts())},
            {QStringLiteral("userNumbers"), QJsonArray{info.about.number1, info.about.number2}},
            {QStringLiteral("readRate"), info.readRate},
            {QStringLiteral("wordLength"), info.wordLength},
            {QStringLiteral("serverFile"), info.library},
            {QStringLiteral("version"), QStringLiteral(QUIRE_VERSION)}};
}

} // namespace

void InfoCommand::declare(CLI::App &app, Action &chosen)
{
    addVerb(app, "info", "Show the server, the user and the system values",
            "  quire info\n"
            "  quire --newsroom nr info --json",
            chosen, run);
}

void InfoCommand::run(Host &host)
{
    Session session(host.options);
    session.signOn();
    const Info info = readInfo(session);
    if (host.options.json)
        host.output.json(toJson(info));
    else
        printAll(host.output, info);
}

} // namespace Tool
