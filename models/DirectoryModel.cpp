#include <quire/models/DirectoryModel.h>

#include <utility>

#include "DirectoryNode.h"
#include "ServerReading.h"
#include "ServerWork.h"

#include <QCoreApplication>

namespace Quire {

namespace {

const QString &rootName()
{
    static const QString name = QStringLiteral(".");
    return name;
}

/// What makes an entry the same one in two readings.
std::pair<QString, int> keyOf(const Item &item)
{
    return {item.name, item.type};
}

std::vector<std::pair<QString, int>> keysOf(const DirectoryNode &node)
{
    std::vector<std::pair<QString, int>> keys;
    keys.reserve(static_cast<std::size_t>(node.size()));
    for (int row = 0; row < node.size(); ++row)
        keys.push_back(keyOf(node.child(row)->item()));
    return keys;
}

std::vector<std::pair<QString, int>> keysOf(const std::vector<Item> &entries)
{
    std::vector<std::pair<QString, int>> keys;
    keys.reserve(entries.size());
    for (const Item &entry : entries)
        keys.push_back(keyOf(entry));
    return keys;
}

/// A null text is an attribute that is not there.
QVariant textOrNothing(const QString &text)
{
    return text.isNull() ? QVariant() : QVariant(text);
}

bool isBelow(const QString &path, const QString &directory)
{
    return path.size() > directory.size() && path.at(directory.size()) == QLatin1Char('.') &&
           path.startsWith(directory, Qt::CaseInsensitive);
}

} // namespace

DirectoryModel::DirectoryModel(QObject *parent)
    : ServerModel(parent)
    , m_root(std::make_unique<DirectoryNode>(nullptr, Item(rootName(), Item_Directory)))
{}

DirectoryModel::~DirectoryModel() = default;

QString DirectoryModel::rootPath() const
{
    return m_root->item().name;
}

void DirectoryModel::setRootPath(const QString &path)
{
    const QString root = path.isEmpty() ? rootName() : path;
    QString before;
    const bool stays = turnAway([&] {
        before = rootPath();
        m_readings.clear();
        m_root = std::make_unique<DirectoryNode>(nullptr, Item(root, Item_Directory));
    });
    if (stays && rootPath() != before)
        Q_EMIT rootPathChanged(rootPath());
}

// ---- rows -----------------------------------------------------------------------------------------------------------

DirectoryNode *DirectoryModel::nodeAt(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<DirectoryNode *>(index.internalPointer()) : m_root.get();
}

QModelIndex DirectoryModel::indexOf(const DirectoryNode *node) const
{
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): an index has what it points to as its own
    return node == m_root.get() ? QModelIndex() : createIndex(node->row(), 0, const_cast<DirectoryNode *>(node));
}

QModelIndex DirectoryModel::indexOf(const QString &path) const
{
    const DirectoryNode *node = m_root.get();
    for (int row = 0; row < node->size(); ++row) {
        const DirectoryNode *const child = node->child(row);
        const QString &name = child->item().name;
        if (name.compare(path, Qt::CaseInsensitive) == 0)
            return indexOf(child);
        if (!name.isEmpty() && isBelow(path, name)) {
            node = child;
            row = -1;
        }
    }
    return QModelIndex();
}

QModelIndex DirectoryModel::index(int row, int column, const QModelIndex &parent) const
{
    return hasIndex(row, column, parent) ? createIndex(row, column, nodeAt(parent)->child(row)) : QModelIndex();
}

QModelIndex DirectoryModel::parent(const QModelIndex &child) const
{
    return child.isValid() ? indexOf(nodeAt(child)->parent()) : QModelIndex();
}

int DirectoryModel::rowCount(const QModelIndex &parent) const
{
    return parent.column() > 0 ? 0 : nodeAt(parent)->size();
}

int DirectoryModel::columnCount(const QModelIndex & /*parent*/) const
{
    return 1;
}

bool DirectoryModel::hasChildren(const QModelIndex &parent) const
{
    return nodeAt(parent)->mayHaveChildren();
}

QString DirectoryModel::path(const QModelIndex &index) const
{
    return nodeAt(index)->item().name;
}

bool DirectoryModel::isQueue(const QModelIndex &index) const
{
    return nodeAt(index)->item().type == Item_Queue;
}

QVariant DirectoryModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return QVariant();
    const DirectoryNode *const node = nodeAt(index);
    switch (role) {
    case Qt::DisplayRole:
        return node->item().name.section(QLatin1Char('.'), -1);
    case IdentifierRole:
    case PathRole:
    case NameRole:
        return node->item().name;
    case TypeRole:
        return int{node->item().type};
    case LockRole:
        return textOrNothing(node->attribute(Attr_Lock));
    case CountRole: {
        const QString count = node->attribute(Attr_NumItems);
        return count.isNull() ? QVariant() : QVariant(count.toInt());
    }
    case IndexedRole:
        return !node->attribute(Attr_Indexed).isNull();
    case ConfirmEditRole:
        return !node->attribute(Attr_ConfirmEdit).isNull();
    case InvertedRole:
        return !node->attribute(Attr_Inverted).isNull();
    case SortedRole:
        return !node->attribute(Attr_Sorted).isNull();
    default:
        return QVariant();
    }
}

QVariant DirectoryModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section != 0 || role != Qt::DisplayRole)
        return QVariant();
    // Not tr(): what collects the texts would leave the namespace out of the context.
    return QCoreApplication::translate("Quire::DirectoryModel", "Name");
}

// ---- reading --------------------------------------------------------------------------------------------------------

bool DirectoryModel::canFetchMore(const QModelIndex &parent) const
{
    const DirectoryNode *const node = nodeAt(parent);
    return node->state() == DirectoryNode::Unread && node->mayHaveChildren();
}

void DirectoryModel::fetchMore(const QModelIndex &parent)
{
    if (canFetchMore(parent))
        read(nodeAt(parent), false);
}

void DirectoryModel::refresh(const QModelIndex &parent)
{
    DirectoryNode *const node = nodeAt(parent);
    if (node->state() == DirectoryNode::Reading)
        node->setOutdated();
    else if (node->wasAsked())
        read(node, true);
}

void DirectoryModel::read(DirectoryNode *node, bool anew)
{
    const quint64 reading = ++m_lastReading;
    m_readings.insert(reading, node);
    node->setState(DirectoryNode::Reading);
    if (!beginLoad())
        return;
    work().run(
        [this, path = node->item().name, reading, anew]() -> ServerWork::Delivery {
            // Shared, since a function has to be copyable.
            const auto entries = std::make_shared<std::vector<Item>>(readDirectory(path, anew));
            return [this, entries, reading, anew] { show(reading, *entries, anew); };
        },
        [this, reading](HRESULT error) { giveUp(reading, error); });
}

/// The directory that was read, null when it has gone meanwhile.
DirectoryNode *DirectoryModel::takeReading(quint64 reading)
{
    return m_readings.take(reading);
}

void DirectoryModel::giveUp(quint64 reading, qint32 error)
{
    if (DirectoryNode *const node = takeReading(reading)) {
        node->setState(node->wasRead() ? DirectoryNode::Read : DirectoryNode::Unread);
        refreshIfOutdated(node);
    }
    endLoad(error);
}

void DirectoryModel::show(quint64 reading, const std::vector<Item> &entries, bool anew)
{
    if (DirectoryNode *const node = takeReading(reading)) {
        node->setState(DirectoryNode::Read);
        node->setWasRead();
        if (!showChanges(node, entries))
            return;
        if (!refreshIfOutdated(node)) {
            for (int row = 0; anew && row < node->size(); ++row)
                refresh(indexOf(node->child(row)));
        }
    }
    endLoad(0);
}

/// Whether a refresh was asked for while \a node was read, which then begins, with all that is below.
bool DirectoryModel::refreshIfOutdated(DirectoryNode *node)
{
    if (!node->takeOutdated())
        return false;
    refresh(indexOf(node));
    return true;
}

/// False when there is nothing left to do for what has been read.
bool DirectoryModel::showChanges(DirectoryNode *node, const std::vector<Item> &entries)
{
    const ServerWork::Turn turn(work());
    const ServerWork::Hold hold(work());
    const QModelIndex parent = indexOf(node);
    const bool wasEmpty = node->size() == 0;
    std::vector<std::unique_ptr<DirectoryNode>> removed;
    int arrived = 0;
    for (const RowStep &step : rowSteps(matchRows(keysOf(*node), keysOf(entries)), static_cast<int>(entries.size()))) {
        if (!changeRows(parent, step, [&] { node->apply(step, entries, &removed); }))
            return false;
        arrived += step.kind == RowStep::Insert ? step.count : 0;
    }
    for (const auto &gone : removed)
        forget(gone.get());
    showAttributes(node, entries);
    if (!turn.isOver() && wasEmpty && node->size() == 0 && parent.isValid())
        Q_EMIT dataChanged(parent, parent); // there is nothing to open
    if (!turn.isOver())
        countRows(arrived);
    return !turn.isOver();
}

void DirectoryModel::showAttributes(DirectoryNode *node, const std::vector<Item> &entries)
{
    const ServerWork::Turn turn(work());
    for (int row = 0; !turn.isOver() && row < node->size(); ++row) {
        if (!node->child(row)->update(entries[static_cast<std::size_t>(row)]))
            continue;
        const QModelIndex changed = indexOf(node->child(row));
        Q_EMIT dataChanged(changed, changed);
    }
}

/// Nothing that is being read arrives in what was removed.
void DirectoryModel::forget(DirectoryNode *removed)
{
    for (auto reading = m_readings.begin(); reading != m_readings.end();) {
        const DirectoryNode *node = reading.value();
        while (node && node != removed)
            node = node->parent();
        reading = node ? m_readings.erase(reading) : std::next(reading);
    }
}

} // namespace Quire
