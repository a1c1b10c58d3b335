#include "FileStory.h"

#include <QFile>

#include "BodyText.h"
#include "Failure.h"
#include "Files.h"
#include "SectionName.h"

namespace Tool {

namespace {

[[noreturn]] void fail(const QString &message)
{
    throw Failure(ExitCode::Failed, message);
}

/// The path of a file that can be read.
QString readable(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        fail(QStringLiteral("cannot read %1: %2").arg(path, file.errorString()));
    return path;
}

/// A file may spell its elements with the prefix, whatever was put.
QString withoutPrefix(QString markup)
{
    markup.replace(QLatin1String("<zeko:"), QLatin1String("<"));
    return markup.replace(QLatin1String("</zeko:"), QLatin1String("</"));
}

} // namespace

FileStory::FileStory(const QString &path)
    : m_path(path)
    , m_story(readable(path))
{
    if (section(StorySection::Head, true).isEmpty() && section(StorySection::Fields, true).isEmpty() &&
        section(StorySection::Body, true).isEmpty())
        fail(QStringLiteral("%1 is no story: it has neither head, fields nor body").arg(path));
}

QString FileStory::section(int number, bool /*markup*/)
{
    QString text;
    m_story.GetSection(number, text, true);
    return text;
}

QString FileStory::text()
{
    return bodyToText(section(StorySection::Body, true));
}

void FileStory::setField(const QString &name, const QString &value)
{
    const QString written = escapeMarkup(value);
    m_story.SetField(name, written);
    QString found;
    m_story.GetField(name, found);
    if (found != written)
        fail(QStringLiteral("cannot set %1 of %2: the file does not write it as <f id=%1>...</f>. Nothing was saved.")
                 .arg(name, m_path));
}

void FileStory::putSection(int number, const QString &markup)
{
    QString text = markup;
    m_story.PutSection(number, text, true);
    if (withoutPrefix(section(number, true)) != withoutPrefix(markup))
        fail(QStringLiteral("cannot change %1: the section would not be found in it again. Nothing was saved.")
                 .arg(m_path));
}

void FileStory::save()
{
    m_story.Save(true);
    if (readText(m_path) != section(StorySection::Whole, true))
        fail(QStringLiteral("cannot save %1: it was not written").arg(m_path));
}

} // namespace Tool
