#pragma once

#include <memory>

#include <quire/newsroom/Newsroom.h>

#include "Options.h"

namespace Desk {

/// The server behind the sign-on class: a newsroom folder, the built-in sample, a newsroom made up by rule, or the one
/// that is registered on this machine. The class leads there while this lives. Belongs to one thread, which has joined
/// the automation library.
class NewsServer
{
public:
    /// Picks the server as the options say; error() tells what did not work.
    explicit NewsServer(const Options &options);

    /// Why there is no server, in words; empty when there is one.
    QString error() const { return m_error; }
    /// For people: "built-in newsroom", the folder's name, "registered server".
    QString name() const { return m_name; }
    /// The built-in server, null for a registered one. Any thread may use it while this lives.
    Newsroom::Server *server() const { return m_server.get(); }
    /// Whom to sign on when nobody was named.
    Newsroom::User firstUser() const;

private:
    void serve(const std::shared_ptr<Newsroom::Model> &model);

    std::unique_ptr<Newsroom::Store> m_store; // of a folder, whose changes it writes
    std::unique_ptr<Newsroom::Server> m_server;
    Newsroom::Registration m_registration;
    QString m_error;
    QString m_name;
};

} // namespace Desk
