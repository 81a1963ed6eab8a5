// Frames as a person gives them to the board: hexadecimal text, or a file.
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
// BoardError when it cannot be read or is neither.
std::vector<Frame> framesFromFile(const std::string &path);

} // namespace zrsim
