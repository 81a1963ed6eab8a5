/* A switch manager in C over the installed package: takes the library into use and uses its tables. */
#include <stdio.h>

#include "chip/smi.h"
#include "frame/func_list.h"
#include "platform/manager.h"
#include "records/trunk_records.h"

int main(void)
{
    ZrTrunkOps trunk = {0};
    ZR_TRUNK_FuncInit(&trunk);
    uint32_t count = 0;
    if (trunk.create(1, 7) != LSW_OK || trunk.getTrunkNum(1, &count) != LSW_OK)
        return 1;

    ZR_COMMON_FuncListInit(0);
    const ZrCommonOps *common = LSW_Common_GetFuncPtr(0);
    if (common == NULL || common->initChip == NULL)
        return 1;

    printf("trunks reported %u, recorded id %u, unit 2 at SMI address %u\n", count,
           g_TrunkMeterInfo[1].logicTrunkId[0], phyAddr[2]);
    return count == 2 && g_TrunkMeterInfo[1].logicTrunkId[0] == 7 && phyAddr[2] == 29 ? 0 : 1;
}
