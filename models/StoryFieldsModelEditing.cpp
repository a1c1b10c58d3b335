#include <quire/models/StoryFieldsModel.h>

#include <algorithm>
#include <utility>

#include "OpenStory.h"
#include "ServerThread.h"
#include "ServerWork.h"

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

void StoryFieldsModel::noteLock(const StoryAnswer &answer)
{
    if (answer.isFree)
        setLocked(false);
}

void StoryFieldsModel::refuse(const QString &holder, qint32 error)
{
    const ServerWork::Turn turn(work());
    if (!holder.isEmpty())
        Q_EMIT lockRefused(holder, wordsFor(error));
    if (!turn.isOver())
        endLoad(error);
}

void StoryFieldsModel::lock()
{
    if (!m_story || m_wantedLock > 0 || (m_locked && !isLoading()))
        return;
    m_wantedLock = ++m_locks;
    if (!beginLoad())
        return;
    const auto answer = std::make_shared<StoryAnswer>();
    work().run(
        [this, story = m_story, type = m_lockType, wish = wish(), number = m_locks, answer]() -> ServerWork::Delivery {
            story->lock(type, wish, answer.get());
            return [this, number, answer] { takeLock(number, *answer); };
        },
        [this, number = m_locks, answer](HRESULT error) {
            takeWantedLock(number);
            ServerWork::Turn(work()).take({[&] { noteLock(*answer); }, [&] { refuse(answer->holder, error); }});
        });
}

void StoryFieldsModel::takeLock(int number, const StoryAnswer &answer)
{
    Outdated outdated;
    const auto note = [&] {
        if (takeWantedLock(number))
            setLocked(true);
    };
    ServerWork::Turn(work()).take(
        {[&] { outdated = showContent(answer.content); }, [&] { tell(outdated); }, note, [&] { endLoad(0); }});
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
    ServerThread::postPatiently([story = m_story] { story->unlock(); });
    setLocked(false);
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
    for (const RowChange &change : rows)
        ++m_rows[static_cast<std::size_t>(change.first)].writing;
    StoryWish wanted = wish();
    if (!body.isNull()) {
        ++m_bodyWrites;
        wanted.body = true;
    }
    // It is to be made whatever slots do, and to arrive when all has been told.
    const ServerWork::Turn turn(work());
    const ServerWork::Hold hold(work());
    const auto answer = std::make_shared<StoryAnswer>();
    work().runAnyway(
        [this, story = m_story, rows, change = changeOf(rows, body), wanted, type = m_lockType,
         answer]() -> ServerWork::Delivery {
            story->change(change, wanted, type, answer.get());
            return [this, rows, body = change.body, answer] { take(rows, body, *answer); };
        },
        [this, rows, body, answer](HRESULT error) { giveUp(rows, body, *answer, error); });
    for (auto written = rows.begin(); written != rows.end() && !turn.isOver(); ++written)
        showRow(written->first);
    if (!turn.isOver())
        beginLoad();
}

StoryChange StoryFieldsModel::changeOf(const RowChanges &rows, const QString &body) const
{
    StoryChange change;
    for (const auto &[row, value] : rows) {
        const Row &changed = m_rows[static_cast<std::size_t>(row)];
        change.fields.push_back({changed.field.m_Id, value, changed.value});
    }
    change.body = body;
    change.bodyBefore = m_body;
    change.underLock = m_locked;
    return change;
}

/// The server has saved it.
void StoryFieldsModel::take(const RowChanges &rows, const QString &body, const StoryAnswer &answer)
{
    Outdated outdated;
    ServerWork::Turn(work()).take(
        {[&] { outdated = showContent(FAILED(answer.unread) ? written(rows, body) : answer.content); },
         [&] { endWrite(rows, body, true); }, [&] { tell(outdated); }, [&] { noteLock(answer); },
         [&] { tellSaved(rows); }, [&] { Q_EMIT storySaved(); }, [&] { endLoad(answer.unread); }});
}

void StoryFieldsModel::tellSaved(const RowChanges &rows)
{
    const ServerWork::Turn turn(work());
    for (auto written = rows.begin(); written != rows.end() && !turn.isOver(); ++written)
        Q_EMIT saved(m_rows[static_cast<std::size_t>(written->first)].field.m_Id);
}

/// The server has not saved it.
void StoryFieldsModel::giveUp(const RowChanges &rows, const QString &body, const StoryAnswer &answer, qint32 error)
{
    Outdated outdated;
    const auto show = [&] {
        if (answer.isOutdated())
            outdated = showContent(answer.content);
        outdated.fields = answer.fields + outdated.fields;
        outdated.body = answer.body || outdated.body;
    };
    ServerWork::Turn(work()).take({show, [&] { endWrite(rows, body, false); }, [&] { tell(outdated); },
                                   [&] { noteLock(answer); }, [&] { refuse(answer.holder, error); }});
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
    const ServerWork::Turn turn(work());
    for (const auto &[row, value] : rows) {
        if (turn.isOver())
            return;
        Row &written = m_rows[static_cast<std::size_t>(row)];
        --written.writing;
        if (done && written.set == value)
            written.kept = false;
        if (written.isPending())
            continue;
        written.set.clear();
        showRow(row);
    }
    if (turn.isOver())
        return;
    if (!body.isNull())
        --m_bodyWrites;
    if (!body.isNull() && m_setBody == body && (done || m_savesAtOnce)) {
        m_setBody.clear();
        Q_EMIT bodyChanged();
    }
    if (!turn.isOver())
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
    ServerWork::Turn(work()).take({[&] { showRow(row); }, [&] { noteModified(); }});
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
    const ServerWork::Turn turn(work());
    for (int row = 0; !turn.isOver() && row < rowCount(); ++row) {
        if (std::exchange(m_rows[static_cast<std::size_t>(row)].kept, false))
            showRow(row);
    }
    if (!turn.isOver() && !m_setBody.isNull()) {
        m_setBody.clear();
        Q_EMIT bodyChanged();
    }
    if (!turn.isOver())
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
    const auto writeAtOnce = [&] {
        if (m_savesAtOnce)
            write({}, markup);
    };
    ServerWork::Turn(work()).take({writeAtOnce, [&] { Q_EMIT bodyChanged(); }, [&] { noteModified(); }});
    return true;
}

} // namespace Quire
