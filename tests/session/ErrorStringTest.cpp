#include <quire/session/ErrorString.h>

#include <QCoreApplication>
#include <QTranslator>

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include <quire/platform/Automation.h>

#include "session/QtPrinting.h"

using Quire::getErrorString;

namespace {

struct Expected
{
    long code;
    const char *text;
};

// clang-format off
const Expected commandErrors[] = {
    {0x80040401L, "Input command has insufficient arguments."},
    {0x80040402L, "Input argument not recognized."},
    {0x80040404L, "Subdirectory limit reached."},
    {0x80040405L, "Command is not authorized."},
    {0x80040406L, "Improper command syntax."},
    {0x80040408L, "Queue only allowed at lowest level."},
    {0x80040409L, "System error."},
    {0x8004040AL, "Entry already exists."},
    {0x8004040BL, "Entry no longer exists."},
    {0x8004040CL, "Destination invalid."},
    {0x8004040EL, "Story currently being edited."},
    {0x8004040FL, "Story/directory/queue locked."},
    {0x80040410L, "Queue is purge locked (purge/remove)."},
    {0x80040411L, "Queue is not empty."},
    {0x80040412L, "Invalid from current special mode."},
    {0x80040413L, "Can't find a keyword."},
    {0x80040414L, "Queue doesn't allow batch operation."},
    {0x80040415L, "No such user."},
    {0x80040416L, "User not logged in."},
    {0x80040418L, "User logged in (no message to send)."},
    {0x8004041AL, "Read-only, no typing allowed."},
    {0x8004041BL, "Could not open map story."},
    {0x8004041CL, "No entry in map story."},
    {0x80040420L, "User identification not accepted."},
    {0x80040422L, "Directory or queue is empty."},
    {0x8004042EL, "Move converted to duplicate."},
    {0x80040438L, "System offline message."},
    {0x80040442L, "Refresh mode on."},
    {0x80040443L, "Print the message in the packet."},
    {0x80040449L, "Unable to send mail."},
    {0x8004044EL, "Password requested was too short."},
    {0x80040450L, "Batch MOVE, DUP, KILL partial failure."},
    {0x80040451L, "Command in progress."},
    {0x80040452L, "Database element name too long."},
    {0x80040453L, "Queue is being ordered."},
    {0x80040454L, "This name is being used for a group."},
    {0x80040455L, "Read-only wire story."},
    {0x80040456L, "Queue is up to date."},
    {0x80040457L, "No form for new story."},
    {0x80040458L, "ZEKO syntax error on story save."},
    {0x80040459L, "Open of old version for copying failed."},
    {0x8004045AL, "No devices to monitor."},
    {0x8004045BL, "Queue doesn't allow batch print."},
    {0x8004045CL, "Queue is production locked."},
};

const Expected loginErrors[] = {
    {0x80040802L, "The news system is offline."},
    {0x80040803L, "Your client system is not part of the news system configuration."},
    {0x80040805L, "Resource is not available. Please attempt to connect to a different server."},
    {0x80040806L, "The news system has run out of resources for new sessions."},
    {0x80040807L, "Your client system is not listed as authorized for connection to the news system."},
    {0x80040809L, "Your client application version is incompatible with your selected News Server.  Please select another server."},
    {0x8004080EL, "Your client application version is incompatible with your selected News Server.  Please select another server."},
};
// clang-format on

template<std::size_t Size>
bool listed(const Expected (&table)[Size], long code)
{
    return std::any_of(std::begin(table), std::end(table), [code](const Expected &row) { return row.code == code; });
}

QString text(const char *literal)
{
    return QString::fromLatin1(literal);
}

/// Renders every text as "context|text|comment".
class Echo : public QTranslator
{
public:
    Echo() { QCoreApplication::installTranslator(this); }
    ~Echo() override { QCoreApplication::removeTranslator(this); }

    bool isEmpty() const override { return false; }
    QString translate(const char *context, const char *sourceText, const char *comment, int) const override
    {
        return text(context) + QLatin1Char('|') + text(sourceText) + QLatin1Char('|') + text(comment);
    }
};

} // namespace

// ---- the server's own codes -----------------------------------------------------------------------------------------

TEST(ErrorString, HasAllCommandErrors)
{
    EXPECT_EQ(std::size(commandErrors), 44u);
    for (const Expected &row : commandErrors)
        EXPECT_EQ(getErrorString(row.code, false), text(row.text));
}

TEST(ErrorString, HasAllLoginErrors)
{
    EXPECT_EQ(std::size(loginErrors), 7u);
    for (const Expected &row : loginErrors)
        EXPECT_EQ(getErrorString(row.code, false), text(row.text));
}

TEST(ErrorString, SaysThatACommandHasTooFewArguments)
{
    EXPECT_EQ(getErrorString(0x80040401L, false), QStringLiteral("Input command has insufficient arguments."));
}

TEST(ErrorString, IsEmptyForANumberWithoutARow)
{
    EXPECT_EQ(getErrorString(0x80040403L, false), QString());
}

TEST(ErrorString, IsEmptyForEveryOtherCommandError)
{
    for (long code = 0x80040400L; code < 0x80040800L; ++code) {
        if (!listed(commandErrors, code)) {
            EXPECT_TRUE(getErrorString(code, false).isEmpty()) << std::hex << code;
            EXPECT_TRUE(getErrorString(code, true).isEmpty()) << std::hex << code;
        }
    }
}

TEST(ErrorString, IsEmptyForEveryOtherLoginError)
{
    for (long code = 0x80040800L; code < 0x80040C00L; ++code) {
        if (!listed(loginErrors, code)) {
            EXPECT_TRUE(getErrorString(code, false).isEmpty()) << std::hex << code;
            EXPECT_TRUE(getErrorString(code, true).isEmpty()) << std::hex << code;
        }
    }
}

TEST(ErrorString, DoesNotLookAtTheSeverityOfTheServersCodes)
{
    EXPECT_EQ(getErrorString(0x00040401L, false), getErrorString(0x80040401L, false));
    EXPECT_EQ(getErrorString(0xE0040401L, false), getErrorString(0x80040401L, false));
}

TEST(ErrorString, DoesNotLookAtLoginForTheServersCodes)
{
    EXPECT_EQ(getErrorString(0x80040457L, true), QStringLiteral("No form for new story."));
    EXPECT_EQ(getErrorString(0x80040802L, true), QStringLiteral("The news system is offline."));
}

TEST(ErrorString, SaysThatTheSystemIsOffline)
{
    EXPECT_EQ(getErrorString(0x80040802L, false), QStringLiteral("The news system is offline."));
}

TEST(ErrorString, HasOneTextForBothVersionErrors)
{
    const QString version = QStringLiteral("Your client application version is incompatible with your selected News "
                                           "Server.  Please select another server.");
    EXPECT_EQ(getErrorString(0x80040809L, false), version);
    EXPECT_EQ(getErrorString(0x8004080EL, false), version);
}

TEST(ErrorString, TakesOnlyTheLow32BitsOfALong)
{
    EXPECT_EQ(getErrorString(static_cast<long>(static_cast<qint32>(0x80040401)), false),
              getErrorString(static_cast<long>(0x80040401L), false));
    EXPECT_EQ(getErrorString(static_cast<long>(static_cast<qint32>(0x80004005)), false),
              getErrorString(static_cast<long>(0x80004005L), false));
}

TEST(ErrorString, AsksTheSystemForTheInterfaceFacilitysOtherGroups)
{
    EXPECT_TRUE(getErrorString(0x80040001L, false).contains(QStringLiteral("x80040001")));
    EXPECT_TRUE(getErrorString(0x80040C01L, false).contains(QStringLiteral("x80040c01")));
}

TEST(ErrorString, AsksTheSystemForOtherFacilities)
{
    EXPECT_TRUE(getErrorString(0x80050401L, false).contains(QStringLiteral("x80050401")));
    EXPECT_TRUE(getErrorString(0x90040401L, false).contains(QStringLiteral("x90040401")));
}

// ---- signing on -----------------------------------------------------------------------------------------------------

TEST(ErrorString, SaysInvalidUserForAnInvalidParameterOnlyWhenSigningOn)
{
    EXPECT_EQ(getErrorString(0x80070057L, true), QStringLiteral("Invalid user name or password."));
    EXPECT_NE(getErrorString(0x80070057L, false), QStringLiteral("Invalid user name or password."));
    EXPECT_TRUE(getErrorString(0x80070057L, false).endsWith(QStringLiteral(" (x80070057)")));
}

TEST(ErrorString, SaysInvalidUserForARefusedConnection)
{
    EXPECT_EQ(getErrorString(0x8007274DL, true), QStringLiteral("Invalid user name or password."));
    EXPECT_EQ(getErrorString(10061, true), QStringLiteral("Invalid user name or password."));
}

TEST(ErrorString, SaysServerNotFoundForAnUnavailableAddress)
{
    EXPECT_EQ(getErrorString(0x80072741L, true), QStringLiteral("News server not found."));
    EXPECT_NE(getErrorString(0x80072741L, false), QStringLiteral("News server not found."));
}

TEST(ErrorString, LooksAtTheLow16BitsOnlyWhenSigningOn)
{
    EXPECT_EQ(getErrorString(0x12340057L, true), QStringLiteral("Invalid user name or password."));
}

TEST(ErrorString, AsksTheSystemForOtherCodesWhenSigningOn)
{
    EXPECT_EQ(getErrorString(0x80004005L, true), getErrorString(0x80004005L, false));
}

// ---- the system's texts ---------------------------------------------------------------------------------------------

TEST(ErrorString, EndsASystemMessageWithTheCodeInLowerCaseHexadecimal)
{
    const QString message = getErrorString(0x80004005L, false);
    EXPECT_TRUE(message.endsWith(QStringLiteral(" (x80004005)"))) << message.toStdString();
    EXPECT_GT(message.size(), 12);
}

TEST(ErrorString, WritesTheCodeWithoutPadding)
{
    const QString message = getErrorString(5, false); // access denied
    EXPECT_TRUE(message.endsWith(QStringLiteral(" (x5)"))) << message.toStdString();
}

TEST(ErrorString, KeepsASystemMessageOnOneLine)
{
    for (const long code : {0x80004005L, 0x80070057L, 0x80070005L, 5L, 2L}) {
        const QString message = getErrorString(code, false);
        EXPECT_FALSE(message.contains(QLatin1Char('\n'))) << message.toStdString();
        EXPECT_FALSE(message.contains(QLatin1Char('\r'))) << message.toStdString();
    }
}

TEST(ErrorString, NamesTheCodeThatTheSystemHasNoTextFor)
{
    EXPECT_EQ(getErrorString(0x8ABCDEF1L, false), QStringLiteral("Unexpected error, code = x8abcdef1."));
    EXPECT_EQ(getErrorString(0x8ABCDEF1L, true), QStringLiteral("Unexpected error, code = x8abcdef1."));
}

// ---- translation ----------------------------------------------------------------------------------------------------

TEST(ErrorString, TranslatesCommandErrorsUnderTheirComment)
{
    const Echo echo;
    EXPECT_EQ(getErrorString(0x80040458L, false),
              QStringLiteral("QObject|ZEKO syntax error on story save.|orvex error"));
}

TEST(ErrorString, TranslatesLoginErrorsUnderTheirComment)
{
    const Echo echo;
    EXPECT_EQ(getErrorString(0x80040802L, false),
              QStringLiteral("QObject|The news system is offline.|nrcs login error"));
}

TEST(ErrorString, TranslatesNetworkFailuresUnderTheCommentOfLoginErrors)
{
    const Echo echo;
    EXPECT_EQ(getErrorString(10061, true), QStringLiteral("QObject|Invalid user name or password.|nrcs login error"));
    EXPECT_EQ(getErrorString(10049, true), QStringLiteral("QObject|News server not found.|nrcs login error"));
}

TEST(ErrorString, TranslatesTheUnexpectedErrorBeforeItsNumberIsFilledIn)
{
    const Echo echo;
    EXPECT_EQ(getErrorString(0x8ABCDEF1L, false),
              QStringLiteral("QObject|Unexpected error, code = x8abcdef1.|error message"));
}

TEST(ErrorString, DoesNotTranslateNumbersWithoutARow)
{
    const Echo echo;
    EXPECT_EQ(getErrorString(0x80040403L, false), QString());
}
