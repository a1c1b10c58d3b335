#include "RowSteps.h"

#include <algorithm>

namespace Quire {

namespace {

const std::size_t mostSteps = 1000; // beyond, views do better with two large ones

/// Which of the numbers, all different, belong to a longest row of them that grows; by number.
std::vector<bool> longestGrowing(const std::vector<int> &numbers, int limit)
{
    std::vector<int> ends;                         // per length, the place of the smallest number that ends such a row
    std::vector<int> previous(numbers.size(), -1); // in the row that ends at a place, the place before
    for (std::size_t place = 0; place < numbers.size(); ++place) {
        const auto end = std::lower_bound(ends.begin(), ends.end(), numbers[place], [&](int candidate, int number) {
            return numbers[static_cast<std::size_t>(candidate)] < number;
        });
        if (end != ends.begin())
            previous[place] = *(end - 1);
        if (end == ends.end())
            ends.push_back(static_cast<int>(place));
        else
            *end = static_cast<int>(place);
    }
    std::vector<bool> belongs(static_cast<std::size_t>(limit), false);
    for (int place = ends.empty() ? -1 : ends.back(); place >= 0; place = previous[static_cast<std::size_t>(place)])
        belongs[static_cast<std::size_t>(numbers[static_cast<std::size_t>(place)])] = true;
    return belongs;
}

/// Builds the steps along with the rows as they are after each.
class Stepper
{
public:
    Stepper(const std::vector<int> &targets, int newCount)
        : m_rows(targets)
        , m_newCount(newCount)
    {}

    std::vector<RowStep> steps()
    {
        removeOld();
        m_stays = longestGrowing(m_rows, m_newCount);
        m_isOld.assign(static_cast<std::size_t>(m_newCount), false);
        for (const int row : m_rows)
            m_isOld[static_cast<std::size_t>(row)] = true;
        for (int row = 0; row < m_newCount && m_steps.size() <= mostSteps;)
            row += settle(row);
        return std::move(m_steps);
    }

private:
    void removeOld()
    {
        for (int end = static_cast<int>(m_rows.size()); end > 0;) {
            int first = end;
            while (first > 0 && m_rows[static_cast<std::size_t>(first - 1)] < 0)
                --first;
            if (first < end)
                m_steps.push_back({RowStep::Remove, first, end - first, 0, 0});
            end = first < end ? first : end - 1;
        }
        m_rows.erase(std::remove(m_rows.begin(), m_rows.end(), -1), m_rows.end());
    }

    /// Brings the new row, and perhaps some that follow, right behind the one before it. Returns how many.
    int settle(int row)
    {
        if (!m_isOld[static_cast<std::size_t>(row)])
            return insert(row);
        const bool stays = m_stays[static_cast<std::size_t>(row)];
        const auto from = stays ? m_rows.begin() + m_place : m_rows.begin();
        const int place = static_cast<int>(std::find(from, m_rows.end(), row) - m_rows.begin());
        if (!stays && place != m_place)
            return move(row, place);
        m_place = place + 1;
        return 1;
    }

    int insert(int row)
    {
        int count = 1;
        while (row + count < m_newCount && !*(m_isOld.begin() + row + count))
            ++count;
        m_steps.push_back({RowStep::Insert, m_place, count, 0, row});
        m_rows.insert(m_rows.begin() + m_place, static_cast<std::size_t>(count), row);
        m_place += count;
        return count;
    }

    int move(int row, int place)
    {
        int count = 1;
        while (isAt(row + count, place + count))
            ++count;
        m_steps.push_back({RowStep::Move, place, count, m_place, 0});
        const auto begin = m_rows.begin() + place;
        if (place < m_place) {
            std::rotate(begin, begin + count, m_rows.begin() + m_place);
        } else {
            std::rotate(m_rows.begin() + m_place, begin, begin + count);
            m_place += count;
        }
        return count;
    }

    /// Whether the new row is at that place. Behind one that moves it moves as well: of two such neighbours, a longest
    /// row that grows has both or neither; and right before m_place there is one that does not move any more.
    bool isAt(int row, int place) const
    {
        return row < m_newCount && place < static_cast<int>(m_rows.size()) &&
               m_rows[static_cast<std::size_t>(place)] == row;
    }

    std::vector<int> m_rows; // by place, which of the new rows it is
    const int m_newCount;
    std::vector<bool> m_stays; // by new row
    std::vector<bool> m_isOld; // by new row
    int m_place = 0;           // behind the last row that is settled
    std::vector<RowStep> m_steps;
};

std::vector<RowStep> exchangeAll(const std::vector<int> &targets, int newCount)
{
    const int oldCount = static_cast<int>(targets.size());
    const int shorter = std::min(oldCount, newCount);
    int first = 0;
    while (first < shorter && targets[static_cast<std::size_t>(first)] == first)
        ++first;
    int behind = 0;
    while (behind < shorter - first &&
           targets[static_cast<std::size_t>(oldCount - 1 - behind)] == newCount - 1 - behind)
        ++behind;
    std::vector<RowStep> steps;
    if (oldCount > first + behind)
        steps.push_back({RowStep::Remove, first, oldCount - first - behind, 0, 0});
    if (newCount > first + behind)
        steps.push_back({RowStep::Insert, first, newCount - first - behind, 0, first});
    return steps;
}

} // namespace

std::vector<RowStep> rowSteps(const std::vector<int> &targets, int newCount)
{
    std::vector<RowStep> steps = Stepper(targets, newCount).steps();
    return steps.size() > mostSteps ? exchangeAll(targets, newCount) : steps;
}

} // namespace Quire
