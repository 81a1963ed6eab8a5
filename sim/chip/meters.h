// The 64 shared meters, as token buckets. Given: each has a mode, a rate and
// a bucket of 21 bits; ACL rules and storm control name them by index; the manager's mode 0 rate is 8 times
// the chip's, mode 1 passes as it is. The model's own choice:
//   - mode 0 counts bytes (preamble and gap do not count): rate in steps of 8 kbit/s, bucket in bytes;
//     mode 1 counts frames: rate in frames per second, bucket in frames; other modes are refused;
//   - a frame conforms when the bucket holds enough for the whole of it; what does not conform costs nothing;
//   - programming a rate or a bucket fills the bucket; a meter without a rate limits nothing;
//   - the last argument of the rate is kept and read back, and changes nothing;
//   - a reset leaves all meters without a rate.
#pragma once

#include <array>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>

namespace zrsim
{

class Chip;

struct Meter {
    bool limits = false; // a rate was programmed
    uint32_t mode = 0;
    uint32_t rate = 0;
    uint32_t third = 0;
    uint32_t bucket = 0;

    uint64_t tokens = 0;   // in millionths of a byte, or billionths of a frame
    uint64_t filledAt = 0; // ns

    uint64_t full() const { return bucket * scale(); }
    // Whether a frame conforms; one that does takes its tokens.
    bool admit(uint32_t bytes, uint64_t now);

private:
    // Tokens of one byte or frame: chosen so that a meter gains exactly `rate` of them in a nanosecond.
    uint64_t scale() const { return mode == 0 ? 1'000'000 : 1'000'000'000; }
};

class Meters
{
public:
    static constexpr uint32_t kMeters = 64;
    static constexpr uint32_t kMaxBucket = 2097151;

    uint32_t setRate(uint32_t meter, uint32_t mode, uint32_t rate, uint32_t third);
    uint32_t setBucket(uint32_t meter, uint32_t bucket);
    const Meter *find(uint32_t meter) const { return meter < kMeters ? &meters_[meter] : nullptr; }

    // One frame, now (sim/board/clock.h). A meter that does not exist limits nothing.
    bool admit(uint32_t meter, uint32_t bytes);

    void attach(Chip &) {}
    void reset() { meters_ = {}; }
    void dump(nlohmann::json &to) const;

private:
    std::array<Meter, kMeters> meters_{};
};

} // namespace zrsim
