#include <quire/models/StoryFieldsModel.h>

#include <algorithm>
#include <utility>

#include "OpenStory.h"
#include "RowSteps.h"
#include "ServerWork.h"
#include "StoryCells.h"
#include <quire/forms/AttributeCodec.h>

#include <QCoreApplication>

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
    if (reset(queuePath, id) && !isLoading()) // a slot may have asked already
        ask();
}

void StoryFieldsModel::close()
{
    reset(QString(), StoryID{});
}

/// False when there is nothing left to do for the story.
bool StoryFieldsModel::reset(const QString &queuePath, const StoryID &id)
{
    const bool stays = turnAway([&] {
        m_queuePath = queuePath;
        m_id = id;
        m_story.reset();
        m_rows.clear();
        m_body.clear();
        m_setBody.clear();
        m_bodyWrites = 0;
        m_wantedLock = 0;
    });
    if (!stays)
        return false;
    const ServerWork::Turn turn(work());
    setLocked(false);
    if (!turn.isOver())
        noteModified();
    if (!turn.isOver())
        Q_EMIT bodyChanged();
    return !turn.isOver();
}

void StoryFieldsModel::ask()
{
    if (!beginLoad())
        return;
    work().run(
        [this, path = m_queuePath, id = m_id, readsBody = m_readsBody]() -> ServerWork::Delivery {
            const std::shared_ptr<OpenStory> story = OpenStory::open(path, id);
            const std::vector<Field> fields = story->formFields();
            StoryWish wish{{}, readsBody};
            wish.fields.reserve(fields.size());
            for (const Field &field : fields)
                wish.fields.push_back(field.m_Id);
            return [this, story, fields, content = story->content(wish)] { show(story, fields, content); };
        },
        [this](HRESULT error) { endLoad(error); });
}

void StoryFieldsModel::show(const std::shared_ptr<OpenStory> &story, const std::vector<Field> &fields,
                            const StoryContent &content)
{
    const ServerWork::Turn turn(work());
    m_story = story;
    if (!fields.empty()) {
        const auto add = [&] {
            for (std::size_t row = 0; row < fields.size(); ++row)
                m_rows.push_back({fields[row], content.values[row], QString()});
        };
        if (!changeRows(QModelIndex(), {RowStep::Insert, 0, static_cast<int>(fields.size()), 0, 0}, add))
            return;
        countRows(rowCount());
    }
    if (!turn.isOver())
        showContent(content);
    if (!turn.isOver())
        endLoad(0);
}

StoryWish StoryFieldsModel::wish() const
{
    StoryWish wish{{}, m_readsBody};
    for (const Row &row : m_rows)
        wish.fields.push_back(row.field.m_Id);
    return wish;
}

void StoryFieldsModel::refresh()
{
    if (!m_story) {
        if (!m_queuePath.isEmpty() && !isLoading())
            ask();
        return;
    }
    if (!beginLoad())
        return;
    const auto answer = std::make_shared<StoryAnswer>();
    work().run(
        [this, story = m_story, wish = wish(), answer]() -> ServerWork::Delivery {
            story->refresh(wish, answer.get());
            return [this, answer] {
                Outdated outdated;
                ServerWork::Turn(work()).take({[&] { outdated = showContent(answer->content); },
                                               [&] { tell(outdated); }, [&] { noteLock(*answer); },
                                               [&] { endLoad(0); }});
            };
        },
        [this, answer](HRESULT error) {
            ServerWork::Turn(work()).take({[&] { noteLock(*answer); }, [&] { endLoad(error); }});
        });
}

/// Takes what the server has now. Tells what of it is news to somebody who is editing that.
StoryFieldsModel::Outdated StoryFieldsModel::showContent(const StoryContent &content)
{
    const ServerWork::Turn turn(work());
    Outdated outdated{outdatedFields(content.values)};
    showValues(content.values);
    if (turn.isOver() || content.body.isNull() || content.body == m_body)
        return outdated;
    m_body = content.body;
    outdated.body = !m_setBody.isNull() && m_bodyWrites == 0 && m_setBody != m_body;
    if (m_setBody.isNull())
        Q_EMIT bodyChanged();
    return outdated;
}

/// Not those that are being written: what is new there was saved here, or the writing finds out.
QStringList StoryFieldsModel::outdatedFields(const std::vector<QString> &values) const
{
    QStringList fields;
    for (std::size_t place = 0; place < m_rows.size(); ++place) {
        const Row &row = m_rows[place];
        if (row.kept && row.writing == 0 && values[place] != row.value && values[place] != row.set)
            fields.append(row.field.m_Id);
    }
    return fields;
}

void StoryFieldsModel::tell(const Outdated &outdated)
{
    if (outdated.body || !outdated.fields.isEmpty())
        Q_EMIT changedMeanwhile(outdated.fields, outdated.body);
}

/// Neighbours that differ are told together.
void StoryFieldsModel::showValues(const std::vector<QString> &values)
{
    const ServerWork::Turn turn(work());
    int first = -1;
    for (int row = 0; !turn.isOver() && row <= rowCount(); ++row) {
        const auto place = static_cast<std::size_t>(row);
        bool differs = false;
        if (row < rowCount() && m_rows[place].value != values[place]) {
            m_rows[place].value = values[place];
            differs = !m_rows[place].isPending();
        }
        if (differs && first < 0)
            first = row;
        if (!differs && first >= 0)
            Q_EMIT dataChanged(index(std::exchange(first, -1), ValueColumn), index(row - 1, ValueColumn));
    }
}

void StoryFieldsModel::showRow(int row)
{
    const QModelIndex cell = index(row, ValueColumn);
    Q_EMIT dataChanged(cell, cell);
}

int StoryFieldsModel::rowOf(const QString &name) const
{
    const auto found = std::find_if(m_rows.begin(), m_rows.end(), [&](const Row &row) {
        return row.field.m_Id.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == m_rows.end() ? -1 : static_cast<int>(found - m_rows.begin());
}

// ---- what is shown --------------------------------------------------------------------------------------------------

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
        return !isValue ? fieldTitle(row.field) : row.isPending() ? row.set : row.value;
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
        return row.isPending();
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
    // Not tr(): what collects the texts would leave the namespace out of the context.
    return section == LabelColumn ? QCoreApplication::translate("Quire::StoryFieldsModel", "Field")
                                  : QCoreApplication::translate("Quire::StoryFieldsModel", "Value");
}

} // namespace Quire
