#include "ServerObjects.h"

#include <quire/platform/Bstr.h>
#include <quire/platform/Variant.h>
#include <quire/session/Dispatch2.h>
#include <quire/session/QuireCOMMutex.h>

#include "Failure.h"
#include "Words.h"

namespace Tool {

namespace {

// The bits of the flag words that have a meaning for people.
constexpr qint32 invertedFlag = 1 << 0;    // word 1
constexpr qint32 lockedFlag = 1 << 1;      // word 1
constexpr qint32 confirmEditFlag = 1 << 6; // word 1
constexpr qint32 sortedFlag = 1 << 7;      // word 2
constexpr qint32 liveFlag = 1 << 0;        // word 3
constexpr qint32 lockedEFlag = 1 << 2;     // word 3
constexpr qint32 indexedFlag = 1 << 6;     // word 3

void require(HRESULT result, const QString &what)
{
    if (FAILED(result))
        throw Failure(ExitCode::Failed, QStringLiteral("cannot read %1: %2").arg(what, reason(result, false)));
}

QString positionText(const TreeEntry &entry, qint32 position)
{
    return QStringLiteral("entry %1 of %2").arg(QString::number(position + 1), entry.path);
}

/// What directories and queues have in common.
template<class Object>
void readCommon(Object &object, TreeEntry &entry)
{
    Platform::Bstr name;
    require(object->get_Name(name.out()), QStringLiteral("a name"));
    entry.path = name.toString();
    LONG count = 0;
    require(object->get_Count(&count), entry.path);
    entry.count = count;
    LONG words[3] = {0, 0, 0};
    require(object->get_Flags(&words[0], &words[1], &words[2]), entry.path);
    entry.flags = {words[0], words[1], words[2]};
}

void readQueue(TreeEntry &entry)
{
    readCommon(entry.queue, entry);
    Platform::Bstr form;
    require(entry.queue->get_FormName(form.out()), entry.path);
    entry.form = form.toString();
    Orvex::QueueIdentifier id{};
    require(entry.queue->get_QueueID(&id), entry.path);
    entry.number = id.number;
}

} // namespace

QStringList flagWords(const EntryFlags &flags, bool isQueue)
{
    QStringList words;
    if (flags.word3 & indexedFlag)
        words += QStringLiteral("indexed");
    if (flags.word1 & lockedFlag)
        words += (flags.word3 & lockedEFlag) ? QStringLiteral("locked E") : QStringLiteral("locked");
    if (flags.word1 & confirmEditFlag)
        words += QStringLiteral("confirm edit");
    if (flags.word1 & invertedFlag)
        words += QStringLiteral("inverted");
    if (flags.word2 & sortedFlag)
        words += QStringLiteral("sorted");
    if (isQueue && (flags.word3 & liveFlag))
        words += QStringLiteral("live");
    return words;
}

QString flagNumbers(const EntryFlags &flags)
{
    const auto hex = [](qint32 word) {
        return QStringLiteral("%1").arg(static_cast<quint32>(word), 8, 16, QLatin1Char('0'));
    };
    return hex(flags.word1) + QLatin1Char(' ') + hex(flags.word2) + QLatin1Char(' ') + hex(flags.word3);
}

QString TreeEntry::name() const
{
    return path == QLatin1String(".") ? path : path.mid(path.lastIndexOf(QLatin1Char('.')) + 1);
}

QString TreeEntry::kind() const
{
    if (isDirectory())
        return QStringLiteral("directory");
    return isQueue() ? QStringLiteral("queue") : QStringLiteral("unknown");
}

TreeEntry readEntry(const IDispatchPtr &handle)
{
    const Quire::QuireCOMMutex lock("quire::readEntry");
    TreeEntry entry;
    entry.directory = Quire::Dispatch2Dir(handle);
    if (entry.isDirectory()) {
        readCommon(entry.directory, entry);
        return entry;
    }
    entry.queue = Quire::Dispatch2Queue(handle);
    if (entry.isQueue())
        readQueue(entry);
    return entry;
}

TreeEntry readChild(const TreeEntry &directory, qint32 position)
{
    const Quire::QuireCOMMutex lock("quire::readChild");
    Platform::Variant item;
    require(directory.directory->get_Item(Platform::Variant(LONG(position)).get(), item.out()),
            positionText(directory, position));
    return readEntry(item.toDispatch());
}

StoryEntry readStory(const TreeEntry &queue, qint32 position)
{
    const Quire::QuireCOMMutex lock("quire::readStory");
    Platform::Variant item;
    const QString where = positionText(queue, position);
    require(queue.queue->get_Item(Platform::Variant(LONG(position)).get(), item.out()), where);
    return readStory(item.toDispatch(), where);
}

StoryEntry readStory(const IDispatchPtr &handle, const QString &where)
{
    const Quire::QuireCOMMutex lock("quire::readStory");
    StoryEntry entry;
    entry.story = Quire::Dispatch2Story(handle);
    if (!entry.story)
        throw Failure(ExitCode::Failed, QStringLiteral("%1 is no story").arg(where));
    Platform::Bstr text;
    require(entry.story->get_StoryUnique(text.out()), where);
    Quire::String2StoryID(text.toString(), &entry.id, 10);
    require(entry.story->get_StoryName(text.out()), where);
    entry.name = text.toString();
    require(entry.story->get_FormName(text.out()), where);
    entry.form = text.toString();
    return entry;
}

} // namespace Tool
