// The silicon's process corner ("FS level"), as the chip reports it on its AHB bus. RGMII timing scales
// by it; the port's debug dump names it.
#pragma once

#include <stdint.h>

namespace zr
{

inline constexpr uint32_t kFsDataAddress = 0x9000084C; // AHB address of the FS data

struct FsLevel {
    uint32_t data;       // FS data, bits 2 to 15 in place
    uint32_t level;      // 0 fastest to 4 slowest
    uint32_t multiplier; // of RGMII delays, in tenths
    char name[12];
};

inline constexpr FsLevel kFsLevels[] = {
    {0x38, 0, 12, "FF"},       {0x34, 1, 11, "TT faster"}, {0x20, 2, 10, "TT normal"},
    {0x24, 3, 9, "TT slower"}, {0x28, 4, 8, "SS"},
};

// For data that is not in the table: counts as normal.
inline constexpr FsLevel kFsUnknown = {0, 2, 10, "unknow"};

// The level of FS data as read.
inline const FsLevel &fsLevel(uint32_t fsData)
{
    for (const FsLevel &row : kFsLevels) {
        if (row.data == (fsData & 0xFFFC))
            return row;
    }
    return kFsUnknown;
}

} // namespace zr
