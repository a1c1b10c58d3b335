#include <gtest/gtest.h>

#include <quire/Quire.h>
#include <quire/XML.h>
#include <quire/testkit/Settings.h>

#include "support/QtPrinting.h"
#include "testkit/FailureCapture.h"

using namespace Quire;

TEST(Settings, AreSetBackWhenTheyGo)
{
    {
        const TestKit::Settings settings;
        QuireCOM::SetUnicode(false);
        Queue::useThreading = false;
        Queue::setLoadIncrement(7);
        Directory::sSkipFolderCount = true;
        Search::SetSearchLimit(3);
        QuireCOMMutex::sMutexDebugging = true;
        ListMutexLocker::sDebugListLocks = true;
        XML::xZEKO_Mode = false;
        LocalStory::setLocalPath(text("elsewhere"));
    }
    EXPECT_TRUE(QuireCOM::IsUnicode());
    EXPECT_TRUE(Queue::useThreading);
    EXPECT_EQ(Queue::getLoadIncrement(), 200);
    EXPECT_FALSE(Directory::sSkipFolderCount);
    EXPECT_EQ(Search::GetSearchLimit(), 500);
    EXPECT_FALSE(QuireCOMMutex::sMutexDebugging);
    EXPECT_FALSE(ListMutexLocker::sDebugListLocks);
    EXPECT_TRUE(XML::xZEKO_Mode);
    EXPECT_EQ(LocalStory::getLocalPath(), QString());
}
