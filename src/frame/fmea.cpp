#include "frame/fmea.h"

#include "platform/manager.h"

uint32_t ZR_FMEA_MonitorUnitReg(uint32_t)
{
    return LSW_OK;
}
