// Names of the raw fields.
#include "acl/acl.h"

#include "platform/bounded.h"
#include "platform/manager.h"

namespace
{

constexpr struct {
    uint8_t rawId;
    char name[20];
} kFieldNames[] = {
    {1, "DMAC(15-0)"},
    {2, "DMAC(31-16)"},
    {3, "DMAC(47-32)"},
    {4, "SMAC(15-0)"},
    {5, "SMAC(31-16)"},
    {6, "SMAC(47-32)"},
    {7, "EtherType"},
    {8, "Stag"},
    {9, "Ctag"},
    {16, "SIP(15-0)"},
    {17, "SIP(31-16)"},
    {18, "DIP(15-0)"},
    {19, "DIP(31-16)"},
    {48, "Vid Range"},
    {49, "IP Range"},
    {50, "Port Range"},
    {51, "Field Valid"},
    {128, "Tcp Src Port"},
    {129, "Tcp Dst Port"},
    {130, "Tcp Flag"},
    {131, "Udp Src Port"},
    {132, "Udp Dst Port"},
    {133, "Icmp Code Type"},
    {134, "Igmp Type"},
    {135, "SPort"},
    {136, "DPort"},
    {137, "IP4 Tos Porto"},
    {138, "IP4 Flag Offset"},
    {139, "TC Next Header"},
    {140, "CPU Tag"},
    {141, "L2 Payload"},
};

} // namespace

uint32_t HAL_ACL_FieldType2Name(uint32_t id, char *buffer, uint32_t size)
{
    for (const auto &row : kFieldNames) {
        if (row.rawId == id)
            return strncpy_s(buffer, size, row.name, sizeof(row.name)) != 0 ? LSW_CHIP_FAILED : LSW_OK;
    }
    return LSW_NOT_FOUND;
}
