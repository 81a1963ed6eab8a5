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
    return pass({name, {value}}, [&] { return which; });
}

} // namespace
} // namespace zrsim

using namespace zrsim;

void *LSW_Common_GetFuncPtr(uint32_t value)
{
    return table(__func__, value, &manager().tables.common);
}

void *LSW_PORT_GetFuncPtr(uint32_t value)
{
    return table(__func__, value, &manager().tables.port);
}

void *LSW_MAC_GetFuncPtr(uint32_t value)
{
    return table(__func__, value, &manager().tables.mac);
}

void *LSW_VLAN_GetFuncPtr(uint32_t value)
{
    return table(__func__, value, &manager().tables.vlan);
}

void *LSW_QOS_GetFuncPtr(uint32_t value)
{
    return table(__func__, value, &manager().tables.qos);
}

void *LSW_ACL_GetFuncPtr(uint32_t value)
{
    return table(__func__, value, &manager().tables.acl);
}

void *LSW_HSEC_GetFuncPtr(uint32_t value)
{
    return table(__func__, value, &manager().tables.hsec);
}

void *LSW_MC_GetFuncPtr(uint32_t value)
{
    return table(__func__, value, &manager().tables.mc);
}

void *LSW_STORMCTL_GetFuncPtr(uint32_t value)
{
    return table(__func__, value, &manager().tables.stormctl);
}

void *LSW_STP_GetFuncPtr(uint32_t value)
{
    return table(__func__, value, &manager().tables.stp);
}

void *LSW_TRUNK_GetFuncPtr(uint32_t value)
{
    return table(__func__, value, &manager().tables.trunk);
}

void *LSW_FMEA_GetFuncPtr(uint32_t value)
{
    return table(__func__, value, &manager().tables.fmea);
}

void LSWM_SemMCreate(void)
{
    pass({__func__, {}}, [] { ++manager().mutexes; });
}

void LSWM_SemTake(void)
{
    pass({__func__, {}}, [] { ++manager().mutexDepth; });
}

void LSWM_SemGive(void)
{
    pass({__func__, {}}, [] {
        if (--manager().mutexDepth < 0)
            manager().mutexMisuse = true;
    });
}
