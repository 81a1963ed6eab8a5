#include "tools/zrbench/missing_init.h"

#include <algorithm>
#include <fmt/format.h>

#include "qos/hsec.h"
#include "records/acl_records.h"
#include "records/meter_records.h"

using nlohmann::json;

namespace zrbench
{

std::string missingInit(const Session &session, const Invocation &invocation)
{
    const std::string_view name = invocation.command->name;
    if (!invocation.arguments.has("unit") || name.ends_with(" init"))
        return {};
    const uint32_t unit = invocation.arguments.number("unit");
    if (unit >= LSWM_UNITS)
        return {};
    if (name.starts_with("acl ")) {
        const AclRuleInfo *info = session.operation<decltype(COM_ACL_GetRuleInfo)>("COM_ACL_GetRuleInfo")(unit);
        if (info != nullptr && info->ruleRecords == nullptr)
            return fmt::format("unit {0} has no ACL records yet: acl init {0}", unit);
    }
    if (name.starts_with("meter ")) {
        const HsecMeterInfo *info = session.operation<decltype(COM_HSEC_GetMeterInfo)>("COM_HSEC_GetMeterInfo")(
            unit, ZR_HSEC_CAR_METER_TYPE);
        if (info != nullptr && info->entries == nullptr)
            return fmt::format("unit {0} has no meter records yet: meter init {0}", unit);
    }
    const json::json_pointer place(fmt::format("/board/units/{}/inReset", unit));
    if (session.inspection().dump != nullptr && session.state().value(place, false))
        return fmt::format("unit {0} was never brought up: chip init {0}", unit);
    return {};
}

} // namespace zrbench
