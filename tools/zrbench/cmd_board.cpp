#include <cstdlib>

#include "tools/zrbench/command.h"

namespace zrbench
{

namespace
{

// A desktop's numeric environment is the process's own.
const Command kCommands[] = {
    {"board",
     {{"unit", Type::Unit}, {"line", Type::Text}},
     "runs a line of the board's interpreter and shows what it prints: cables, frames, revisions; try \"board "
     "0 help\"",
     "",
     [](Bench &bench, const Arguments &a) {
         return Outcome::shown(bench.board(a.number("unit"), a.text("line")));
     }},
    {"env set",
     {{"name", Type::Text}},
     "sets an environment variable: NAME=VALUE",
     "",
     [](Bench &, const Arguments &a) {
         const std::string text = a.text("name");
         const size_t equals = text.find('=');
         if (equals == std::string::npos || equals == 0)
             throw UsageError{"expected NAME=VALUE, found \"" + text + "\""};
         setenv(text.substr(0, equals).c_str(), text.substr(equals + 1).c_str(), 1);
         return Outcome::shown("");
     }},
    {"env unset",
     {{"name", Type::Text}},
     "removes an environment variable",
     "",
     [](Bench &, const Arguments &a) {
         unsetenv(a.text("name").c_str());
         return Outcome::shown("");
     }},
};

} // namespace

std::span<const Command> boardCommands()
{
    return kCommands;
}

} // namespace zrbench
