// The manager's own data: operation tables, unit information, mutex books.
#pragma once

#include "frame/op_tables.h"
#include "platform/manager.h"

namespace zrsim
{

struct OperationTables {
    ZrCommonOps common;
    ZrPortOps port;
    ZrMacOps mac;
    ZrVlanOps vlan;
    ZrQosOps qos;
    ZrAclOps acl;
    ZrHsecOps hsec;
    ZrMcOps mc;
    ZrStormctlOps stormctl;
    ZrStpOps stp;
    ZrTrunkOps trunk;
    ZrFmeaOps fmea;
};

struct Manager {
    OperationTables tables{};
    LswmPortSet portMaps[LSWM_UNITS][LSWM_PORT_SETS]{};
    unsigned mutexes = 0;     // created
    int mutexDepth = 0;       // takes not yet given back
    bool mutexMisuse = false; // a give without a take

    // Empty tables, and unit information without ports.
    void reset();
};

Manager &manager();

} // namespace zrsim
