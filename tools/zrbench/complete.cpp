#include "tools/zrbench/complete.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fmt/format.h>
#include <set>

#include "tools/zrbench/commands.h"
#include "tools/zrbench/scanner.h"
#include "tools/zrbench/session.h"
#include "tools/zrbench/status.h"
#include "tools/zrbench/values.h"

using nlohmann::json;

namespace zrbench
{

namespace
{

// Where a line ends: within which argument of which command.
struct Place {
    const Command *command = nullptr;
    size_t argument = 0;     // its place among the command's
    std::string_view begun;  // what is typed of it
    std::string_view unit;   // what was typed as "unit"
    std::string_view before; // the words of the command's name, when it has none yet

    const Argument *current() const
    {
        return command != nullptr && argument < command->arguments.size() ? &command->arguments[argument]
                                                                          : nullptr;
    }
};

bool takesRest(const Argument &argument)
{
    return argument.type == Type::Text || argument.type == Type::Line || argument.type == Type::Json;
}

std::string_view skipBlanks(std::string_view text)
{
    return text.substr(std::min(text.find_first_not_of(kBlanks), text.size()));
}

Place placeOf(std::string_view line)
{
    line = skipBlanks(line);
    // The name is whole once a blank follows it; the longer name wins.
    Place place;
    place.before = line;
    for (const Command *command : commands()) {
        if (line.starts_with(command->name) && line.size() > command->name.size() &&
            kBlanks.find(line[command->name.size()]) != std::string_view::npos)
            if (place.command == nullptr || command->name.size() > place.command->name.size())
                place.command = command;
    }
    if (place.command == nullptr)
        return place;
    std::string_view rest = skipBlanks(line.substr(place.command->name.size()));
    for (; const Argument *argument = place.current(); ++place.argument) {
        const size_t end = takesRest(*argument) ? std::string_view::npos : rest.find_first_of(kBlanks);
        if (end == std::string_view::npos) {
            place.begun = rest;
            return place;
        }
        if (argument->name == "unit")
            place.unit = rest.substr(0, end);
        rest = skipBlanks(rest.substr(end));
    }
    return place;
}

std::string_view lastWord(std::string_view text)
{
    return text.substr(text.find_last_of(kBlanks) + 1);
}

// Adds `word` and what follows it when it continues `begun`.
void offer(Completion &to, std::string_view begun, std::string_view word, std::string_view after = " ")
{
    to.begun = begun.size();
    if (word.starts_with(begun))
        to.words.push_back(fmt::format("{}{}", word, after));
}

// ---- candidates by what an argument is -----------------------------------------------------------

std::vector<std::string> unitsOf()
{
    std::vector<std::string> units;
    for (uint32_t unit = 0; unit < LSWM_UNITS; ++unit)
        units.push_back(fmt::to_string(unit));
    return units;
}

std::vector<std::string> portsOf(const json &unit)
{
    std::vector<std::string> ports;
    const json held = unit.value("/ports/port"_json_pointer, json::object());
    for (const auto &[port, unused] : held.items())
        ports.push_back(port);
    std::ranges::sort(ports, {}, [](const std::string &port) { return parseNumber(port).value_or(0); });
    return ports;
}

std::vector<std::string> vlansOf(const json &unit)
{
    std::set<uint32_t> vlans;
    for (const json &entry : unit.value("/vlan/memberConfigs"_json_pointer, json::array()))
        if (const uint32_t vlan = entry.value("vlan", 0U); vlan != 0)
            vlans.insert(vlan);
    std::vector<std::string> found;
    for (const uint32_t vlan : vlans)
        found.push_back(fmt::to_string(vlan));
    return found;
}

// The chip's state, or nothing on a platform that does not tell it.
json stateOf(const Session *session, std::string_view unit)
{
    if (session == nullptr || !session->inspection().available() || session->inspection().dump == nullptr)
        return json::object();
    const json::json_pointer path(fmt::format("/board/units/{}", parseNumber(unit).value_or(LSWM_UNITS)));
    return session->state().value(path, json::object());
}

void offerFiles(Completion &to, std::string_view begun)
{
    const std::filesystem::path typed(begun);
    std::error_code error;
    const std::filesystem::path folder = typed.has_parent_path() ? typed.parent_path() : ".";
    for (auto entry = std::filesystem::directory_iterator(folder, error);
         !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (name.find_first_of(kBlanks) != std::string::npos ||
            name.starts_with('.') != typed.filename().string().starts_with('.'))
            continue;
        offer(to, begun, typed.has_parent_path() ? (typed.parent_path() / name).string() : name,
              entry->is_directory(error) ? "/" : " ");
    }
    to.begun = begun.size();
}

// Keys of an object, where one can stand: after a brace or a comma, outside of texts.
void offerKeys(Completion &to, std::string_view begun, std::string_view keys)
{
    int depth = 0;
    bool quoted = false;
    size_t start = std::string_view::npos; // of a key
    for (size_t i = 0; i < begun.size(); ++i) {
        const char c = begun[i];
        if (c == '"' && (i == 0 || begun[i - 1] != '\\'))
            quoted = !quoted;
        else if (!quoted)
            depth += c == '{' || c == '[' ? 1 : c == '}' || c == ']' ? -1 : 0;
        if (!quoted && depth == 1 && (c == '{' || c == ','))
            start = i + 1;
        else if (!quoted && c == ':')
            start = std::string_view::npos;
    }
    if (begun.empty())
        return offer(to, begun, "{", "");
    if (start == std::string_view::npos || depth != 1)
        return;
    const std::string_view typed = skipBlanks(begun.substr(start));
    to.begun = typed.size();
    for (const std::string_view key : split(keys, '|')) {
        const std::string word = fmt::format("\"{}\"", key);
        if (word.starts_with(typed) || key.starts_with(typed))
            to.words.push_back(word + ": ");
    }
}

std::vector<std::string_view> wordsOf(std::string_view text)
{
    std::vector<std::string_view> words;
    for (Scanner scanner(text); !scanner.atEnd();)
        words.push_back(scanner.word());
    return words;
}

// Words of the board's interpreter, by its usage texts: "link PORT up|down".
void offerBoardWords(Completion &to, std::string_view begun, const Session &session, const json &unit)
{
    const std::string_view last = lastWord(begun);
    const std::vector<std::string_view> before = wordsOf(begun.substr(0, begun.size() - last.size()));
    to.begun = last.size();
    for (const std::string &usage : session.boardCommands()) {
        const std::vector<std::string_view> words = wordsOf(usage);
        if (before.size() >= words.size() || (!before.empty() && before[0] != words[0]))
            continue;
        const std::string_view next = words[before.size()];
        if (next == "PORT")
            for (const std::string &port : portsOf(unit))
                offer(to, last, port);
        for (const std::string_view choice : split(next, '|'))
            if (std::ranges::none_of(choice, [](unsigned char c) { return std::isupper(c) || c == '['; }))
                offer(to, last, choice);
    }
}

void offerArgument(Completion &to, const Place &place, const Session *session)
{
    const Argument &argument = *place.current();
    const std::string_view begun = place.begun;
    to.begun = begun.size();
    auto all = [&](const auto &words, std::string_view typed, std::string_view after) {
        for (const auto &word : words)
            offer(to, typed, word, after);
    };
    const bool choosing = !argument.choices.empty();
    switch (argument.type) {
    case Type::Number:
        if (argument.name == "unit")
            all(unitsOf(), begun, " ");
        else if (argument.name == "port")
            all(portsOf(stateOf(session, place.unit)), begun, " ");
        else if (argument.name == "vlan")
            all(vlansOf(stateOf(session, place.unit)), begun, " ");
        for (const auto &[name, unused] : namedNumbers(argument.choices))
            offer(to, begun, name);
        break;
    case Type::Word:
        if (argument.name == "status")
            all(split(statusWords(), '|'), begun, " ");
        else if (choosing)
            all(split(argument.choices, '|'), begun, " ");
        else if (place.command->name == "diff" && session != nullptr)
            for (const auto &[name, unused] : session->checkpoints())
                offer(to, begun, name);
        break;
    case Type::Ports: {
        const std::string_view last = begun.substr(begun.find_last_of(",-") + 1);
        all(portsOf(stateOf(session, place.unit)), last, "");
        break;
    }
    case Type::Text: {
        const std::string_view word = lastWord(begun);
        if (argument.name == "topic") {
            to = completionAt(begun, session);
            if (place.command->name == "explain" && session != nullptr)
                all(session->platformCalls(), begun, "");
        } else if ((place.command->name == "board" || place.command->name == "cli") && session != nullptr)
            offerBoardWords(to, begun, *session, stateOf(session, place.unit));
        else if (choosing)
            all(split(argument.choices, '|'), word, argument.name == "frame" ? "=" : " ");
        break;
    }
    case Type::Line:
        to = completionAt(begun, session);
        break;
    case Type::Json:
        if (choosing)
            offerKeys(to, begun, argument.choices);
        break;
    case Type::File:
        offerFiles(to, begun);
        break;
    case Type::Call:
        if (session != nullptr)
            all(session->platformCalls(), begun, "=");
        break;
    case Type::Mac:
        break;
    }
}

} // namespace

Completion completionAt(std::string_view line, const Session *session)
{
    const Place place = placeOf(line);
    Completion found;
    if (place.current() != nullptr)
        offerArgument(found, place, session);
    // Words of commands' names, also beside arguments: "fail none".
    const std::string_view begun = lastWord(place.before);
    for (const Command *command : commands()) {
        if (command->name.starts_with(place.before)) {
            const std::string_view rest = command->name.substr(place.before.size() - begun.size());
            offer(found, begun, rest.substr(0, rest.find(' ')));
        }
    }
    std::ranges::stable_sort(found.words, [](const std::string &a, const std::string &b) {
        const auto number = [](const std::string &word) { return parseNumber(word.substr(0, word.find(' '))); };
        const auto left = number(a);
        const auto right = number(b);
        return left && right ? *left < *right : a < b;
    });
    found.words.erase(std::unique(found.words.begin(), found.words.end()), found.words.end());
    return found;
}

std::string hintAt(std::string_view line)
{
    const Place place = placeOf(line);
    if (place.current() != nullptr && place.current()->type == Type::Line && !place.begun.empty())
        return hintAt(place.begun);
    if (place.command == nullptr && place.before.ends_with(' ')) {
        std::string words;
        for (const std::string &word : completionAt(line, nullptr).words)
            words += (words.empty() ? "" : "|") + word.substr(0, word.find(' '));
        return words;
    }
    std::string text;
    for (size_t i = place.argument; place.command != nullptr && i < place.command->arguments.size(); ++i)
        text += fmt::format("{}{}", text.empty() ? "" : " ", usage(place.command->arguments[i]));
    return text;
}

std::string helpAt(std::string_view line, const Session *session, size_t width)
{
    const Place place = placeOf(line);
    const Argument *argument = place.current();
    if (argument != nullptr && argument->type == Type::Line && !place.begun.empty())
        return helpAt(place.begun, session, width);
    if (place.command != nullptr) {
        const std::string whole = help(*place.command, width);
        if (argument == nullptr)
            return whole + "  (nothing more)\n";
        return whole +
               folded(fmt::format("  {}: {}{}{}", usage(*argument), argument->meaning,
                                  argument->meaning.empty() ? "" : "; ", expectedOf(*argument)),
                      width, 4) +
               inColumns(completionAt(line, session).words, width);
    }
    try {
        return help(place.before, width);
    } catch (const UsageError &error) {
        return folded(error.text, width, 2);
    }
}

std::string inColumns(std::vector<std::string> words, size_t width)
{
    size_t widest = 1;
    for (std::string &word : words) {
        word.erase(word.find_last_not_of(' ') + 1);
        widest = std::max(widest, word.size() + 2);
    }
    constexpr size_t kUsual = 80;
    const size_t across = std::max<size_t>(1, ((width == 0 ? kUsual : width) - 2) / widest);
    const size_t down = (words.size() + across - 1) / across;
    std::string text;
    for (size_t row = 0; row < down; ++row) {
        std::string line = " ";
        for (size_t i = row; i < words.size(); i += down)
            line += fmt::format(" {:<{}}", words[i], widest - 1);
        text += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
    }
    return text;
}

} // namespace zrbench
