#include "tools/zrbench/reference.h"

#include <CLI/Option.hpp>
#include <algorithm>
#include <cctype>
#include <fmt/format.h>
#include <map>
#include <regex>

#include "tools/zrbench/commands.h"
#include "tools/zrbench/version.h"

namespace zrbench
{

namespace
{

std::string replaced(std::string text, std::string_view from, std::string_view to)
{
    for (size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
    return text;
}

// By an argument's name as it is typed, what it stands for in which commands; empty where the name tells all.
using Meanings = std::map<std::string, std::map<std::string_view, std::vector<std::string_view>>>;

Meanings meanings()
{
    Meanings found;
    for (const Command *command : commands())
        for (Argument argument : command->arguments) {
            argument.optional = false;
            found[usage(argument)][argument.meaning].push_back(command->name);
        }
    return found;
}

// Calls visit(name, meaning, commands) for each; commands is empty when the name has one meaning only.
template <class Visit> void everyMeaning(Visit visit)
{
    for (const auto &[name, all] : meanings())
        for (const auto &[meaning, in] : all)
            if (!meaning.empty())
                visit(name, meaning, all.size() == 1 ? "" : fmt::to_string(fmt::join(in, ", ")));
}

// ---- roff ---------------------------------------------------------------------------------------

std::string roff(std::string text)
{
    text = replaced(std::move(text), "\\", "\\e");
    text = replaced(std::move(text), "-", "\\-");
    text = replaced(std::move(text), "\n", "\n.br\n");
    // A line of its own that starts so would be a request.
    return text.starts_with('.') || text.starts_with('\'') ? "\\&" + text : text;
}

std::string term(const std::string &name, const std::string &text)
{
    return fmt::format(".TP\n.B {}\n{}\n", roff(name), roff(text));
}

// "FILE", or what else a word stands for.
std::string operandOf(const CLI::Option &option)
{
    std::string name = option.get_type_name() == "TEXT" ? option.get_name(true) : option.get_type_name();
    std::ranges::transform(name, name.begin(),
                           [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return name;
}

std::string optionsOf(const CLI::App &app)
{
    std::string text;
    for (const CLI::Option *option : app.get_options()) {
        std::string names;
        for (const std::string &name : option->get_snames())
            names += fmt::format("{}-{}", names.empty() ? "" : ", ", name);
        for (const std::string &name : option->get_lnames())
            names += fmt::format("{}--{}", names.empty() ? "" : ", ", name);
        if (option->get_positional())
            names = operandOf(*option);
        else if (option->get_expected_min() > 0)
            names += " " + option->get_type_name();
        if (names != "-h, --help" || app.get_parent() == nullptr)
            text += term(names, option->get_description());
    }
    return text;
}

} // namespace

std::string markdownReference()
{
    const auto cell = [](std::string_view text) { return replaced(std::string(text), "|", "\\|"); };
    // A word with an @ means something to who makes pages of it.
    static const std::regex at(R"(\S*@\S*[^\s,;:.])");
    std::string text = "| Command | Does | Slot or operation |\n|---|---|---|\n";
    for (const Command *command : commands())
        text += fmt::format("| `{}` | {} | {} |\n", cell(usage(*command)),
                            std::regex_replace(cell(command->help), at, "`$&`"), command->slot);
    text += "\n| Argument | Stands for |\n|---|---|\n";
    everyMeaning([&](const std::string &name, std::string_view meaning, const std::string &in) {
        text += fmt::format("| `{}` | {}{} |\n", cell(name), in.empty() ? "" : fmt::format("of {}: ", in),
                            cell(meaning));
    });
    return text;
}

std::string manualPage(const CLI::App &app)
{
    std::string text = fmt::format(".TH ZRBENCH 1 \"\" \"zrlsw {}\" \"zrlsw\"\n", version());
    text += ".SH NAME\nzrbench \\- bench manager of the gateway's chip adaptation library\n.SH SYNOPSIS\n";
    std::string subcommands;
    for (const CLI::App *command : app.get_subcommands([](const CLI::App *) { return true; })) {
        std::string operands;
        for (const CLI::Option *option : command->get_options()) {
            if (!option->get_positional())
                continue;
            const std::string name = operandOf(*option) + (option->get_expected_max() > 1 ? "..." : "");
            operands += " " + (option->get_required() ? name : fmt::format("[{}]", name));
        }
        text += fmt::format(".B zrbench {}\n[OPTION]...{}\n.br\n", command->get_name(), roff(operands));
        subcommands += fmt::format(".SS {}\n{}.\n{}", command->get_name(), roff(command->get_description()),
                                   optionsOf(*command));
    }
    text += ".SH DESCRIPTION\n" + roff(app.get_description()) +
            "\nIt runs device files, takes the same commands from the keyboard, and tells what came of each. "
            "Without a\n"
            "board the library runs over a stand\\-in for chips, manager and board.\n";
    text += ".SH OPTIONS\n" + optionsOf(app) + ".SH SUBCOMMANDS\n" + subcommands;
    text += ".SH COMMANDS\nOf device files and of the shell. Numbers are decimal or 0x hexadecimal.\n";
    for (const Command *command : commands())
        text += term(usage(*command),
                     fmt::format("{}{}", command->help,
                                 command->slot.empty() ? "" : fmt::format(" [{}]", command->slot)));
    text += ".SH ARGUMENTS\n";
    everyMeaning([&](const std::string &name, std::string_view meaning, const std::string &in) {
        text += term(name, fmt::format("{}{}", in.empty() ? "" : fmt::format("of {}: ", in), meaning));
    });
    text += ".SH EXIT STATUS\n" + term("0", "all steps were as expected") +
            term("1", "a step was not as expected; two dumps differ") +
            term("2", "bad use, a bad file or platform, or output that could not be written");
    text += ".SH ENVIRONMENT\n" + term("NO_COLOR", "no colours, unless --color asks for them") +
            term("TERM", "with \"dumb\" there is neither colour nor editing nor a pager") +
            term("PAGER", "shows what is longer than the terminal; less by default, empty for none");
    text += ".SH FILES\n" + term("~/.zrbench_history", "the lines typed in the shell") +
            term("~/.editrc", "the keys of the shell, see editrc(5)");
    text += ".SH EXAMPLES\n.nf\n" + roff("zrbench run gateway.json") + "\n" +
            roff("zrbench shell --up -c 'vlan list 0'") + "\n" +
            roff("zrbench --json run gateway.json | jq .status") + "\n" + roff("zrbench explain 0x10005") +
            "\n.fi\n";
    return text;
}

} // namespace zrbench
