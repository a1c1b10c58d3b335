#include <algorithm>
#include <map>
#include <vector>

#include "ModelChecks.h"
#include "models/RowSteps.h"

namespace ModelFuzz {

namespace {

using namespace Quire;

using Rows = std::vector<int>;

Rows rowsOf(const QByteArray &bytes)
{
    return Rows(bytes.begin(), bytes.end());
}

/// What matchRows promises, by going through all of them.
Rows obviousMatches(const Rows &before, const Rows &after)
{
    std::map<int, std::size_t> next; // by key, from which new row on to look
    Rows targets;
    for (const int key : before) {
        std::size_t &from = next[key];
        while (from < after.size() && after[from] != key)
            ++from;
        targets.push_back(from < after.size() ? static_cast<int>(from++) : -1);
    }
    return targets;
}

/// How many of the old rows that stay cannot keep their order.
int fewestMoves(const Rows &targets)
{
    Rows ends; // per length, the smallest number that ends a row of numbers that grow
    int staying = 0;
    for (const int target : targets) {
        if (target < 0)
            continue;
        ++staying;
        const auto end = std::lower_bound(ends.begin(), ends.end(), target);
        if (end == ends.end())
            ends.push_back(target);
        else
            *end = target;
    }
    return staying - static_cast<int>(ends.size());
}

/// Whether a model may make the step.
bool isPossible(const RowStep &step, int rows, int newCount)
{
    const int end = step.first + step.count;
    if (step.count < 1 || step.first < 0)
        return false;
    switch (step.kind) {
    case RowStep::Remove:
        return end <= rows;
    case RowStep::Insert:
        return step.first <= rows && step.source >= 0 && step.source + step.count <= newCount;
    case RowStep::Move:
        return end <= rows && step.to >= 0 && step.to <= rows && (step.to < step.first || step.to > end);
    }
    return false;
}

/// Makes the step. \a rows are numbers of new rows, -1 for those that are none.
void apply(const RowStep &step, Rows &rows)
{
    const auto first = rows.begin() + step.first;
    if (step.kind == RowStep::Remove) {
        rows.erase(first, first + step.count);
    } else if (step.kind == RowStep::Insert) {
        Rows inserted;
        for (int row = 0; row < step.count; ++row)
            inserted.push_back(step.source + row);
        rows.insert(first, inserted.begin(), inserted.end());
    } else if (step.to > step.first) {
        std::rotate(first, first + step.count, rows.begin() + step.to);
    } else {
        std::rotate(rows.begin() + step.to, first, first + step.count);
    }
}

} // namespace

QString checkRows(const QByteArray &input)
{
    const int end = input.contains('\n') ? input.indexOf('\n') : input.size();
    const Rows before = rowsOf(input.left(end));
    const Rows after = rowsOf(input.mid(end + 1));
    const Rows targets = matchRows(before, after);
    if (targets != obviousMatches(before, after))
        return QStringLiteral("matched otherwise");
    const int newCount = static_cast<int>(after.size());
    Rows rows = targets;
    int moved = 0;
    for (const RowStep &step : rowSteps(targets, newCount)) {
        if (!isPossible(step, static_cast<int>(rows.size()), newCount))
            return QStringLiteral("a step that no model can make");
        apply(step, rows);
        moved += step.kind == RowStep::Move ? step.count : 0;
    }
    if (moved > fewestMoves(targets))
        return QStringLiteral("%1 rows move").arg(moved);
    Rows expected;
    for (int row = 0; row < newCount; ++row)
        expected.push_back(row);
    return rows == expected ? QString() : QStringLiteral("the steps lead to other rows");
}

} // namespace ModelFuzz
