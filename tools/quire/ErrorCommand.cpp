#include "ErrorCommand.h"

#include <quire/session/ErrorString.h>

#include "Failure.h"
#include "Output.h"
#include "Words.h"

namespace Tool {

void ErrorCommand::declare(CLI::App &app, Action &chosen)
{
    CLI::App *verb = addVerb(app, "error", "Say what a server's error code means",
                             "  quire error 0x80040405\n"
                             "  quire error -2147024809 --login",
                             chosen, [this](Host &host) { run(host); });
    addText(*verb, "CODE", m_code, "Decimal, signed or not, or 0x...")->required();
    verb->add_flag("--login", m_login, "The code came from signing on");
}

void ErrorCommand::run(Host &host) const
{
    const std::optional<qint32> code = parseCode(m_code);
    if (!code)
        throw Failure(ExitCode::Usage,
                      QStringLiteral("\"%1\" is no 32-bit number; write it as 0x80040405 or -2147220475").arg(m_code));
    const QString message = Quire::getErrorString(*code, m_login);
    if (message.isEmpty())
        throw Failure(ExitCode::NotFound, QStringLiteral("there is no message for %1").arg(hexCode(*code)));
    if (!host.options.json)
        return host.output.line(message);
    host.output.json({{QStringLiteral("code"), *code},
                      {QStringLiteral("hex"), hexCode(*code)},
                      {QStringLiteral("login"), m_login},
                      {QStringLiteral("message"), message}});
}

} // namespace Tool
