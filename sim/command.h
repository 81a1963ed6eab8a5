// The board's command interpreter: how the world around a chip is set and looked at. Each model adds its
// own commands by a static BoardCommand in its source file.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zrsim
{

class Chip;

// Thrown by a command for a line that it cannot use; the text is printed in place of the output.
struct BoardError {
    std::string text;
};

// The words after the command's name.
class Words
{
public:
    Words(std::string_view usage, std::vector<std::string> words) : usage_(usage), words_(std::move(words)) {}
    size_t count() const { return words_.size(); }
    // Throws the usage when there is no such word, or when it is no number up to `most`.
    const std::string &text(size_t i) const;
    uint32_t number(size_t i, uint32_t most = UINT32_MAX) const;
    uint32_t number(size_t i, uint32_t most, uint32_t otherwise) const;
    [[noreturn]] void refuse(const std::string &why) const;

private:
    std::string_view usage_;
    std::vector<std::string> words_;
};

struct BoardCommand {
    using Run = std::string (*)(Chip &chip, const Words &words);

    // `usage` starts with the command's name: "link PORT up|down".
    BoardCommand(std::string_view usage, std::string_view help, Run run);

    std::string_view usage;
    std::string_view help;
    Run run;
    std::string_view name() const { return usage.substr(0, usage.find(' ')); }
};

// The usage of the nth command; null behind the last.
const char *boardUsage(unsigned nth);

// Runs one line on a unit; returns what the interpreter prints. `ok` tells whether it was understood.
std::string runBoardLine(uint32_t unit, std::string_view line, bool &ok);

} // namespace zrsim
