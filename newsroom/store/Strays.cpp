#include "Strays.h"

#include <QDir>
#include <QDirIterator>
#include <QSet>

#include "FolderLayout.h"

namespace Newsroom {

namespace {

/// By their names without regard to letter case: two that differ only by that are one file on Windows.
class KnownFiles
{
public:
    explicit KnownFiles(const FolderLayout &layout)
        : m_layout(layout)
    {}

    void add(const QString &file) { m_files.insert(file.toCaseFolded()); }
    bool contains(const QString &file) const { return m_files.contains(file.toCaseFolded()); }

    void addForms(const Model &model)
    {
        const QVector<Form> forms = model.forms();
        for (const Form &form : forms)
            add(m_layout.formFile(form.name));
    }

    void addTree(const Model &model)
    {
        QVector<Entry> waiting{model.entry(QString()).value};
        while (!waiting.isEmpty()) {
            const Entry entry = waiting.takeLast();
            if (entry.isQueue()) {
                addQueue(model, entry);
            } else {
                add(FolderLayout::directoryFile(m_layout.entryFolder(entry.path)));
                waiting += model.children(entry.path).value;
            }
        }
    }

private:
    void addQueue(const Model &model, const Entry &queue)
    {
        const QString folder = m_layout.entryFolder(queue.path);
        add(FolderLayout::queueFile(folder));
        const QVector<StoryPointer> stories = model.stories(queue.number()).value;
        for (const StoryPointer &story : stories)
            add(FolderLayout::storyFile(folder, story->id().part1));
    }

    const FolderLayout &m_layout;
    QSet<QString> m_files;
};

} // namespace

QStringList findStrays(const QString &root, const Model &model)
{
    const FolderLayout layout(root);
    KnownFiles known(layout);
    known.addForms(model);
    known.addTree(model);
    QStringList strays;
    for (const QString &folder : {layout.formsFolder(), layout.entryFolder(QString())}) {
        QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString file = files.next();
            if (!known.contains(file))
                strays.append(file.mid(layout.root().size() + 1));
        }
    }
    strays.sort();
    return strays;
}

} // namespace Newsroom
