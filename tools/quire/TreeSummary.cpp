#include "TreeSummary.h"

#include "TreeDrawing.h"
#include "TreeWalk.h"
#include "Words.h"

namespace Tool {

namespace {

QStringList details(const TreeEntry &entry, bool withFlags)
{
    QStringList texts;
    // Both nouns are equally long, so that the numbers stand below each other.
    texts += entry.isQueue() ? counted(entry.count, QStringLiteral("story  "), QStringLiteral("stories")) : QString();
    texts += entry.form;
    if (withFlags)
        texts += flagNumbers(entry.flags);
    texts += flagWords(entry.flags, entry.isQueue()).join(QStringLiteral(", "));
    return texts;
}

void drawStories(const TreeEntry &queue, std::vector<bool> branch, TreeDrawing &drawing)
{
    branch.push_back(false);
    for (qint32 position = 0; position < queue.count; ++position) {
        const StoryEntry story = readStory(queue, position);
        branch.back() = position + 1 == queue.count;
        drawing.add(branch, story.name, {}, QStringLiteral("%1  ").arg(story.id.part1));
    }
}

void count(const TreeEntry &entry, TreeSummary &summary)
{
    if (entry.isDirectory())
        ++summary.directories;
    if (!entry.isQueue())
        return;
    ++summary.queues;
    summary.stories += entry.count;
}

} // namespace

QString TreeSummary::totals() const
{
    return QStringLiteral("%1, %2, %3")
        .arg(counted(directories, QStringLiteral("directory"), QStringLiteral("directories")),
             counted(queues, QStringLiteral("queue"), QStringLiteral("queues")),
             counted(stories, QStringLiteral("story"), QStringLiteral("stories")));
}

TreeSummary summarize(const TreeEntry &root, const TreeView &view, int columns)
{
    TreeSummary summary;
    TreeDrawing drawing;
    TreeWalk walk(root, view.levels);
    while (walk.next()) {
        const TreeEntry &entry = walk.entry();
        const std::vector<bool> branch = walk.lastOfLevels();
        drawing.add(branch, walk.depth() == 0 ? entry.path : entry.name(), details(entry, view.flags));
        if (view.stories && entry.isQueue())
            drawStories(entry, branch, drawing);
        if (walk.depth() > 0 || entry.isQueue())
            count(entry, summary);
    }
    summary.lines = drawing.lines(columns);
    return summary;
}

} // namespace Tool
