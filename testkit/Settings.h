#pragma once

/// \file
/// The library's settings for the time of a test.

#include <QString>

#include <QtGlobal>

namespace Quire {
namespace TestKit {

/// Keeps the library's process-wide settings as they are when it is made, and sets them so again when it goes: what a
/// test changes does not reach the next one. Both on the thread of the test, while no other uses the library.
class Settings
{
public:
    Settings();
    ~Settings();

private:
    Q_DISABLE_COPY(Settings)

    bool m_unicode;
    bool m_threading;
    int m_loadIncrement;
    bool m_skipFolderCount;
    long m_searchLimit;
    bool m_lockDebugging;
    bool m_listLockDebugging;
    bool m_zekoMode;
    QString m_localPath;
};

} // namespace TestKit
} // namespace Quire
