#pragma once

#include <QStringList>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>

#include <quire/Quire.h>
#include <quire/models/ServerModel.h>
#include <quire/newsroom/Newsroom.h>

#include "models/SignalLog.h"
#include "support/DebugCapture.h"
#include "support/QtPrinting.h"
#include "support/Text.h"
#include "support/Waiting.h"

/// As long as a server is seen to hang, in milliseconds.
const int hangTime = 3000;

/// Whether the model has nothing to wait for any more.
inline bool settles(const Quire::ServerModel &model)
{
    return comes([&] { return !model.isLoading(); });
}

/// A session on a newsroom that each test describes. After each test, whose models are gone by then, nothing that the
/// server handed out is left, nobody holds the access lock, and Qt's check of models has found nothing.
class ModelTest : public ::testing::Test
{
protected:
    ModelTest();
    ~ModelTest() override;

    /// Starts the newsroom, to which users "ann" and "ben" are added, and signs ann on.
    void start(const QString &newsroom);
    void TearDown() override;

    /// Another user's sign-on.
    Newsroom::SessionId signOnBen();

    std::shared_ptr<Newsroom::Model> newsroom;
    std::unique_ptr<Newsroom::Server> server;
    Quire::QuireCOM *session = nullptr;
    FrameworkLog log;

private:
    Q_DISABLE_COPY(ModelTest)

    std::optional<Newsroom::Registration> m_registration;
    int m_liveAtFirst = 0;
    qint64 m_textsAtFirst;
    qint64 m_arraysAtFirst;
};
