#include <quire/story/Story.h>

#include "SectionPattern.h"
#include <quire/platform/Bstr.h>
#include <quire/session/QuireCOMMutex.h>

// Sections: on the server, and within a text.

namespace Quire {

namespace {

HRESULT readSection(const Orvex::IStory2Ptr &story, int section, bool markup, BSTR *text)
{
    return markup ? story->get_SectionXml(section, text) : story->get_Section(section, text);
}

HRESULT writeSection(const Orvex::IStory2Ptr &story, int section, bool markup, BSTR text)
{
    return markup ? story->put_SectionXml(section, text) : story->put_Section(section, text);
}

} // namespace

void Story::GetSection(int section, QString &text, bool markup)
{
    m_lastError = S_OK;
    const QuireCOMMutex lock("Story::GetSection");
    text = QString();
    const Orvex::IStory2Ptr story = GetStory(m_queuePath, &m_id);
    if (!story || section == 0)
        return;
    m_lastError = -1;
    Platform::Bstr answer;
    try {
        m_lastError = readSection(story, section, markup, answer.out());
    } catch (const _com_error &) {
        return; // a section that cannot be read is shown as empty, with the last error at -1
    }
    if (SUCCEEDED(m_lastError) && answer)
        text = answer.toString();
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): a reference of its own while the call lasts
void Story::GetSection(Orvex::IStory2Ptr story, int section, QString &text, bool markup)
{
    const QuireCOMMutex lock("static::GetSection");
    text = QString();
    if (!story)
        return;
    Platform::Bstr answer;
    if (SUCCEEDED(readSection(story, section, markup, answer.out())))
        text = answer.toString();
}

bool Story::PutSection(int section, QString &text, bool markup)
{
    m_lastError = S_OK;
    const QuireCOMMutex lock("Story::PutSection");
    const Orvex::IStory2Ptr story = GetStory(m_queuePath, &m_id);
    if (!story || section == 0)
        return false;
    m_lastError = -1;
    m_lastError = writeSection(story, section, markup, Platform::Bstr(text).get());
    return SUCCEEDED(m_lastError);
}

// ---- within a text --------------------------------------------------------------------------------------------------

// NOLINTNEXTLINE(performance-unnecessary-value-param): hosts are built for this form
bool Story::GetTextSectionPos(QString &text, QString tag, int &start, int &end)
{
    return SectionPattern(tag).find(text, &start, &end);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): hosts are built for this form
QString Story::ExtractTextSection(QString &text, QString tag)
{
    return SectionPattern(tag).extract(text);
}

} // namespace Quire
