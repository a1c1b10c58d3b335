#include <gtest/gtest.h>

#include <QStringList>

#include <list>

#include <quire/platform/PermanentText.h>

namespace {

/// The text, kept: one that nobody knows any more would be a leak.
const QString &permanentText(const char *text)
{
    static auto &texts = *new std::list<QString>;
    texts.push_back(Platform::permanentText(text));
    return texts.back();
}

} // namespace

TEST(PermanentText, IsTheTextItWasMadeOf)
{
    EXPECT_EQ(permanentText("_storyid"), QStringLiteral("_storyid"));
    EXPECT_TRUE(permanentText("").isEmpty());
}

TEST(PermanentText, IsSharedByItsCopiesAndCountsNone)
{
    const QString &made = permanentText("_lock");
    const QString copy = made; // NOLINT(performance-unnecessary-copy-initialization): the copy is what is looked at
    EXPECT_EQ(copy.constData(), made.constData());
    EXPECT_FALSE(copy.isDetached());
}

TEST(PermanentText, StaysAsItWasWhenACopyIsWrittenTo)
{
    const QString &made = permanentText("_lock");
    QString copy = made;
    copy[1] = QLatin1Char('L');
    copy.append(QLatin1Char('s'));
    EXPECT_EQ(copy, QStringLiteral("_Locks"));
    EXPECT_EQ(made, QStringLiteral("_lock"));
}

TEST(PermanentText, OutlivesAllThatHadIt)
{
    QStringList texts;
    {
        // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the copies are what is looked at
        const QString made = permanentText("_count");
        texts = QStringList{made, made};
    }
    EXPECT_EQ(texts.takeFirst(), QStringLiteral("_count"));
    const QString last = texts.takeFirst();
    EXPECT_EQ(last, QStringLiteral("_count"));
}
