// `quire info` and signing on. Runs the built program.

#include "Program.h"

#include <QJsonArray>

namespace {

using InfoCommandTest = ProgramTest;

TEST_F(InfoCommandTest, NamesTheServerTheUserAndTheSystemValues)
{
    const Outcome run = quire("--built-in info");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.errors, QString());
    const char *const version = "\nquire         " QUIRE_VERSION "\n";
    for (const char *label :
         {"newsroom      built-in sample\n", "\nserver        ", "\nuser          ", "\nuser details  ",
          "\nread rate     ", "\nword length   ", "\nserver file   OrvexCOMU_64.dll\n", version})
        EXPECT_TRUE(run.output.contains(QLatin1String(label))) << label << qPrintable(run.output);
}

TEST_F(InfoCommandTest, JsonHasTheSameUnderDocumentedKeys)
{
    const QJsonObject info = quire("--built-in info --json").json();
    EXPECT_EQ(info.keys(),
              (QStringList{QStringLiteral("folder"), QStringLiteral("newsroom"), QStringLiteral("readRate"),
                           QStringLiteral("server"), QStringLiteral("serverFile"), QStringLiteral("user"),
                           QStringLiteral("userNumbers"), QStringLiteral("userTexts"), QStringLiteral("version"),
                           QStringLiteral("wordLength")}));
    EXPECT_EQ(info.value(QStringLiteral("newsroom")).toString(), QStringLiteral("built-in sample"));
    EXPECT_EQ(info.value(QStringLiteral("folder")).toString(), QString());
    EXPECT_FALSE(info.value(QStringLiteral("server")).toString().isEmpty());
    EXPECT_FALSE(info.value(QStringLiteral("user")).toString().isEmpty());
    EXPECT_GT(info.value(QStringLiteral("readRate")).toInt(), 0);
    EXPECT_EQ(info.value(QStringLiteral("userTexts")).toArray().size(), 4);
    EXPECT_EQ(info.value(QStringLiteral("userNumbers")).toArray().size(), 2);
}

TEST_F(InfoCommandTest, TheServerOptionTakesTheServersOwnNameInAnyLetterCase)
{
    const QString server = quire("--built-in info --json").json().value(QStringLiteral("server")).toString();
    EXPECT_EQ(
        quire({QStringLiteral("--built-in"), QStringLiteral("--server"), server.toLower(), QStringLiteral("info")})
            .code,
        0);
}

TEST_F(InfoCommandTest, AWrongPasswordIsRefusedInWordsAndNotPrinted)
{
    const QString user = quire("--built-in info --json").json().value(QStringLiteral("user")).toString();
    const Outcome run = quire({QStringLiteral("--built-in"), QStringLiteral("--user"), user,
                               QStringLiteral("--password"), QStringLiteral("s3cr3t-wrong"), QStringLiteral("info")});
    expectFailure(run, 3, "Invalid user name or password.");
    EXPECT_FALSE(run.errors.contains(QStringLiteral("s3cr3t")));
    EXPECT_TRUE(run.errors.contains(user));
}

TEST_F(InfoCommandTest, AnUnknownUserIsRefused)
{
    expectFailure(quire("--built-in --user nobody-of-that-name info"), 3, "Invalid user name or password.");
}

TEST_F(InfoCommandTest, AnUnknownServerIsRefused)
{
    expectFailure(quire("--built-in --server NOWHERE info"), 3, "News server not found.");
}

TEST_F(InfoCommandTest, ThePasswordOfTheEnvironmentIsUsed)
{
    m_environment.insert(QStringLiteral("QUIRE_PASSWORD"), QStringLiteral("wrong"));
    expectFailure(quire("--built-in info"), 3, "Invalid user name or password.");
}

TEST_F(InfoCommandTest, AnEmptyPasswordIsAPassword)
{
    expectFailure(
        quire({QStringLiteral("--built-in"), QStringLiteral("--password"), QString(), QStringLiteral("info")}), 3,
        "Invalid user name or password.");
}

TEST_F(InfoCommandTest, OptionsMayStandBehindTheVerb)
{
    const Outcome run = quire("info --built-in --json");
    EXPECT_EQ(run.code, 0);
    EXPECT_FALSE(run.json().isEmpty());
}

} // namespace
