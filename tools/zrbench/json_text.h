// JSON as people write it: with comments, with lines broken where they read well. What a program changes in
// such a text leaves the rest as it is.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace zrbench
{

// JSON on one line, with blanks as people set them: {"do": "vlan create 1 10", "expect": 4}
std::string spaced(const nlohmann::ordered_json &value);

// A part of a text that is good JSON with comments.
class JsonPart
{
public:
    explicit JsonPart(std::string_view whole) : JsonPart(whole, 0) {}

    size_t begin() const { return begin_; }
    size_t end() const { return end_; }
    std::string_view text() const { return whole_.substr(begin_, end_ - begin_); }

    // A member of an object, an element of a list; nothing where there is none.
    std::optional<JsonPart> member(std::string_view key) const;
    std::optional<JsonPart> element(size_t index) const;
    // Where a further member goes: behind the last.
    size_t behindLast() const;

private:
    JsonPart(std::string_view whole, size_t at);
    // Calls visit(key, value) for each member or element until it returns true.
    template <class Visit> void walk(Visit visit) const;

    std::string_view whole_;
    size_t begin_;
    size_t end_;
};

} // namespace zrbench
