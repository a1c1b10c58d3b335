#pragma once

#include <memory>

#include <QStringList>

#include <gtest/gtest.h>

#include <quire/newsroom/server/Server.h>

#include "Apartment.h"
#include "Program.h"

/// A test that runs the command line within its own process, against a server that is registered on the machine: the
/// sample newsroom, in which the test can look around and break things. The user is signed on as "producer".
class RegisteredServerTest : public testing::Test
{
protected:
    RegisteredServerTest();
    ~RegisteredServerTest() override;

    /// Runs the command line with \a arguments to its end.
    Outcome run(const QStringList &arguments);
    /// The same with \a arguments separated by blanks, signed on as the producer.
    Outcome runAsProducer(const char *arguments);

    const Newsroom::Model &model() const { return *m_server.model(); }
    bool isLocked(qint32 number) const { return model().isLocked(number, 0).value; }
    /// The stored value of a field.
    QString field(qint32 number, const char *name) const;
    QString body(qint32 number) const;

private:
    Q_DISABLE_COPY(RegisteredServerTest)

    const Tool::Apartment m_apartment;

protected:
    Newsroom::Server m_server;

private:
    Newsroom::Registration m_registration;
};
