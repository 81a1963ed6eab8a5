// Frames as people write and read them, and captures of frames. A packet library builds, describes and stores
// them (frame_packets.cpp); a build without it takes hexadecimal frames only (frame_packets_none.cpp).
#pragma once

#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zrbench
{

// The names of a frame's words, separated by |.
constexpr std::string_view kFrameWords =
    "dst|src|vlan|priority|innerVlan|innerPriority|etherType|arp|srcIp|dstIp|ipProto|l4Src|l4Dst|dscp|ttl|"
    "payload|len|fcs";

struct Frame {
    std::vector<uint8_t> bytes; // without FCS
    bool fcsGood = true;
};

// Hexadecimal, or words (docs/device-files.md). A frame without src= is of the host at the port. Throws
// UsageError.
Frame parseFrame(std::string_view text, uint32_t unit, uint32_t port);
void checkFrame(const nlohmann::json &text);

// ---- what the packet library does ---------------------------------------------------------------

// A frame of words. Throws UsageError.
Frame buildFrame(std::string_view words, const std::string &source);

// On one line; empty when nothing is known about the frame.
std::string describeFrame(std::span<const uint8_t> bytes);

// The frames of a capture, pcap or pcapng. Throws UsageError.
std::vector<Frame> readCapture(const std::string &path);

// Writes a capture, pcap.
class CaptureWriter
{
public:
    virtual ~CaptureWriter() = default;
    // Throws UsageError when it cannot be written.
    virtual void write(std::span<const uint8_t> bytes, uint64_t ms) = 0;
};
// Throws UsageError.
std::unique_ptr<CaptureWriter> writeCapture(const std::string &path);

} // namespace zrbench
