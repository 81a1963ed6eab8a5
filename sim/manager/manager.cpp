#include "sim/manager/manager.h"

#include "sim/gate.h"

LswmUnitInfo g_lswmInfo[LSWM_UNITS];

namespace zrsim
{

Manager &manager()
{
    static Manager instance;
    return instance;
}

void Manager::reset()
{
    *this = Manager{};
    for (uint32_t unit = 0; unit < LSWM_UNITS; ++unit) {
        g_lswmInfo[unit] = LswmUnitInfo{};
        g_lswmInfo[unit].portMap = portMaps[unit];
    }
}

namespace
{

[[maybe_unused]] const bool kUnitInfoReady = (manager().reset(), true);

void *table(const char *name, uint32_t value, void *which)
{
    return pass(
        name, [&] { return which; }, value);
}

} // namespace
} // namespace zrsim

using namespace zrsim;

void *LSW_Common_GetFuncPtr(uint32_t value)
{
    return table("LSW_Common_GetFuncPtr", value, &manager().tables.common);
}

void *LSW_PORT_GetFuncPtr(uint32_t value)
{
    return table("LSW_PORT_GetFuncPtr", value, &manager().tables.port);
}

void *LSW_MAC_GetFuncPtr(uint32_t value)
{
    return table("LSW_MAC_GetFuncPtr", value, &manager().tables.mac);
}

void *LSW_VLAN_GetFuncPtr(uint32_t value)
{
    return table("LSW_VLAN_GetFuncPtr", value, &manager().tables.vlan);
}

void *LSW_QOS_GetFuncPtr(uint32_t value)
{
    return table("LSW_QOS_GetFuncPtr", value, &manager().tables.qos);
}

void *LSW_ACL_GetFuncPtr(uint32_t value)
{
    return table("LSW_ACL_GetFuncPtr", value, &manager().tables.acl);
}

void *LSW_HSEC_GetFuncPtr(uint32_t value)
{
    return table("LSW_HSEC_GetFuncPtr", value, &manager().tables.hsec);
}

void *LSW_MC_GetFuncPtr(uint32_t value)
{
    return table("LSW_MC_GetFuncPtr", value, &manager().tables.mc);
}

void *LSW_STORMCTL_GetFuncPtr(uint32_t value)
{
    return table("LSW_STORMCTL_GetFuncPtr", value, &manager().tables.stormctl);
}

void *LSW_STP_GetFuncPtr(uint32_t value)
{
    return table("LSW_STP_GetFuncPtr", value, &manager().tables.stp);
}

void *LSW_TRUNK_GetFuncPtr(uint32_t value)
{
    return table("LSW_TRUNK_GetFuncPtr", value, &manager().tables.trunk);
}

void *LSW_FMEA_GetFuncPtr(uint32_t value)
{
    return table("LSW_FMEA_GetFuncPtr", value, &manager().tables.fmea);
}

void LSWM_SemMCreate(void)
{
    pass("LSWM_SemMCreate", [] { ++manager().mutexes; });
}

void LSWM_SemTake(void)
{
    pass("LSWM_SemTake", [] { ++manager().mutexDepth; });
}

void LSWM_SemGive(void)
{
    pass("LSWM_SemGive", [] {
        if (--manager().mutexDepth < 0)
            manager().mutexMisuse = true;
    });
}
