// What surrounds the chips: the board's interpreter, and the environment, which on a desktop is that of the
// process.
#include <algorithm>
#include <cstdlib>

#include "tools/zrbench/rows.h"
#include "tools/zrbench/suggest.h"
#include "tools/zrbench/values.h"

namespace zrbench
{

namespace
{

void checkName(const nlohmann::json &name)
{
    const auto text = name.get<std::string>();
    if (text.empty() || text.find('=') != std::string::npos)
        throw UsageError{"expected the name of an environment variable, found " + shown(name)};
}

void checkAssignment(const nlohmann::json &assignment)
{
    if (const size_t equals = assignment.get<std::string>().find('=');
        equals == std::string::npos || equals == 0)
        throw UsageError{"expected NAME=VALUE, found " + shown(assignment)};
}

Outcome runLine(Session &session, const Arguments &a)
{
    const std::string line = a.text("line");
    std::string answer = session.board(a.number("unit"), line);
    std::vector<std::string> words = session.boardCommands();
    for (std::string &usage : words)
        usage.erase(std::min(usage.find(' '), usage.size()));
    const std::string word = line.substr(0, line.find(' '));
    if (session.boardRefused() && std::ranges::count(words, word) == 0)
        answer.insert(answer.find_last_not_of('\n') + 1, didYouMean(word, {words.begin(), words.end()}));
    return Outcome::shown(answer);
}

Outcome set(Session &, const Arguments &a)
{
    const std::string text = a.text("name");
    const size_t equals = text.find('=');
    setenv(text.substr(0, equals).c_str(), text.substr(equals + 1).c_str(), 1);
    return Outcome::shown("");
}

Outcome unset(Session &, const Arguments &a)
{
    unsetenv(a.text("name").c_str());
    return Outcome::shown("");
}

const Command kBoardCommands[] = {
    {"board",
     {kUnit, {"line", Type::Text}},
     "runs a line of the board's interpreter and shows what it prints: cables, link partners, revisions; try "
     "\"board 0 help\"",
     "",
     runLine},
    {"env set",
     {{.name = "name", .type = Type::Text, .check = checkAssignment}},
     "sets an environment variable: NAME=VALUE",
     "",
     set},
    {"env unset",
     {{.name = "name", .type = Type::Text, .check = checkName}},
     "removes an environment variable",
     "",
     unset},
};

} // namespace

std::span<const Command> boardCommands()
{
    return kBoardCommands;
}

} // namespace zrbench
