#include <quire/story/Story.h>

#include "HeaderMarkup.h"
#include "Sections.h"
#include "StoryLookup.h"
#include <quire/session/QuireCOMMutex.h>

// What the header says, and the identifier of a server's story.

namespace Quire {

// NOLINTNEXTLINE(performance-unnecessary-value-param): a reference of its own while the call lasts
void Story::GetHeaderInfo(Orvex::IStory2Ptr story, QString *headerStoryId, int *readRate, QString *keyLock)
{
    if (readRate)
        *readRate = defaultReadRate;
    if (headerStoryId)
        *headerStoryId = QString();
    if (keyLock)
        *keyLock = QString();
    if (!story)
        return;
    QString text;
    GetSection(story, Section::Head, text, true);
    if (!text.isEmpty())
        GetInitialHeaderInfo(text, headerStoryId, readRate, keyLock);
    else if (keyLock)
        *keyLock = QStringLiteral("lock");
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): hosts are built for this form
void Story::GetInitialHeaderInfo(QString headerText, QString *headerStoryId, int *readRate, QString *keyLock)
{
    const HeaderMarkup header(headerText);
    if (headerStoryId && header.hasStoryID())
        *headerStoryId = header.storyID();
    if (!header.hasMeta())
        return;
    const QString rate = header.meta(QStringLiteral("rate"));
    if (readRate && !rate.isEmpty())
        *readRate = rate.toInt() / 10;
    if (keyLock)
        *keyLock = header.meta(QStringLiteral("locked"));
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): a reference of its own while the call lasts
bool Story::GetHeaderMetaValue(Orvex::IStory2Ptr story, const QString &name, QString &value)
{
    QString text;
    GetSection(story, Section::Head, text, true);
    if (text.isEmpty())
        return false;
    const HeaderMarkup header(text);
    if (header.hasMeta())
        value = header.meta(name);
    return true;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): a reference of its own while the call lasts
QString Story::GetHeaderStoryID(Orvex::IStory2Ptr story)
{
    QString text;
    GetSection(story, Section::Head, text, true);
    return HeaderMarkup(text).storyID();
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): a reference of its own while the call lasts
void Story::GetStoryID(Orvex::IStory2Ptr story, StoryID &id)
{
    const QuireCOMMutex lock("static::GetStoryID");
    if (story)
        readStoryID(story, &id);
}

} // namespace Quire
