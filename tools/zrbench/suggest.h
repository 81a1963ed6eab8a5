// What was meant by a word that nothing is called.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zrbench
{

// "; did you mean vlan?" for the one of `known` that `typed` resembles most, or `otherwise` when none does.
std::string didYouMean(std::string_view typed, const std::vector<std::string_view> &known,
                       std::string_view otherwise = {});

} // namespace zrbench
