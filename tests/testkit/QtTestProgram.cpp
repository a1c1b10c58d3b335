// A host's test program with Qt Test: including one header leads the kit's failures to the running test function.

#include <QtTest>

#include <quire/testkit/QtTest.h>

namespace {

class HostTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void seesTheStoriesOfAQueue()
    {
        Quire::TestKit::StandIn newsroom("queue RUNDOWN\n"
                                         "  story id=7\n"
                                         "    title: Headlines\n");
        Quire::QuireCOM *session = newsroom.signOn();
        QVERIFY(session);
        Quire::Queue queue(session->GetCachedDir(QStringLiteral("RUNDOWN")));
        QVERIFY(QUIRE_EVENTUALLY(queue.IsComplete()));
        QCOMPARE(queue.Size(), 1);
    }
};

class FailingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void failsOnPurpose() { QUIRE_SUCCEEDED(static_cast<HRESULT>(0x8004040B)); }
};

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    HostTest host;
    FailingTest failing;
    return QTest::qExec(&host) == 0 && QTest::qExec(&failing) == 1 ? 0 : 1;
}

#include "QtTestProgram.moc"
