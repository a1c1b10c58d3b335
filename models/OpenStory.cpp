#include "OpenStory.h"

#include <algorithm>
#include <utility>

#include "ServerReading.h"
#include "ServerThread.h"
#include "ServerWork.h"
#include "StoryCells.h"
#include <quire/forms/FormCache.h>
#include <quire/session/Dispatch2.h>
#include <quire/session/QuireCOM.h>
#include <quire/session/QuireCOMMutex.h>

#include <QScopeGuard>

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
try {
    dropLostLock();
    QuireCOM *const session = QuireCOM::TheQuireCOM;
    const IDispatchPtr handle = session ? session->GetStoryDirect(m_queuePath, &m_id) : IDispatchPtr();
    const QuireCOMMutex lock("StoryFieldsModel::open");
    const Orvex::IStory2Ptr story = Dispatch2Story(handle);
    if (!story)
        raiseMissing();
    m_handle = handle;
    GetStoryID(story, m_id);
    m_loaded = true;
} catch (const _com_error &) {
    unlock(); // as long as there is a handle to do it with
    m_handle = nullptr;
    throw;
}

/// Asks the handle with which the lock was got: that is of no use once its session has ended, while another one would
/// answer for whoever has the lock now.
bool OpenStory::holdsLock()
try {
    return IsLocked(m_lockType);
} catch (const _com_error &) {
    return false;
}

/// Whether there was one.
bool OpenStory::dropLostLock()
{
    if (!m_locked || holdsLock())
        return false;
    unlock();
    return true;
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

void OpenStory::refresh(const StoryWish &wish, StoryAnswer *answer)
{
    const auto note = qScopeGuard([&] { answer->isFree = !m_locked; });
    find();
    answer->content = content(wish);
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
        noteRead(name, value);
        if (value.isEmpty() && name.compare(totalTimeField, Qt::CaseInsensitive) == 0)
            value = totalTime();
    }
    if (wish.body) {
        GetSection(bodySection, content.body, true);
        raiseError();
        if (content.body.isNull())
            content.body = QLatin1String(""); // there, but empty
        noteRead(QString(), content.body);
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

// ---- the lock -------------------------------------------------------------------------------------------------------

void OpenStory::getLock(int type, QString *holder)
{
    if (!Lock(type, *holder)) {
        raiseError();
        raiseMissing();
    }
    m_locked = true;
    m_lockType = type;
}

/// Has that done under the lock. One that was got for it stays, unless the work raises.
void OpenStory::underLock(int type, QString *holder, const std::function<void()> &work)
{
    const bool wasLocked = m_locked;
    if (!wasLocked)
        getLock(type, holder);
    try {
        work();
    } catch (...) {
        if (!wasLocked)
            unlock();
        throw;
    }
}

void OpenStory::lock(int type, const StoryWish &wish, StoryAnswer *answer)
{
    const auto note = qScopeGuard([&] { answer->isFree = !m_locked; });
    underLock(type, &answer->holder, [&] { answer->content = content(wish); });
}

void OpenStory::unlock()
try {
    if (std::exchange(m_locked, false))
        Unlock();
} catch (const _com_error &) {
    // the server frees it when the user signs off
}

// ---- a change -------------------------------------------------------------------------------------------------------

void OpenStory::change(const StoryChange &change, const StoryWish &wish, int lockType, StoryAnswer *answer)
{
    const auto note = qScopeGuard([&] { answer->isFree = !m_locked; });
    if (dropLostLock())
        find(); // its session may have ended
    const bool wasLocked = m_locked;
    underLock(lockType, &answer->holder, [&] {
        if (!wasLocked || !change.underLock)
            requireUnchanged(change, wish, answer);
        write(change);
        readBack(change, wish, answer);
    });
    if (!wasLocked)
        unlock();
}

/// Only what is going to be written is looked at, the rest is nobody's loss.
void OpenStory::requireUnchanged(const StoryChange &change, const StoryWish &wish, StoryAnswer *answer)
{
    StoryWish written{{}, !change.body.isNull()};
    for (const StoryChange::FieldChange &field : change.fields)
        written.fields.push_back(field.name);
    const StoryContent now = content(written);
    for (std::size_t index = 0; index < change.fields.size(); ++index) {
        const StoryChange::FieldChange &field = change.fields[index];
        if (isForeign(field.name, now.values[index], field.before))
            answer->fields.append(field.name);
    }
    answer->body = written.body && isForeign(QString(), now.body, change.bodyBefore);
    if (!answer->isOutdated())
        return;
    answer->content = content(wish);
    throw _com_error(changedState);
}

void OpenStory::write(const StoryChange &change)
try {
    for (const StoryChange::FieldChange &field : change.fields) {
        SetField(field.name, field.value);
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

/// The server may have something else of what it was given, a "1:05" of "65".
void OpenStory::readBack(const StoryChange &change, const StoryWish &wish, StoryAnswer *answer)
{
    answer->unread = failureOf([&] { answer->content = content(wish); });
    if (FAILED(answer->unread))
        return m_own.clear();
    for (const StoryChange::FieldChange &field : change.fields) {
        const auto place = std::find(wish.fields.begin(), wish.fields.end(), field.name) - wish.fields.begin();
        m_own[field.name] = answer->content.values[static_cast<std::size_t>(place)];
    }
    if (!change.body.isNull())
        m_own[QString()] = answer->content.body;
}

// ---- what is whose --------------------------------------------------------------------------------------------------

/// Whether somebody else has saved \a value since \a before was seen. Of several changes on their way one after the
/// other each was set when that before it had not been saved yet.
bool OpenStory::isForeign(const QString &name, const QString &value, const QString &before) const
{
    const auto own = m_own.find(name);
    return value != before && (own == m_own.end() || own->second != value);
}

void OpenStory::noteRead(const QString &name, const QString &value)
{
    const auto own = m_own.find(name);
    if (own != m_own.end() && own->second != value)
        m_own.erase(own);
}

} // namespace Quire
