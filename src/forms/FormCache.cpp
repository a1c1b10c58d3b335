#include <quire/forms/FormCache.h>

#include <algorithm>
#include <utility>

#include <QMutex>
#include <QMutexLocker>

#include <quire/session/QuireCOM.h>

namespace Quire {

namespace {

/// Guards the lists of all caches. Held for looking at a list or changing it, never across anything else.
QMutex listMutex;

} // namespace

FormCache FormCache::sFormCache;

FormCache::FormCache() = default;

FormCache::FormCache(const FormCache &other)
    : m_Forms(other.forms())
{}

FormCache::FormCache(FormCache &&other) noexcept
    : m_Forms(other.exchangeForms({}))
{}

FormCache &FormCache::operator=(const FormCache &other)
{
    exchangeForms(other.forms());
    return *this;
}

FormCache &FormCache::operator=(FormCache &&other) noexcept
{
    exchangeForms(other.exchangeForms({}));
    return *this;
}

FormCache::~FormCache() = default;

FormData *FormCache::getForm(QString name)
{
    if (FormData *form = sFormCache.findForm(name))
        return form;
    sFormCache.addForm(name);
    return sFormCache.findForm(name);
}

void FormCache::Clear()
{
    sFormCache.exchangeForms({});
}

FormData *FormCache::findForm(const QString &name)
{
    const QMutexLocker locker(&listMutex);
    const auto found =
        std::find_if(m_Forms.begin(), m_Forms.end(), [&name](const FormData &form) { return form.m_FormName == name; });
    return found == m_Forms.end() ? nullptr : &*found;
}

void FormCache::addForm(const QString &name)
{
    QuireCOM *session = QuireCOM::TheQuireCOM;
    if (!session || !session->IsConnected())
        return;
    QString text;
    session->GetSystemForm(name, text);
    if (text.isEmpty())
        return;
    FormData form(name, text);
    const QMutexLocker locker(&listMutex);
    m_Forms.push_back(std::move(form));
}

std::list<FormData> FormCache::forms() const
{
    const QMutexLocker locker(&listMutex);
    return m_Forms;
}

std::list<FormData> FormCache::exchangeForms(std::list<FormData> forms) noexcept
{
    const QMutexLocker locker(&listMutex);
    m_Forms.swap(forms);
    return forms;
}

} // namespace Quire
