#include "models/ModelFixture.h"

#include <quire/forms/FormCache.h>

#include "tree/SearcherEnd.h"

using namespace Quire;

ModelTest::ModelTest()
    : m_textsAtFirst(Newsroom::Census::liveTexts())
    , m_arraysAtFirst(Newsroom::Census::liveArrays())
{}

ModelTest::~ModelTest() = default;

void ModelTest::start(const QString &described)
{
    QString error;
    newsroom = Newsroom::Model::fromText(
        text("server HUB\nuser ann password=a\nuser ben password=b\nuser eve password=e read-only\n") + described,
        &error);
    ASSERT_NE(newsroom, nullptr) << error.toStdString();
    server = std::make_unique<Newsroom::Server>(newsroom);
    m_registration.emplace(server->registerClass());
    m_liveAtFirst = server->census()->live();
    session = QuireCOM::GetQuireCOM(true);
    ASSERT_EQ(session->Connect(text("HUB"), text("ann"), text("a"), 0), 0);
    server->calls().start();
}

void ModelTest::TearDown()
{
    ASSERT_NE(server, nullptr);
    server->faults().clear();
    EXPECT_TRUE(ServerModel::waitForServer(patience));
    NotificationRelease();
    EXPECT_TRUE(server->waitForEvents());
    SearchProbe::destroy();
    FormCache::Clear();
    SetErrorInfo(0, nullptr);
    QuireCOM::UnloadCOM();
    const auto nothingLeft = [this] {
        return server->census()->live() == m_liveAtFirst && Newsroom::Census::liveTexts() <= m_textsAtFirst &&
               Newsroom::Census::liveArrays() == m_arraysAtFirst;
    };
    EXPECT_TRUE(comes(nothingLeft)) << server->census()->text().toStdString();
    EXPECT_EQ(QuireCOM::m_LockThreadID, 0u);
    for (const LogMessage &message : log.messages())
        EXPECT_NE(message.type, QtWarningMsg) << message.text.toStdString();
    m_registration.reset();
}

Newsroom::SessionId ModelTest::signOnBen()
{
    return newsroom->signOn(text("ben"), text("b"), QString()).value;
}
