// Text buffers whose surroundings are watched.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace zrtest
{

// A buffer of `size` bytes between guards.
class GuardedText
{
public:
    explicit GuardedText(uint32_t size) : size_(size), bytes_(size + 2 * kGuard.size(), '~') {}
    char *data() { return bytes_.data() + kGuard.size(); }
    // The text from `offset`, after checking that everything around it is untouched and that it ends.
    std::string text(uint32_t offset = 0) const
    {
        const size_t start = kGuard.size() + std::min(offset, size_);
        EXPECT_EQ(bytes_.find_first_not_of('~'), offset < size_ ? start : std::string::npos);
        EXPECT_EQ(bytes_.substr(kGuard.size() + size_), kGuard);
        EXPECT_TRUE(offset >= size_ || std::memchr(&bytes_[start], 0, size_ - offset) != nullptr);
        return offset < size_ ? &bytes_[start] : "";
    }

private:
    static inline const std::string kGuard = std::string(64, '~');
    uint32_t size_;
    std::string bytes_;
};

// Of `pieces`, as many as fit before the terminator.
inline std::string fitting(const std::vector<std::string> &pieces, uint32_t size)
{
    std::string text;
    for (const std::string &piece : pieces) {
        if (text.size() + piece.size() + 1 > size)
            break;
        text += piece;
    }
    return text;
}

} // namespace zrtest
