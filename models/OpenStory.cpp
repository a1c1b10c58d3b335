#include "OpenStory.h"

#include "ServerReading.h"
#include "ServerThread.h"
#include "StoryCells.h"
#include <quire/forms/FormCache.h>
#include <quire/session/Dispatch2.h>
#include <quire/session/QuireCOM.h>
#include <quire/session/QuireCOMMutex.h>

namespace Quire {

namespace {

const int bodySection = 8;
const QLatin1String totalTimeField("total-time");

} // namespace

OpenStory::OpenStory(const QString &queuePath, const StoryID &id)
{
    m_queuePath = queuePath;
    m_id = id;
    find();
    GetFormName(m_formName);
}

void OpenStory::find()
{
    QuireCOM *const session = QuireCOM::TheQuireCOM;
    m_handle = session ? session->GetStoryDirect(m_queuePath, &m_id) : IDispatchPtr();
    const QuireCOMMutex lock("StoryFieldsModel::open");
    const Orvex::IStory2Ptr story = Dispatch2Story(m_handle);
    if (!story)
        raiseMissing();
    GetStoryID(story, m_id);
    m_loaded = true;
}

std::shared_ptr<OpenStory> OpenStory::open(const QString &queuePath, const StoryID &id)
{
    return ServerThread::own(std::unique_ptr<OpenStory>(new OpenStory(queuePath, id)), &OpenStory::end);
}

void OpenStory::end(OpenStory *story)
{
    const std::unique_ptr<OpenStory> last(story);
    last->unlock();
}

std::vector<Field> OpenStory::formFields()
{
    const FormData *const form = FormCache::getForm(FormName());
    return form ? uniqueFields(form->m_Fields) : std::vector<Field>();
}

StoryContent OpenStory::content(const StoryWish &wish)
{
    StoryContent content;
    content.values.resize(wish.fields.size());
    for (std::size_t index = 0; index < wish.fields.size(); ++index) {
        const QString &name = wish.fields[index];
        QString &value = content.values[index];
        GetField(name, value);
        raiseError();
        if (value.isEmpty() && name.compare(totalTimeField, Qt::CaseInsensitive) == 0)
            value = totalTime();
    }
    if (wish.body) {
        GetSection(bodySection, content.body, true);
        raiseError();
        if (content.body.isNull())
            content.body = QLatin1String(""); // there, but empty
    }
    return content;
}

QString OpenStory::totalTime()
{
    const QuireCOMMutex lock("StoryFieldsModel::totalTime");
    for (const Attribute &field : GetStoryFields(Dispatch2Story(m_handle))) {
        if (field.name == totalTimeField)
            return field.value;
    }
    return QString();
}

void OpenStory::raiseError()
{
    const auto error = static_cast<HRESULT>(GetError());
    if (FAILED(error))
        throw _com_error(error);
}

void OpenStory::lock(int type, QString *holder)
{
    if (Lock(type, *holder)) {
        m_locked = true;
        return;
    }
    raiseError();
    raiseMissing();
}

void OpenStory::unlock()
try {
    if (m_locked)
        Unlock();
    m_locked = false;
} catch (const _com_error &) {
    m_locked = false; // the server frees it when the user signs off
}

void OpenStory::change(const StoryChange &change, int lockType, QString *holder)
{
    if (m_locked) {
        write(change);
        return;
    }
    lock(lockType, holder);
    try {
        write(change);
    } catch (...) {
        unlock();
        throw;
    }
    unlock();
}

void OpenStory::write(const StoryChange &change)
try {
    for (const auto &[name, value] : change.fields) {
        SetField(name, value);
        raiseError();
    }
    QString body = change.body;
    if (!body.isNull() && !PutSection(bodySection, body, true)) {
        raiseError();
        raiseMissing();
    }
    if (Save(true))
        return;
    raiseError();
    raiseMissing();
} catch (const _com_error &) {
    find(); // the next one that is saved must not bring this change along
    throw;
}

} // namespace Quire
