#include "sim/pipeline/capture.h"

#include <fmt/format.h>

#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "sim/command.h"

namespace zrsim
{
namespace
{

constexpr uint32_t kMicroseconds = 0xA1B2C3D4;
constexpr uint32_t kNanoseconds = 0xA1B23C4D;
constexpr size_t kFileHeader = 24;
constexpr size_t kRecordHeader = 16;
constexpr uint32_t kEthernet = 1;
constexpr uintmax_t kLargestFile = 64U << 20U;

uint32_t word(const std::string &bytes, size_t offset, bool bigEndian)
{
    uint32_t value = 0;
    for (size_t i = 0; i < 4; ++i) {
        const uint32_t byte = static_cast<uint8_t>(bytes[offset + i]);
        value |= byte << (bigEndian ? 24 - 8 * i : 8 * i);
    }
    return value;
}

bool isCapture(const std::string &bytes, bool bigEndian)
{
    if (bytes.size() < kFileHeader)
        return false;
    const uint32_t magic = word(bytes, 0, bigEndian);
    return magic == kMicroseconds || magic == kNanoseconds;
}

std::vector<Frame> framesOfCapture(const std::string &path, const std::string &bytes, bool bigEndian)
{
    if (word(bytes, 20, bigEndian) != kEthernet)
        throw BoardError{fmt::format("{}: not a capture of Ethernet frames\n", path)};
    std::vector<Frame> frames;
    size_t offset = kFileHeader;
    while (bytes.size() - offset >= kRecordHeader) {
        const size_t length = word(bytes, offset + 8, bigEndian);
        offset += kRecordHeader;
        if (length > bytes.size() - offset)
            throw BoardError{fmt::format("{}: ends in the middle of frame {}\n", path, frames.size())};
        frames.emplace_back(bytes.begin() + static_cast<std::ptrdiff_t>(offset),
                            bytes.begin() + static_cast<std::ptrdiff_t>(offset + length));
        offset += length;
    }
    return frames;
}

// Directories fail on reading, devices may never end, FIFOs wait for a writer: regular files alone are read.
std::string contents(const std::string &path)
{
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        throw BoardError{fmt::format("{}: not a regular file\n", path)};
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw BoardError{fmt::format("{}: cannot be read\n", path)};
    if (std::filesystem::file_size(path, error) > kLargestFile || error)
        throw BoardError{fmt::format("{}: larger than {} bytes\n", path, kLargestFile)};
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

Frame frameFromHex(const std::string &text)
{
    std::string digits;
    for (char c : text) {
        if (std::isxdigit(static_cast<unsigned char>(c)) != 0)
            digits += c;
        else if (c != ':' && std::isspace(static_cast<unsigned char>(c)) == 0)
            return {};
    }
    if (digits.size() % 2 != 0)
        return {};
    Frame frame;
    for (size_t i = 0; i < digits.size(); i += 2)
        frame.push_back(static_cast<uint8_t>(std::stoul(digits.substr(i, 2), nullptr, 16)));
    return frame;
}

std::vector<Frame> framesFromFile(const std::string &path)
{
    const std::string bytes = contents(path);
    for (bool bigEndian : {false, true})
        if (isCapture(bytes, bigEndian))
            return framesOfCapture(path, bytes, bigEndian);
    if (Frame frame = frameFromHex(bytes); !frame.empty())
        return {std::move(frame)};
    throw BoardError{fmt::format("{}: neither a pcap capture nor a frame in hexadecimal\n", path)};
}

} // namespace zrsim
