// A build for a machine that has no packet library.
#include "tools/zrbench/command.h"
#include "tools/zrbench/frame.h"

namespace zrbench
{

namespace
{

[[noreturn]] void refuse(std::string_view what)
{
    throw UsageError{std::string(what) + ": zrbench was built without the packet library"};
}

} // namespace

Frame buildFrame(std::string_view, const std::string &)
{
    refuse("a frame that is not hexadecimal");
}

std::string describeFrame(std::span<const uint8_t>)
{
    return {};
}

std::vector<Frame> readCapture(const std::string &path)
{
    refuse(path);
}

std::unique_ptr<CaptureWriter> writeCapture(const std::string &path)
{
    refuse(path);
}

} // namespace zrbench
