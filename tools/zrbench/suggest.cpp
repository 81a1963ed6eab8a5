#include "tools/zrbench/suggest.h"

#include <algorithm>
#include <fmt/format.h>

namespace zrbench
{

namespace
{

// Letters that are missing, too many, wrong, or swapped with the next one.
size_t distance(std::string_view a, std::string_view b)
{
    std::vector<size_t> before;
    std::vector<size_t> above(b.size() + 1);
    std::vector<size_t> row(b.size() + 1);
    for (size_t j = 0; j <= b.size(); ++j)
        above[j] = j;
    for (size_t i = 1; i <= a.size(); ++i) {
        row[0] = i;
        for (size_t j = 1; j <= b.size(); ++j) {
            row[j] = std::min({above[j] + 1, row[j - 1] + 1, above[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                row[j] = std::min(row[j], before[j - 2] + 1);
        }
        before = above;
        above = row;
    }
    return above[b.size()];
}

} // namespace

std::string didYouMean(std::string_view typed, const std::vector<std::string_view> &known,
                       std::string_view otherwise)
{
    constexpr size_t kLongest = 60; // anything longer is no mistyped word
    const std::string_view *nearest = nullptr;
    // A quarter of the last word may be wrong, and never all of it.
    const size_t last = typed.size() - (typed.find_last_of(' ') + 1);
    size_t least = std::min(last, last / 4 + 2);
    for (const std::string_view &word : known) {
        if (const size_t apart = typed.size() > kLongest ? least : distance(typed, word); apart < least) {
            least = apart;
            nearest = &word;
        }
    }
    return nearest == nullptr ? std::string(otherwise) : fmt::format("; did you mean {}?", *nearest);
}

} // namespace zrbench
