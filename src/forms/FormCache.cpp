#include <quire/forms/FormCache.h>

#include <utility>

#include <quire/session/QuireCOM.h>

namespace Quire {

Mutex<LockRank::Forms> FormCache::sMutex;
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

FormData *FormCache::getForm(QString name) // NOLINT(performance-unnecessary-value-param): hosts are built for this form
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
    const MutexLocker locker(sMutex);
    const auto found = m_Forms.find(name);
    return found == m_Forms.end() ? nullptr : &found->second;
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
    const MutexLocker locker(sMutex);
    m_Forms.emplace(name, std::move(form)); // unless another thread was faster
}

FormCache::Forms FormCache::forms() const
{
    const MutexLocker locker(sMutex);
    return m_Forms;
}

FormCache::Forms FormCache::exchangeForms(Forms forms) noexcept
{
    const MutexLocker locker(sMutex);
    m_Forms.swap(forms);
    return forms;
}

} // namespace Quire
