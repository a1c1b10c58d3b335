// `quire error`. Runs the built program.

#include "Program.h"

namespace {

using ErrorCommandTest = ProgramTest;

TEST_F(ErrorCommandTest, SaysTheServersSentence)
{
    const Outcome run = quire("error 0x80040405");
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.output, QStringLiteral("Command is not authorized.\n"));
    EXPECT_EQ(run.errors, QString());
}

TEST_F(ErrorCommandTest, TakesEveryWayToWriteACode)
{
    for (const char *code : {"0x80040405", "x80040405", "2147746821", "-2147220475"})
        EXPECT_EQ(quire({QStringLiteral("error"), QLatin1String(code)}).output,
                  QStringLiteral("Command is not authorized.\n"))
            << code;
}

TEST_F(ErrorCommandTest, LoginReadsACodeOfTheNetworkAsARefusedSignOn)
{
    EXPECT_EQ(quire("error 0x80070057 --login").output, QStringLiteral("Invalid user name or password.\n"));
    EXPECT_EQ(quire("error --login -2147014847").output, QStringLiteral("News server not found.\n"));
    EXPECT_TRUE(quire("error 0x80070057").output.contains(QStringLiteral("x80070057")));
}

TEST_F(ErrorCommandTest, JsonHasTheCodeInBothForms)
{
    const Outcome run = quire("error 0x80040802 --login --json");
    const QJsonObject expected{{QStringLiteral("code"), static_cast<qint32>(0x80040802)},
                               {QStringLiteral("hex"), QStringLiteral("0x80040802")},
                               {QStringLiteral("login"), true},
                               {QStringLiteral("message"), QStringLiteral("The news system is offline.")}};
    EXPECT_EQ(run.code, 0);
    EXPECT_EQ(run.json(), expected);
}

TEST_F(ErrorCommandTest, ACodeWithoutASentenceIsNotFound)
{
    expectFailure(quire("error 0x80040403"), 4, "there is no message for 0x80040403");
}

TEST_F(ErrorCommandTest, WhatIsNoNumberIsWrongUsage)
{
    expectFailure(quire("error abc"), 2, "\"abc\" is no 32-bit number");
    expectFailure(quire("error 0x100000000"), 2, "0x100000000");
}

} // namespace
