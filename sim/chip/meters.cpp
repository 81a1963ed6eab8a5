#include "sim/chip/meters.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

#include "sim/chip/chip.h"
#include "sim/chip/status.h"
#include "sim/command.h"

namespace zrsim
{
namespace
{

constexpr uint64_t kSecond = 1'000'000'000;
constexpr uint64_t kLineKbit = 1'000'000;
constexpr uint32_t kSmallestFrame = 64;
constexpr uint32_t kLargestFrame = 10000;
constexpr uint32_t kLongestStream = 10'000; // ms

// When frame `index` of a stream of `kbit` kbit/s starts, in ns.
uint64_t startOf(uint64_t index, uint32_t bytes, uint64_t kbit)
{
    return index * bytes * 8 * 1'000'000 / kbit;
}

} // namespace

bool Meter::admit(uint32_t bytes, uint64_t now)
{
    if (!limits)
        return true;
    const uint64_t elapsed = now - filledAt;
    filledAt = now;
    if (rate != 0 && elapsed >= (full() - tokens) / rate + 1)
        tokens = full();
    else
        tokens += elapsed * rate;
    const uint64_t cost = (mode == 0 ? bytes : 1) * scale();
    if (tokens < cost)
        return false;
    tokens -= cost;
    return true;
}

void Meters::attach(Chip &chip)
{
    chip.acl.policeWith(
        [this](uint32_t meter, size_t bytes) { return admit(meter, static_cast<uint32_t>(bytes)); });
}

uint32_t Meters::setRate(uint32_t meter, uint32_t mode, uint32_t rate, uint32_t third)
{
    if (meter >= kMeters || mode > 1)
        return kSdkBadArgument;
    Meter &chosen = meters_[meter];
    chosen.limits = true;
    chosen.mode = mode;
    chosen.rate = rate;
    chosen.third = third;
    chosen.tokens = chosen.full();
    chosen.filledAt = now_;
    return kSdkOk;
}

uint32_t Meters::setBucket(uint32_t meter, uint32_t bucket)
{
    if (meter >= kMeters || bucket > kMaxBucket)
        return kSdkBadArgument;
    Meter &chosen = meters_[meter];
    chosen.bucket = bucket;
    chosen.tokens = chosen.full();
    chosen.filledAt = now_;
    return kSdkOk;
}

bool Meters::admit(uint32_t meter, uint32_t bytes)
{
    return meter >= kMeters || meters_[meter].admit(bytes, now_);
}

Passed Meters::run(const Stream &stream, const std::function<bool()> &judge)
{
    const uint64_t begin = now_;
    const uint64_t length = uint64_t{stream.ms} * 1'000'000;
    Passed result;
    for (; stream.kbit != 0 && startOf(result.offered, stream.bytes, stream.kbit) < length; ++result.offered) {
        now_ = begin + startOf(result.offered, stream.bytes, stream.kbit);
        result.passed += judge() ? 1 : 0;
    }
    now_ = begin + length;
    return result;
}

Throughput Meters::measure(uint32_t meter, uint32_t bytes) const
{
    Meter copy = meters_[meter];
    Throughput result;
    copy.tokens = copy.full();
    copy.filledAt = 0;
    while (copy.limits && copy.admit(bytes, 0))
        ++result.burstFrames;
    copy.tokens = 0;
    for (uint64_t frame = 0; startOf(frame, bytes, kLineKbit) < kSecond; ++frame)
        result.frames += copy.admit(bytes, startOf(frame + 1, bytes, kLineKbit)) ? 1 : 0;
    result.kbit = result.frames * bytes * 8 / 1000;
    return result;
}

void Meters::dump(nlohmann::json &to) const
{
    for (uint32_t id = 0; id < kMeters; ++id) {
        const Meter &meter = meters_[id];
        if (meter.limits || meter.bucket != 0)
            to[std::to_string(id)] = {{"mode", meter.mode}, {"rate", meter.rate}, {"bucket", meter.bucket}};
    }
}

namespace
{

const BoardCommand kMeasure(
    "meter METER [BYTES]", "what a meter lets through of frames of 500 or so many bytes at 1 Gbit/s",
    [](Chip &chip, const Words &words) {
        const uint32_t id = words.number(0, Meters::kMeters - 1);
        const uint32_t bytes = words.number(1, kLargestFrame, 500);
        if (bytes < kSmallestFrame)
            words.refuse("a frame has at least 64 bytes");
        const Meter &meter = *chip.meters.find(id);
        if (!meter.limits)
            return fmt::format("limits=0 meter {} has no rate: everything passes\n", id);
        const Throughput through = chip.meters.measure(id, bytes);
        return fmt::format("limits=1 burstFrames={} burstBytes={} framesPerSecond={} kbitPerSecond={}\n",
                           through.burstFrames, through.burstFrames * bytes, through.frames, through.kbit);
    });

const BoardCommand kStream("meter-stream METER KBIT MS [BYTES]",
                           "runs frames of 500 or so many bytes against a meter",
                           [](Chip &chip, const Words &words) {
                               const uint32_t id = words.number(0, Meters::kMeters - 1);
                               const Stream stream{words.number(1, kLineKbit), words.number(2, kLongestStream),
                                                   words.number(3, kLargestFrame, 500)};
                               if (stream.bytes < kSmallestFrame)
                                   words.refuse("a frame has at least 64 bytes");
                               const Passed result =
                                   chip.meters.run(stream, [&] { return chip.meters.admit(id, stream.bytes); });
                               return fmt::format("offered={} passed={}\n", result.offered, result.passed);
                           });

const BoardCommand kWait("meter-wait US", "lets microseconds pass for the meters",
                         [](Chip &chip, const Words &words) {
                             chip.meters.wait(uint64_t{words.number(0)} * 1000);
                             return std::string();
                         });

} // namespace
} // namespace zrsim
