#include "cli/NearestName.h"

#include <algorithm>
#include <cstddef>

namespace cli {

namespace {

char lowered(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

/// The cost of one character standing for another; a whole mistake counts 2.
std::size_t exchangeCost(char one, char other)
{
    if (one == other) {
        return 0;
    }
    return lowered(one) == lowered(other) ? 1 : 2;
}

/// The distance of two names with neighbours that may be swapped, once each (optimal string alignment).
std::size_t distanceBetween(std::string_view one, std::string_view other)
{
    std::vector<std::vector<std::size_t>> cost(one.size() + 1, std::vector<std::size_t>(other.size() + 1));
    for (std::size_t row = 0; row <= one.size(); ++row) {
        cost[row][0] = 2 * row;
    }
    for (std::size_t column = 0; column <= other.size(); ++column) {
        cost[0][column] = 2 * column;
    }
    for (std::size_t row = 1; row <= one.size(); ++row) {
        for (std::size_t column = 1; column <= other.size(); ++column) {
            std::size_t best = std::min(cost[row - 1][column], cost[row][column - 1]) + 2;
            best = std::min(best, cost[row - 1][column - 1] + exchangeCost(one[row - 1], other[column - 1]));
            if (row > 1 && column > 1 && one[row - 1] == other[column - 2] && one[row - 2] == other[column - 1]) {
                best = std::min(best, cost[row - 2][column - 2] + 2);
            }
            cost[row][column] = best;
        }
    }
    return cost[one.size()][other.size()];
}

} // namespace

std::optional<std::string> nearestName(std::string_view given, const std::vector<std::string>& known)
{
    constexpr std::size_t kLongestCompared = 100; // nobody mistypes more; a hostile name must not cost its square
    std::optional<std::string> nearest;
    std::size_t smallest = 0;
    for (const std::string& name : known) {
        const std::size_t longer = std::max(given.size(), name.size());
        if (longer > kLongestCompared) {
            continue;
        }
        const std::size_t distance = distanceBetween(given, name);
        if (distance * 3 <= 2 * longer && (!nearest || distance < smallest)) {
            nearest = name;
            smallest = distance;
        }
    }
    return nearest;
}

} // namespace cli
