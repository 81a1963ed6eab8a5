#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>

namespace zrsim
{

class Chip;

class StpStates
{
public:
    void attach(Chip &) {}
    void reset() {}
    void dump(nlohmann::json &) const {}
};

} // namespace zrsim
