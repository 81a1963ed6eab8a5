// Here belongs what happens to Ethernet frames on their way through a virtual chip: reading them, matching
// them, and later forwarding them, a file a stage; the tables that a stage consults stay in sim/chip/.
//
// This file: frames as a person gives them to the board, as hexadecimal text or as a file.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace zrsim
{

using Frame = std::vector<uint8_t>;

// Bytes in hexadecimal, with colons or without; empty when `text` is anything else.
Frame frameFromHex(const std::string &text);

// The frames of a file: a capture (classic pcap, Ethernet), or one frame as hexadecimal text. Throws
// BoardError when it is no regular file, larger than 64 MiB, or neither.
std::vector<Frame> framesFromFile(const std::string &path);

} // namespace zrsim
