#include <quire/testkit/Settings.h>

#include <quire/Quire.h>
#include <quire/XML.h>

namespace Quire {
namespace TestKit {

Settings::Settings()
    : m_unicode(QuireCOM::IsUnicode())
    , m_threading(Queue::useThreading)
    , m_loadIncrement(Queue::getLoadIncrement())
    , m_skipFolderCount(Directory::sSkipFolderCount)
    , m_searchLimit(Search::GetSearchLimit())
    , m_lockDebugging(QuireCOMMutex::sMutexDebugging)
    , m_listLockDebugging(ListMutexLocker::sDebugListLocks)
    , m_zekoMode(XML::xZEKO_Mode)
    , m_localPath(LocalStory::getLocalPath())
{}

Settings::~Settings()
{
    QuireCOM::SetUnicode(m_unicode);
    Queue::useThreading = m_threading;
    Queue::setLoadIncrement(m_loadIncrement);
    Directory::sSkipFolderCount = m_skipFolderCount;
    Search::SetSearchLimit(m_searchLimit);
    QuireCOMMutex::sMutexDebugging = m_lockDebugging;
    ListMutexLocker::sDebugListLocks = m_listLockDebugging;
    XML::xZEKO_Mode = m_zekoMode;
    LocalStory::setLocalPath(m_localPath);
}

} // namespace TestKit
} // namespace Quire
