// The columns of one group of blocks: which block stands in which, in which order, and how far down.
#pragma once

#include "cli/graph/Blocks.h"

#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace cli {

/// A place in a column: of a block, or where a line passes that leads further.
struct Slot
{
    std::optional<std::size_t> block;
    std::size_t column = 0;
    int height = 0;
    int top = 0;
    std::vector<std::size_t> left; ///< slots that lead here
    std::vector<std::size_t> right;

    int middle() const { return top + height / 2; }
};

class Columns
{
public:
    /// `group` is one of groupsOf(blocks). Lines that lead further than one column get places of their own as long as
    /// `linePlaces`, which is taken from, lasts.
    Columns(const Blocks& blocks, const std::vector<std::size_t>& group, std::size_t& linePlaces);

    std::vector<Slot> slots;
    std::vector<std::vector<std::size_t>> columns; ///< slots from top to bottom
    /// Of a line between two blocks, the slots that it passes.
    std::map<std::pair<std::size_t, std::size_t>, std::vector<std::size_t>> passed;
    int height = 0;

private:
    void makeSlots(const Blocks& blocks, const std::vector<std::size_t>& group);
    void lead(const Blocks& blocks, const std::vector<std::size_t>& group, std::size_t& linePlaces);
    void orderSlots();
    void orderBy(std::vector<std::size_t>& column, std::vector<std::size_t> Slot::*neighbours);
    void placeSlots();
    void placeBy(const std::vector<std::size_t>& column, bool looksLeft, bool looksRight);
    void join(std::size_t from, std::size_t to);

    std::map<std::size_t, std::size_t> slotOf; ///< by block
    std::vector<std::size_t> turn;             ///< of each slot within its column
};

} // namespace cli
