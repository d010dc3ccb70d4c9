#include "cli/graph/Columns.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <numeric>

namespace cli {

namespace {

constexpr int kSlotHeight = 6; ///< of the place of a line
constexpr int kSweeps = 6;

/// The column of each block of `group`: right of all that depend on it. What nothing depends on moves to the right
/// until it stands beside what it needs.
std::map<std::size_t, std::size_t> columnsOf(const Blocks& blocks, std::vector<std::size_t> group)
{
    std::map<std::size_t, std::size_t> columns;
    std::sort(group.begin(), group.end());
    for (std::size_t at = group.size(); at-- > 0;) {
        const std::size_t column = columns[group[at]];
        for (const std::size_t next : blocks.all[group[at]].next) {
            columns[next] = std::max(columns[next], column + 1);
        }
    }
    for (const std::size_t block : group) {
        if (blocks.all[block].previous.empty() && !blocks.all[block].next.empty()) {
            std::size_t nearest = std::numeric_limits<std::size_t>::max();
            for (const std::size_t next : blocks.all[block].next) {
                nearest = std::min(nearest, columns[next]);
            }
            columns[block] = nearest - 1;
        }
    }
    return columns;
}

std::int64_t dividedDown(std::int64_t sum, std::int64_t count)
{
    return sum >= 0 ? sum / count : -((-sum + count - 1) / count);
}

/// The values nearest to `wanted` of which none is smaller than the one before it.
std::vector<std::int64_t> rising(const std::vector<std::int64_t>& wanted)
{
    struct Run
    {
        std::int64_t sum;
        std::int64_t count;

        std::int64_t mean() const { return dividedDown(sum, count); }
    };
    std::vector<Run> runs;
    for (const std::int64_t value : wanted) {
        runs.push_back({value, 1});
        while (runs.size() > 1 && runs[runs.size() - 2].mean() > runs.back().mean()) {
            const Run last = runs.back();
            runs.pop_back();
            runs.back().sum += last.sum;
            runs.back().count += last.count;
        }
    }
    std::vector<std::int64_t> values;
    for (const Run& run : runs) {
        values.insert(values.end(), static_cast<std::size_t>(run.count), run.mean());
    }
    return values;
}

} // namespace

Columns::Columns(const Blocks& blocks, const std::vector<std::size_t>& group, std::size_t& linePlaces)
{
    makeSlots(blocks, group);
    lead(blocks, group, linePlaces);
    orderSlots();
    placeSlots();
}

void Columns::makeSlots(const Blocks& blocks, const std::vector<std::size_t>& group)
{
    const std::map<std::size_t, std::size_t> columnOf = columnsOf(blocks, group);
    for (const std::size_t block : group) {
        const std::size_t column = columnOf.at(block);
        columns.resize(std::max(columns.size(), column + 1));
        columns[column].push_back(slots.size());
        slotOf.emplace(block, slots.size());
        slots.push_back({block, column, blocks.all[block].size.height, 0, {}, {}});
    }
}

void Columns::lead(const Blocks& blocks, const std::vector<std::size_t>& group, std::size_t& linePlaces)
{
    for (const std::size_t block : group) {
        for (const std::size_t next : blocks.all[block].next) {
            std::size_t from = slotOf[block];
            const std::size_t to = slotOf[next];
            const std::size_t between = slots[to].column - slots[from].column - 1;
            if (between <= linePlaces) {
                linePlaces -= between;
                for (std::size_t column = slots[from].column + 1; column < slots[to].column; ++column) {
                    const std::size_t place = slots.size();
                    columns[column].push_back(place);
                    slots.push_back({std::nullopt, column, kSlotHeight, 0, {}, {}});
                    passed[{block, next}].push_back(place);
                    join(from, place);
                    from = place;
                }
            }
            join(from, to);
        }
    }
}

void Columns::join(std::size_t from, std::size_t to)
{
    slots[from].right.push_back(to);
    slots[to].left.push_back(from);
}

/// Moves each slot to the mean turn of its neighbours, from the left and from the right, over and over.
void Columns::orderSlots()
{
    turn.resize(slots.size());
    for (const std::vector<std::size_t>& column : columns) {
        for (std::size_t at = 0; at < column.size(); ++at) {
            turn[column[at]] = at;
        }
    }
    for (int sweep = 0; sweep < kSweeps; ++sweep) {
        for (std::vector<std::size_t>& column : columns) {
            orderBy(column, &Slot::left);
        }
        for (std::size_t at = columns.size(); at-- > 0;) {
            orderBy(columns[at], &Slot::right);
        }
    }
}

void Columns::orderBy(std::vector<std::size_t>& column, std::vector<std::size_t> Slot::*neighbours)
{
    constexpr std::size_t kFineness = 1024;
    std::vector<std::pair<std::size_t, std::size_t>> wanted; // mean turn, slot
    for (const std::size_t slot : column) {
        const std::vector<std::size_t>& near = slots[slot].*neighbours;
        const std::size_t sum = std::accumulate(near.begin(), near.end(), std::size_t{0},
                                                [&](std::size_t all, std::size_t one) { return all + turn[one]; });
        wanted.emplace_back(near.empty() ? turn[slot] * kFineness : sum * kFineness / near.size(), slot);
    }
    std::stable_sort(wanted.begin(), wanted.end(),
                     [](const auto& one, const auto& other) { return one.first < other.first; });
    for (std::size_t at = 0; at < column.size(); ++at) {
        column[at] = wanted[at].second;
        turn[column[at]] = at;
    }
}

void Columns::placeSlots()
{
    for (const std::vector<std::size_t>& column : columns) {
        placeBy(column, false, false);
    }
    for (int sweep = 0; sweep < kSweeps; ++sweep) {
        for (const std::vector<std::size_t>& column : columns) {
            placeBy(column, true, false);
        }
        for (std::size_t at = columns.size(); at-- > 0;) {
            placeBy(columns[at], false, true);
        }
    }
    for (const std::vector<std::size_t>& column : columns) {
        placeBy(column, true, true);
    }
    int highest = std::numeric_limits<int>::max();
    int lowest = 0;
    for (const Slot& slot : slots) {
        highest = std::min(highest, slot.top);
    }
    for (Slot& slot : slots) {
        slot.top -= highest;
        lowest = std::max(lowest, slot.top + slot.height);
    }
    height = lowest;
}

/// Places the slots as near as can be to the mean of their neighbours, without overlapping and in their order.
void Columns::placeBy(const std::vector<std::size_t>& column, bool looksLeft, bool looksRight)
{
    std::vector<std::int64_t> wanted;
    std::int64_t offset = 0;
    for (const std::size_t index : column) {
        const Slot& slot = slots[index];
        std::int64_t sum = 0;
        std::int64_t count = 0;
        for (const auto& [looks, near] : {std::pair(looksLeft, &slot.left), std::pair(looksRight, &slot.right)}) {
            for (const std::size_t neighbour : looks ? *near : std::vector<std::size_t>()) {
                sum += slots[neighbour].middle();
                ++count;
            }
        }
        const std::int64_t top = count > 0 ? dividedDown(sum, count) - slot.height / 2 : slot.top;
        wanted.push_back(top - offset);
        offset += slot.height + kRowGap;
    }
    const std::vector<std::int64_t> placed = rising(wanted);
    offset = 0;
    for (std::size_t at = 0; at < column.size(); ++at) {
        Slot& slot = slots[column[at]];
        slot.top = static_cast<int>(placed[at] + offset);
        offset += slot.height + kRowGap;
    }
}

} // namespace cli
