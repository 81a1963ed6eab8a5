#include "sim/chip/qos.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <map>
#include <vector>

#include "sim/chip/chip.h"
#include "sim/chip/status.h"
#include "sim/command.h"

namespace zrsim
{
namespace
{

constexpr uint32_t kMaxThreshold = 4095;
constexpr uint32_t kMaxWeight = 127;
constexpr const char *kSources[Qos::kPriSelSources] = {"port", "802.1p", "ACL", "DSCP", "address"};

} // namespace

uint32_t Qos::init(uint32_t queues)
{
    if (queues == 0 || queues > kQueues)
        return kSdkBadArgument;
    queues_ = queues;
    return kSdkOk;
}

uint32_t Qos::setPauseThreshold(uint32_t threshold)
{
    if (threshold > kMaxThreshold)
        return kSdkBadArgument;
    pauseThreshold_ = threshold;
    return kSdkOk;
}

uint32_t Qos::setPriSel(uint32_t index, const SdkQosRecord &values)
{
    if (index >= kPriSelTables)
        return kSdkBadArgument;
    std::copy_n(values.word, kPriSelSources, priSel_[index].begin());
    return kSdkOk;
}

uint32_t Qos::bindPort(uint32_t port, uint32_t index)
{
    if (port >= kPorts)
        return kSdkBadPort;
    if (index >= kPriSelTables)
        return kSdkBadArgument;
    boundTo_[port] = index;
    return kSdkOk;
}

uint32_t Qos::setQueueMap(uint32_t queues, const SdkQosRecord &map)
{
    if (queues == 0 || queues > kQueues ||
        std::ranges::any_of(map.word, [=](uint32_t q) { return q >= queues; }))
        return kSdkBadArgument;
    std::ranges::copy(map.word, queueMaps_[queues].begin());
    return kSdkOk;
}

uint32_t Qos::setWeights(uint32_t port, const SdkQosRecord &weights)
{
    if (port >= kPorts)
        return kSdkBadPort;
    if (std::ranges::any_of(weights.word, [](uint32_t weight) { return weight > kMaxWeight; }))
        return kSdkBadArgument;
    weights_[port].emplace();
    std::ranges::copy(weights.word, weights_[port]->begin());
    return kSdkOk;
}

uint32_t Qos::mapDscp(uint32_t dscp, uint32_t priority)
{
    if (dscp >= kDscps || priority >= kQueues)
        return kSdkBadArgument;
    byDscp_[dscp] = priority;
    return kSdkOk;
}

uint32_t Qos::map8021p(uint32_t p8021, uint32_t priority)
{
    if (p8021 >= kQueues || priority >= kQueues)
        return kSdkBadArgument;
    by8021p_[p8021] = priority;
    return kSdkOk;
}

Qos::Verdict Qos::classify(uint32_t port, const Sources &sources) const
{
    const auto &values = priSel_[boundTo_.at(port).value_or(0)];
    uint32_t weight = 0;
    Verdict verdict{0, 0, "none"};
    auto offer = [&](Source source, uint32_t priority) {
        if (values[source] > weight) {
            weight = values[source];
            verdict = {priority, 0, kSources[source]};
        }
    };
    offer(kFromPort, sources.port);
    if (sources.dot1p)
        offer(kFrom8021p, by8021p_.at(*sources.dot1p));
    if (sources.acl)
        offer(kFromAcl, *sources.acl);
    if (sources.dscp)
        offer(kFromDscp, byDscp_.at(*sources.dscp));
    verdict.queue = queueMaps_[queues_][verdict.priority];
    return verdict;
}

std::string Qos::tables() const
{
    std::string text = fmt::format("{} queues, pause threshold {}\n", queues_, pauseThreshold_);
    text += fmt::format("\n{:<20}", "priority selection");
    for (const char *source : kSources)
        text += fmt::format("{:>8}", source);
    text += "  ports\n";
    for (uint32_t index = 0; index < kPriSelTables; ++index) {
        std::vector<uint32_t> ports;
        for (uint32_t port = 0; port < kPorts; ++port)
            if (boundTo_[port] == index)
                ports.push_back(port);
        text += fmt::format("table {:<14}", index);
        for (uint32_t value : priSel_[index])
            text += fmt::format("{:>8}", value);
        text += fmt::format("  {}\n", ports.empty() ? "-" : fmt::format("{}", fmt::join(ports, ",")));
    }
    text += "\n802.1p              0  1  2  3  4  5  6  7\n";
    text += fmt::format("internal priority  {:>2}\n", fmt::join(by8021p_, " "));
    text += "\ninternal priority   0  1  2  3  4  5  6  7\n";
    text += fmt::format("queue              {:>2}\n", fmt::join(queueMaps_[queues_], " "));
    text += "\nDSCP               +0 +1 +2 +3 +4 +5 +6 +7\n";
    for (auto row = byDscp_.begin(); row != byDscp_.end(); row += 8)
        text += fmt::format("{:<18} {:>2}\n", row - byDscp_.begin(), fmt::join(row, row + 8, " "));
    std::map<Eight, std::vector<uint32_t>> byWeights;
    for (uint32_t port = 0; port < kPorts; ++port)
        if (weights_[port])
            byWeights[*weights_[port]].push_back(port);
    text += "\nweights of queues   0  1  2  3  4  5  6  7  ports\n";
    for (const auto &[weights, ports] : byWeights)
        text += fmt::format("{:<18} {:>2}  {}\n", "", fmt::join(weights, " "), fmt::join(ports, ","));
    return text;
}

void Qos::dump(nlohmann::json &to) const
{
    to["queues"] = queues_;
    to["pauseThreshold"] = pauseThreshold_;
    to["prioritySelection"] = priSel_;
    to["priorityOf8021p"] = by8021p_;
    to["priorityOfDscp"] = byDscp_;
    to["queueOfPriority"] = queueMaps_[queues_];
    for (uint32_t port = 0; port < kPorts; ++port) {
        if (boundTo_[port])
            to["ports"][std::to_string(port)]["selection"] = *boundTo_[port];
        if (weights_[port])
            to["ports"][std::to_string(port)]["weights"] = *weights_[port];
    }
}

namespace
{

const BoardCommand kTables("qos", "queues, priority maps and weights as tables",
                           [](Chip &chip, const Words &) { return chip.qos.tables(); });

} // namespace
} // namespace zrsim
