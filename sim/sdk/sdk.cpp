#include "sim/sdk/sdk.h"

uint8_t l2sw_eco[3];

namespace zrsim
{

// Holds the registered mutex around one access of the transport.
class Sdk::Locked
{
public:
    explicit Locked(const SdkServices &services) : services_(services) { services_.semTake(); }
    Locked(const Locked &) = delete;
    Locked &operator=(const Locked &) = delete;
    ~Locked() { services_.semGive(); }

private:
    const SdkServices &services_;
};

Sdk &sdk()
{
    static Sdk instance;
    return instance;
}

void Sdk::reset()
{
    *this = Sdk{};
    for (uint8_t &revision : l2sw_eco)
        revision = 0;
}

uint32_t Sdk::registerServices(const SdkServices &services)
{
    services_ = services;
    services_.semCreate();
    return kSdkOk;
}

uint32_t Sdk::readRegister(uint32_t unit, uint32_t reg, uint32_t *value)
{
    if (unit >= kUnits)
        return kSdkBadUnit;
    if (unit != 0) {
        if (!hasServices())
            return kSdkNoTransport;
        Locked locked(services_);
        return services_.regRead(static_cast<uint8_t>(unit), reg, value);
    }
    if (board().chip(0).inReset())
        return kSdkBusy;
    if (value == nullptr)
        return kSdkNull;
    *value = board().chip(0).registers().read(static_cast<uint16_t>(reg));
    return kSdkOk;
}

uint32_t Sdk::writeRegister(uint32_t unit, uint32_t reg, uint32_t value)
{
    if (unit >= kUnits)
        return kSdkBadUnit;
    if (unit != 0) {
        if (!hasServices())
            return kSdkNoTransport;
        Locked locked(services_);
        return services_.regWrite(static_cast<uint8_t>(unit), reg, value);
    }
    if (board().chip(0).inReset())
        return kSdkBusy;
    board().chip(0).registers().write(static_cast<uint16_t>(reg), static_cast<uint16_t>(value));
    return kSdkOk;
}

uint32_t Sdk::init(uint32_t unit)
{
    uint32_t identifier = 0;
    uint32_t revision = 0;
    if (uint32_t status = readRegister(unit, kRegChipId, &identifier); status != kSdkOk)
        return status;
    if (identifier != kChipId)
        return kSdkBusy;
    if (uint32_t status = readRegister(unit, kRegRevision, &revision); status != kSdkOk)
        return status;
    l2sw_eco[unit] = static_cast<uint8_t>(revision);
    initialisedAt_[unit] = board().chip(unit).resets();
    return kSdkOk;
}

uint32_t Sdk::ready(uint32_t unit)
{
    if (unit >= kUnits)
        return kSdkBadUnit;
    if (!initialised(unit))
        return kSdkNotInitialised;
    uint32_t tableStatus = 0;
    if (uint32_t status = readRegister(unit, kRegTableStatus, &tableStatus); status != kSdkOk)
        return status;
    return tableStatus == 1 ? kSdkOk : kSdkBusy;
}

} // namespace zrsim

using namespace zrsim;

uint32_t l2sw_fun_regist(const SdkServices *services)
{
    const void *record = services; // addresses differ from run to run: not shown
    return pass({__func__, {record}}, [&] { return sdk().registerServices(*services); });
}

uint32_t l2sw_switch_init(uint32_t unit)
{
    return pass({__func__, {unit}}, [&] { return sdk().init(unit); });
}
