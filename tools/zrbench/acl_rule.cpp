#include "tools/zrbench/acl_rule.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <fmt/format.h>
#include <optional>

#include "acl/acl.h"
#include "tools/zrbench/command.h"
#include "tools/zrbench/suggest.h"
#include "tools/zrbench/values.h"

using nlohmann::json;

namespace zrbench
{

namespace
{

enum class Form { Number, Hex, Mac, Ip, Capwap };

struct Field {
    const char *name;
    uint32_t flag;
    Form form;
    size_t value; // offsets in the match part
    size_t mask;
    uint32_t bytes; // of a number
    uint32_t whole; // mask of a value given without one; also the largest value
};

#define ZR_FIELD(member) offsetof(LswmAclMatch, member), offsetof(LswmAclMatch, member##Mask)

constexpr Field kFields[] = {
    {"dstMac", LSWM_MATCH_DST_MAC, Form::Mac, ZR_FIELD(dstMac), 6, 0},
    {"srcMac", LSWM_MATCH_SRC_MAC, Form::Mac, ZR_FIELD(srcMac), 6, 0},
    {"etherType", LSWM_MATCH_ETHER_TYPE, Form::Hex, ZR_FIELD(etherType), 2, 0xFFFF},
    {"vlan", LSWM_MATCH_OUTER_VLAN, Form::Number, ZR_FIELD(outerVlan), 2, 0xFFF},
    {"priority", LSWM_MATCH_OUTER_PRIORITY, Form::Number, ZR_FIELD(outerPriority), 1, 7},
    {"dstIp", LSWM_MATCH_DST_IP, Form::Ip, ZR_FIELD(dstIp), 4, 0xFFFFFFFF},
    {"srcIp", LSWM_MATCH_SRC_IP, Form::Ip, ZR_FIELD(srcIp), 4, 0xFFFFFFFF},
    {"ipProto", LSWM_MATCH_IP_PROTOCOL, Form::Number, ZR_FIELD(ipProtocol), 1, 0xFF},
    {"l4Src", LSWM_MATCH_L4_SRC_PORT, Form::Number, ZR_FIELD(l4SrcPort), 2, 0xFFFF},
    {"l4Dst", LSWM_MATCH_L4_DST_PORT, Form::Number, ZR_FIELD(l4DstPort), 2, 0xFFFF},
    {"udf", LSWM_MATCH_UDF, Form::Hex, ZR_FIELD(udf), 2, 0xFFFF},
    {"capwap", LSWM_MATCH_CAPWAP, Form::Capwap, ZR_FIELD(capwap), 4, 0xFFFF},
};

struct Flag {
    const char *name;
    uint32_t flag;
};
constexpr Flag kForwards[] = {{"a", LSWM_ACTION_FORWARD_A},
                              {"b", LSWM_ACTION_FORWARD_B},
                              {"c", LSWM_ACTION_FORWARD_C},
                              {"d", LSWM_ACTION_FORWARD_D},
                              {"e", LSWM_ACTION_FORWARD_E}};
constexpr Flag kValues[] = {
    {"valueA", LSWM_ACTION_VALUE_A}, {"valueB", LSWM_ACTION_VALUE_B}, {"valueC", LSWM_ACTION_VALUE_C}};

[[noreturn]] void refuse(std::string_view name, const json &found, std::string_view expected)
{
    throw ArgumentError{{fmt::format("expected {}, found {}", expected, shown(found))},
                        name.empty() ? "" : fmt::format("/{}", name)};
}

// ---- numbers, addresses ---------------------------------------------------------------------

// Names that a field takes for numbers: IANA's protocol numbers, IEEE's EtherTypes.
std::string_view namesFor(std::string_view field)
{
    return field == "ipProto" ? "icmp=1|igmp=2|tcp=6|udp=17|icmpv6=58|ospf=89|vrrp=112|sctp=132"
           : field == "etherType"
               ? "ipv4=0x0800|arp=0x0806|ipv6=0x86dd|pppoe-discovery=0x8863|pppoe-session=0x8864|"
                 "eapol=0x888e|lldp=0x88cc|ptp=0x88f7"
               : "";
}

std::optional<uint32_t> parseIp(std::string_view text)
{
    uint32_t address = 0;
    for (int part = 0; part < 4; ++part) {
        const size_t dot = text.find('.');
        const std::optional<uint32_t> byte = parseNumber(text.substr(0, dot));
        if (!byte || *byte > 0xFF || (dot == std::string_view::npos) != (part == 3))
            return std::nullopt;
        address = address << 8 | *byte;
        text.remove_prefix(part == 3 ? 0 : dot + 1);
    }
    return address;
}

std::optional<uint32_t> parseIpMask(std::string_view text)
{
    if (const std::optional<uint32_t> bits = parseNumber(text); bits && *bits <= 32)
        return *bits == 0 ? 0 : ~uint32_t{0} << (32 - *bits);
    return parseIp(text);
}

std::string showIp(uint32_t address)
{
    return fmt::format("{}.{}.{}.{}", address >> 24, address >> 16 & 0xFF, address >> 8 & 0xFF, address & 0xFF);
}

// A prefix length where the mask has one.
std::string showIpMask(uint32_t mask)
{
    const int bits = std::countl_one(mask);
    return std::popcount(mask) == bits ? fmt::format("{}", bits) : showIp(mask);
}

// A number of 1, 2 or 4 bytes in a record.
uint32_t load(const LswmAclMatch &match, size_t offset, uint32_t bytes)
{
    const auto *from = reinterpret_cast<const uint8_t *>(&match) + offset;
    uint16_t half = 0;
    uint32_t word = 0;
    if (bytes == 1)
        return *from;
    if (bytes == 2) {
        std::memcpy(&half, from, sizeof half);
        return half;
    }
    std::memcpy(&word, from, sizeof word);
    return word;
}

void store(LswmAclMatch &match, size_t offset, uint32_t bytes, uint32_t value)
{
    auto *to = reinterpret_cast<uint8_t *>(&match) + offset;
    const auto half = static_cast<uint16_t>(value);
    if (bytes == 1)
        *to = static_cast<uint8_t>(value);
    else if (bytes == 2)
        std::memcpy(to, &half, sizeof half);
    else
        std::memcpy(to, &value, sizeof value);
}

void storeMac(LswmAclMatch &match, size_t offset, std::string_view name, const json &text)
{
    try {
        const json bytes = checkedValue({name, Type::Mac}, text);
        for (size_t i = 0; i < 6; ++i)
            reinterpret_cast<uint8_t *>(&match)[offset + i] = bytes[i].get<uint8_t>();
    } catch (const ArgumentError &error) {
        throw ArgumentError{{error.text}, fmt::format("/{}", name)};
    }
}

// ---- one field of a match -------------------------------------------------------------------

void parseField(LswmAclMatch &match, const Field &field, const json &given)
{
    json value = given;
    std::string mask;
    bool masked = false;
    if (given.is_string()) {
        const auto text = given.get<std::string>();
        const size_t slash = text.find('/');
        value = text.substr(0, slash);
        masked = slash != std::string::npos;
        mask = masked ? text.substr(slash + 1) : "";
    }
    match.flags |= field.flag;
    if (field.form == Form::Mac) {
        storeMac(match, field.value, field.name, value);
        storeMac(match, field.mask, field.name, !masked ? "ff:ff:ff:ff:ff:ff" : mask);
        return;
    }
    const bool ip = field.form == Form::Ip && value.is_string();
    const uint32_t most = field.form == Form::Capwap ? 0xFFFFFFFF : field.whole;
    std::optional<uint32_t> number = ip ? parseIp(value.get<std::string>()) : asNumber(value);
    if (!number && value.is_string())
        number = namedNumber(namesFor(field.name), value.get_ref<const std::string &>());
    const std::optional<uint32_t> bits = !masked ? field.whole : ip ? parseIpMask(mask) : parseNumber(mask);
    if (!number || !bits || *number > most || *bits > field.whole)
        refuse(
            field.name, given,
            ip ? "192.0.2.1, 192.0.2.0/24 or 192.0.2.0/255.255.255.0"
               : fmt::format("{}, or number/mask",
                             expectedOf({.name = field.name, .choices = namesFor(field.name), .most = most})));
    if (field.form == Form::Capwap) {
        for (uint32_t i = 0; i < 4; ++i)
            match.capwap[i] = static_cast<uint8_t>(*number >> (24 - 8 * i));
    } else {
        store(match, field.value, field.bytes, *number);
    }
    store(match, field.mask, field.bytes, *bits);
}

json showField(const LswmAclMatch &match, const Field &field)
{
    const auto *bytes = reinterpret_cast<const uint8_t *>(&match);
    if (field.form == Form::Mac) {
        const std::string mask = showMac(bytes + field.mask);
        return showMac(bytes + field.value) + (mask == "ff:ff:ff:ff:ff:ff" ? "" : "/" + mask);
    }
    const uint32_t mask = load(match, field.mask, field.bytes);
    uint32_t value = load(match, field.value, field.bytes);
    if (field.form == Form::Capwap)
        value = static_cast<uint32_t>(match.capwap[0] << 24 | match.capwap[1] << 16 | match.capwap[2] << 8 |
                                      match.capwap[3]);
    const bool whole = mask == field.whole;
    switch (field.form) {
    case Form::Ip:
        return showIp(value) + (whole ? "" : "/" + showIpMask(mask));
    case Form::Capwap:
        return fmt::format("{:#010x}", value) + (whole ? "" : fmt::format("/{:#x}", mask));
    case Form::Hex:
        return fmt::format("{:#06x}", value) + (whole ? "" : fmt::format("/{:#x}", mask));
    default:
        return whole ? json(value) : json(fmt::format("{}/{:#x}", value, mask));
    }
}

// ---- the rest of a rule ---------------------------------------------------------------------

uint32_t number(const std::string &name, const json &value, uint32_t most)
{
    const std::optional<uint32_t> found = asNumber(value);
    if (!found || *found > most)
        refuse(name, value, fmt::format("a number up to {}", most));
    return *found;
}

uint32_t portBitmap(const json &value)
{
    constexpr std::string_view kExpected = "chip ports, 0 to 4 and 15 to 17, such as \"0-4,15\"";
    const auto list = value.is_string() ? parseList(value.get<std::string>(), 31, 32) : std::nullopt;
    if (!list)
        refuse("ports", value, kExpected);
    uint32_t bitmap = 0;
    for (uint32_t port : *list)
        bitmap |= uint32_t{1} << port;
    if ((bitmap & ~uint32_t{ZR_ACL_CHIP_PORTS}) != 0)
        refuse("ports", value, kExpected);
    return bitmap;
}

uint32_t forwardFlags(const json &value)
{
    uint32_t flags = 0;
    for (char letter : value.is_string() ? value.get<std::string>() : std::string("?")) {
        const auto *row = std::find_if(std::begin(kForwards), std::end(kForwards),
                                       [&](const Flag &forward) { return forward.name[0] == letter; });
        if (row == std::end(kForwards))
            refuse("forward", value, "letters from a to e");
        flags |= row->flag;
    }
    return flags;
}

// What the virtual chip does with a frame, by name; the last two with a number.
constexpr Flag kMeanings[] = {{"drop", LSWM_ACTION_FORWARD_B},
                              {"permit", LSWM_ACTION_FORWARD_A},
                              {"trap", LSWM_ACTION_FORWARD_D},
                              {"permit with priority ", LSWM_ACTION_FORWARD_C | LSWM_ACTION_VALUE_A},
                              {"redirect to port ", LSWM_ACTION_PORT}};

void parseMeaning(LswmAclAction &action, const json &value)
{
    const std::string text = value.is_string() ? value.get<std::string>() : "";
    for (const Flag &row : kMeanings) {
        const std::string_view name = row.name;
        if (!text.starts_with(name) || (text.size() > name.size()) != name.ends_with(' '))
            continue;
        action.flags |= row.flag;
        if (text == name)
            return;
        const bool redirects = row.flag == LSWM_ACTION_PORT;
        const uint32_t argument = number("action", text.substr(name.size()), redirects ? 31 : 7);
        if (redirects)
            action.port = argument;
        else
            action.value = static_cast<uint8_t>(argument);
        return;
    }
    refuse("action", value, "drop, permit, permit with priority N, trap or redirect to port N");
}

// Empty when nothing but counter and meter is left of the action.
std::string meaningOf(const LswmAclAction &action)
{
    // The first of the letters is the chip's; redirection goes before every permit.
    const auto *row = std::find_if(std::begin(kForwards), std::end(kForwards),
                                   [&](const Flag &forward) { return (action.flags & forward.flag) != 0; });
    const uint32_t forward = row == std::end(kForwards) ? 0 : row->flag;
    if (forward == LSWM_ACTION_FORWARD_B)
        return "drop";
    if ((forward & (LSWM_ACTION_FORWARD_D | LSWM_ACTION_FORWARD_E)) != 0)
        return "trap";
    if ((action.flags & LSWM_ACTION_PORT) != 0)
        return fmt::format("redirect to port {}", action.port);
    if (forward == LSWM_ACTION_FORWARD_C)
        return fmt::format("permit with priority {}", action.value & 7);
    return forward == LSWM_ACTION_FORWARD_A ? "permit" : "";
}

bool parseAction(LswmAclAction &action, const std::string &name, const json &value)
{
    constexpr uint32_t kAny = 0xFFFFFFFF;
    if (name == "action") {
        parseMeaning(action, value);
    } else if (name == "forward") {
        action.flags |= forwardFlags(value);
    } else if (name == "count") {
        if (!value.is_boolean())
            refuse(name, value, "true or false");
        action.flags |= value.get<bool>() ? LSWM_ACTION_COUNT : 0;
    } else if (name == "car") {
        action.flags |= LSWM_ACTION_CAR;
        action.carId = number(name, value, kAny);
    } else if (name == "toPort") {
        action.flags |= LSWM_ACTION_PORT;
        action.port = number(name, value, kAny);
    } else {
        for (const Flag &row : kValues) {
            if (name != row.name)
                continue;
            const auto argument = static_cast<uint8_t>(number(name, value, 0xFF));
            const bool taken =
                (action.flags & (LSWM_ACTION_VALUE_A | LSWM_ACTION_VALUE_B | LSWM_ACTION_VALUE_C));
            if (taken && action.value != argument)
                refuse(name, value, "the same value as the action's other values: they share it");
            action.flags |= row.flag;
            action.value = argument;
            return true;
        }
        return false;
    }
    return true;
}

bool parseMatch(LswmAclMatch &match, const std::string &name, const json &value)
{
    for (const Field &field : kFields) {
        if (name == field.name) {
            parseField(match, field, value);
            return true;
        }
    }
    if (name == "ports") {
        match.portBitmap = portBitmap(value);
    } else if (name == "l3") {
        if (value != "ipv4" && value != "other")
            refuse(name, value, "ipv4 or other");
        match.l3Type = value == "other" ? 1 : 0;
    } else {
        return false;
    }
    return true;
}

} // namespace

std::string_view ruleKeys()
{
    static const std::string keys = [] {
        std::string joined = "partition|ports|l3";
        for (const Field &field : kFields)
            joined += fmt::format("|{}", field.name);
        joined += "|action|forward|count|car|toPort";
        for (const Flag &value : kValues)
            joined += fmt::format("|{}", value.name);
        return joined;
    }();
    return keys;
}

LswmAclRule parseRule(const json &rule)
{
    LswmAclRule record{};
    if (!rule.is_object())
        refuse("", rule, "an object such as {\"etherType\": \"0x0806\", \"forward\": \"c\"}");
    for (const auto &[name, value] : rule.items()) {
        if (name == "partition")
            record.partition = number(name, value, 0xFFFFFFFF);
        else if (!parseMatch(record.match, name, value) && !parseAction(record.action, name, value))
            throw UsageError{
                fmt::format("a rule has no {}{}", shown(name),
                            didYouMean(name, split(ruleKeys(), '|'),
                                       fmt::format("; it has {}", fmt::join(split(ruleKeys(), '|'), ", "))))};
    }
    return record;
}

void checkRule(const json &rule)
{
    parseRule(rule);
}

nlohmann::ordered_json showRule(const LswmAclRule &rule)
{
    nlohmann::ordered_json text = nlohmann::ordered_json::object();
    for (const Field &field : kFields)
        if ((rule.match.flags & field.flag) != 0)
            text[field.name] = showField(rule.match, field);
    if (rule.match.tosMask != 0)
        text["tos"] = fmt::format("{:#x}/{:#x}", rule.match.tos, rule.match.tosMask);
    text["ports"] = plainText(portList(rule.match.portBitmap));

    const LswmAclAction &action = rule.action;
    std::string forward;
    for (const Flag &row : kForwards)
        if ((action.flags & row.flag) != 0)
            forward += row.name;
    if (const std::string meaning = meaningOf(action); !meaning.empty())
        text["action"] = meaning;
    if (!forward.empty())
        text["forward"] = forward;
    if ((action.flags & LSWM_ACTION_COUNT) != 0)
        text["count"] = action.counterId;
    if ((action.flags & LSWM_ACTION_CAR) != 0)
        text["car"] = action.carId;
    for (const Flag &row : kValues)
        if ((action.flags & row.flag) != 0)
            text[row.name] = action.value;
    if ((action.flags & LSWM_ACTION_PORT) != 0)
        text["toPort"] = action.port;
    return text;
}

std::string briefRule(const nlohmann::ordered_json &rule)
{
    std::string text;
    for (const auto &[name, value] : rule.items())
        text += fmt::format("{}{}={}", text.empty() ? "" : " ", name, plainText(value));
    return text;
}

} // namespace zrbench
