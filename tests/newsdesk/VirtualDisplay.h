#pragma once

#include <QProcess>

/// A screen that nobody sees, of this program's own: an X server on a display number that is free. Programs started and
/// windows opened while it lives use it. It ends with this object, and by itself when its last window has gone. On
/// Windows, where none can be made, it stands for the screen that is there.
class VirtualDisplay
{
public:
    VirtualDisplay();
    ~VirtualDisplay();
    VirtualDisplay(const VirtualDisplay &) = delete;
    VirtualDisplay &operator=(const VirtualDisplay &) = delete;

    /// Why there is none, in words; empty when it is there.
    QString error() const { return m_error; }

private:
    void startServer();

    QProcess m_server;
    QString m_error;
};
