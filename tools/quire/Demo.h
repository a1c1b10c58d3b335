#pragma once

#include <memory>

#include <QJsonArray>

#include <quire/tree/Queue.h>

#include "Notices.h"
#include "Options.h"
#include "Session.h"

namespace Tool {

/// The steps of the demonstration, in order. Each does something with the session, checks that it really happened, and
/// tells of it; a step that did not do what it says raises Failure.
class Demo
{
public:
    Demo(Session &session, Host &host);

    /// Tells the whole story.
    void run();

private:
    void signOn();
    void walk();
    void load();
    void read();
    void edit();
    void noticeEdit(const QString &field, const QString &wanted);
    void search();
    void keepBlob();
    void beRefused();
    void signOff();

    void title(const QString &text);
    void say(const QString &text);
    /// Ends the demonstration unless \a holds.
    void check(bool holds, const QString &expected) const;
    /// Records a finished step for the machine form.
    void done(const char *step, QJsonObject facts);
    StoryEntry firstStoryWithText(TreeEntry &queue, QString &text);

    Session &m_session;
    Host &m_host;
    int m_columns;
    QJsonArray m_steps;
    std::unique_ptr<Notices> m_notices;
    std::unique_ptr<Quire::Queue> m_queue; // loaded, and watched
};

} // namespace Tool
