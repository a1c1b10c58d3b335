// Secrets are overwritten where nobody else needs them, and only there.

#include <quire/platform/Secret.h>

#include <gtest/gtest.h>

#include <string>

#include "support/QtPrinting.h"

using namespace Platform;

TEST(Secret, ABstrIsOverwrittenInItsWholeLength)
{
    SecretBstr secret(QStringLiteral("pass\u00e4word"));
    ASSERT_EQ(toQString(secret.get()), QStringLiteral("pass\u00e4word"));
    secret.clear();
    EXPECT_EQ(toQString(secret.get()), QString(9, QChar()));
}

TEST(Secret, AnEmptyBstrIsNoSecret)
{
    SecretBstr secret{QString()};
    secret.clear();
    EXPECT_NE(secret.get(), nullptr);
    EXPECT_EQ(SysStringLen(secret.get()), 0u);
}

TEST(Secret, ACopySharesNothing)
{
    const QString secret = QStringLiteral("password");
    const QString copy = copyOfSecret(secret);
    EXPECT_EQ(copy, secret);
    EXPECT_NE(copy.constData(), secret.constData());
    EXPECT_TRUE(copy.isDetached());
}

TEST(Secret, ACopyOfNullIsNullAndOneOfNothingIsNot)
{
    EXPECT_TRUE(copyOfSecret(QString()).isNull());
    EXPECT_FALSE(copyOfSecret(QStringLiteral("")).isNull());
}

TEST(Secret, MemoryIsOverwritten)
{
    char memory[] = "password";
    overwrite(memory, 4);
    EXPECT_EQ(std::string(memory, 8), std::string("\0\0\0\0word", 8));
}

TEST(Secret, ForgettingLeavesTheTextsOfOthersAlone)
{
    QString secret = copyOfSecret(QStringLiteral("password"));
    const QString other = secret;
    forget(secret);
    EXPECT_TRUE(secret.isNull());
    EXPECT_EQ(other, QStringLiteral("password"));
}

TEST(Secret, ForgettingALiteralLeavesTheLiteralAlone)
{
    const auto literal = [] { return QStringLiteral("password"); };
    QString secret = literal();
    forget(secret);
    EXPECT_EQ(literal(), QStringLiteral("password"));
}

TEST(Secret, ForgettingWhatLiesInForeignMemoryLeavesItAlone)
{
    QChar memory[] = {QLatin1Char('a'), QLatin1Char('b')};
    QString secret = QString::fromRawData(memory, 2);
    forget(secret);
    EXPECT_EQ(memory[0], QLatin1Char('a'));
}
