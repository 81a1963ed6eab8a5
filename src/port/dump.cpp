// Diagnostic texts.
#include "port/port.h"

#include "base/fs_level.h"
#include "base/print.h"
#include "platform/bounded.h"
#include "platform/chip_sdk.h"
#include "platform/manager.h"

namespace
{

// A text that grows inside a caller's buffer by `text.take(sprintf_s(text.end(), text.room(), ...))`. A
// piece that does not fit ends it: later pieces, shorter ones too, go into a sink that nothing fits into.
// That keeps a buffer of size 0 out of the bounded print's reach.
class Text
{
public:
    Text(char *buffer, uint32_t size) : end_(buffer), room_(size)
    {
        if (size == 0)
            close();
    }
    Text(const Text &) = delete;
    Text &operator=(const Text &) = delete;

    char *end() const { return end_; }
    size_t room() const { return room_; }
    uint32_t length() const { return length_; }

    void take(int written)
    {
        if (written < 0) {
            close();
            return;
        }
        end_ += written;
        room_ -= static_cast<uint32_t>(written);
        length_ += static_cast<uint32_t>(written);
    }

private:
    void close()
    {
        end_ = &sink_;
        room_ = sizeof(sink_);
    }

    char *end_;
    size_t room_; // characters up to the buffer's end, the terminator's among them
    uint32_t length_ = 0;
    char sink_ = 0;
};

void dumpRegisters(uint32_t unit, uint32_t port, Text &text)
{
    text.take(sprintf_s(text.end(), text.room(), "\r\n-----------reg info unit %u port %u--------------\r\n",
                        unit, port));
    uint32_t value = 0; // a failed read shows the last good one
    for (uint32_t reg = 0; reg < 32; reg += 4) {
        uint32_t row[4];
        for (uint32_t i = 0; i < 4; ++i) {
            l2sw_port_phyReg_get(unit, port, reg + i, &value);
            row[i] = value;
        }
        text.take(sprintf_s(text.end(), text.room(),
                            "0x%02x:0x%04x 0x%02x:0x%04x 0x%02x:0x%04x 0x%02x:0x%04x \r\n", reg, row[0],
                            reg + 1, row[1], reg + 2, row[2], reg + 3, row[3]));
    }
}

void dumpAbility(const LswmPortAbility &ability, Text &text)
{
    text.take(sprintf_s(text.end(), text.room(),
                        "  10MH:%u 10MF:%u 100MH:%u 100MF:%u 1000M:%u pause:%u pauseAsyn:%u\r\n",
                        ability.half10, ability.full10, ability.half100, ability.full100, ability.full1000,
                        ability.pause, ability.pauseAsym));
}

// Returns a status; the text is untouched unless it is LSW_OK.
uint32_t dumpState(uint32_t unit, uint32_t port, Text &text)
{
    PortDebugInfo info{};
    LswmPortSnr snr{};
    const uint32_t infoRet = HAL_PORT_PortDebugInfoGetZr(unit, port, &info);
    if (uint32_t ret = infoRet + HAL_PORT_GetSnrZr(unit, port, &snr); ret != 0)
        return ZR_FAILED(PORT, ret, "PortDebugInfo get %u ret %u", port, ret);
    uint32_t fsData = 0;
    l2sw_switch_ahb_read(unit, zr::kFsDataAddress, &fsData);

    text.take(sprintf_s(text.end(), text.room(), "\r\n-----------debug info unit %u port %u--------------\r\n",
                        unit, port));
    text.take(sprintf_s(text.end(), text.room(), "enable:%u \r\n", info.enable));
    text.take(sprintf_s(text.end(), text.room(), "phyLink:%u \r\n", info.phyLink));
    text.take(sprintf_s(text.end(), text.room(), "macLink:%u \r\n", info.macLink));
    text.take(sprintf_s(text.end(), text.room(), "loop:%u \r\n", info.loop));
    text.take(sprintf_s(text.end(), text.room(), "speed:%u \r\n", info.speed));
    text.take(sprintf_s(text.end(), text.room(), "duplex:%u \r\n", info.duplex));
    text.take(sprintf_s(text.end(), text.room(), "mdixStatus:%u \r\n", info.mdixStatus));
    text.take(sprintf_s(text.end(), text.room(), "mdixCfg:%u \r\n", info.mdixCfg));
    text.take(sprintf_s(text.end(), text.room(), "autoneg:%u \r\n", info.autoneg));
    text.take(sprintf_s(text.end(), text.room(), "autonegStatus:%u \r\n", info.autonegStatus));
    text.take(sprintf_s(text.end(), text.room(), "snr info: \r\n"));
    text.take(sprintf_s(text.end(), text.room(), "snrA: %u snrB: %u snrC: %u snrD: %u trap: %u status: %u\r\n",
                        snr.snrA, snr.snrB, snr.snrC, snr.snrD, snr.trap, snr.status));
    text.take(sprintf_s(text.end(), text.room(), "chip FS data 0x%x level: %s\r\n", fsData,
                        zr::fsLevel(fsData).name));
    text.take(sprintf_s(text.end(), text.room(), "local ability \r\n"));
    dumpAbility(info.localAbility, text);
    text.take(sprintf_s(text.end(), text.room(), "remote ability \r\n"));
    dumpAbility(info.remoteAbility, text);
    return LSW_OK;
}

} // namespace

uint32_t ZR_PORT_GetDebugInfo(uint32_t unit, uint32_t port, char *buffer, uint32_t size)
{
    return HAL_PORT_GetDebugInfoZr(unit, port, buffer, size);
}

// One text for both parts: after a cut among the registers nothing of the state follows.
uint32_t HAL_PORT_GetDebugInfoZr(uint32_t unit, uint32_t port, char *buffer, uint32_t size)
{
    if (buffer == nullptr)
        return LSW_NULL_POINTER;
    Text text(buffer, size);
    dumpRegisters(unit, port, text);
    dumpState(unit, port, text);
    return LSW_OK;
}

uint32_t HAL_PORT_DumpRegInfo(uint32_t unit, uint32_t port, char *buffer, uint32_t size)
{
    if (buffer == nullptr)
        return 0;
    Text text(buffer, size);
    dumpRegisters(unit, port, text);
    return text.length();
}

uint32_t HAL_PORT_DumpNormalDebugInfoZr(uint32_t unit, uint32_t port, char *buffer, uint32_t size)
{
    if (buffer == nullptr)
        return 0;
    Text text(buffer, size);
    if (uint32_t ret = dumpState(unit, port, text); ret != 0)
        return ret;
    return text.length();
}

uint32_t ZR_GetLinkDownPhyReg(uint32_t unit, uint32_t port, char *buffer, uint32_t size, uint32_t offset)
{
    return HAL_PORT_GetLinkDownPhyRegZr(unit, port, buffer, size, offset);
}

uint32_t HAL_PORT_GetLinkDownPhyRegZr(uint32_t unit, uint32_t port, char *buffer, uint32_t size,
                                      uint32_t offset)
{
    if (buffer == nullptr)
        return LSW_NULL_POINTER;
    const uint32_t start = offset < size ? offset : size;
    Text text(buffer + start, size - start);
    text.take(sprintf_s(text.end(), text.room(), "PhyReg 1-10: "));
    for (uint32_t reg = 0; reg <= 10; ++reg) {
        uint16_t value = 0;
        if (uint32_t ret = HAL_PORT_RegReadZr(unit, port, reg, &value); ret != LSW_OK)
            return ret;
        text.take(sprintf_s(text.end(), text.room(), "0x%02x:0x%04x ", reg, value));
    }
    return LSW_OK;
}
