#include <quire/models/StoryFieldsModel.h>

#include <algorithm>
#include <utility>

#include "OpenStory.h"
#include "ServerWork.h"
#include "StoryCells.h"
#include <quire/forms/AttributeCodec.h>
#include <quire/session/ErrorString.h>

namespace Quire {

StoryFieldsModel::StoryFieldsModel(QObject *parent)
    : ServerTable(parent)
{}

StoryFieldsModel::~StoryFieldsModel() = default;

// ---- which story ----------------------------------------------------------------------------------------------------

QString StoryFieldsModel::queuePath() const
{
    return m_queuePath;
}

StoryID StoryFieldsModel::storyID() const
{
    return m_id;
}

void StoryFieldsModel::open(const QString &queuePath, const StoryID &id)
{
    reset(queuePath, id);
    ask();
}

void StoryFieldsModel::close()
{
    reset(QString(), StoryID{});
}

void StoryFieldsModel::reset(const QString &queuePath, const StoryID &id)
{
    abandonWork();
    beginResetModel();
    m_queuePath = queuePath;
    m_id = id;
    m_story.reset();
    m_rows.clear();
    endResetModel();
    setLocked(false);
}

void StoryFieldsModel::ask()
{
    beginLoad();
    work().run(
        [this, path = m_queuePath, id = m_id]() -> ServerWork::Delivery {
            const std::shared_ptr<OpenStory> story = OpenStory::open(path, id);
            const std::vector<Field> fields = story->formFields();
            std::vector<QString> names;
            for (const Field &field : fields)
                names.push_back(field.m_Id);
            return [this, story, fields, values = story->values(names)] { show(story, fields, values); };
        },
        [this](HRESULT error) { endLoad(error); });
}

void StoryFieldsModel::show(const std::shared_ptr<OpenStory> &story, const std::vector<Field> &fields,
                            const std::vector<QString> &values)
{
    m_story = story;
    if (!fields.empty()) {
        beginInsertRows(QModelIndex(), 0, static_cast<int>(fields.size()) - 1);
        for (std::size_t row = 0; row < fields.size(); ++row)
            m_rows.push_back({fields[row], values[row], QString(), 0});
        endInsertRows();
        countRows(rowCount());
    }
    endLoad(0);
}

std::vector<QString> StoryFieldsModel::fieldNames() const
{
    std::vector<QString> names;
    for (const Row &row : m_rows)
        names.push_back(row.field.m_Id);
    return names;
}

void StoryFieldsModel::refresh()
{
    if (!m_story) {
        if (!m_queuePath.isEmpty() && !isLoading())
            ask();
        return;
    }
    beginLoad();
    work().run(
        [this, story = m_story, names = fieldNames()]() -> ServerWork::Delivery {
            return [this, values = story->values(names)] {
                showValues(values);
                endLoad(0);
            };
        },
        [this](HRESULT error) { endLoad(error); });
}

/// Takes the values that the server has now; neighbours that differ are told together.
void StoryFieldsModel::showValues(const std::vector<QString> &values)
{
    int first = -1;
    for (int row = 0; row <= rowCount(); ++row) {
        const auto place = static_cast<std::size_t>(row);
        bool differs = false;
        if (row < rowCount() && m_rows[place].value != values[place]) {
            m_rows[place].value = values[place];
            differs = m_rows[place].pending == 0;
        }
        if (differs && first < 0)
            first = row;
        if (!differs && first >= 0)
            Q_EMIT dataChanged(index(std::exchange(first, -1), ValueColumn), index(row - 1, ValueColumn));
    }
}

int StoryFieldsModel::rowOf(const QString &name) const
{
    const auto found = std::find_if(m_rows.begin(), m_rows.end(), [&](const Row &row) {
        return row.field.m_Id.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
}

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
    if (!m_story || m_locked)
        return;
    beginLoad();
    const auto holder = std::make_shared<QString>();
    work().run(
        [this, story = m_story, type = m_lockType, holder]() -> ServerWork::Delivery {
            story->lock(type, holder.get());
            return [this] {
                setLocked(true);
                endLoad(0);
            };
        },
        [this, holder](HRESULT error) { refuse(*holder, error); });
}

void StoryFieldsModel::unlock()
{
    if (!m_locked)
        return;
    setLocked(false);
    work().runAnyway(
        [story = m_story]() -> ServerWork::Delivery {
            story->unlock();
            return [] {};
        },
        [](HRESULT) {});
}

// ---- values ---------------------------------------------------------------------------------------------------------

bool StoryFieldsModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !(flags(index) & Qt::ItemIsEditable))
        return false;
    if (value.toString() != data(index, Qt::EditRole).toString())
        write(index.row(), value.toString());
    return true;
}

void StoryFieldsModel::write(int row, const QString &value)
{
    Row &changed = m_rows[static_cast<std::size_t>(row)];
    changed.set = value;
    ++changed.pending;
    const QModelIndex cell = index(row, ValueColumn);
    Q_EMIT dataChanged(cell, cell);
    beginLoad();
    const auto holder = std::make_shared<QString>();
    work().runAnyway(
        [this, story = m_story, names = fieldNames(), row, value, type = m_lockType, holder]() -> ServerWork::Delivery {
            const QString name = names[static_cast<std::size_t>(row)];
            const std::vector<QString> values = story->change(name, value, type, holder.get(), names);
            return [this, row, name, values] {
                showValues(values);
                endWrite(row);
                Q_EMIT saved(name);
                endLoad(0);
            };
        },
        [this, row, holder](HRESULT error) {
            endWrite(row);
            refuse(*holder, error);
        });
}

/// Shows what the server has, unless the field has been set again meanwhile.
void StoryFieldsModel::endWrite(int row)
{
    Row &changed = m_rows[static_cast<std::size_t>(row)];
    if (--changed.pending > 0)
        return;
    changed.set.clear();
    const QModelIndex cell = index(row, ValueColumn);
    Q_EMIT dataChanged(cell, cell);
}

int StoryFieldsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int StoryFieldsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : 2;
}

Qt::ItemFlags StoryFieldsModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags usual = ServerTable::flags(index);
    const bool editable = index.isValid() && index.column() == ValueColumn && !index.data(ReadOnlyRole).toBool();
    return editable ? usual | Qt::ItemIsEditable : usual;
}

QVariant StoryFieldsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return QVariant();
    const Row &row = m_rows[static_cast<std::size_t>(index.row())];
    const bool isValue = index.column() == ValueColumn;
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return !isValue ? fieldTitle(row.field) : row.pending > 0 ? row.set : row.value;
    case Qt::TextAlignmentRole:
        return alignment(isValue ? row.field.m_Align : row.field.m_LabelAlign);
    case IdentifierRole:
    case NameRole:
        return row.field.m_Id;
    case PathRole:
        return m_queuePath;
    case ReadOnlyRole:
        return row.field.m_ReadOnly || IsAttributeReadOnly(row.field.m_Id);
    case PendingRole:
        return row.pending > 0;
    case WidthRole:
        return isValue ? row.field.m_Length : row.field.m_LabelLength;
    case StyleRole:
        return isValue ? row.field.m_Style : row.field.m_LabelStyle;
    default:
        return QVariant();
    }
}

QVariant StoryFieldsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= columnCount())
        return ServerTable::headerData(section, orientation, role);
    return section == LabelColumn ? tr("Field") : tr("Value");
}

} // namespace Quire
