// Statuses of the SDK besides those that the library knows by name: the model's own choice.
#pragma once

#include <cstdint>

namespace zrsim
{

enum : uint32_t {
    kSdkOk = 0,
    kSdkFailed = 0xFFFFFFFF,
    kSdkBadUnit = 0x10001,
    kSdkBadPort = 0x10002,
    kSdkBadArgument = 0x10003,
    kSdkNull = 0x10004,
    kSdkNotInitialised = 0x10005,
    kSdkNoTransport = 0x10006,
    kSdkBusy = 0x10007, // the chip does not respond as a running chip does
    kSdkNotModelled = 0x10008,
};

} // namespace zrsim
