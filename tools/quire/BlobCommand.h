#pragma once

#include "Blobs.h"
#include "Command.h"

namespace Tool {

/// `quire blob put|get|rm`: bytes that the server keeps under a name, or for the user (`--mine`).
class BlobCommand : public Command
{
public:
    void declare(CLI::App &app, Action &chosen) override;

private:
    /// What the arguments name, once it is known whether the first of them is a name.
    struct Target
    {
        BlobName blob;
        QString file;
    };

    Target target(bool needsFile) const;
    void put(Host &host) const;
    void get(Host &host) const;
    void remove(Host &host) const;

    QString m_first;
    QString m_second;
    bool m_mine = false;
};

} // namespace Tool
