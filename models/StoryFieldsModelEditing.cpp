#include <quire/models/StoryFieldsModel.h>

#include <algorithm>
#include <utility>

#include "OpenStory.h"
#include "ServerThread.h"
#include "ServerWork.h"
#include <quire/session/ErrorString.h>

// The lock, and what is written under it.

namespace Quire {

// ---- the lock -------------------------------------------------------------------------------------------------------

bool StoryFieldsModel::isLocked() const
{
    return m_locked;
}

int StoryFieldsModel::lockType() const
{
    return m_lockType;
}

void StoryFieldsModel::setLockType(int type)
{
    m_lockType = type;
}

void StoryFieldsModel::setLocked(bool locked)
{
    if (std::exchange(m_locked, locked) != locked)
        Q_EMIT lockedChanged(locked);
}

void StoryFieldsModel::refuse(const QString &holder, qint32 error)
{
    if (!holder.isEmpty())
        Q_EMIT lockRefused(holder, getErrorString(error, false));
    endLoad(error);
}

void StoryFieldsModel::lock()
{
    if (!m_story || m_locked || m_wantedLock > 0)
        return;
    m_wantedLock = ++m_locks;
    beginLoad();
    const auto holder = std::make_shared<QString>();
    work().run(
        [this, story = m_story, type = m_lockType, number = m_locks, holder]() -> ServerWork::Delivery {
            story->lock(type, holder.get());
            return [this, number] {
                if (takeWantedLock(number))
                    setLocked(true);
                endLoad(0);
            };
        },
        [this, number = m_locks, holder](HRESULT error) {
            takeWantedLock(number);
            refuse(*holder, error);
        });
}

/// Whether the lock that was asked for as that number is still wanted; it is not on its way any more.
bool StoryFieldsModel::takeWantedLock(int number)
{
    if (m_wantedLock != number)
        return false;
    m_wantedLock = 0;
    return true;
}

void StoryFieldsModel::unlock()
{
    if (!m_locked && m_wantedLock == 0)
        return;
    m_wantedLock = 0; // what gives it back comes behind what asks for it
    setLocked(false);
    ServerThread::postPatiently([story = m_story] { story->unlock(); });
}

// ---- values ---------------------------------------------------------------------------------------------------------

bool StoryFieldsModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !(flags(index) & Qt::ItemIsEditable))
        return false;
    if (value.toString() == data(index, Qt::EditRole).toString())
        return true;
    if (m_savesAtOnce)
        writeRow(index.row(), value.toString());
    else
        keep(index.row(), value.toString());
    return true;
}

void StoryFieldsModel::writeRow(int row, const QString &value)
{
    m_rows[static_cast<std::size_t>(row)].set = value;
    write({{row, value}}, QString());
}

void StoryFieldsModel::write(const RowChanges &rows, const QString &body)
{
    StoryChange change{{}, body};
    for (const auto &[row, value] : rows) {
        Row &written = m_rows[static_cast<std::size_t>(row)];
        ++written.writing;
        change.fields.emplace_back(written.field.m_Id, value);
        showRow(row);
    }
    beginLoad();
    const auto holder = std::make_shared<QString>();
    work().runAnyway(
        [this, story = m_story, rows, change, wish = wish(), type = m_lockType, holder]() -> ServerWork::Delivery {
            story->change(change, type, holder.get());
            StoryContent content; // none of it when it cannot be read, which does not undo the change
            const HRESULT error = failureOf([&] { content = story->content(wish); });
            return [this, rows, change, content, error] {
                showContent(FAILED(error) ? written(rows, change.body) : content);
                endWrite(rows, change.body, true);
                for (const auto &field : change.fields)
                    Q_EMIT saved(field.first);
                Q_EMIT storySaved();
                endLoad(error);
            };
        },
        [this, rows, body, holder](HRESULT error) {
            endWrite(rows, body, false);
            refuse(*holder, error);
        });
}

/// What the server had, with what it has taken since.
StoryContent StoryFieldsModel::written(const RowChanges &rows, const QString &body) const
{
    StoryContent content{{}, body};
    content.values.reserve(m_rows.size());
    for (const Row &row : m_rows)
        content.values.push_back(row.value);
    for (const auto &[row, value] : rows)
        content.values[static_cast<std::size_t>(row)] = value;
    return content;
}

/// Shows what the server has, unless something has been set again meanwhile or was to be kept and is not there.
void StoryFieldsModel::endWrite(const RowChanges &rows, const QString &body, bool done)
{
    for (const auto &[row, value] : rows) {
        Row &written = m_rows[static_cast<std::size_t>(row)];
        --written.writing;
        if (done && written.set == value)
            written.kept = false;
        if (written.isPending())
            continue;
        written.set.clear();
        showRow(row);
    }
    if (!body.isNull() && m_setBody == body && (done || m_savesAtOnce)) {
        m_setBody.clear();
        Q_EMIT bodyChanged();
    }
    noteModified();
}

// ---- several changes in one save ------------------------------------------------------------------------------------

bool StoryFieldsModel::savesAtOnce() const
{
    return m_savesAtOnce;
}

void StoryFieldsModel::setSavesAtOnce(bool saves)
{
    m_savesAtOnce = saves;
}

bool StoryFieldsModel::isModified() const
{
    return m_modified;
}

void StoryFieldsModel::noteModified()
{
    const bool isKept = std::any_of(m_rows.begin(), m_rows.end(), [](const Row &row) { return row.kept; });
    const bool modified = isKept || !m_setBody.isNull();
    if (std::exchange(m_modified, modified) != modified)
        Q_EMIT modifiedChanged(modified);
}

void StoryFieldsModel::keep(int row, const QString &value)
{
    Row &changed = m_rows[static_cast<std::size_t>(row)];
    changed.set = value;
    changed.kept = changed.writing > 0 || value != changed.value;
    showRow(row);
    noteModified();
}

void StoryFieldsModel::save()
{
    RowChanges rows;
    for (int row = 0; row < rowCount(); ++row) {
        const Row &changed = m_rows[static_cast<std::size_t>(row)];
        if (changed.kept)
            rows.emplace_back(row, changed.set);
    }
    if (!rows.empty() || !m_setBody.isNull())
        write(rows, m_setBody);
}

void StoryFieldsModel::discard()
{
    for (int row = 0; row < rowCount(); ++row) {
        if (std::exchange(m_rows[static_cast<std::size_t>(row)].kept, false))
            showRow(row);
    }
    if (!m_setBody.isNull()) {
        m_setBody.clear();
        Q_EMIT bodyChanged();
    }
    noteModified();
}

// ---- the text -------------------------------------------------------------------------------------------------------

bool StoryFieldsModel::readsBody() const
{
    return m_readsBody;
}

void StoryFieldsModel::setReadsBody(bool reads)
{
    m_readsBody = reads;
}

QString StoryFieldsModel::body() const
{
    return m_setBody.isNull() ? m_body : m_setBody;
}

bool StoryFieldsModel::setBody(const QString &markup)
{
    if (markup.isNull() || m_body.isNull())
        return false;
    if (markup == body())
        return true;
    m_setBody = markup;
    if (m_savesAtOnce)
        write({}, markup);
    Q_EMIT bodyChanged();
    noteModified();
    return true;
}

} // namespace Quire
