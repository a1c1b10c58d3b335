#include "StoryCells.h"

#include <QCoreApplication>
#include <QSet>

#include <algorithm>

#include <quire/models/ModelRoles.h>
#include <quire/tree/AttributeKeys.h>

namespace Quire {

namespace {

QString title(const char *text)
{
    return QCoreApplication::translate("Quire::QueueModel", text);
}

struct HeaderTitle
{
    const char *key;
    const char *text;
};

QString headerTitle(const QString &key)
{
    static const HeaderTitle titles[] = {
        {Attr_Lock, QT_TRANSLATE_NOOP("Quire::QueueModel", "Lock")},
        {Attr_Words, QT_TRANSLATE_NOOP("Quire::QueueModel", "Words")},
        {Attr_Rate, QT_TRANSLATE_NOOP("Quire::QueueModel", "Rate")},
        {Attr_Break, QT_TRANSLATE_NOOP("Quire::QueueModel", "Break")},
        {Attr_Float, QT_TRANSLATE_NOOP("Quire::QueueModel", "Float")},
        {Attr_Hold, QT_TRANSLATE_NOOP("Quire::QueueModel", "Hold")},
        {Attr_Wire, QT_TRANSLATE_NOOP("Quire::QueueModel", "Wire")},
        {Attr_Mail, QT_TRANSLATE_NOOP("Quire::QueueModel", "Mail")},
        {Attr_Queue, QT_TRANSLATE_NOOP("Quire::QueueModel", "Queue")},
    };
    for (const HeaderTitle &known : titles) {
        if (key == QLatin1String(known.key))
            return title(known.text);
    }
    return key;
}

/// The attribute \a key, null when there is none; if no name is exactly that, letter case is ignored.
const Attribute *findAttribute(const Item &item, const QString &key)
{
    const int exact = item.FindAttr(key);
    if (exact >= 0)
        return &item.attributes[static_cast<std::size_t>(exact)];
    for (const Attribute &attribute : item.attributes) {
        if (attribute.name.size() == key.size() && attribute.name.compare(key, Qt::CaseInsensitive) == 0)
            return &attribute;
    }
    return nullptr;
}

int urgencyOf(int flags)
{
    return (flags & 2) != 0 ? 2 : flags & 1;
}

int urgencyOf(const Item &item)
{
    int most = 0;
    for (const Attribute &attribute : item.attributes)
        most = std::max(most, urgencyOf(attribute.flags));
    return most;
}

void expand(Item &item)
{
    std::vector<Attribute> nothing;
    item.RetrieveAttrs(nothing);
}

QVariant valueOf(const Item &item, const char *key)
{
    const int index = item.FindAttr(QLatin1String(key));
    if (index < 0)
        return QVariant();
    const QString &value = item.attributes[static_cast<std::size_t>(index)].value;
    return value.isNull() ? QLatin1String("") : value; // there, but without a value
}

/// What depends on the column.
QVariant cellOf(const Item &item, const StoryColumn &column, int role)
{
    if (column.source == StoryColumn::Name)
        return role == Qt::DisplayRole ? QVariant(item.name) : role == UrgencyRole ? urgencyOf(item) : QVariant();
    const Attribute *const attribute = findAttribute(item, column.key);
    if (role == Qt::DisplayRole)
        return attribute ? attribute->value : QString();
    const int flags = attribute ? attribute->flags : 0;
    return role == UrgencyRole ? urgencyOf(flags) : flags;
}

} // namespace

StoryColumn nameColumn()
{
    StoryColumn column;
    column.title = title(QT_TRANSLATE_NOOP("Quire::QueueModel", "Story"));
    return column;
}

std::vector<Field> uniqueFields(const std::vector<Field> &fields)
{
    std::vector<Field> unique;
    QSet<QString> names;
    for (const Field &field : fields) {
        const QString name = field.m_Id.toCaseFolded();
        if (name.isEmpty() || names.contains(name))
            continue;
        names.insert(name);
        unique.push_back(field);
    }
    return unique;
}

QString fieldTitle(const Field &field)
{
    const QString label = field.m_Label.trimmed();
    return label.isEmpty() ? field.m_Id : label;
}

int alignment(qint32 align)
{
    const Qt::AlignmentFlag sideways = align == 1 ? Qt::AlignHCenter : align == 2 ? Qt::AlignRight : Qt::AlignLeft;
    return int{sideways} | int{Qt::AlignVCenter};
}

QVector<StoryColumn> fieldColumns(const std::vector<Field> &fields)
{
    QVector<StoryColumn> columns;
    for (const Field &field : uniqueFields(fields))
        columns.append(
            {StoryColumn::Field, field.m_Id, fieldTitle(field), field.Width(), field.m_Align, field.m_Style});
    return columns;
}

QVector<StoryColumn> headerColumns(const QStringList &keys)
{
    QVector<StoryColumn> columns;
    for (const QString &key : keys)
        columns.append({StoryColumn::Header, key, headerTitle(key), 0, 0, 0});
    return columns;
}

int findColumn(const QVector<StoryColumn> &columns, const QString &key)
{
    const auto found = std::find_if(columns.begin(), columns.end(), [&](const StoryColumn &column) {
        return column.key.compare(key, Qt::CaseInsensitive) == 0;
    });
    return found == columns.end() ? -1 : static_cast<int>(found - columns.begin());
}

QVariant storyCell(Item &item, const QString &path, const StoryColumn &column, int role)
{
    switch (role) {
    case NameRole:
        return item.name;
    case IdentifierRole:
        return valueOf(item, Attr_Storyid);
    case PathRole:
        return path;
    case TypeRole:
        return int{item.type};
    case Qt::TextAlignmentRole:
        return alignment(column.align);
    case LockRole:
        expand(item);
        return valueOf(item, Attr_Lock);
    case Qt::DisplayRole:
        if (column.source != StoryColumn::Name)
            expand(item);
        return cellOf(item, column, role);
    case UrgencyRole:
    case FlagsRole:
        expand(item);
        return cellOf(item, column, role);
    default:
        return QVariant();
    }
}

QVariant storyHeader(const StoryColumn &column, int role)
{
    switch (role) {
    case Qt::DisplayRole:
        return column.title;
    case IdentifierRole:
        return column.key;
    case WidthRole:
        return column.width;
    case StyleRole:
        return column.style;
    case Qt::TextAlignmentRole:
        return alignment(column.align);
    default:
        return QVariant();
    }
}

} // namespace Quire
