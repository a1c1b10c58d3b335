#include <quire/story/Story.h>

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

namespace {

QString startTag(const QString &tag, bool prefixed)
{
    return QLatin1String(prefixed ? "<zeko:" : "<") + tag; // open, so that it finds the tag with its attributes
}

QString endTag(const QString &tag, bool prefixed)
{
    return QLatin1String(prefixed ? "</zeko:" : "</") + tag + QLatin1Char('>');
}

} // namespace

bool Story::GetTextSectionPos(QString &text, QString tag, int &start, int &end)
{
    end = -1;
    bool prefixed = false;
    start = text.indexOf(startTag(tag, false));
    if (start < 0) {
        start = text.indexOf(startTag(tag, true));
        prefixed = start >= 0;
    }
    // The first end tag of the whole text counts, even one before the start: callers tell by the order of the two.
    if (start >= 0) {
        const QString closing = endTag(tag, prefixed);
        end = text.indexOf(closing) + closing.length();
    }
    return prefixed;
}

QString Story::ExtractTextSection(QString &text, QString tag)
{
    int start = -1;
    int end = -1;
    const bool prefixed = GetTextSectionPos(text, tag, start, end);
    // Without an end tag the end is no place in the text; it may lie behind the start all the same.
    const bool closed = end >= endTag(tag, prefixed).length();
    return start >= 0 && closed && end > start ? text.mid(start, end - start) : QString();
}

} // namespace Quire
