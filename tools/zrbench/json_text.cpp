#include "tools/zrbench/json_text.h"

#include <algorithm>

namespace zrbench
{

namespace
{

// The next character that is neither blank nor in a comment.
size_t skipped(std::string_view text, size_t at)
{
    for (;;) {
        at = std::min(text.find_first_not_of(" \t\r\n", at), text.size());
        const std::string_view rest = text.substr(at);
        if (rest.starts_with("//"))
            at = std::min(text.find('\n', at), text.size());
        else if (rest.starts_with("/*"))
            at = std::min(text.find("*/", at + 2), text.size() - 2) + 2;
        else
            return at;
    }
}

size_t endOfString(std::string_view text, size_t at)
{
    for (++at; at < text.size() && text[at] != '"'; ++at)
        at += text[at] == '\\' ? 1 : 0;
    return std::min(at + 1, text.size());
}

size_t endOfValue(std::string_view text, size_t at)
{
    size_t depth = 0;
    while (at < text.size()) {
        const char c = text[at];
        if (c == '"') {
            at = endOfString(text, at);
        } else if (c == '{' || c == '[') {
            ++depth;
            ++at;
        } else if ((c == '}' || c == ']') && depth > 0) {
            --depth;
            ++at;
        } else {
            at = std::min(text.find_first_of("\"{}[],:/ \t\r\n", at), text.size());
        }
        if (depth == 0)
            return at;
        at = skipped(text, at);
        at += at < text.size() && (text[at] == ',' || text[at] == ':') ? 1 : 0;
        at = skipped(text, at);
    }
    return at;
}

} // namespace

std::string spaced(const nlohmann::ordered_json &value)
{
    if (!value.is_structured())
        return value.dump();
    std::string text;
    for (const auto &[key, element] : value.items()) {
        text += text.empty() ? "" : ", ";
        text += value.is_object() ? nlohmann::json(key).dump() + ": " : "";
        text += spaced(element);
    }
    return value.is_object() ? "{" + text + "}" : "[" + text + "]";
}

JsonPart::JsonPart(std::string_view whole, size_t at)
    : whole_(whole), begin_(skipped(whole, at)), end_(endOfValue(whole, begin_))
{
}

template <class Visit> void JsonPart::walk(Visit visit) const
{
    const bool object = whole_[begin_] == '{';
    for (size_t at = skipped(whole_, begin_ + 1); at < end_ - 1;) {
        std::string key;
        if (object) {
            const size_t end = endOfString(whole_, at);
            key = nlohmann::json::parse(whole_.substr(at, end - at)).get<std::string>();
            at = skipped(whole_, end) + 1; // the colon
        }
        const JsonPart value(whole_, at);
        if (visit(key, value))
            return;
        at = skipped(whole_, value.end_);
        at = whole_[at] == ',' ? skipped(whole_, at + 1) : end_;
    }
}

std::optional<JsonPart> JsonPart::member(std::string_view wanted) const
{
    std::optional<JsonPart> found;
    walk([&](const std::string &key, const JsonPart &value) {
        if (key == wanted)
            found = value;
        return found.has_value();
    });
    return found;
}

std::optional<JsonPart> JsonPart::element(size_t index) const
{
    std::optional<JsonPart> found;
    walk([&](const std::string &, const JsonPart &value) {
        if (index-- == 0)
            found = value;
        return found.has_value();
    });
    return found;
}

size_t JsonPart::behindLast() const
{
    size_t end = begin_ + 1;
    walk([&](const std::string &, const JsonPart &value) {
        end = value.end_;
        return false;
    });
    return end;
}

} // namespace zrbench
