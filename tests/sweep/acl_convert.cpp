// Conversion of ACL rules in both directions.
#include "acl/convert.h"

#include "acl/field_chain.h"
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

template <class Operation> uint32_t convertedMatch(Operation operation)
{
    const LswmAclMatch match = fullMatch();
    return converted([&](FilterCfg *cfg) { return operation(1, &match, cfg); });
}

template <class Operation> uint32_t convertedMac(Operation operation)
{
    const uint8_t mac[6] = {1, 2, 3, 4, 5, 6};
    return converted([&](FilterCfg *cfg) { return operation(1, mac, mac, cfg); });
}

template <class Operation> uint32_t convertedWord(Operation operation)
{
    return converted([&](FilterCfg *cfg) { return operation(1, 17, 0xFF, cfg); });
}

template <class Operation> uint32_t convertedPort(Operation operation)
{
    return converted([&](FilterCfg *cfg) { return operation(1, 1, 80, 0xFFFF, cfg); });
}

const bool added = addSweep({
    {.operation = "HAL_ACL_ConvertRuleInfoZr",
     .run = [](Outputs &) { return convertedMatch(ZR_OP(HAL_ACL_ConvertRuleInfoZr)); }},
    {.operation = "HAL_ACL_ConvertL2InfoZr",
     .run = [](Outputs &) { return convertedMatch(ZR_OP(HAL_ACL_ConvertL2InfoZr)); }},
    {.operation = "HAL_ACL_ConvertIpv4InfoZr",
     .run = [](Outputs &) { return convertedMatch(ZR_OP(HAL_ACL_ConvertIpv4InfoZr)); }},
    {.operation = "HAL_ACL_ConvertOuterVlanAndPriZr",
     .run = [](Outputs &) { return convertedMatch(ZR_OP(HAL_ACL_ConvertOuterVlanAndPriZr)); }},
    {.operation = "HAL_ACL_EmptyMatchHandle",
     .run =
         [](Outputs &) {
             return converted([](FilterCfg *cfg) { return ZR_OP(HAL_ACL_EmptyMatchHandle)(1, cfg); });
         }},
    {.operation = "HAL_ACL_ConvertDMacZr",
     .run = [](Outputs &) { return convertedMac(ZR_OP(HAL_ACL_ConvertDMacZr)); }},
    {.operation = "HAL_ACL_ConvertSMacZr",
     .run = [](Outputs &) { return convertedMac(ZR_OP(HAL_ACL_ConvertSMacZr)); }},
    {.operation = "HAL_ACL_ConvertEthTypeZr",
     .run = [](Outputs &) { return convertedWord(ZR_OP(HAL_ACL_ConvertEthTypeZr)); }},
    {.operation = "HAL_ACL_ConvertIpProtocolZr",
     .run = [](Outputs &) { return convertedWord(ZR_OP(HAL_ACL_ConvertIpProtocolZr)); }},
    {.operation = "HAL_ACL_ConvertSrcIpZr",
     .run = [](Outputs &) { return convertedWord(ZR_OP(HAL_ACL_ConvertSrcIpZr)); }},
    {.operation = "HAL_ACL_ConvertDstIpZr",
     .run = [](Outputs &) { return convertedWord(ZR_OP(HAL_ACL_ConvertDstIpZr)); }},
    {.operation = "HAL_ACL_ConvertSrcPortZr",
     .run = [](Outputs &) { return convertedPort(ZR_OP(HAL_ACL_ConvertSrcPortZr)); }},
    {.operation = "HAL_ACL_ConvertDstPortZr",
     .run = [](Outputs &) { return convertedPort(ZR_OP(HAL_ACL_ConvertDstPortZr)); }},
    {.operation = "HAL_ACL_ConvertUdfDataZr",
     .run =
         [](Outputs &) {
             return converted(
                 [](FilterCfg *cfg) { return ZR_OP(HAL_ACL_ConvertUdfDataZr)(1, 41, 2, 0xFFFF, cfg); });
         }},
    {.operation = "HAL_ACL_ConvertCapWapZr",
     .run =
         [](Outputs &) {
             const uint8_t words[4] = {0x00, 0x10, 0x02, 0x00};
             return converted(
                 [&](FilterCfg *cfg) { return ZR_OP(HAL_ACL_ConvertCapWapZr)(1, 30, words, 0xFFFF, cfg); });
         }},
    {.operation = "HAL_ACL_ConvertFwdActionZr",
     .run =
         [](Outputs &out) {
             LswmAclAction action{};
             action.flags = 0xFFFFFFFF;
             ZR_OP(HAL_ACL_ConvertFwdActionZr)(&action, out.make<FilterAct>());
             return 0U;
         }},
    {.operation = "HAL_ACL_FilterCfgToRuleZr",
     .run =
         [](Outputs &out) {
             const FilterCfgRaw raw{};
             ZR_OP(HAL_ACL_FilterCfgToRuleZr)(out.make<LswmAclMatch>(), &raw);
             return 0U;
         }},
    {.operation = "HAL_ACL_FieldToRuleCfgZr",
     .run =
         [](Outputs &out) {
             ZR_OP(HAL_ACL_FieldToRuleCfgZr)(7, 0x0806, 0xFFFF, out.make<LswmAclMatch>());
             return 0U;
         }},
    {.operation = "HAL_ACL_MacFieldToRuleMacZr",
     .run =
         [](Outputs &out) {
             ZR_OP(HAL_ACL_MacFieldToRuleMacZr)(2, 0xA1B2, 0xFFFF, out.make<uint8_t>(12));
             return 0U;
         }},
    {.operation = "HAL_ACL_FilterActToLswmActionZr",
     .run =
         [](Outputs &out) {
             const FilterAct act{};
             ZR_OP(HAL_ACL_FilterActToLswmActionZr)(out.make<LswmAclAction>(), &act);
             return 0U;
         }},
    {.operation = "HAL_ACL_FieldType2Name",
     .run = [](Outputs &out) { return ZR_OP(HAL_ACL_FieldType2Name)(137, out.make<char>(20), 20); }},
});

} // namespace
} // namespace zrtest
