#include "StoryTable.h"

#include <algorithm>

#include <QCollator>
#include <QJsonArray>

#include "Failure.h"
#include "Table.h"
#include "TextWidth.h"

namespace Tool {

namespace {

// The columns that every story has come before the fields.
const int nameColumn = 1;
const int fixedColumns = 4;
const int widestField = 24;

QString lockText(Quire::Item &item)
{
    Quire::Attribute lock;
    if (!item.FindAttr(QLatin1String(Quire::Attr_Lock), lock))
        return QString();
    return lock.value.isEmpty() ? QStringLiteral("locked") : lock.value;
}

/// Compares texts as people read them, and the numbers in them by their value.
QCollator numericCollator()
{
    // The locale "C" compares characters by their codes, whatever it is asked for, and puts 10 before 2.
    const QLocale locale;
    QCollator collator(locale.language() == QLocale::C ? QLocale(QLocale::English) : locale);
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

// Of the columns that every table has, those of numbers. Not every Qt compares the numbers in texts by their value.
const int positionColumn = 0;
const int numberColumn = 2;

QString csvQuoted(const QString &text)
{
    const bool plain = !text.contains(QLatin1Char(',')) && !text.contains(QLatin1Char('"')) &&
                       !text.contains(QLatin1Char('\n')) && !text.contains(QLatin1Char('\r'));
    if (plain)
        return text;
    QString doubled = text;
    doubled.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + doubled + QLatin1Char('"');
}

QString csvLine(const QStringList &texts)
{
    QStringList cells;
    for (const QString &text : texts)
        cells += csvQuoted(text);
    return cells.join(QLatin1Char(','));
}

} // namespace

StoryTable::StoryTable(Quire::Queue &queue, const QStringList &columns, int limit)
    : m_chosen(!columns.isEmpty())
{
    choose(queue, columns);
    read(queue, limit);
}

void StoryTable::choose(Quire::Queue &queue, const QStringList &columns)
{
    m_names =
        QStringList{QStringLiteral("#"), QStringLiteral("name"), QStringLiteral("number"), QStringLiteral("lock")};
    m_headings = m_names;
    std::vector<Quire::Attribute> form;
    queue.RetrieveFields(form);
    const auto add = [this](const Quire::Attribute &field) {
        m_names += field.name;
        m_headings += field.value.trimmed().isEmpty() ? field.name : field.value.trimmed();
    };
    if (columns.isEmpty()) {
        std::for_each(form.begin(), form.end(), add);
        return;
    }
    for (const QString &column : columns) {
        const auto found = std::find_if(form.begin(), form.end(), [&](const Quire::Attribute &field) {
            return field.name.compare(column, Qt::CaseInsensitive) == 0;
        });
        if (found == form.end())
            throw Failure(ExitCode::NotFound,
                          QStringLiteral("the form of %1 has no field \"%2\"; quire form shows the fields")
                              .arg(queue.Name(), column));
        add(*found);
    }
}

void StoryTable::read(Quire::Queue &queue, int limit)
{
    queue.Lock();
    const int count = limit < 0 ? queue.u_Size() : std::min(limit, queue.u_Size());
    for (int index = 0; index < count; ++index) {
        Quire::Item &item = *queue.u_Nth(index);
        std::vector<Quire::Attribute> wanted{{QLatin1String(Quire::Attr_Storyid), QString(), 0}};
        for (int column = fixedColumns; column < m_names.size(); ++column)
            wanted.push_back({m_names.at(column), QString(), 0});
        item.RetrieveAttrs(wanted);
        const QString &id = wanted.front().value;
        QStringList texts{QString::number(index + 1), item.name, id.section(QLatin1Char(':'), 0, 0), lockText(item)};
        for (std::size_t field = 1; field < wanted.size(); ++field)
            texts += wanted[field].value;
        m_rows.push_back({index + 1, id, texts});
    }
    queue.Unlock();
}

void StoryTable::sort(const QString &column)
{
    const bool descending = column.startsWith(QLatin1Char('-'));
    const QString name = descending ? column.mid(1) : column;
    const auto isNamed = [&](const QString &candidate) { return candidate.compare(name, Qt::CaseInsensitive) == 0; };
    const int index = static_cast<int>(std::find_if(m_names.begin(), m_names.end(), isNamed) - m_names.begin());
    if (index == m_names.size())
        throw Failure(ExitCode::NotFound, QStringLiteral("there is no column \"%1\" to sort by; there are %2")
                                              .arg(name, m_names.join(QLatin1String(", "))));
    const bool isNumber = index == positionColumn || index == numberColumn;
    const QCollator collator = numericCollator();
    const auto isBefore = [&](const Row &a, const Row &b) {
        const QString &first = a.texts.at(index);
        const QString &second = b.texts.at(index);
        return isNumber ? first.toInt() < second.toInt() : collator.compare(first, second) < 0;
    };
    std::stable_sort(m_rows.begin(), m_rows.end(),
                     [&](const Row &a, const Row &b) { return descending ? isBefore(b, a) : isBefore(a, b); });
}

int StoryTable::widthOf(int column) const
{
    int width = textWidth(m_headings.at(column));
    for (const Row &row : m_rows)
        width = std::max(width, textWidth(row.texts.at(column)));
    return width;
}

QStringList StoryTable::lines(int columns, int *left) const
{
    int shown = 0;
    qint64 taken = 0;
    while (shown < m_names.size()) {
        const int width = widthOf(shown);
        const int needed = shown < fixedColumns ? width : std::min(width, widestField);
        if (!m_chosen && shown >= fixedColumns && taken + needed > columns)
            break;
        taken += needed + columnGap;
        ++shown;
    }
    *left = m_names.size() - shown;
    Table table(m_headings.mid(0, shown), {0, 2});
    for (const Row &row : m_rows)
        table.add(row.texts.mid(0, shown));
    return table.lines(columns);
}

QStringList StoryTable::csv() const
{
    QStringList lines{csvLine(m_names)};
    for (const Row &row : m_rows)
        lines += csvLine(row.texts);
    return lines;
}

QJsonArray StoryTable::json() const
{
    QJsonArray stories;
    for (const Row &row : m_rows) {
        QJsonObject fields;
        for (int column = fixedColumns; column < m_names.size(); ++column)
            fields.insert(m_names.at(column), row.texts.at(column));
        stories.append(QJsonObject{{QStringLiteral("position"), row.position},
                                   {QStringLiteral("name"), row.texts.at(nameColumn)},
                                   {QStringLiteral("number"), row.texts.at(2).toInt()},
                                   {QStringLiteral("id"), row.id},
                                   {QStringLiteral("lock"), row.texts.at(3)},
                                   {QStringLiteral("fields"), fields}});
    }
    return stories;
}

} // namespace Tool
