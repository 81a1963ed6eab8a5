// Conversion of ACL rules in both directions.
#include "acl/acl.h"

#include "base/field_chain.h"
#include "tests/sweep/sweep.h"

namespace zrtest
{
namespace
{

// A rule of every field.
LswmAclMatch fullMatch()
{
    LswmAclMatch match{};
    match.flags = 0x6060E02F;
    match.ipProtocol = 6;
    return match;
}

// Runs a converter on an empty configuration and gives its chain back.
template <class Convert> uint32_t converted(Convert convert)
{
    FilterCfg cfg{};
    const zr::FieldChain chain(cfg);
    return convert(&cfg);
}

constexpr uint8_t kMac[6] = {1, 2, 3, 4, 5, 6};
constexpr uint8_t kCapwap[4] = {0x00, 0x10, 0x02, 0x00};

// A converter with its arguments between unit and configuration.
#define CHAINS(name, ...)                                                                                      \
    .operation = #name, .run = [](Outputs &) {                                                                 \
        [[maybe_unused]] const LswmAclMatch match = fullMatch();                                               \
        return converted([&](FilterCfg *cfg) { return ZR_OP(name)(1, __VA_ARGS__ __VA_OPT__(, ) cfg); });      \
    }
// A converter without status.
#define WRITES(name, ...)                                                                                      \
    .operation = #name, .run = [](Outputs &out) {                                                              \
        ZR_OP(name)(__VA_ARGS__);                                                                              \
        return 0U;                                                                                             \
    }

const FilterCfgRaw kRaw{};
const FilterAct kAct{};
const LswmAclAction kAllActions = [] {
    LswmAclAction action{};
    action.flags = 0xFFFFFFFF;
    return action;
}();

const bool added = addSweep({
    {CHAINS(HAL_ACL_ConvertRuleInfoZr, &match)},
    {CHAINS(HAL_ACL_ConvertL2InfoZr, &match)},
    {CHAINS(HAL_ACL_ConvertIpv4InfoZr, &match)},
    {CHAINS(HAL_ACL_ConvertOuterVlanAndPriZr, &match)},
    {CHAINS(HAL_ACL_EmptyMatchHandle)},
    {CHAINS(HAL_ACL_ConvertDMacZr, kMac, kMac)},
    {CHAINS(HAL_ACL_ConvertSMacZr, kMac, kMac)},
    {CHAINS(HAL_ACL_ConvertEthTypeZr, 17, 0xFF)},
    {CHAINS(HAL_ACL_ConvertIpProtocolZr, 17, 0xFF)},
    {CHAINS(HAL_ACL_ConvertSrcIpZr, 17, 0xFF)},
    {CHAINS(HAL_ACL_ConvertDstIpZr, 17, 0xFF)},
    {CHAINS(HAL_ACL_ConvertSrcPortZr, 1, 80, 0xFFFF)},
    {CHAINS(HAL_ACL_ConvertDstPortZr, 1, 80, 0xFFFF)},
    {CHAINS(HAL_ACL_ConvertUdfDataZr, 41, 2, 0xFFFF)},
    {CHAINS(HAL_ACL_ConvertCapWapZr, 30, kCapwap, 0xFFFF)},
    {WRITES(HAL_ACL_ConvertFwdActionZr, &kAllActions, out.make<FilterAct>())},
    {WRITES(HAL_ACL_FilterCfgToRuleZr, out.make<LswmAclMatch>(), &kRaw)},
    {WRITES(HAL_ACL_FieldToRuleCfgZr, 7, 0x0806, 0xFFFF, out.make<LswmAclMatch>())},
    {WRITES(HAL_ACL_MacFieldToRuleMacZr, 2, 0xA1B2, 0xFFFF, out.make<uint8_t>(12))},
    {WRITES(HAL_ACL_FilterActToLswmActionZr, out.make<LswmAclAction>(), &kAct)},
    {.operation = "HAL_ACL_FieldType2Name",
     .run = [](Outputs &out) { return ZR_OP(HAL_ACL_FieldType2Name)(137, out.make<char>(20), 20); }},
});

} // namespace
} // namespace zrtest
