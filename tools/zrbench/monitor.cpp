#include "tools/zrbench/monitor.h"

#include <fmt/format.h>
#include <map>
#include <set>

#include "tools/zrbench/values.h"

using nlohmann::json;

namespace zrbench
{

namespace
{

// Numbers in their order.
std::vector<std::string> keysOf(const json &a, const json &b)
{
    std::map<uint32_t, std::string> keys;
    for (const json *object : {&a, &b})
        for (const auto &[key, unused] : object->items())
            keys[parseNumber(key).value_or(UINT32_MAX)] = key;
    std::vector<std::string> ordered;
    for (const auto &[number, key] : keys)
        ordered.push_back(key);
    return ordered;
}

json at(const json &state, const std::string &pointer)
{
    return state.value(json::json_pointer(pointer), json::object());
}

void addLinks(std::vector<std::string> &events, const std::string &unit, const json &before, const json &after)
{
    for (const std::string &port : keysOf(before, after)) {
        const std::string was = at(before, "/" + port).value("link", "down");
        const std::string is = at(after, "/" + port).value("link", "down");
        if (was != is)
            events.push_back(fmt::format("unit {} port {} link {} -> {}", unit, port, was, is));
    }
}

void addAddresses(std::vector<std::string> &events, const std::string &unit, const json &before,
                  const json &after)
{
    const auto byAddress = [](const json &entries) {
        std::map<std::pair<std::string, uint32_t>, std::string> ports;
        for (const json &entry : entries)
            ports[{entry.value("mac", ""), entry.value("vlan", 0U)}] =
                plainText(entry.value("port", json("none")));
        return ports;
    };
    const auto was = byAddress(before);
    const auto is = byAddress(after);
    const auto told = [&](const auto &address, const std::string &what) {
        events.push_back(fmt::format("unit {} {} VLAN {} {}", unit, address.first, address.second, what));
    };
    for (const auto &[address, port] : was)
        if (!is.contains(address))
            told(address, "gone from port " + port);
    for (const auto &[address, port] : is) {
        const auto known = was.find(address);
        if (known == was.end())
            told(address, "at port " + port);
        else if (known->second != port)
            told(address, fmt::format("moved from port {} to {}", known->second, port));
    }
}

// The words of the chip's record that the stand-in counts in, in the order in which they are told.
constexpr std::pair<std::string_view, std::string_view> kWords[] = {
    {"8", "unicast in"},   {"62", "multicast in"},  {"63", "broadcast in"},  {"0", "octets in"},
    {"33", "unicast out"}, {"34", "multicast out"}, {"35", "broadcast out"}, {"22", "octets out"},
    {"9", "dropped"},      {"2", "wrong FCS"},      {"4", "undersize"},      {"13", "oversize"}};

void addCounters(std::vector<std::string> &events, const std::string &unit, const json &before,
                 const json &after)
{
    for (const std::string &port : keysOf(before, after)) {
        std::string gained;
        for (const auto &[word, name] : kWords) {
            const std::string pointer = fmt::format("/{}/words/{}", port, word);
            const auto count = [&](const json &ports) {
                return ports.value(json::json_pointer(pointer), uint32_t{0});
            };
            if (const uint32_t more = count(after) - count(before); more != 0 && count(after) != 0)
                gained += fmt::format("{} +{} {}", gained.empty() ? "" : ",", more, name);
        }
        if (!gained.empty())
            events.push_back(fmt::format("unit {} port {}{}", unit, port, gained));
    }
}

} // namespace

std::vector<std::string> eventsBetween(const json &before, const json &after)
{
    std::vector<std::string> events;
    const json was = at(before, "/board/units");
    const json is = at(after, "/board/units");
    for (const std::string &unit : keysOf(was, is)) {
        const json unitWas = at(was, "/" + unit);
        const json unitIs = at(is, "/" + unit);
        addLinks(events, unit, at(unitWas, "/ports/port"), at(unitIs, "/ports/port"));
        addAddresses(events, unit, at(unitWas, "/mac/entries"), at(unitIs, "/mac/entries"));
        addCounters(events, unit, at(unitWas, "/counters/ports"), at(unitIs, "/counters/ports"));
    }
    return events;
}

} // namespace zrbench
