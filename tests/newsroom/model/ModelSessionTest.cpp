#include <gtest/gtest.h>

#include <quire/newsroom/model/Model.h>

#include "Printers.h"

using namespace Newsroom;

namespace {

std::shared_ptr<Model> newsroom()
{
    return Model::fromText(QStringLiteral("server NEWSROOM-A alias=BACKUP session-limit=2\n"
                                          "user Journalist password=news full=\"Nora Vale\" number=7 rights=3\n"));
}

Answer<SessionId> signOn(Model *model, const char *user, const char *password, const char *server = "")
{
    return model->signOn(QLatin1String(user), QLatin1String(password), QLatin1String(server));
}

} // namespace

TEST(ModelSessionTest, SignsOnWithUserAndPassword)
{
    const auto model = newsroom();
    const Answer<SessionId> session = signOn(model.get(), "journalist", "news");
    ASSERT_TRUE(session.ok());
    EXPECT_GT(session.value, 0);
    EXPECT_TRUE(model->isSignedOn(session.value));
    EXPECT_EQ(model->user(session.value).value.fullName, QStringLiteral("Nora Vale"));
    EXPECT_EQ(model->user(session.value).value.name, QStringLiteral("Journalist"));
    EXPECT_EQ(model->sessionCount(), 1);
}

TEST(ModelSessionTest, AnyNameOfTheServerWillDoInAnyLetterCase)
{
    for (const char *server : {"", "NEWSROOM-A", "newsroom-a", "BACKUP", "backup"}) {
        const auto model = newsroom();
        EXPECT_TRUE(signOn(model.get(), "journalist", "news", server).ok()) << server;
    }
}

TEST(ModelSessionTest, AnotherServerIsNotFound)
{
    const auto model = newsroom();
    EXPECT_EQ(signOn(model.get(), "journalist", "news", "NEWSROOM-B").refusal, Refusal::ServerNotFound);
    EXPECT_EQ(signOn(model.get(), "nobody", "", "NEWSROOM-B").refusal, Refusal::ServerNotFound);
}

TEST(ModelSessionTest, WrongUserOrPasswordIsRefused)
{
    const auto model = newsroom();
    EXPECT_EQ(signOn(model.get(), "journalist", "NEWS").refusal, Refusal::BadPassword);
    EXPECT_EQ(signOn(model.get(), "journalist", "").refusal, Refusal::BadPassword);
    EXPECT_EQ(signOn(model.get(), "nobody", "news").refusal, Refusal::BadPassword);
    EXPECT_EQ(signOn(model.get(), "", "").refusal, Refusal::BadPassword);
    EXPECT_EQ(model->sessionCount(), 0);
}

TEST(ModelSessionTest, OfflineNewsroomRefusesSignOns)
{
    const auto model = newsroom();
    SystemValues values = model->system();
    values.offline = true;
    model->setSystem(values);
    EXPECT_EQ(signOn(model.get(), "journalist", "wrong").refusal, Refusal::Offline);
    values.offline = false;
    model->setSystem(values);
    EXPECT_TRUE(signOn(model.get(), "journalist", "news").ok());
}

TEST(ModelSessionTest, SessionLimitRefusesOneMore)
{
    const auto model = newsroom();
    const Answer<SessionId> first = signOn(model.get(), "journalist", "news");
    EXPECT_TRUE(signOn(model.get(), "journalist", "news").ok());
    EXPECT_EQ(signOn(model.get(), "journalist", "news").refusal, Refusal::OutOfSessions);
    model->signOff(first.value);
    EXPECT_TRUE(signOn(model.get(), "journalist", "news").ok());
}

TEST(ModelSessionTest, SessionNumbersAreNotUsedTwice)
{
    const auto model = newsroom();
    const Answer<SessionId> first = signOn(model.get(), "journalist", "news");
    model->signOff(first.value);
    EXPECT_NE(signOn(model.get(), "journalist", "news").value, first.value);
}

TEST(ModelSessionTest, AfterSigningOffTheSessionIsOver)
{
    const auto model = newsroom();
    const SessionId session = signOn(model.get(), "journalist", "news").value;
    model->signOff(session);
    model->signOff(session);
    EXPECT_FALSE(model->isSignedOn(session));
    EXPECT_EQ(model->user(session).refusal, Refusal::NotSignedOn);
    EXPECT_EQ(model->sessionCount(), 0);
}

TEST(ModelSessionTest, UserChangesShowInTheSession)
{
    const auto model = newsroom();
    const SessionId session = signOn(model.get(), "journalist", "news").value;
    User user = model->users().first();
    user.device = QStringLiteral("DESK-9");
    EXPECT_EQ(model->setUser(user), Refusal::None);
    EXPECT_EQ(model->user(session).value.device, QStringLiteral("DESK-9"));
    EXPECT_EQ(model->users().size(), 1);
}

TEST(ModelSessionTest, AUserIsReplacedInAnyLetterCaseOfTheName)
{
    const auto model = newsroom();
    User user = model->users().first();
    user.name = user.name.toUpper();
    EXPECT_EQ(model->setUser(user), Refusal::None);
    EXPECT_EQ(model->users().size(), 1);
    EXPECT_EQ(model->users().first().name, user.name);
}

TEST(ModelSessionTest, UserNamesHaveNoBlanks)
{
    Model model;
    User user;
    EXPECT_EQ(model.setUser(user), Refusal::InvalidArgument);
    user.name = QStringLiteral("two words");
    EXPECT_EQ(model.setUser(user), Refusal::InvalidArgument);
    EXPECT_TRUE(model.users().isEmpty());
}

TEST(ModelSessionTest, DefaultSystemValues)
{
    const SystemValues values = Model().system();
    EXPECT_EQ(values.serverName, QStringLiteral("NEWSROOM-A"));
    EXPECT_EQ(values.readRate, 180);
    EXPECT_EQ(values.wordLength, 6);
    EXPECT_FALSE(values.offline);
    EXPECT_EQ(values.sessionLimit, 0);
}
