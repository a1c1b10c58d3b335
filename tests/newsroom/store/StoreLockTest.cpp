// Folders whose lock file cannot be made; how a system keeps it from being made differs.

#include <QtGlobal>

#ifndef Q_OS_WIN
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <quire/newsroom/store/Store.h>

#include "FolderTools.h"

using namespace Newsroom;

namespace {

class StoreLockTest : public FolderFixture
{
protected:
    void SetUp() override { ASSERT_TRUE(Store::save(Model(), in("nr"), &error)) << error.toStdString(); }
};

/// While it lives, no file gets a byte, as on a full disk.
class NoRoom
{
public:
    NoRoom()
        : m_handler(std::signal(SIGXFSZ, SIG_IGN))
    {
        EXPECT_EQ(::getrlimit(RLIMIT_FSIZE, &m_limit), 0);
        const rlimit none{0, m_limit.rlim_max};
        EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &none), 0);
    }
    ~NoRoom()
    {
        EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &m_limit), 0);
        std::signal(SIGXFSZ, m_handler);
    }

private:
    Q_DISABLE_COPY(NoRoom)

    rlimit m_limit{};
    void (*m_handler)(int);
};

} // namespace

TEST_F(StoreLockTest, AFolderThatMayNotBeWrittenIsRefusedForThat)
{
    ASSERT_EQ(::chmod(QFile::encodeName(temporary.path()).constData(), 0755), 0);
    ASSERT_EQ(::chmod(QFile::encodeName(in("nr")).constData(), 0555), 0);
    // Root writes everywhere, so open as somebody else.
    const bool isRoot = ::geteuid() == 0;
    ASSERT_TRUE(!isRoot || ::seteuid(65534) == 0);
    const std::unique_ptr<Store> store = Store::open(in("nr"), &error);
    ASSERT_TRUE(!isRoot || ::seteuid(0) == 0);
    EXPECT_EQ(store, nullptr);
    EXPECT_EQ(shownError(), QStringLiteral("nr: cannot be locked for writing: the folder may not be written"));
    ASSERT_EQ(::chmod(QFile::encodeName(in("nr")).constData(), 0755), 0);
}

TEST_F(StoreLockTest, AFolderOnAFullDiskIsRefusedForThat)
{
    std::unique_ptr<Store> store;
    {
        const NoRoom full;
        store = Store::open(in("nr"), &error);
    }
    EXPECT_EQ(store, nullptr);
    EXPECT_EQ(shownError(),
              QStringLiteral("nr: cannot be locked for writing: newsroom.lock cannot be written; is the disk full?"));
    EXPECT_FALSE(QFile::exists(in("nr/newsroom.lock")));
}

#endif
