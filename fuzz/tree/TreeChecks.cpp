#include "TreeChecks.h"

#include <algorithm>
#include <vector>

#include <QStringList>

#include <quire/platform/Variant.h>
#include <quire/tree/ItemList.h>

#include "fuzz/StrangeArray.h"
#include "src/tree/ObjectArray.h"
#include "tests/platform/CountedDispatch.h"

namespace TreeFuzz {

namespace {

using namespace Quire;

/// How many objects the row has that a server hands out as \a value.
int expectedSize(const Fuzz::StrangeArray &array, const VARIANT &value)
{
    const bool isArray = (value.vt & VT_ARRAY) != 0;
    const VARTYPE type = array.type();
    const bool isHolder = type == VT_DISPATCH || type == VT_UNKNOWN || type == VT_VARIANT;
    const ULONG size = type == VT_VARIANT ? sizeof(VARIANT) : sizeof(void *);
    const bool counts = isArray && value.byref && isHolder && array.isPlainRow() && array.elementSize() == size;
    return counts ? static_cast<int>(array.size()) : 0;
}

/// Whether the element at \a index is the object; as put there, whatever it says when it is asked.
bool holdsObject(const Fuzz::StrangeArray &array, int index)
{
    const void *const elements = array.get()->pvData;
    if (array.type() != VT_VARIANT)
        return static_cast<IDispatch *const *>(elements)[index] != nullptr;
    return static_cast<const VARIANT *>(elements)[index].vt != VT_EMPTY;
}

bool isAsked(const Fuzz::StrangeArray &array, int index)
{
    if (array.type() != VT_VARIANT)
        return array.type() == VT_UNKNOWN;
    return static_cast<const VARIANT *>(array.get()->pvData)[index].vt == VT_UNKNOWN;
}

QString checkElement(const Fuzz::StrangeArray &array, const ObjectArray &row, int index, CountedDispatch *object)
{
    const bool there = holdsObject(array, index);
    const bool refuses = there && isAsked(array, index) && FAILED(object->dispatchResult);
    const LONG references = object->references;
    try {
        const ObjectArray::Element element = row.at(index);
        if (refuses && object->dispatchResult != E_NOINTERFACE)
            return QStringLiteral("a refusal was not raised");
        if (element.object().GetInterfacePtr() != (there && !refuses ? object : nullptr))
            return QStringLiteral("another object than was put there");
    } catch (const _com_error &error) {
        if (!refuses || error.Error() != object->dispatchResult)
            return QStringLiteral("raised for no reason");
    }
    return object->references == references ? QString() : QStringLiteral("an element changed the count");
}

struct Line
{
    explicit Line(const QString &text)
        : parts(text.split(QLatin1Char('\t')))
    {
        while (parts.size() < 4)
            parts.append(QString());
    }

    Item item() const
    {
        Item made(parts[0], Item_SearchHit);
        made.sortKey = parts[1];
        made.AddAttr(parts[2], parts[3]);
        return made;
    }

    QStringList parts;
};

int indexOfName(const std::vector<Line> &lines, const QString &name)
{
    const auto found = std::find_if(lines.begin(), lines.end(), [&](const Line &line) {
        return QString::compare(line.parts[0], name, Qt::CaseInsensitive) == 0;
    });
    return found == lines.end() ? -1 : static_cast<int>(found - lines.begin());
}

int indexOfAttribute(const std::vector<Line> &lines, const QString &name, const QString &value)
{
    const auto found = std::find_if(lines.begin(), lines.end(),
                                    [&](const Line &line) { return line.parts[2] == name && line.parts[3] == value; });
    return found == lines.end() ? -1 : static_cast<int>(found - lines.begin());
}

QString checkFinding(ItemList &list, const std::vector<Line> &lines)
{
    for (const Line &line : lines) {
        const QString &name = line.parts[0];
        for (const QString &asked : {name, name.toUpper(), name.toLower()}) {
            if (list.Find(asked) != indexOfName(lines, asked))
                return QStringLiteral("another item was found by the name \"%1\"").arg(asked);
        }
        if (list.FindByAttribute(line.parts[2], line.parts[3]) != indexOfAttribute(lines, line.parts[2], line.parts[3]))
            return QStringLiteral("another item was found by an attribute");
    }
    return QString();
}

} // namespace

QString checkObjects(const QByteArray &bytes)
{
    Fuzz::Input input(bytes);
    CountedDispatch object;
    const HRESULT answers[] = {S_OK, E_NOINTERFACE, E_FAIL};
    object.dispatchResult = answers[input.below(3)];
    {
        Fuzz::StrangeArray array(input, &object, true);
        Platform::Variant value;
        array.handOut(input, value.out());
        QString wrong;
        {
            const ObjectArray row(value);
            if (row.size() != expectedSize(array, value.get()))
                wrong = QStringLiteral("%1 objects").arg(row.size());
            for (int index = 0; index < row.size() && wrong.isEmpty(); ++index)
                wrong = checkElement(array, row, index, &object);
        }
        value.release(); // the array stays its owner's
        if (!wrong.isEmpty())
            return wrong;
        if (array.get() && array.get()->cLocks != 0)
            return QStringLiteral("the array is still locked");
    }
    return object.references == 0 ? QString() : QStringLiteral("a reference is left");
}

QString checkList(const QString &text)
{
    std::vector<Line> lines;
    ItemList list;
    for (const QString &line : text.split(QLatin1Char('\n'))) {
        lines.emplace_back(line);
        list.Append(lines.back().item());
    }
    QString wrong = checkFinding(list, lines);
    if (!wrong.isEmpty())
        return wrong;
    std::stable_sort(lines.begin(), lines.end(), [](const Line &a, const Line &b) { return a.parts[1] < b.parts[1]; });
    lines.erase(
        std::unique(lines.begin(), lines.end(), [](const Line &a, const Line &b) { return a.parts[1] == b.parts[1]; }),
        lines.end());
    list.SortUnique();
    if (list.Size() != static_cast<int>(lines.size()))
        return QStringLiteral("%1 items are left instead of %2").arg(list.Size()).arg(lines.size());
    for (int index = 0; index < list.Size(); ++index) {
        if (list.Nth(index)->name != lines[static_cast<std::size_t>(index)].parts[0])
            return QStringLiteral("sorted otherwise");
    }
    return checkFinding(list, lines);
}

} // namespace TreeFuzz
