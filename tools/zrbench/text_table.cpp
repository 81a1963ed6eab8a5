#include <algorithm>
#include <fmt/format.h>

#include "tools/zrbench/command.h"

namespace zrbench
{

std::string TextTable::text() const
{
    std::vector<size_t> widths;
    for (const auto &cells : rows_) {
        widths.resize(std::max(widths.size(), cells.size()));
        for (size_t i = 0; i < cells.size(); ++i)
            widths[i] = std::max(widths[i], cells[i].size());
    }
    std::string text;
    for (const auto &cells : rows_) {
        std::string line;
        for (size_t i = 0; i < cells.size(); ++i)
            line += fmt::format("{:<{}}  ", cells[i], widths[i]);
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    return text;
}

std::string folded(std::string_view line, size_t width, size_t indent)
{
    std::string text;
    size_t margin = 0; // of the line being made
    while (width != 0 && line.size() + margin > width) {
        // A word that is too long alone stays whole.
        size_t end = line.rfind(' ', width - margin);
        if (end == std::string_view::npos || line.find_first_not_of(' ') > end)
            end = line.find(' ', std::min(line.find_first_not_of(' '), line.size()));
        if (end == std::string_view::npos)
            break;
        text += fmt::format("{:{}}{}\n", "", margin, line.substr(0, end));
        line.remove_prefix(std::min(line.find_first_not_of(' ', end), line.size()));
        margin = std::min(indent, width / 2);
    }
    return text + fmt::format("{:{}}{}\n", "", margin, line);
}

std::string showMac(const uint8_t *mac)
{
    return fmt::format("{:02x}", fmt::join(mac, mac + 6, ":"));
}

std::string showPorts(uint32_t mask)
{
    std::string text;
    for (uint32_t first = 0; first < 32; ++first) {
        if ((mask >> first & 1) == 0)
            continue;
        uint32_t last = first;
        while (last < 31 && (mask >> (last + 1) & 1) != 0)
            ++last;
        text += text.empty() ? "" : ",";
        text += first == last ? fmt::format("{}", first) : fmt::format("{}-{}", first, last);
        first = last;
    }
    return text.empty() ? "-" : text;
}

} // namespace zrbench
