// Actions between manager and chip, both ways.
#include "acl/acl.h"

namespace
{

using ActWord = uint32_t FilterAct::*;

// The forwarding action: the first row whose flag is set. The chip's switch for D/E is not read back.
constexpr struct {
    uint32_t flags;
    ActWord enable;
    uint32_t flagsReadBack;
} kForwarding[] = {
    {LSWM_ACTION_FORWARD_A, &FilterAct::switch11, LSWM_ACTION_FORWARD_A},
    {LSWM_ACTION_FORWARD_B, &FilterAct::switch10, LSWM_ACTION_FORWARD_B},
    {LSWM_ACTION_FORWARD_C, &FilterAct::switch14, LSWM_ACTION_FORWARD_C},
    {LSWM_ACTION_FORWARD_D | LSWM_ACTION_FORWARD_E, &FilterAct::switch9, 0},
};

// Resources that a rule uses: each with an identifier of its own.
constexpr struct {
    uint32_t flag;
    ActWord enable;
    ActWord chipId;
    uint32_t LswmAclAction::*id;
} kResources[] = {
    {LSWM_ACTION_CAR, &FilterAct::carEnable, &FilterAct::carId, &LswmAclAction::carId},
    {LSWM_ACTION_COUNT, &FilterAct::counterEnable, &FilterAct::counterId, &LswmAclAction::counterId},
};

// Switches that share the one action value.
constexpr struct {
    uint32_t flag;
    ActWord enable;
} kValueSwitches[] = {
    {LSWM_ACTION_VALUE_A, &FilterAct::switch16},
    {LSWM_ACTION_VALUE_B, &FilterAct::switch18},
    {LSWM_ACTION_VALUE_C, &FilterAct::switch19},
};

// With the switch of forwarding action A, this bit of the chip's port word reads back as D and E.
constexpr uint32_t kReadBackPort16 = 1U << 16;

} // namespace

void HAL_ACL_ConvertFwdActionZr(const LswmAclAction *action, FilterAct *act)
{
    if (action == nullptr || act == nullptr)
        return;
    for (const auto &row : kForwarding) {
        if ((action->flags & row.flags) != 0) {
            act->*row.enable = 1;
            break;
        }
    }
    for (const auto &row : kResources) {
        if ((action->flags & row.flag) != 0) {
            act->*row.enable = 1;
            act->*row.chipId = action->*row.id;
        }
    }
    for (const auto &row : kValueSwitches) {
        if ((action->flags & row.flag) != 0) {
            act->*row.enable = 1;
            act->value = action->value;
        }
    }
    if ((action->flags & LSWM_ACTION_PORT) != 0) {
        act->redirectEnable = 1;
        act->redirectPorts = action->port < 32 ? 1U << action->port : 0;
    }
}

void HAL_ACL_FilterActToLswmActionZr(LswmAclAction *action, const FilterAct *act)
{
    if (action == nullptr || act == nullptr)
        return;
    for (const auto &row : kForwarding) {
        if (act->*row.enable != 0)
            action->flags |= row.flagsReadBack;
    }
    for (const auto &row : kResources) {
        if (act->*row.enable != 0) {
            action->flags |= row.flag;
            action->*row.id = act->*row.chipId;
        }
    }
    for (const auto &row : kValueSwitches) {
        if (act->*row.enable != 0) {
            action->flags |= row.flag;
            action->value = static_cast<uint8_t>(act->value);
        }
    }
    if (act->switch11 != 0 && (act->redirectPorts & kReadBackPort16) != 0)
        action->flags |= LSWM_ACTION_FORWARD_D | LSWM_ACTION_FORWARD_E;
}
