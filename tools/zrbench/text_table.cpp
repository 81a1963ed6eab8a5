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

namespace
{

// Walks over a line by columns while `more(columns)`; returns the byte that it comes to. Colours take no
// column, a character of UTF-8 takes one.
template <class More> size_t walk(std::string_view line, More more)
{
    size_t columns = 0;
    for (size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '\033')
            i = std::min(line.find('m', i), line.size());
        else if ((line[i] & 0xC0) != 0x80 && !more(++columns))
            return i;
    }
    return line.size();
}

} // namespace

size_t columnsOf(std::string_view line)
{
    size_t all = 0;
    walk(line, [&](size_t columns) { return (all = columns) != 0; });
    return all;
}

std::string folded(std::string_view line, size_t width, size_t indent)
{
    std::string text;
    std::string margin;
    while (width != 0) {
        const size_t fits = walk(line, [&](size_t columns) { return columns + margin.size() <= width; });
        if (fits == line.size())
            break;
        const size_t start = line.find_first_not_of(' ');
        size_t end = line.rfind(' ', fits);
        if (end == std::string_view::npos || end < start)
            end = fits; // a word that is too long alone
        text += margin;
        text += line.substr(0, end);
        text += "\n";
        line.remove_prefix(std::min(line.find_first_not_of(' ', end), line.size()));
        margin.assign(std::min(indent, width / 2), ' ');
    }
    return text + margin + std::string(line) + "\n";
}

std::string foldedLines(std::string_view text, size_t width, size_t indent)
{
    std::string lines;
    while (!text.empty()) {
        const size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        line.remove_suffix(line.ends_with('\r') ? 1 : 0);
        lines += folded(line, width, indent);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
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
