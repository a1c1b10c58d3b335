#include <quire/newsroom/store/Importer.h>

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSet>

#include <quire/newsroom/store/FileNames.h>
#include <quire/newsroom/store/FileText.h>

#include "FolderWriter.h"

namespace Newsroom {

namespace {

const QString formName = QStringLiteral("IMPORT");
constexpr int mostNames = 10;

/// What the files of one folder are, before they are read.
struct Listing
{
    QStringList folders;
    QStringList files;
};

/// One import.
class Import
{
public:
    Import(const QString &source, const QString &folder, ImportReport *report)
        : m_source(QDir(source).canonicalPath())
        , m_target(QFileInfo(folder).canonicalFilePath())
        , m_writer(folder, FolderWriter::NewFolder)
        , m_report(report)
    {}

    QString error() const { return m_writer.error(); }

    bool run()
    {
        // Deepest last: a directory is written after everything that it names.
        m_waiting.append({QStringLiteral("."), m_source});
        for (int i = 0; i < m_waiting.size(); ++i) {
            if (!importFolder(i))
                return false;
        }
        for (int i = m_directories.size() - 1; i >= 0; --i) {
            if (!m_writer.writeDirectory(m_directories.at(i).entry, m_directories.at(i).names))
                return false;
        }
        return m_writer.writeSystem(system(), {form()});
    }

private:
    struct Waiting
    {
        QString path;   ///< In the newsroom.
        QString folder; ///< On disk.
    };
    struct Written
    {
        Entry entry;
        QStringList names;
    };

    const QString m_source;
    const QString m_target;
    FolderWriter m_writer;
    ImportReport *const m_report;
    QVector<Waiting> m_waiting;
    QVector<Written> m_directories;
    qint32 m_lastStory = 0;
    qint32 m_lastQueue = 0;

    bool importFolder(int index)
    {
        const Waiting folder = m_waiting.at(index);
        const Listing listing = list(folder.folder);
        const bool isRoot = folder.path == QLatin1String(".");
        if (listing.folders.isEmpty() && !listing.files.isEmpty() && !isRoot)
            return importFiles(folder.path, folder.folder, listing.files);
        return importDirectory(folder, listing);
    }

    bool importDirectory(const Waiting &folder, const Listing &listing)
    {
        Written directory;
        directory.entry.path = folder.path;
        QSet<QString> taken;
        for (const QString &name : listing.folders) {
            directory.names.append(freeName(name, &taken));
            m_waiting.append({childPath(folder.path, directory.names.last()), folder.folder + QLatin1Char('/') + name});
        }
        if (!listing.files.isEmpty()) {
            directory.names.append(freeName(QStringLiteral("FILES"), &taken));
            if (!importFiles(childPath(folder.path, directory.names.last()), folder.folder, listing.files))
                return false;
        }
        m_directories.append(directory);
        ++m_report->directories;
        return true;
    }

    /// The entry's name for a file name, apart from the taken ones also where letter case is ignored.
    static QString freeName(const QString &fileName, QSet<QString> *taken)
    {
        int letters = 0;
        QString name = FileNames::component(fileName);
        while (taken->contains(name.toCaseFolded()) && letters < fileName.size())
            name = FileNames::component(fileName, ++letters);
        taken->insert(name.toCaseFolded());
        return name;
    }

    Listing list(const QString &folder)
    {
        Listing listing;
        const QFileInfoList infos = QDir(folder).entryInfoList(
            QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
        if (infos.isEmpty() && !QFileInfo(folder).isReadable())
            countUnreadable(folder);
        for (const QFileInfo &info : infos) {
            if (info.isFile())
                listing.files.append(info.fileName());
            else if (info.isSymLink())
                ++m_report->skippedLinks;
            else if (!info.isDir())
                ++m_report->skippedSpecial;
            else if (info.canonicalFilePath() != m_target)
                listing.folders.append(info.fileName());
        }
        return listing;
    }

    void countUnreadable(const QString &path)
    {
        ++m_report->unreadable;
        if (m_report->unreadableNames.size() < mostNames)
            m_report->unreadableNames.append(QDir::toNativeSeparators(path));
    }

    bool importFiles(const QString &path, const QString &folder, const QStringList &files)
    {
        Entry queue;
        queue.kind = Entry::Queue;
        queue.path = path;
        queue.settings.number = ++m_lastQueue;
        queue.settings.formName = formName;
        QVector<qint32> stories;
        for (const QString &file : files) {
            const StoryPointer story = storyOf(QFileInfo(folder + QLatin1Char('/') + file), queue);
            if (!story)
                continue;
            if (!m_writer.writeStory(*story))
                return false;
            stories.append(story->id().part1);
        }
        ++m_report->queues;
        return m_writer.writeQueue(queue, stories);
    }

    /// The story of one file; null for a file that is counted and left out.
    StoryPointer storyOf(const QFileInfo &info, const Entry &queue)
    {
        if (info.size() > Importer::largestFile) {
            ++m_report->skippedTooLarge;
            return nullptr;
        }
        QByteArray data;
        QString error;
        if (!Files::read(info.filePath(), &data, &error)) {
            countUnreadable(info.filePath());
            return nullptr;
        }
        const FileText file = FileText::of(data, info.fileName());
        if (file.kind == FileText::Compressed || file.kind == FileText::Binary) {
            ++(file.kind == FileText::Compressed ? m_report->skippedCompressed : m_report->skippedBinary);
            return nullptr;
        }
        ++m_report->stories;
        m_report->markupFiles += file.kind == FileText::Markup ? 1 : 0;
        m_report->bytes += data.size();
        return makeStory(info, file.text, queue);
    }

    StoryPointer makeStory(const QFileInfo &info, const QString &body, const Entry &queue)
    {
        Story::Identity identity;
        identity.id = {++m_lastStory, queue.number(), 0};
        identity.formName = formName;
        identity.queueNumber = queue.number();
        identity.queuePath = queue.path;
        const QString changed = QString::number(static_cast<qint32>(info.lastModified().toSecsSinceEpoch()));
        StoryText text;
        text.setField(QStringLiteral("title"), info.fileName());
        text.setField(QStringLiteral("source"), info.filePath().mid(m_source.size() + 1));
        text.setField(QStringLiteral("create-date"), changed);
        text.setField(QStringLiteral("modify-date"), changed);
        text.setField(QStringLiteral("modify-by"), QString());
        text.setPlainBody(body);
        text.setMeta(QStringLiteral("rate"), QString::number(SystemValues().readRate));
        text.setMeta(QStringLiteral("words"), QString::number(text.wordCount()));
        return std::make_shared<Story>(identity, text);
    }

    static NewsroomFile system()
    {
        NewsroomFile file;
        User user;
        user.name = QStringLiteral("journalist");
        user.password = QStringLiteral("news");
        user.fullName = QStringLiteral("Journalist");
        user.number = 1;
        file.users.append(user);
        file.forms.append(formName);
        return file;
    }

    static Form form()
    {
        return {formName,
                QStringLiteral("<zeko:form>\n"
                               "  <zeko:row><zeko:cell idref=title length=240>Title</zeko:cell></zeko:row>\n"
                               "  <zeko:row><zeko:cell idref=source length=240 ro>Source</zeko:cell></zeko:row>\n"
                               "  <zeko:row><zeko:cell idref=create-date length=80 ro>Created</zeko:cell>"
                               "<zeko:cell idref=modify-date length=80 ro>Modified</zeko:cell>"
                               "<zeko:cell idref=modify-by length=80 ro>By</zeko:cell></zeko:row>\n"
                               "</zeko:form>\n")};
    }
};

} // namespace

bool Importer::import(const QString &source, const QString &folder, ImportReport *report, QString *error)
{
    *report = ImportReport();
    const auto fail = [error](const QString &path, const QString &why) {
        *error = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), why);
        return false;
    };
    if (!Files::isNamed(source, error))
        return false;
    if (!QFileInfo(source).isDir())
        return fail(source, QStringLiteral("is no folder"));
    if (!QFileInfo(source).isReadable())
        return fail(source, QStringLiteral("cannot be read"));
    if (!Files::isFree(folder, error))
        return false;
    if (!QDir().mkpath(folder))
        return fail(folder, QStringLiteral("the folder cannot be made"));
    Import import(source, folder, report);
    if (import.run())
        return true;
    *error = import.error();
    return false;
}

} // namespace Newsroom
