#include <algorithm>
#include <fmt/format.h>
#include <map>

#include "tools/zrbench/session.h"
#include "tools/zrbench/values.h"

using nlohmann::json;

namespace zrbench
{

namespace
{

// Sets with a name; any set can be given by its number, too.
const std::map<std::string, uint32_t, std::less<>> kSetNames = {
    {"valid", LSWM_SET_VALID},
    {"priselA", LSWM_SET_PRISEL_A},
    {"priselB", LSWM_SET_PRISEL_B},
    {"cascade", LSWM_SET_CASCADE},
};

[[noreturn]] void refuse(const std::string &place, const std::string &expected, const json &found)
{
    throw ArgumentError{{fmt::format("expected {}, found {}", expected, shown(found))}, place};
}

const json &object(const std::string &place, const json &value, std::string_view what)
{
    if (!value.is_object())
        refuse(place, fmt::format("an object with {}", what), value);
    return value;
}

uint32_t number(const std::string &place, const json &value, uint32_t most = UINT32_MAX)
{
    const std::optional<uint32_t> found = asNumber(value);
    if (!found || *found > most)
        refuse(place, fmt::format("a number up to {}", most), value);
    return *found;
}

std::vector<uint32_t> ports(const std::string &place, const json &value)
{
    try {
        return checkedValue({"ports", Type::Ports}, value).get<std::vector<uint32_t>>();
    } catch (const ArgumentError &error) {
        throw ArgumentError{{error.text}, place};
    }
}

uint32_t setNumber(const std::string &place, const std::string &name)
{
    if (auto known = kSetNames.find(name); known != kSetNames.end())
        return known->second;
    const std::optional<uint32_t> number = parseNumber(name);
    if (!number || *number >= LSWM_PORT_SETS)
        refuse(place, "a set: valid, priselA, priselB, cascade or 0 to 15", name);
    return *number;
}

LswmPortInfo portInfo(const std::string &place, const json &value, LswmPortInfo info)
{
    for (const auto &[name, field] : object(place, value, "flags, kind").items()) {
        const std::string at = place + "/" + name;
        if (name == "flags")
            info.flags = static_cast<uint8_t>(number(at, field, UINT8_MAX));
        else if (name == "kind")
            info.kind = static_cast<uint8_t>(number(at, field, UINT8_MAX));
        else
            refuse(at, "flags or kind", name);
    }
    return info;
}

std::string showSet(const LswmPortSet &set)
{
    std::string text;
    for (uint32_t first = 0; first < LSWM_PORTS; ++first) {
        auto member = [&](uint32_t port) {
            return port < LSWM_PORTS && (set.word[port / 32] >> (port % 32) & 1) != 0;
        };
        if (!member(first))
            continue;
        uint32_t last = first;
        while (member(last + 1))
            ++last;
        text += text.empty() ? "" : ",";
        text += first == last ? fmt::format("{}", first) : fmt::format("{}-{}", first, last);
        first = last;
    }
    return text.empty() ? "-" : text;
}

void apply(const json &info, LswmUnitInfo &record, std::span<LswmPortSet> sets)
{
    constexpr std::string_view kFields = "maxFrameSize, reservedPort, cascadeTrunk, portSets, ports";
    for (const auto &[name, value] : object("", info, kFields).items()) {
        const std::string place = "/" + name;
        if (name == "maxFrameSize") {
            record.maxFrameSize = number(place, value);
        } else if (name == "reservedPort") {
            record.reservedPort = number(place, value);
        } else if (name == "cascadeTrunk") {
            record.cascadeTrunkId = number(place, value);
        } else if (name == "portSets") {
            for (const auto &[set, members] : object(place, value, "port sets").items()) {
                const std::string at = place + "/" + set;
                LswmPortSet &words = sets[setNumber(at, set)] = {};
                for (uint32_t port : ports(at, members))
                    words.word[port / 32] |= 1U << (port % 32);
            }
        } else if (name == "ports") {
            for (const auto &[list, fields] : object(place, value, "lists of ports").items()) {
                for (uint32_t port : ports(place + "/" + list, list))
                    record.port[port] = portInfo(place + "/" + list, fields, record.port[port]);
            }
        } else {
            refuse(place, fmt::format("one of {}", kFields), name);
        }
    }
}

} // namespace

void checkUnitInfo(const json &info)
{
    LswmUnitInfo record{};
    LswmPortSet sets[LSWM_PORT_SETS]{};
    apply(info, record, sets);
}

void Session::setUnitInfo(uint32_t unit, const json &info)
{
    LswmUnitInfo record = unitInfo_[unit];
    if (record.portMap == nullptr)
        record.portMap = portMaps_[unit];
    std::vector<LswmPortSet> sets(record.portMap, record.portMap + LSWM_PORT_SETS);
    apply(info, record, sets);
    std::ranges::copy(sets, record.portMap);
    unitInfo_[unit] = record;
}

json Session::unitInfoState(uint32_t unit) const
{
    json state;
    for (const auto &[name, set] : kSetNames)
        if (const uint32_t ports = portSet(unit, set); ports != 0)
            state[name + "Ports"] = portList(ports);
    const LswmUnitInfo &info = unitInfo_[unit];
    if (!state.is_null() || info.maxFrameSize != 0)
        state.update({{"maxFrameSize", info.maxFrameSize},
                      {"reservedPort", info.reservedPort},
                      {"cascadeTrunk", info.cascadeTrunkId}});
    return state;
}

std::string Session::showUnitInfo(uint32_t unit) const
{
    const LswmUnitInfo &info = unitInfo_[unit];
    std::string text = fmt::format("frame size {}, reserved port {}, cascade trunk {}\n", info.maxFrameSize,
                                   info.reservedPort, info.cascadeTrunkId);
    for (uint32_t set = 0; info.portMap != nullptr && set < LSWM_PORT_SETS; ++set) {
        const std::string ports = showSet(info.portMap[set]);
        const auto named =
            std::ranges::find_if(kSetNames, [&](const auto &entry) { return entry.second == set; });
        if (ports != "-")
            text += fmt::format("set {} {}\n", named != kSetNames.end() ? named->first : std::to_string(set),
                                ports);
    }
    std::map<std::pair<uint8_t, uint8_t>, LswmPortSet> alike;
    for (uint32_t port = 0; port < LSWM_PORTS; ++port)
        alike[{info.port[port].flags, info.port[port].kind}].word[port / 32] |= 1U << (port % 32);
    for (const auto &[fields, ports] : alike) {
        const auto [flags, kind] = fields;
        if (flags != 0 || kind != 0)
            text += fmt::format("ports {} flags {:#x} kind {}\n", showSet(ports), flags, kind);
    }
    return text;
}

} // namespace zrbench
