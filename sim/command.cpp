#include "sim/command.h"

#include <fmt/format.h>

#include <algorithm>
#include <sstream>

#include "platform/board.h"
#include "platform/manager.h"
#include "sim/board/board.h"
#include "sim/gate.h"

namespace zrsim
{
namespace
{

std::vector<const BoardCommand *> &commands()
{
    static std::vector<const BoardCommand *> all;
    return all;
}

uint32_t parse(const std::string &word, bool &good)
{
    char *end = nullptr;
    const unsigned long long number = std::strtoull(word.c_str(), &end, 0);
    good = !word.empty() && word[0] != '-' && *end == '\0' && number <= UINT32_MAX;
    return static_cast<uint32_t>(number);
}

std::string help()
{
    auto sorted = commands();
    std::sort(sorted.begin(), sorted.end(), [](auto *a, auto *b) { return a->usage < b->usage; });
    std::string text;
    for (const BoardCommand *command : sorted)
        text += fmt::format("{:<36} {}\n", command->usage, command->help);
    return text;
}

const BoardCommand kHelp("help", "this list", [](Chip &, const Words &) { return help(); });

const BoardCommand kRevision("revision N", "the silicon's revision, seen by the SDK at its next initialisation",
                             [](Chip &chip, const Words &words) {
                                 chip.revision = static_cast<uint8_t>(words.number(0, UINT8_MAX));
                                 if (!chip.inReset())
                                     chip.registers().preset(kRegRevision, chip.revision);
                                 return std::string();
                             });

const BoardCommand kFs("fs DATA", "the silicon's FS data, read over the AHB bus",
                       [](Chip &chip, const Words &words) {
                           chip.fsData = words.number(0);
                           return std::string();
                       });

const BoardCommand kStick("smi-stick REGISTER", "keeps an SMI register of the unit at its present value",
                          [](Chip &chip, const Words &words) {
                              constexpr uint32_t kAddresses[] = {0, 0, 29};
                              if (chip.unit() == 0)
                                  words.refuse("unit 0 is not on the SMI bus");
                              board().bus().stick(kAddresses[chip.unit()], words.number(0, 31));
                              return std::string();
                          });

const BoardCommand kRelease("smi-release", "releases every stuck SMI register", [](Chip &, const Words &) {
    board().bus().release();
    return std::string();
});

const BoardCommand kReset("reset", "a reset of the chip that nobody asked for", [](Chip &chip, const Words &) {
    chip.assertReset();
    chip.releaseReset();
    return std::string();
});

} // namespace

BoardCommand::BoardCommand(std::string_view usageText, std::string_view helpText, Run body)
    : usage(usageText), help(helpText), run(body)
{
    commands().push_back(this);
}

void Words::refuse(const std::string &why) const
{
    throw BoardError{fmt::format("{}; usage: {}\n", why, usage_)};
}

const std::string &Words::text(size_t i) const
{
    if (i >= words_.size())
        refuse("a word is missing");
    return words_[i];
}

uint32_t Words::number(size_t i, uint32_t most) const
{
    bool good = false;
    const uint32_t value = parse(text(i), good);
    if (!good || value > most)
        refuse(fmt::format("'{}' is no number from 0 to {}", words_[i], most));
    return value;
}

uint32_t Words::number(size_t i, uint32_t most, uint32_t otherwise) const
{
    return i < words_.size() ? number(i, most) : otherwise;
}

const char *boardUsage(unsigned nth)
{
    // Usage texts are literals.
    return nth < commands().size() ? commands()[nth]->usage.data() : nullptr;
}

std::string runBoardLine(uint32_t unit, std::string_view line, bool &ok)
{
    std::istringstream in{std::string(line)};
    std::string name;
    in >> name;
    std::vector<std::string> words;
    for (std::string word; in >> word;)
        words.push_back(word);

    ok = false;
    if (unit >= kUnits)
        return fmt::format("no unit {}\n", unit);
    for (const BoardCommand *command : commands()) {
        if (command->name() != name)
            continue;
        try {
            std::string answer = command->run(board().chip(unit), Words(command->usage, std::move(words)));
            ok = true;
            return answer;
        } catch (const BoardError &error) {
            return error.text;
        }
    }
    return fmt::format("unknown command '{}'; 'help' lists them\n", name);
}

} // namespace zrsim

using namespace zrsim;

uint32_t excute_command(uint32_t unit, const char *line)
{
    return pass({__func__, {unit, line}}, [&]() -> uint32_t {
        bool ok = false;
        const std::string answer = runBoardLine(unit, line, ok);
        if (!answer.empty())
            LSWM_CmdCliPrint(answer.c_str());
        return ok ? 0 : 1;
    });
}
