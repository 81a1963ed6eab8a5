// The way of a frame through the virtual chips, from the port where it is put in to every place where it comes
// out. Each stage (passage.h) asks the tables that the SDK fills and tells the entry that decided; explaining
// and forwarding are one code. The tables stay the owners of their state.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <span>
#include <vector>

#include "sim/board/board.h"
#include "sim/pipeline/passage.h"

namespace zrsim
{

class Pipeline
{
public:
    static constexpr size_t kLargestFrame = 65536;
    static constexpr uint32_t kMostVisits = 16; // of one frame and its copies at a port

    explicit Pipeline(Board &board) : board_(board) {}

    // Puts a frame into a port; `bytes` are without FCS. All of its way is done when this returns.
    void send(uint32_t unit, uint32_t port, std::span<const uint8_t> bytes, bool fcsGood, Witness &witness);

private:
    // A frame, or a copy of it, on its way into a port.
    struct Hop {
        uint32_t unit = 0;
        uint32_t port = 0;
        bool fcsGood = true;
        bool returned = false; // by a loopback of the port
        std::vector<uint8_t> bytes;
    };

    // Puts a frame into the queue of hops.
    void pass(Cables::End to, std::span<const uint8_t> bytes, bool fcsGood, bool returned);
    void enter(const Hop &hop, Witness &witness);
    void turnBack(const Passage &passage);
    void deliver(Passage &passage);
    static void count(const Passage &passage);
    void hand(Passage &passage, const Departure &departure);

    Board &board_;
    // Used as a queue of one frame's hops: references to them hold while it grows. Buffers are kept, so that
    // frames cost no allocation.
    std::deque<Hop> hops_;
    size_t queued_ = 0;
    std::vector<uint8_t> rewritten_;
    std::array<std::array<uint8_t, 32>, kUnits> visits_{};
};

Pipeline &pipeline();

} // namespace zrsim
