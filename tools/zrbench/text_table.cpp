#include <algorithm>
#include <cctype>
#include <fmt/format.h>
#include <numeric>

#include "tools/zrbench/command.h"
#include "tools/zrbench/values.h"

using nlohmann::json;

namespace zrbench
{

namespace
{

// "CHIP IDS" as "chipIds".
std::string memberName(std::string_view head)
{
    std::string name;
    bool starts = false;
    for (const char c : head) {
        const auto letter = static_cast<unsigned char>(c);
        if (std::isalnum(letter) != 0)
            name += static_cast<char>(starts && !name.empty() ? std::toupper(letter) : std::tolower(letter));
        starts = std::isalnum(letter) == 0;
    }
    return name;
}

} // namespace

std::string TextTable::text(size_t width) const
{
    std::vector<std::vector<std::string>> lines{head_};
    for (const auto &cells : rows_) {
        auto &line = lines.emplace_back();
        for (const json &cell : cells)
            line.push_back(plainText(cell));
    }
    std::vector<size_t> widths;
    std::vector<size_t> narrowest; // a column's longest word
    for (const auto &cells : lines) {
        widths.resize(std::max(widths.size(), cells.size()));
        narrowest.resize(widths.size());
        for (size_t i = 0; i < cells.size(); ++i) {
            widths[i] = std::max(widths[i], cells[i].size());
            for (size_t from = 0; from < cells[i].size();) {
                const size_t to = std::min(cells[i].find_first_of(" ,", from), cells[i].size() - 1) + 1;
                narrowest[i] = std::max(narrowest[i], to - from - (cells[i][to - 1] == ' ' ? 1 : 0));
                from = to;
            }
        }
    }
    const size_t all = std::accumulate(widths.begin(), widths.end(), size_t{0});
    const size_t gap = width == 0 || all + 2 * widths.size() <= width + 2 ? 2 : 1;
    for (size_t total = all + gap * (widths.size() - 1); width != 0 && total > width; --total) {
        size_t widest = 0; // of those that can become narrower
        for (size_t i = 1; i < widths.size(); ++i)
            if (widths[i] > narrowest[i] && (widths[i] > widths[widest] || widths[widest] <= narrowest[widest]))
                widest = i;
        if (widths[widest] <= narrowest[widest])
            break;
        --widths[widest];
    }
    std::string text;
    for (const auto &cells : lines) {
        std::vector<std::vector<std::string_view>> pieces; // of each cell, one below the other
        std::vector<std::string> kept;
        size_t height = 1;
        kept.reserve(cells.size());
        for (size_t i = 0; i < cells.size(); ++i) {
            kept.push_back(folded(cells[i], width == 0 ? 0 : widths[i], 0));
            pieces.push_back(split(std::string_view(kept.back()).substr(0, kept.back().size() - 1), '\n'));
            height = std::max(height, pieces.back().size());
        }
        for (size_t row = 0; row < height; ++row) {
            std::string line;
            for (size_t i = 0; i < pieces.size(); ++i)
                line += fmt::format("{:<{}}", row < pieces[i].size() ? pieces[i][row] : "", widths[i] + gap);
            line.erase(line.find_last_not_of(' ') + 1);
            text += line + "\n";
        }
    }
    return text;
}

json TextTable::rows() const
{
    json rows = json::array();
    for (const auto &cells : rows_) {
        json &row = rows.emplace_back(json::object());
        for (size_t i = 0; i < cells.size() && i < head_.size(); ++i)
            row[memberName(head_[i])] = cells[i] == "-" ? json() : cells[i];
    }
    return rows;
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
        if (end == std::string_view::npos || end < start) {
            // A word that is too long alone, perhaps a list.
            const size_t comma = line.rfind(',', fits - 1);
            end = comma == std::string_view::npos || comma < start ? fits : comma + 1;
        }
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

json portList(uint32_t mask)
{
    json ports = json::array();
    for (uint32_t port = 0; port < 32; ++port)
        if ((mask >> port & 1) != 0)
            ports.push_back(port);
    return ports;
}

} // namespace zrbench
