#include "CapturedOutput.h"

#include <cstdio>

#ifdef Q_OS_WIN
#include <io.h>
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace ToolFuzz {

#ifdef Q_OS_WIN

CapturedOutput::CapturedOutput()
    : m_former(GetStdHandle(STD_OUTPUT_HANDLE))
{
    if (m_file.open())
        SetStdHandle(STD_OUTPUT_HANDLE, reinterpret_cast<HANDLE>(_get_osfhandle(m_file.handle())));
}

CapturedOutput::~CapturedOutput()
{
    SetStdHandle(STD_OUTPUT_HANDLE, m_former);
}

#else

CapturedOutput::CapturedOutput()
    : m_former(dup(STDOUT_FILENO))
{
    std::fflush(stdout);
    if (m_file.open())
        dup2(m_file.handle(), STDOUT_FILENO);
}

CapturedOutput::~CapturedOutput()
{
    dup2(m_former, STDOUT_FILENO);
    close(m_former);
}

#endif

QString CapturedOutput::text()
{
    m_file.seek(0);
    return QString::fromUtf8(m_file.readAll());
}

} // namespace ToolFuzz
