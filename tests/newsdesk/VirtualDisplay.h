#pragma once

#include <QProcess>

/// A screen that nobody sees, of this program's own: an X server on a display number that is free. Programs started and
/// windows opened while it lives use it. It ends with this object, and by itself when its last window has gone.
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
    QProcess m_server;
    QString m_error;
};
