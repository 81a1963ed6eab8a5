// Runs bytes as what a user hands to zrbench: a device file when they start with a brace, else lines typed to
// the shell. Whatever they are, zrbench ends in order or with one clear error.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

#include "sim/zrsim.h"
#include "tests/fuzz/fresh_library.h"
#include "tools/zrbench/json_writer.h"
#include "tools/zrbench/runner.h"
#include "tools/zrbench/shell.h"

using namespace zrbench;

namespace
{

// The input as a file in memory: device files are read by name.
class InputFile
{
public:
    InputFile(const uint8_t *data, size_t size) : descriptor_(memfd_create("input", 0))
    {
        if (descriptor_ < 0 || write(descriptor_, data, size) != static_cast<ssize_t>(size))
            std::abort();
    }
    InputFile(const InputFile &) = delete;
    InputFile &operator=(const InputFile &) = delete;
    ~InputFile() { close(descriptor_); }

    std::string path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

private:
    int descriptor_;
};

void must(bool holds, const char *what)
{
    if (!holds) {
        std::fprintf(stderr, "ERROR: %s\n", what);
        std::abort();
    }
}

} // namespace

// What commands write goes to a folder of its own.
extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    char folder[] = "/tmp/zrbench_fuzz.XXXXXX";
    if (mkdtemp(folder) == nullptr || chdir(folder) != 0)
        std::abort();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // Files of the system may block whoever reads them, as a pipe does.
    const std::string_view text(reinterpret_cast<const char *>(data), size);
    for (const std::string_view folder : {"/dev", "/proc", "/sys"})
        if (text.find(folder) != std::string_view::npos)
            return -1;
    static const zrfuzz::FreshLibrary library;
    library.restore();
    zrsim_reset();
    const InputFile file(data, size);
    // Anything but a terminal, whose user would be asked.
    if (std::freopen(file.path().c_str(), "r", stdin) == nullptr)
        std::abort();
    try {
        Session session({.platform = ZRLSW_PLATFORM, .library = ZRLSW_LIBRARY});
        Report report(std::make_unique<TextWriter>(false, false));
        report.add(std::make_unique<JsonWriter>(false));
        if (size > 0 && data[0] == '{')
            runDevice(session, loadDevice(file.path()), report);
        else
            runShell(session, report, PageWriter(session, "shell"));
        session.finish();
    } catch (const UsageError &error) {
        // Any other exception ends the run.
        must(!error.text.empty(), "an error without a text");
        must(error.text.find('\n') == std::string::npos, "an error of several lines");
    }
    must(zrsim_bad_frees() == 0, "a block freed that was not live");
    zrsim_reset();
    clearenv();
    return 0;
}
