#pragma once

#include <QString>
#include <QTemporaryDir>

/// A temporary folder with the server's DLL in it, as a vendor would have installed it.
class ServerFolder
{
public:
    /// \a name is that of the folder itself; \a dll the file that becomes the server's DLL there.
    explicit ServerFolder(const QString &name = QStringLiteral("server"), const QString &dll = QString());

    /// Takes the registration out and lets the DLL go, so that the folder can be removed.
    ~ServerFolder();

    ServerFolder(const ServerFolder &) = delete;
    ServerFolder &operator=(const ServerFolder &) = delete;

    QString path() const { return m_path; }
    QString dll() const;

    /// Calls one of the DLL's entry points that take nothing.
    long call(const char *entryPoint) const;

private:
    QTemporaryDir m_root;
    QString m_path;
};
