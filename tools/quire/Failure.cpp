#include "Failure.h"

namespace Tool {

Failure::Failure(ExitCode code, const QString &message)
    : m_code(code)
    , m_message(message.simplified())
    , m_what(m_message.toUtf8())
{}

} // namespace Tool
