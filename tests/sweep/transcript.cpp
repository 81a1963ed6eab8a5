#include "tests/sweep/transcript.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cctype>
#include <fstream>

#include "sim/gate.h"

namespace zrtest
{
namespace
{

struct Token {
    bool number;
    std::string text;
};

bool inWord(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

// A word is a number when it is decimal with or without sign, or hexadecimal behind 0x.
bool isNumber(const std::string &word)
{
    const bool hex = word.rfind("0x", 0) == 0;
    const size_t start = hex ? 2 : word[0] == '-' ? 1 : 0;
    return word.size() > start && std::all_of(word.begin() + static_cast<long>(start), word.end(), [&](char c) {
               return hex ? std::isxdigit(static_cast<unsigned char>(c))
                          : std::isdigit(static_cast<unsigned char>(c));
           });
}

std::vector<Token> tokens(const std::string &text)
{
    std::vector<Token> found;
    for (size_t at = 0; at < text.size();) {
        size_t end = at;
        if (text[end] == '-' && (at == 0 || !inWord(text[at - 1])))
            ++end;
        while (end < text.size() && inWord(text[end]))
            ++end;
        if (end == at)
            ++end;
        const std::string word = text.substr(at, end - at);
        found.push_back({isNumber(word), word});
        at = end;
    }
    return found;
}

std::string skeleton(const std::vector<Token> &text)
{
    std::string shape;
    for (const Token &token : text)
        shape += token.number ? "#" : token.text;
    return shape;
}

// The numbers at one place of several outcomes.
std::string together(const std::string &name, const std::vector<uint64_t> &values, const Lines &numbers)
{
    if (std::equal(numbers.begin() + 1, numbers.end(), numbers.begin()))
        return numbers[0];
    const auto shownAs = [&](auto show) {
        for (size_t i = 0; i < values.size(); ++i)
            if (numbers[i] != show(static_cast<uint32_t>(values[i])))
                return false;
        return true;
    };
    if (shownAs([](uint32_t value) { return fmt::format("{}", value); }))
        return "$" + name;
    if (shownAs([](uint32_t value) { return fmt::format("{}", static_cast<int32_t>(value)); }))
        return "-$" + name;
    if (shownAs([](uint32_t value) { return fmt::format("{:#x}", value); }))
        return "0x$" + name;
    if (shownAs([](uint32_t value) { return zrsim::show(value); }))
        return "$" + name;
    return fmt::format("{{{}}}", fmt::join(numbers, ","));
}

} // namespace

std::vector<Merged> merge(const std::string &name, const std::vector<Variant> &variants)
{
    struct Group {
        std::string shape;
        std::vector<uint64_t> values;
        std::vector<std::vector<Token>> texts;
    };
    std::vector<Group> groups;
    for (const Variant &variant : variants) {
        std::vector<Token> text = tokens(variant.text);
        const std::string shape = skeleton(text);
        auto group =
            std::find_if(groups.begin(), groups.end(), [&](const Group &g) { return g.shape == shape; });
        if (group == groups.end())
            group = groups.insert(groups.end(), {shape, {}, {}});
        group->values.push_back(variant.value);
        group->texts.push_back(std::move(text));
    }
    std::vector<Merged> merged;
    for (const Group &group : groups) {
        std::string text;
        for (size_t i = 0; i < group.texts[0].size(); ++i) {
            Lines numbers;
            for (const auto &other : group.texts)
                numbers.push_back(other[i].text);
            text += group.texts[0][i].number ? together(name, group.values, numbers) : numbers[0];
        }
        merged.push_back({group.values, text});
    }
    return merged;
}

namespace
{

// Items of one shape as one; the ends of a long run stand for it.
std::string alike(const Lines &items)
{
    std::vector<Variant> variants;
    for (size_t i = 0; i < items.size(); ++i)
        if (i < 2 || i == items.size() - 1)
            variants.push_back({0, items[i]});
    return merge("", variants)[0].text;
}

} // namespace

Lines repeated(const Lines &items, size_t longest)
{
    Lines shapes;
    for (const std::string &item : items)
        shapes.push_back(skeleton(tokens(item)));
    Lines texts;
    for (size_t at = 0; at < items.size();) {
        // The shortest block that repeats here, and how often.
        size_t length = 1;
        size_t times = 1;
        for (size_t tried = 1; tried <= longest && times == 1; ++tried) {
            size_t end = at + tried;
            while (end < items.size() && shapes[end] == shapes[end - tried])
                ++end;
            if ((end - at) / tried > 1) {
                length = tried;
                times = (end - at) / tried;
            }
        }
        Lines block;
        for (size_t i = 0; i < length; ++i) {
            Lines same;
            for (size_t time = 0; time < times; ++time)
                same.push_back(items[at + time * length + i]);
            block.push_back(alike(same));
        }
        const std::string text = fmt::format("{}", fmt::join(block, ", "));
        texts.push_back(times == 1    ? text
                        : length == 1 ? fmt::format("{} x{}", text, times)
                                      : fmt::format("({}) x{}", text, times));
        at += length * times;
    }
    return texts;
}

Lines wrapped(const Lines &lines)
{
    constexpr size_t kWidth = 110;
    Lines broken;
    for (std::string line : lines) {
        while (line.size() > kWidth && line.rfind("        ", 0) != 0) {
            const size_t comma = line.rfind(", ", kWidth - 1);
            if (comma == std::string::npos || comma < 40)
                break;
            broken.push_back(line.substr(0, comma + 1));
            line = "      " + line.substr(comma + 2);
        }
        broken.push_back(line);
    }
    return broken;
}

void Transcript::add(const std::string &heading, const Lines &body)
{
    order_.push_back(heading);
    bodies_[heading] = body;
}

Lines Transcript::body(const std::string &heading) const
{
    auto found = bodies_.find(heading);
    return found == bodies_.end() ? Lines{} : found->second;
}

void Transcript::read(const std::string &path)
{
    std::ifstream file(path);
    Lines headings;
    Lines body;
    const auto end = [&] {
        for (const std::string &heading : headings)
            add(heading, body);
        headings.clear();
        body.clear();
    };
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#')
            continue;
        if (line[0] != ' ') {
            if (!body.empty())
                end();
            headings.push_back(line);
        } else
            body.push_back(line);
    }
    end();
}

void Transcript::write(const std::string &path) const
{
    std::ofstream file(path);
    std::map<std::string, bool> written;
    for (const std::string &heading : order_) {
        if (written[heading])
            continue;
        for (const std::string &other : order_)
            if (!written[other] && bodies_.at(other) == bodies_.at(heading)) {
                file << other << "\n";
                written[other] = true;
            }
        file << fmt::format("{}\n\n", fmt::join(bodies_.at(heading), "\n"));
    }
}

} // namespace zrtest
