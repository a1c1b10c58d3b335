#include "DemoCommand.h"

#include "Demo.h"
#include "Failure.h"

namespace Tool {

void DemoCommand::declare(CLI::App &app, Action &chosen)
{
    addVerb(app, "demo", "Tell the story of a session on the sample",
            "  quire demo\n"
            "  quire demo --json",
            chosen, run);
}

void DemoCommand::run(Host &host)
{
    if (!host.options.newsroom.isNull())
        throw Failure(ExitCode::Usage, QStringLiteral("demo uses the built-in sample only; leave --newsroom out"));
    Options options = host.options;
    options.builtIn = true;
    Session session(options);
    Demo(session, host).run();
}

} // namespace Tool
