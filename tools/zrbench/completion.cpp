#include "tools/zrbench/completion.h"

#include <fmt/format.h>
#include <string_view>

namespace zrbench
{

namespace
{

std::vector<std::string> names(const CLI::Option &option)
{
    std::vector<std::string> all;
    for (const std::string &name : option.get_lnames())
        all.push_back("--" + name);
    for (const std::string &name : option.get_snames())
        all.push_back("-" + name);
    return all;
}

// "--color{always}" takes a value, but only after =.
bool takesNextWord(const CLI::Option &option)
{
    return !option.get_positional() && option.get_expected_min() > 0;
}

bool takesFile(const CLI::Option &option)
{
    return option.get_type_name() == "FILE";
}

std::string joined(const std::vector<std::string> &words, std::string_view separator)
{
    return fmt::format("{}", fmt::join(words, separator));
}

// The options of a subcommand, or of the program, that a word may name.
std::vector<std::string> optionWords(const CLI::App &app)
{
    std::vector<std::string> words;
    for (const CLI::Option *option : app.get_options()) {
        for (const std::string &name : names(*option))
            words.push_back(name);
    }
    return words;
}

bool positionalFile(const CLI::App &app)
{
    for (const CLI::Option *option : app.get_options()) {
        if (option->get_positional() && takesFile(*option))
            return true;
    }
    return false;
}

std::vector<const CLI::App *> subcommands(const CLI::App &app)
{
    return app.get_subcommands([](const CLI::App *) { return true; });
}

std::string bashScript(const CLI::App &app)
{
    std::vector<std::string> files;  // options whose next word is a file
    std::vector<std::string> others; // whose next word is something else
    std::vector<std::string> words;
    std::string cases;
    auto collect = [&](const CLI::App &one) {
        for (const CLI::Option *option : one.get_options()) {
            if (!takesNextWord(*option))
                continue;
            for (const std::string &name : names(*option))
                (takesFile(*option) ? files : others).push_back(name);
        }
    };
    collect(app);
    for (const CLI::App *command : subcommands(app)) {
        collect(*command);
        words.push_back(command->get_name());
        cases += fmt::format("        {}) options=\"$options {}\" files={} ;;\n", command->get_name(),
                             joined(optionWords(*command), " "), positionalFile(*command) ? 1 : 0);
    }
    return fmt::format(R"(# bash completion for zrbench, written by `zrbench completion bash`
_zrbench() {{
    local word command= skip= files=0 current=${{COMP_WORDS[COMP_CWORD]}} options="{options}"
    COMPREPLY=()
    for word in "${{COMP_WORDS[@]:1:COMP_CWORD-1}}"; do
        if [[ $word = "=" ]]; then continue; fi
        if [[ $skip ]]; then skip=; continue; fi
        case $word in
        {files}) skip=file ;;
        {others}) skip=other ;;
        -*) ;;
        *) [[ $command ]] || command=$word ;;
        esac
    done
    case $command in
{cases}    esac
    if [[ $skip = file ]]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    elif [[ $skip ]]; then
        return
    elif [[ $current = -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    elif [[ ! $command ]]; then
        mapfile -t COMPREPLY < <(compgen -W "{words}" -- "$current")
    elif [[ $files = 1 ]]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$current")
    fi
}}
complete -o filenames -F _zrbench zrbench
)",
                       fmt::arg("options", joined(optionWords(app), " ")),
                       fmt::arg("files", joined(files, "|")), fmt::arg("others", joined(others, "|")),
                       fmt::arg("cases", cases), fmt::arg("words", joined(words, " ")));
}

// A text within '' of zsh's _arguments or _describe, where : [ ] mean something.
std::string zshText(std::string_view text)
{
    std::string safe;
    for (const char c : text) {
        if (c == '\'')
            safe += "'\\''";
        else if (c == ':' || c == '[' || c == ']' || c == '\\')
            safe += std::string{'\\', c};
        else
            safe += c;
    }
    return safe;
}

// One argument of _arguments: '*--fail[Make platform calls fail]:NAME: '.
std::string zshArgument(const CLI::Option &option)
{
    const std::string action =
        fmt::format(":{}:{}", zshText(option.get_type_name()), takesFile(option) ? "_files" : " ");
    if (option.get_positional())
        return fmt::format(" '{}'", action);
    std::string all;
    for (const std::string &name : names(option))
        all += fmt::format(" '*{}[{}]{}'", name, zshText(option.get_description()),
                           takesNextWord(option) ? action : "");
    return all;
}

std::string zshScript(const CLI::App &app)
{
    std::string options;
    std::string words;
    std::string cases;
    for (const CLI::Option *option : app.get_options())
        options += zshArgument(*option);
    for (const CLI::App *command : subcommands(app)) {
        words += fmt::format(" '{}:{}'", command->get_name(), zshText(command->get_description()));
        std::string own;
        for (const CLI::Option *option : command->get_options())
            own += zshArgument(*option);
        cases += fmt::format("    {}) _arguments $options{} ;;\n", command->get_name(), own);
    }
    return fmt::format(R"(#compdef zrbench
# zsh completion for zrbench, written by `zrbench completion zsh`
_zrbench() {{
    local state line curcontext=$curcontext
    local -a options=({options}) commands=({words})
    _arguments -C $options '1:command:->command' '*::argument:->argument'
    case $state in
    command) _describe command commands; return ;;
    esac
    case $line[1] in
{cases}    esac
}}
_zrbench "$@"
)",
                       fmt::arg("options", options), fmt::arg("words", words), fmt::arg("cases", cases));
}

} // namespace

std::string completionScript(const CLI::App &app, const std::string &shell)
{
    return shell == "bash" ? bashScript(app) : zshScript(app);
}

} // namespace zrbench
