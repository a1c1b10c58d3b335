#include <quire/story/Story.h>

#include "FormFields.h"
#include "HeaderMarkup.h"
#include "Sections.h"
#include "StoryLookup.h"
#include <quire/forms/AttributeCodec.h>
#include <quire/forms/FormCache.h>
#include <quire/platform/Bstr.h>
#include <quire/session/Dispatch2.h>
#include <quire/session/QuireCOM.h>
#include <quire/session/QuireCOMMutex.h>
#include <quire/tree/Item.h>

// Making a story, finding it on the server, and its fields.

namespace Quire {

namespace {

qint32 systemReadRate()
{
    QuireCOM *const session = QuireCOM::TheQuireCOM;
    return session ? static_cast<qint32>(session->GetSysReadRate() / 10) : defaultReadRate;
}

} // namespace

// ---- making one -----------------------------------------------------------------------------------------------------

Story::Story()
    : m_id{0, 0, 0}
    , m_readRate(systemReadRate())
    , m_loaded(false)
    , m_confirmEdit(false)
    , m_lastError(S_OK)
{}

Story::Story(const QString &queuePath, const StoryID *id)
    : Story()
{
    m_queuePath = queuePath; // NOLINT(cppcoreguidelines-prefer-member-initializer): it delegates
    m_id = *id;              // NOLINT(cppcoreguidelines-prefer-member-initializer): it delegates
    Orvex::IStory2Ptr story;
    {
        const QuireCOMMutex lock("Orvex GetStory");
        story = GetStory(m_queuePath, &m_id);
    }
    if (!story)
        return;
    m_loaded = true;
    int readRate = 0;
    GetHeaderInfo(story, &m_headerStoryId, &readRate, &m_keyLock);
    m_readRate = readRate;
    Story::GetFormName(m_formName);
}

Story::Story(const Story &other) = default;
Story &Story::operator=(const Story &other) = default;
Story::~Story() = default;

Orvex::IStory2Ptr Story::GetStory(const QString &path, StoryID *id)
{
    if (!m_handle)
        m_handle = lookupStory(path, id);
    try {
        return Dispatch2Story(m_handle);
    } catch (const _com_error &) {
        return {};
    }
}

Orvex::IStory2Ptr Story::GetStory(const QString &path, StoryID id, int index, bool *notFound)
{
    return lookupStoryAt(path, id, index, notFound);
}

// ---- what is known here ---------------------------------------------------------------------------------------------

bool Story::GetID(StoryID *out)
{
    if (!out)
        return false;
    *out = m_id;
    return true;
}

SID_Diff_t Story::CmpStoryID(StoryID *a, StoryID *b)
{
    return Quire::CmpStoryID(a, b);
}

void Story::GetIDStr(QString &out, bool full)
{
    out = StoryID2String(m_id, full);
}

int Story::GetReadRate() const
{
    return m_readRate;
}

void Story::SetReadRate(int rate)
{
    m_readRate = rate;
}

bool Story::GetConfirmEdit() const
{
    return m_confirmEdit;
}

void Story::SetConfirmEdit(bool confirm)
{
    m_confirmEdit = confirm;
}

bool Story::HasKeylock() const
{
    return !m_keyLock.isEmpty();
}

bool Story::IsLoaded() const
{
    return m_loaded;
}

long Story::GetError() const
{
    return m_lastError;
}

QString Story::FormName() const
{
    return m_formName;
}

// ---- fields ---------------------------------------------------------------------------------------------------------

namespace {

/// Reads a field as it is shown into \a value, which is empty on failure and without a story.
HRESULT readField(const Orvex::IStory2Ptr &story, const QString &name, QString &value)
{
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): name and value may be the same string
    const QString asked = name;
    value = QString();
    if (!story)
        return S_OK;
    Platform::Bstr text;
    const HRESULT result = story->get_Field(Platform::Bstr(asked).get(), text.out());
    if (SUCCEEDED(result) && text) {
        value = text.toString();
        DecodeAttribute(asked, value);
    }
    return result;
}

} // namespace

void Story::GetField(const QString &name, QString &value)
{
    m_lastError = S_OK;
    const QuireCOMMutex lock("Story::GetField");
    m_lastError = readField(GetStory(m_queuePath, &m_id), name, value);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): a reference of its own while the call lasts
void Story::GetField(Orvex::IStory2Ptr story, const QString &name, QString &value)
{
    const QuireCOMMutex lock("Story::GetField");
    readField(story, name, value);
}

void Story::SetField(const QString &name, const QString &value)
{
    m_lastError = S_OK;
    const QuireCOMMutex lock("Story::SetField");
    const Orvex::IStory2Ptr story = GetStory(m_queuePath, &m_id);
    if (!story)
        return;
    QString stored = value;
    EncodeAttribute(name, stored);
    m_lastError = story->put_Field(Platform::Bstr(name).get(), Platform::Bstr(stored).get());
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): a reference of its own while the call lasts
std::vector<Attribute> Story::GetStoryFields(Orvex::IStory2Ptr story)
{
    QString text;
    GetSection(story, Section::Fields, text, true);
    Item item(QString(), Item_Story);
    InitStoryFieldAttributes(item, text);
    return item.attributes;
}

// ---- the form -------------------------------------------------------------------------------------------------------

void Story::GetFormName(QString &out)
{
    m_lastError = S_OK;
    const QuireCOMMutex lock("Story::GetFormName");
    out = QString();
    const Orvex::IStory2Ptr story = GetStory(m_queuePath, &m_id);
    if (!story)
        return;
    Platform::Bstr text;
    m_lastError = story->get_FormName(text.out());
    if (SUCCEEDED(m_lastError) && text)
        out = text.toString();
}

Field *Story::FindField(const QString &name)
{
    return findFormField(FormCache::getForm(m_formName), name);
}

void Story::GetAllFieldNames(std::vector<Attribute> &out)
{
    out.clear(); // also when the server raises
    out = formAttributes(FormCache::getForm(m_formName));
}

void Story::GetFieldValues(std::vector<Attribute> &inOut)
{
    for (Attribute &wanted : inOut) {
        const Field *const field = FindField(wanted.name);
        if (field)
            wanted.value = field->m_Label;
    }
}

} // namespace Quire
