#include <quire/session/ErrorString.h>

#include <QCoreApplication>
#include <QTranslator>

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "support/QtPrinting.h"
#include "support/Results.h"
#include "support/Text.h"

using Quire::getErrorString;

namespace {

struct Expected
{
    long code;
    const char *text;
};

// clang-format off
const Expected commandErrors[] = {
    {asLong(0x80040401), "Input command has insufficient arguments."},
    {asLong(0x80040402), "Input argument not recognized."},
    {asLong(0x80040404), "Subdirectory limit reached."},
    {asLong(0x80040405), "Command is not authorized."},
    {asLong(0x80040406), "Improper command syntax."},
    {asLong(0x80040408), "Queue only allowed at lowest level."},
    {asLong(0x80040409), "System error."},
    {asLong(0x8004040A), "Entry already exists."},
    {asLong(0x8004040B), "Entry no longer exists."},
    {asLong(0x8004040C), "Destination invalid."},
    {asLong(0x8004040E), "Story currently being edited."},
    {asLong(0x8004040F), "Story/directory/queue locked."},
    {asLong(0x80040410), "Queue is purge locked (purge/remove)."},
    {asLong(0x80040411), "Queue is not empty."},
    {asLong(0x80040412), "Invalid from current special mode."},
    {asLong(0x80040413), "Can't find a keyword."},
    {asLong(0x80040414), "Queue doesn't allow batch operation."},
    {asLong(0x80040415), "No such user."},
    {asLong(0x80040416), "User not logged in."},
    {asLong(0x80040418), "User logged in (no message to send)."},
    {asLong(0x8004041A), "Read-only, no typing allowed."},
    {asLong(0x8004041B), "Could not open map story."},
    {asLong(0x8004041C), "No entry in map story."},
    {asLong(0x80040420), "User identification not accepted."},
    {asLong(0x80040422), "Directory or queue is empty."},
    {asLong(0x8004042E), "Move converted to duplicate."},
    {asLong(0x80040438), "System offline message."},
    {asLong(0x80040442), "Refresh mode on."},
    {asLong(0x80040443), "Print the message in the packet."},
    {asLong(0x80040449), "Unable to send mail."},
    {asLong(0x8004044E), "Password requested was too short."},
    {asLong(0x80040450), "Batch MOVE, DUP, KILL partial failure."},
    {asLong(0x80040451), "Command in progress."},
    {asLong(0x80040452), "Database element name too long."},
    {asLong(0x80040453), "Queue is being ordered."},
    {asLong(0x80040454), "This name is being used for a group."},
    {asLong(0x80040455), "Read-only wire story."},
    {asLong(0x80040456), "Queue is up to date."},
    {asLong(0x80040457), "No form for new story."},
    {asLong(0x80040458), "ZEKO syntax error on story save."},
    {asLong(0x80040459), "Open of old version for copying failed."},
    {asLong(0x8004045A), "No devices to monitor."},
    {asLong(0x8004045B), "Queue doesn't allow batch print."},
    {asLong(0x8004045C), "Queue is production locked."},
};

const Expected loginErrors[] = {
    {asLong(0x80040802), "The news system is offline."},
    {asLong(0x80040803), "Your client system is not part of the news system configuration."},
    {asLong(0x80040805), "Resource is not available. Please attempt to connect to a different server."},
    {asLong(0x80040806), "The news system has run out of resources for new sessions."},
    {asLong(0x80040807), "Your client system is not listed as authorized for connection to the news system."},
    {asLong(0x80040809), "Your client application version is incompatible with your selected News Server.  Please select another server."},
    {asLong(0x8004080E), "Your client application version is incompatible with your selected News Server.  Please select another server."},
};
// clang-format on

template<std::size_t Size>
bool listed(const Expected (&table)[Size], long code)
{
    return std::any_of(std::begin(table), std::end(table), [code](const Expected &row) { return row.code == code; });
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
    EXPECT_EQ(getErrorString(asLong(0x80040401), false), QStringLiteral("Input command has insufficient arguments."));
}

TEST(ErrorString, IsEmptyForANumberWithoutARow)
{
    EXPECT_EQ(getErrorString(asLong(0x80040403), false), QString());
}

TEST(ErrorString, IsEmptyForEveryOtherCommandError)
{
    for (long code = asLong(0x80040400); code < asLong(0x80040800); ++code) {
        if (!listed(commandErrors, code)) {
            EXPECT_TRUE(getErrorString(code, false).isEmpty()) << std::hex << code;
            EXPECT_TRUE(getErrorString(code, true).isEmpty()) << std::hex << code;
        }
    }
}

TEST(ErrorString, IsEmptyForEveryOtherLoginError)
{
    for (long code = asLong(0x80040800); code < asLong(0x80040C00); ++code) {
        if (!listed(loginErrors, code)) {
            EXPECT_TRUE(getErrorString(code, false).isEmpty()) << std::hex << code;
            EXPECT_TRUE(getErrorString(code, true).isEmpty()) << std::hex << code;
        }
    }
}

TEST(ErrorString, DoesNotLookAtTheSeverityOfTheServersCodes)
{
    EXPECT_EQ(getErrorString(asLong(0x00040401), false), getErrorString(asLong(0x80040401), false));
    EXPECT_EQ(getErrorString(asLong(0xE0040401), false), getErrorString(asLong(0x80040401), false));
}

TEST(ErrorString, DoesNotLookAtLoginForTheServersCodes)
{
    EXPECT_EQ(getErrorString(asLong(0x80040457), true), QStringLiteral("No form for new story."));
    EXPECT_EQ(getErrorString(asLong(0x80040802), true), QStringLiteral("The news system is offline."));
}

TEST(ErrorString, SaysThatTheSystemIsOffline)
{
    EXPECT_EQ(getErrorString(asLong(0x80040802), false), QStringLiteral("The news system is offline."));
}

TEST(ErrorString, HasOneTextForBothVersionErrors)
{
    const QString version = QStringLiteral("Your client application version is incompatible with your selected News "
                                           "Server.  Please select another server.");
    EXPECT_EQ(getErrorString(asLong(0x80040809), false), version);
    EXPECT_EQ(getErrorString(asLong(0x8004080E), false), version);
}

TEST(ErrorString, TakesOnlyTheLow32BitsOfALong)
{
    EXPECT_EQ(getErrorString(static_cast<long>(static_cast<qint32>(0x80040401)), false),
              getErrorString(static_cast<long>(0x80040401U), false));
    EXPECT_EQ(getErrorString(static_cast<long>(static_cast<qint32>(0x80004005)), false),
              getErrorString(static_cast<long>(0x80004005U), false));
}

TEST(ErrorString, AsksTheSystemForTheInterfaceFacilitysOtherGroups)
{
    EXPECT_TRUE(getErrorString(asLong(0x80040001), false).contains(QStringLiteral("x80040001")));
    EXPECT_TRUE(getErrorString(asLong(0x80040C01), false).contains(QStringLiteral("x80040c01")));
    EXPECT_TRUE(getErrorString(asLong(0x80048401), false).contains(QStringLiteral("x80048401")));
}

TEST(ErrorString, AsksTheSystemForOtherFacilities)
{
    EXPECT_TRUE(getErrorString(asLong(0x80050401), false).contains(QStringLiteral("x80050401")));
    EXPECT_TRUE(getErrorString(asLong(0x90040401), false).contains(QStringLiteral("x90040401")));
}

// ---- signing on -----------------------------------------------------------------------------------------------------

TEST(ErrorString, SaysInvalidUserForAnInvalidParameterOnlyWhenSigningOn)
{
    EXPECT_EQ(getErrorString(asLong(0x80070057), true), QStringLiteral("Invalid user name or password."));
    EXPECT_NE(getErrorString(asLong(0x80070057), false), QStringLiteral("Invalid user name or password."));
    EXPECT_TRUE(getErrorString(asLong(0x80070057), false).endsWith(QStringLiteral(" (x80070057)")));
}

TEST(ErrorString, SaysInvalidUserForARefusedConnection)
{
    EXPECT_EQ(getErrorString(asLong(0x8007274D), true), QStringLiteral("Invalid user name or password."));
    EXPECT_EQ(getErrorString(10061, true), QStringLiteral("Invalid user name or password."));
}

TEST(ErrorString, SaysServerNotFoundForAnUnavailableAddress)
{
    EXPECT_EQ(getErrorString(asLong(0x80072741), true), QStringLiteral("News server not found."));
    EXPECT_NE(getErrorString(asLong(0x80072741), false), QStringLiteral("News server not found."));
}

TEST(ErrorString, LooksAtTheLow16BitsOnlyWhenSigningOn)
{
    EXPECT_EQ(getErrorString(asLong(0x12340057), true), QStringLiteral("Invalid user name or password."));
}

TEST(ErrorString, AsksTheSystemForOtherCodesWhenSigningOn)
{
    EXPECT_EQ(getErrorString(asLong(0x80004005), true), getErrorString(asLong(0x80004005), false));
}

// ---- the system's texts ---------------------------------------------------------------------------------------------

TEST(ErrorString, EndsASystemMessageWithTheCodeInLowerCaseHexadecimal)
{
    const QString message = getErrorString(asLong(0x80004005), false);
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
    for (const long code : {asLong(0x80004005), asLong(0x80070057), asLong(0x80070005), 5L, 2L}) {
        const QString message = getErrorString(code, false);
        EXPECT_FALSE(message.contains(QLatin1Char('\n'))) << message.toStdString();
        EXPECT_FALSE(message.contains(QLatin1Char('\r'))) << message.toStdString();
    }
}

TEST(ErrorString, NamesTheCodeThatTheSystemHasNoTextFor)
{
    EXPECT_EQ(getErrorString(asLong(0x8ABCDEF1), false), QStringLiteral("Unexpected error, code = x8abcdef1."));
    EXPECT_EQ(getErrorString(asLong(0x8ABCDEF1), true), QStringLiteral("Unexpected error, code = x8abcdef1."));
}

// ---- translation ----------------------------------------------------------------------------------------------------

TEST(ErrorString, TranslatesCommandErrorsUnderTheirComment)
{
    const Echo echo;
    EXPECT_EQ(getErrorString(asLong(0x80040458), false),
              QStringLiteral("QObject|ZEKO syntax error on story save.|orvex error"));
}

TEST(ErrorString, TranslatesLoginErrorsUnderTheirComment)
{
    const Echo echo;
    EXPECT_EQ(getErrorString(asLong(0x80040802), false),
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
    EXPECT_EQ(getErrorString(asLong(0x8ABCDEF1), false),
              QStringLiteral("QObject|Unexpected error, code = x8abcdef1.|error message"));
}

TEST(ErrorString, DoesNotTranslateNumbersWithoutARow)
{
    const Echo echo;
    EXPECT_EQ(getErrorString(asLong(0x80040403), false), QString());
}
