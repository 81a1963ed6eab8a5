#include "tools/zrbench/dump.h"

#include <algorithm>
#include <fmt/format.h>
#include <set>

#include "records/acl_records.h"
#include "records/meter_records.h"
#include "records/stat_records.h"
#include "records/trunk_records.h"
#include "tools/zrbench/device.h"
#include "tools/zrbench/json_text.h"
#include "tools/zrbench/session.h"
#include "tools/zrbench/values.h"

using nlohmann::json;

namespace zrbench
{

namespace
{

#define ZR_RECORDS(session, name) (*(session).operation<decltype(name)>(#name))

// ---- the library's records ----------------------------------------------------------------------

json aclRecords(const AclRuleInfo &info, const AclCounterInfo &counters)
{
    json found;
    for (uint32_t i = 0; info.ruleRecords != nullptr && i < info.logicRuleNum; ++i) {
        const AclRuleRecord &record = info.ruleRecords[i];
        if (record.valid == 0)
            continue;
        json rule = {{"logic", record.logicRuleId}, {"chipIds", json::array()}};
        for (uint32_t id = 0; id < record.count; ++id)
            rule["chipIds"].push_back(record.firstChipId + id);
        if (const AclRuleCounterMapEntry &counter = info.counterMap[record.firstChipId]; counter.valid != 0)
            rule["counter"] = counter.counterId;
        if (const AclRuleCarMapEntry &meter = info.carMap[record.firstChipId]; meter.valid != 0)
            rule["meter"] = meter.carId;
        found["rules"].push_back(std::move(rule));
    }
    if (counters.counterNum != 0)
        found["counters"] = {{"used", counters.usedNum}, {"of", counters.counterNum}};
    return found;
}

// Which chip identifier backs which logic one.
template <class Entry> json pairs(const Entry *entries, uint32_t count)
{
    json found;
    for (uint32_t i = 0; entries != nullptr && i < count; ++i)
        if (entries[i].valid != 0)
            found.push_back({{"logic", entries[i].logicId}, {"chip", entries[i].chipId}});
    return found;
}

json unitRecords(const Session &session, uint32_t unit)
{
    json found = json::object();
    if (json acl = aclRecords(*ZR_RECORDS(session, COM_ACL_GetRuleInfo)(unit),
                              *ZR_RECORDS(session, COM_ACL_GetCounterInfo)(unit));
        !acl.is_null())
        found["acl"] = std::move(acl);
    for (uint32_t partition = 0; found.contains("acl") && partition < ZR_ACL_PARTITIONS; ++partition) {
        uint32_t first = 0;
        uint32_t count = 0;
        if (ZR_RECORDS(session, COM_ACL_GetChipRulePartRange)(unit, partition, &first, &count) == LSW_OK &&
            count != 0)
            found["acl"]["partitions"][std::to_string(partition)] = {{"first", first}, {"entries", count}};
    }
    const TrunkMeterInfo &trunks = *ZR_RECORDS(session, COM_TRUNK_GetMeterInfo)(unit);
    for (uint32_t group = 0; group < ZR_TRUNK_GROUPS; ++group)
        if (trunks.logicTrunkId[group] != 0)
            found["trunk"]["groups"][std::to_string(group)]["trunk"] = trunks.logicTrunkId[group];
    for (uint32_t type = 0; type < ZR_HSEC_METER_TYPES; ++type) {
        const HsecMeterInfo &info = *ZR_RECORDS(session, COM_HSEC_GetMeterInfo)(unit, type);
        if (json meters = pairs(info.entries, info.entryCount); !meters.is_null())
            found["meters"]["types"][std::to_string(type)]["meters"] = std::move(meters);
    }
    const QosStatInfo &statistics = *ZR_RECORDS(session, COM_QOS_GetStatInfo)(unit);
    for (uint32_t type = 0; type < ZR_QOS_STAT_TYPES; ++type)
        if (json ids = pairs(statistics.entries[type], statistics.part[type].entryCount); !ids.is_null())
            found["statistics"]["types"][std::to_string(type)]["identifiers"] = std::move(ids);
    return found;
}

// ---- as text ------------------------------------------------------------------------------------

void write(std::string &to, const json &value, size_t indent)
{
    const bool numbers = value.is_array() && std::ranges::none_of(value, &json::is_structured);
    if (!value.is_structured() || value.empty() || numbers) {
        to += spaced(value);
        return;
    }
    to += value.is_object() ? "{" : "[";
    std::string_view before = "\n";
    for (const auto &[key, member] : value.items()) {
        to += fmt::format("{}{:{}}", before, "", indent + 2);
        to += value.is_object() ? json(key).dump() + ": " : "";
        write(to, member, indent + 2);
        before = ",\n";
    }
    to += fmt::format("\n{:{}}{}", "", indent, value.is_object() ? '}' : ']');
}

// ---- the words of a path ------------------------------------------------------------------------

bool isNumber(std::string_view word)
{
    return !word.empty() && word[0] >= '0' && word[0] <= '9';
}

// "memberConfigs" as "member configs".
std::string spacedWords(std::string_view key)
{
    std::string words;
    bool digit = true; // what starts with one is a number, and stays whole
    for (const char c : key) {
        const bool upper = c >= 'A' && c <= 'Z';
        if (!words.empty() && (upper || (!digit && isNumber({&c, 1}))))
            words += ' ';
        digit = isNumber({&c, 1}) || (digit && isNumber(key));
        words += upper ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return words;
}

std::string singular(std::string word)
{
    if (word.ends_with("ies"))
        return word.replace(word.size() - 3, 3, "y");
    if (word.ends_with('s'))
        word.pop_back();
    return word;
}

using Words = std::vector<std::string>;

// "vlan", "vlans" and "10" are "vlan 10", "ports", "port" and "3" are "port 3". The element of a list is named
// by `key` as it is.
Words with(Words words, const std::string &key, bool element)
{
    if (words.empty() && key == "board") // the units' own state needs no heading
        return words;
    if ((element || isNumber(key)) && !words.empty()) {
        words.back() = singular(words.back());
        if (words.size() > 1 && singular(words[words.size() - 2]) == words.back())
            words.erase(words.end() - 2);
    }
    words.push_back(element ? key : spacedWords(key));
    return words;
}

// ---- the difference -----------------------------------------------------------------------------

// Whether a list under this key is a set of numbers: one value.
bool isSet(std::string_view key)
{
    const std::string word = spacedWords(key);
    return word.ends_with("ports") || word.ends_with("ids") || word == "members" || word == "untagged" ||
           word == "reaches";
}

// Takes from an element of a list of objects what tells it from the others.
std::string identity(json &element)
{
    const auto text = [&](const char *key) {
        std::string value = plainText(element.value(key, json()));
        element.erase(key);
        return value;
    };
    if (!element.is_object())
        return {};
    if (element.contains("mac")) {
        const std::string mac = text("mac");
        return fmt::format("{} vlan {}", mac, text("vlan"));
    }
    for (const char *key : {"logic", "group", "index", "id"})
        if (element.contains(key))
            return text(key);
    return {};
}

bool isTree(const json &value, std::string_view key)
{
    return value.is_object() || (value.is_array() && !isSet(key));
}

// Lists as objects: by what identifies their elements, or by position.
json members(const json &tree)
{
    if (tree.is_object() || tree.is_null())
        return tree;
    json found = json::object();
    for (size_t i = 0; i < tree.size(); ++i) {
        json element = tree[i];
        const std::string name = identity(element);
        found[name.empty() ? std::to_string(i) : name] = std::move(element);
    }
    return found;
}

// Numbers by their value.
struct ByNumber {
    bool operator()(const std::string &a, const std::string &b) const
    {
        const auto number = [](const std::string &text) { return parseNumber(text); };
        if (number(a) && number(b))
            return *number(a) < *number(b);
        return a < b;
    }
};

void compare(const Words &path, const std::string &key, const json &before, const json &after,
             std::vector<Change> &found)
{
    if (before == after)
        return;
    const auto fits = [&](const json &value) { return value.is_null() || isTree(value, key); };
    if (!fits(before) || !fits(after)) {
        found.push_back({fmt::to_string(fmt::join(path, " ")), before, after});
        return;
    }
    const json old = members(before);
    const json now = members(after);
    std::set<std::string, ByNumber> keys;
    for (const json *tree : {&old, &now})
        for (const auto &member : tree->items())
            keys.insert(member.key());
    const auto of = [](const json &tree, const std::string &name) {
        return tree.is_null() ? json() : tree.value(name, json());
    };
    const bool list = before.is_array() || after.is_array();
    for (const std::string &name : keys)
        compare(with(path, name, list), name, of(old, name), of(now, name), found);
}

} // namespace

json libraryRecords(const Session &session)
{
    json found;
    for (uint32_t unit = 0; unit < LSWM_UNITS; ++unit)
        found["units"][std::to_string(unit)] = unitRecords(session, unit);
    return found;
}

std::string stateText(const json &state)
{
    std::string text;
    write(text, state, 0);
    return text;
}

std::vector<Change> changes(const json &before, const json &after)
{
    std::vector<Change> found;
    compare({}, "", before, after, found);
    return found;
}

std::string lineOf(const Change &change)
{
    const auto text = [](const json &value) { return value.is_null() ? "absent" : plainText(value); };
    return fmt::format("{} {} -> {}", change.path, text(change.before), text(change.after));
}

json rowOf(const Change &change)
{
    json row = {{"path", change.path}};
    if (!change.before.is_null())
        row["from"] = change.before;
    if (!change.after.is_null())
        row["to"] = change.after;
    return row;
}

json readDump(const std::string &file)
{
    json state;
    try {
        state = parseJson(contents(file));
    } catch (const UsageError &error) {
        throw UsageError{fmt::format("{}: {}", file, error.text)};
    }
    if (!state.is_object() || !state.contains("board"))
        throw UsageError{
            fmt::format("{}: no dump: expected an object with \"board\", found {}", file, shown(state))};
    return state;
}

} // namespace zrbench
