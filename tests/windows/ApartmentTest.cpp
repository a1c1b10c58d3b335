// Host threads in a single-threaded and in the multi-threaded apartment.

#include <QThread>

#include <functional>
#include <memory>

#include <gtest/gtest.h>

#include <quire/Quire.h>
#include <quire/platform/Bstr.h>

#include "windows/ServerFolder.h"
#include "windows/Walk.h"

using Quire::QuireCOM;

namespace {

/// A host's whole life on a thread of that apartment: sign on, walk, read, sign off.
bool livesIn(COINIT apartment)
{
    bool read = false;
    const std::unique_ptr<QThread> thread(QThread::create([apartment, &read] {
        if (FAILED(CoInitializeEx(nullptr, apartment)))
            return;
        QuireCOM *session = QuireCOM::GetQuireCOM(true);
        session->Connect(QString(), QStringLiteral("journalist"), QStringLiteral("news"), 0);
        if (session->IsConnected()) {
            const Orvex::IStory2Ptr story = storyAt(firstQueueWithStories(), 0);
            Platform::Bstr text;
            read = story && story->get_SectionXml(8, text.out()) == S_OK && !text.toString().isEmpty();
        }
        QuireCOM::UnloadCOM();
        CoUninitialize();
    }));
    thread->start();
    thread->wait();
    return read;
}

} // namespace

TEST(Apartment, SingleThreadedServesAHost)
{
    const ServerFolder folder;
    ASSERT_TRUE(QuireCOM::registerCOM(folder.path()));
    EXPECT_TRUE(livesIn(COINIT_APARTMENTTHREADED));
}

TEST(Apartment, MultiThreadedServesAHost)
{
    const ServerFolder folder;
    ASSERT_TRUE(QuireCOM::registerCOM(folder.path()));
    EXPECT_TRUE(livesIn(COINIT_MULTITHREADED));
}

TEST(Apartment, WorkerInTheMultiThreadedOneUsesTheSessionOfASingleThreadedHost)
{
    const ServerFolder folder;
    ASSERT_TRUE(QuireCOM::registerCOM(folder.path()));
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    QuireCOM *session = QuireCOM::GetQuireCOM(true);
    ASSERT_EQ(session->Connect(QString(), QStringLiteral("journalist"), QStringLiteral("news"), 0), S_OK);

    QString found;
    const std::unique_ptr<QThread> worker(QThread::create([&found] {
        CoInitializeEx(nullptr, COINIT_MULTITHREADED);
        found = firstQueueWithStories();
        CoUninitialize();
    }));
    worker->start();
    worker->wait();
    EXPECT_FALSE(found.isEmpty());

    QuireCOM::UnloadCOM();
    CoFreeUnusedLibrariesEx(0, 0);
    CoUninitialize();
}
