#include "RegisteredServer.h"

#include <quire/newsroom/sample/Sample.h>

#include "CommandLine.h"

RegisteredServerTest::RegisteredServerTest()
    : m_server(Newsroom::sampleModel())
    , m_registration(m_server.registerClass())
{}

RegisteredServerTest::~RegisteredServerTest() = default;

Outcome RegisteredServerTest::run(const QStringList &arguments)
{
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    Outcome outcome;
    outcome.code = static_cast<int>(Tool::CommandLine().run(arguments));
    outcome.bytes = QByteArray::fromStdString(testing::internal::GetCapturedStdout());
    outcome.output = QString::fromUtf8(outcome.bytes);
    const std::string errors = testing::internal::GetCapturedStderr();
    outcome.errors = QString::fromStdString(errors).remove(QLatin1Char('\r'));
    return outcome;
}

Outcome RegisteredServerTest::runAsProducer(const char *arguments)
{
    const QStringList who{QStringLiteral("--user"), QStringLiteral("producer"), QStringLiteral("--password"),
                          QStringLiteral("air")};
    return run(who + QString::fromUtf8(arguments).split(QLatin1Char(' '), Qt::SkipEmptyParts));
}

QString RegisteredServerTest::field(qint32 number, const char *name) const
{
    return model().story(number).value->text().fieldValue(QLatin1String(name));
}

QString RegisteredServerTest::body(qint32 number) const
{
    return model().story(number).value->text().body;
}
