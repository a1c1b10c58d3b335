#include <quire/story/Story.h>

#include <quire/platform/Bstr.h>
#include <quire/session/QuireCOMMutex.h>

// Locking and saving.

namespace Quire {

namespace {

const quint32 codeMask = 0xFFFF;
const quint32 facilityMask = 0x1FFF0000;
const quint32 beingEdited = 1038; // the code of "Story currently being edited."

/// The server says who edits a story in words, of which the second is the name.
QString nameOfHolder(const Platform::Bstr &answer)
{
    return answer ? answer.toString().section(QLatin1Char(' '), 1, 1) : QStringLiteral("unknown");
}

} // namespace

bool Story::Lock(int lockType, QString &holder)
{
    m_lastError = S_OK;
    const QuireCOMMutex lock("Story::Lock");
    holder = QString();
    const Orvex::IStory2Ptr story = GetStory(m_queuePath, &m_id);
    if (!story)
        return false;
    Platform::Bstr answer;
    m_lastError = story->Lock(lockType, answer.out());
    const quint32 result = static_cast<quint32>(m_lastError);
    if ((result & codeMask) == beingEdited) {
        holder = nameOfHolder(answer);
        return false;
    }
    return (result & facilityMask) == 0; // not the sign: servers grant locks with codes that look like failures
}

bool Story::Unlock()
{
    m_lastError = S_OK;
    const QuireCOMMutex lock("Story::Unlock");
    const Orvex::IStory2Ptr story = GetStory(m_queuePath, &m_id);
    if (!story)
        return false;
    m_lastError = story->Unlock();
    return SUCCEEDED(m_lastError);
}

bool Story::IsLocked(int lockType)
{
    m_lastError = S_OK;
    const QuireCOMMutex lock("Story::IsLocked");
    const Orvex::IStory2Ptr story = GetStory(m_queuePath, &m_id);
    if (!story)
        return false;
    VARIANT_BOOL locked = VARIANT_FALSE;
    m_lastError = story->IsLocked(lockType, &locked);
    return locked != VARIANT_FALSE;
}

bool Story::Save(bool flag)
{
    m_lastError = S_OK;
    const QuireCOMMutex lock("Story::Save");
    const Orvex::IStory2Ptr story = GetStory(m_queuePath, &m_id);
    if (!story)
        return false;
    m_lastError = story->Save(flag ? VARIANT_TRUE : VARIANT_FALSE);
    return SUCCEEDED(m_lastError);
}

bool Story::UpdateHeaderID()
{
    const QuireCOMMutex lock("static::HasNewHeaderID");
    const Orvex::IStory2Ptr story = GetStory(m_queuePath, &m_id);
    if (!story)
        return false;
    const QString current = GetHeaderStoryID(story);
    if (current == m_headerStoryId)
        return false;
    m_headerStoryId = current;
    return true;
}

} // namespace Quire
