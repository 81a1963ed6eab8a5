// ACL rules as users write them: a flat JSON object.
//
//   match   dstMac srcMac dstIp srcIp etherType vlan priority ipProto l4Src l4Dst udf capwap, each a value
//           or "value/mask" (an IPv4 mask also as a prefix length); l3: "other" for rules that do not
//           match IPv4 fields; ports: the chip ports, "0-4,15"
//   action  action: what a frame meets with, "drop", "permit", "permit with priority 5", "trap" or "redirect to
//           port 3"; or the manager's letters, forward: "a" to "e", several as "ab"; count: true; car: a meter;
//           valueA, valueB, valueC: the action's value; toPort: a port
//   partition  0 to 3
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "platform/manager_records.h"

namespace zrbench
{

// Throws UsageError for a name that a rule does not have, ArgumentError for a value that does not fit; its
// argument is the place within the rule: "/vlan".
LswmAclRule parseRule(const nlohmann::json &rule);
void checkRule(const nlohmann::json &rule);

// The names that a rule can have, separated by |.
std::string_view ruleKeys();

// A rule that was read back, in the same form, the match first; "count" is the number of its counter.
nlohmann::ordered_json showRule(const LswmAclRule &rule);

// On one line: "etherType=0x0806 forward=c".
std::string briefRule(const nlohmann::ordered_json &rule);

} // namespace zrbench
