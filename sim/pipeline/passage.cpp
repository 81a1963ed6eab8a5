#include "sim/pipeline/passage.h"

#include <bit>

namespace zrsim
{

std::string show(const PortList &list)
{
    std::string text;
    for (uint32_t rest = list.mask; rest != 0;) {
        const auto first = static_cast<uint32_t>(std::countr_zero(rest));
        const auto count = static_cast<uint32_t>(std::countr_one(rest >> first));
        text += fmt::format("{}{}", text.empty() ? "" : ",", first);
        if (count > 1)
            text += fmt::format("{}{}", count > 2 ? "-" : ",", first + count - 1);
        rest = first + count < 32 ? rest >> (first + count) << (first + count) : 0;
    }
    return text.empty() ? "-" : text;
}

} // namespace zrsim
