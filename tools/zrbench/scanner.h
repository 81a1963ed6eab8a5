// Reads a command line piece by piece.
#pragma once

#include <algorithm>
#include <string_view>

namespace zrbench
{

inline constexpr std::string_view kBlanks = " \t\r\n";

class Scanner
{
public:
    explicit Scanner(std::string_view line) : rest_(line) { skipBlanks(); }

    bool atEnd() const { return rest_.empty(); }
    std::string_view rest() const { return rest_; }

    std::string_view word()
    {
        const size_t length = std::min(rest_.find_first_of(kBlanks), rest_.size());
        return take(length);
    }

    std::string_view all()
    {
        const std::string_view text = rest_.substr(0, rest_.find_last_not_of(kBlanks) + 1);
        rest_ = {};
        return text;
    }

    // A word, or what stands within quotes.
    std::string_view path()
    {
        const size_t quote = rest_.starts_with('"') ? rest_.find('"', 1) : std::string_view::npos;
        return quote == std::string_view::npos ? word() : take(quote + 1).substr(1, quote - 1);
    }

    // A JSON text: to the bracket that closes the first one, or one word.
    std::string_view value()
    {
        if (!rest_.starts_with('{') && !rest_.starts_with('['))
            return word();
        int depth = 0;
        bool quoted = false;
        for (size_t i = 0; i < rest_.size(); ++i) {
            const char c = rest_[i];
            if (quoted && c == '\\')
                ++i;
            else if (c == '"')
                quoted = !quoted;
            else if (!quoted && (c == '{' || c == '['))
                ++depth;
            else if (!quoted && (c == '}' || c == ']') && --depth == 0)
                return take(i + 1);
        }
        return all();
    }

private:
    std::string_view take(size_t length)
    {
        const std::string_view taken = rest_.substr(0, length);
        rest_.remove_prefix(length);
        skipBlanks();
        return taken;
    }
    void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(kBlanks), rest_.size())); }

    std::string_view rest_;
};

} // namespace zrbench
