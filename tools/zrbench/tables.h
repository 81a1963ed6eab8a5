// The twelve operation tables as the library filled them.
#pragma once

#include <string>
#include <string_view>

#include "frame/op_tables.h"

namespace zrbench
{

// A null slot is an operation that the library lacks.
struct Tables {
    ZrCommonOps *common;
    ZrPortOps *port;
    ZrMacOps *mac;
    ZrVlanOps *vlan;
    ZrQosOps *qos;
    ZrAclOps *acl;
    ZrHsecOps *hsec;
    ZrMcOps *mc;
    ZrStormctlOps *stormctl;
    ZrStpOps *stp;
    ZrTrunkOps *trunk;
    ZrFmeaOps *fmea;
};

// A table's module and its place among the twelve.
template <class Table> struct Module;

#define ZRBENCH_MODULE(Table, member, text)                                                                    \
    template <> struct Module<Table> {                                                                         \
        static constexpr std::string_view kName = text;                                                        \
        static constexpr Table *Tables::*kTable = &Tables::member;                                             \
    }
ZRBENCH_MODULE(ZrCommonOps, common, "COMMON");
ZRBENCH_MODULE(ZrPortOps, port, "PORT");
ZRBENCH_MODULE(ZrMacOps, mac, "MAC");
ZRBENCH_MODULE(ZrVlanOps, vlan, "VLAN");
ZRBENCH_MODULE(ZrQosOps, qos, "QOS");
ZRBENCH_MODULE(ZrAclOps, acl, "ACL");
ZRBENCH_MODULE(ZrHsecOps, hsec, "HSEC");
ZRBENCH_MODULE(ZrMcOps, mc, "MC");
ZRBENCH_MODULE(ZrStormctlOps, stormctl, "STORMCTL");
ZRBENCH_MODULE(ZrStpOps, stp, "STP");
ZRBENCH_MODULE(ZrTrunkOps, trunk, "TRUNK");
ZRBENCH_MODULE(ZrFmeaOps, fmea, "FMEA");
#undef ZRBENCH_MODULE

// A slot as people name it: "VLAN 1".
template <class Table, class Operation> std::string slotLabel(Operation *Table::*slot)
{
    const Table table{};
    const auto offset = reinterpret_cast<const char *>(&(table.*slot)) - reinterpret_cast<const char *>(&table);
    return std::string(Module<Table>::kName) + " " +
           std::to_string(static_cast<size_t>(offset) / sizeof(void *));
}

} // namespace zrbench
