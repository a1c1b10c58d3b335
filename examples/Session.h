#pragma once

#include <cstdio>

#include <quire/Quire.h>
#include <quire/newsroom/Newsroom.h>
#include <quire/platform/Apartment.h>

/// What the examples but the first have around them: a session on the built-in newsroom, signed on as its journalist.
/// sign_on.cpp shows how that comes about, and what is there in its place for a real server.
///
/// Runs \a body with the newsroom's server; the exit code of the program is 1 when the server refuses anything.
template<typename Body>
int withSession(const Body &body)
{
    const Platform::Apartment apartment;
    Newsroom::Server server(Newsroom::sampleModel());
    const Newsroom::Registration registration = server.registerClass();
    Quire::Queue::useThreading = false; // queues load at once: an example has nothing to do meanwhile
    int code = 0;
    try {
        const long result = Quire::QuireCOM::GetQuireCOM(false)->Connect(QString(), "journalist", "news", 0);
        if (result < 0)
            _com_issue_error(static_cast<HRESULT>(result));
        body(server);
    } catch (const _com_error &error) {
        std::fprintf(stderr, "%s\n", qPrintable(Quire::getErrorString(error.Error(), true)));
        code = 1;
    }
    Quire::NotificationRelease();
    Quire::QuireCOM::UnloadCOM();
    return code;
}

/// Prints a line.
inline void print(const QString &line)
{
    std::puts(line.toUtf8().constData());
}
