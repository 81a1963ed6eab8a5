// Port sets as the dump tells them.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>

namespace zrsim
{

// [0, 1, 15] for ports 0, 1 and 15.
inline nlohmann::json portList(uint32_t ports)
{
    nlohmann::json list = nlohmann::json::array();
    for (uint32_t port = 0; port < 32; ++port)
        if ((ports >> port & 1) != 0)
            list.push_back(port);
    return list;
}

} // namespace zrsim
