#pragma once

#include "Command.h"
#include "TreeSummary.h"

namespace Tool {

/// `quire tree [PATH]`: the directories and queues from a path on, drawn as a tree.
class TreeCommand : public Command
{
public:
    void declare(CLI::App &app, Action &chosen) override;

private:
    void run(Host &host) const;
    void draw(Host &host, const TreeEntry &root) const;
    void list(Host &host, const TreeEntry &root) const;

    QString m_path;
    TreeView m_view;
};

} // namespace Tool
