#pragma once

#include <quire/story/Story.h>

namespace Quire {

/// What the tests look at inside a story.
struct StoryProbe
{
    static Orvex::IStory2Ptr getStory(Story &story, const QString &path, StoryID *id)
    {
        return story.GetStory(path, id);
    }
    static void getSection(const Orvex::IStory2Ptr &story, int section, QString &text, bool markup)
    {
        Story::GetSection(story, section, text, markup);
    }
    static QString headerStoryID(const Orvex::IStory2Ptr &story) { return Story::GetHeaderStoryID(story); }
    static void initialHeaderInfo(const QString &header, QString *headerStoryId, int *readRate, QString *keyLock)
    {
        Story::GetInitialHeaderInfo(header, headerStoryId, readRate, keyLock);
    }
    static void initItem(Item &item, const Orvex::IStory2Ptr &story) { Story::InitStoryItem(item, story); }
    static void initHeader(Item &item, QString header) { Story::InitStoryHeaderAttributes(item, header); }
    static void initFields(Item &item, QString fields) { Story::InitStoryFieldAttributes(item, fields); }
    static void getFormName(Story &story, QString &name) { story.GetFormName(name); }

    static IDispatchPtr &handle(Story &story) { return story.m_handle; }
    static QString headerStoryId(const Story &story) { return story.m_headerStoryId; }
    static QString queuePath(const Story &story) { return story.m_queuePath; }
    static QString keyLock(const Story &story) { return story.m_keyLock; }
    static void setFormName(Story &story, const QString &name) { story.m_formName = name; }
    static void setLastError(Story &story, HRESULT result) { story.m_lastError = result; }
};

} // namespace Quire
