#include "tools/zrbench/explain.h"

#include <algorithm>
#include <fmt/format.h>
#include <optional>
#include <regex>
#include <set>

#include "frame/slots.h"
#include "tools/zrbench/commands.h"
#include "tools/zrbench/status.h"
#include "tools/zrbench/suggest.h"
#include "tools/zrbench/tables.h"
#include "tools/zrbench/values.h"

using nlohmann::json;

namespace zrbench
{

namespace
{

// ---- the page -----------------------------------------------------------------------------------

struct Message {
    std::string module; // "VLAN (module 4)"
    std::string text;
    std::string printedBy;
    std::string status;
    std::string means;
    std::string look;
};

struct Status {
    uint32_t number;
    std::string name;
    std::string of;
    std::string means;
    std::string look;
};

struct Page {
    std::vector<Message> messages;
    std::vector<Status> statuses;
    std::vector<std::pair<std::string, std::string>> statusWords; // "SDK", what a line with it carries
    std::string lookAtSdk;                                        // what "SDK" as a place to look at means
};

// The cells of "| a | b |".
std::vector<std::string> cells(std::string_view line)
{
    std::vector<std::string> found;
    for (line.remove_prefix(1); !line.empty();) {
        const size_t end = line.find('|');
        std::string cell(line.substr(0, end));
        cell.erase(0, cell.find_first_not_of(' '));
        cell.erase(cell.find_last_not_of(' ') + 1);
        found.push_back(std::move(cell));
        line.remove_prefix(end == std::string_view::npos ? line.size() : end + 1);
    }
    return found;
}

std::string withoutTicks(std::string text)
{
    std::erase(text, '`');
    return text;
}

Page readPage()
{
    Page page;
    std::string module;
    bool paragraph = false;
    for (const std::string_view line : split(kMessagesPage, '\n')) {
        if (line.starts_with("**\"SDK\""))
            paragraph = true;
        if (line.empty())
            paragraph = false;
        if (paragraph)
            page.lookAtSdk += fmt::format("{}{}", page.lookAtSdk.empty() ? "" : " ", line);
        if (line.starts_with("## "))
            module = withoutTicks(std::string(line.substr(3)));
        if (!line.starts_with("| "))
            continue;
        const std::vector<std::string> row = cells(line);
        if (line.starts_with("| `") && row.size() == 5)
            page.messages.push_back({module.substr(0, module.find(", LSW")) +
                                         (module.find(", LSW") == std::string::npos ? "" : ")"),
                                     withoutTicks(row[0]), withoutTicks(row[1]), row[2], withoutTicks(row[3]),
                                     withoutTicks(row[4])});
        else if (const std::optional<uint32_t> number = parseNumber(row[0]); number && row.size() == 5)
            page.statuses.push_back({*number, row[1], row[2], withoutTicks(row[3]), withoutTicks(row[4])});
        else if (row.size() == 2 && row[0] != "Status")
            page.statusWords.emplace_back(row[0], row[1]);
    }
    std::erase(page.lookAtSdk, '*');
    page.lookAtSdk = withoutTicks(page.lookAtSdk);
    return page;
}

const Page &page()
{
    static const Page read = readPage();
    return read;
}

const Status *statusOf(uint32_t number)
{
    const auto found = std::ranges::find(page().statuses, number, &Status::number);
    return found == page().statuses.end() ? nullptr : &*found;
}

// ---- how an answer is told ----------------------------------------------------------------------

class Answer
{
public:
    void title(std::string_view text) { text_ += fmt::format("{}{}\n", text_.empty() ? "" : "\n", text); }
    void line(std::string_view name, std::string_view text)
    {
        if (!text.empty())
            text_ += fmt::format("  {:<12}{}\n", name, text);
    }
    // What holds for many rows is told with the first.
    bool first(const std::string &text) { return told_.insert(text).second; }
    void row(json row) { rows_.push_back(std::move(row)); }
    bool empty() const { return rows_.empty(); }
    Outcome outcome() const
    {
        Outcome outcome = Outcome::shown(text_);
        outcome.rows = rows_;
        return outcome;
    }

private:
    std::string text_;
    json rows_ = json::array();
    std::set<std::string> told_;
};

void tell(Answer &to, const Status &status)
{
    to.title(fmt::format("status {} ({:#x}): {}", status.number, status.number, status.name));
    to.line("of", status.of == "library" ? "the library"
                  : status.of == "SDK"   ? "the chip SDK"
                                         : "the stand-in's SDK");
    to.line("means", status.means);
    to.line("look first", status.look);
    to.row({{"status", status.number},
            {"name", status.name},
            {"of", status.of},
            {"means", status.means},
            {"lookFirst", status.look}});
}

std::string carried(const Message &message)
{
    for (const auto &[word, meaning] : page().statusWords)
        if (word == message.status ||
            (word.find(message.status) != std::string::npos && message.status.starts_with("trace")))
            return fmt::format("{}: {}", message.status, meaning);
    return message.status;
}

void tell(Answer &to, const Message &message)
{
    static const std::regex sdk(R"(\bSDK\b)");
    to.title(message.text);
    to.line("printed by", fmt::format("{}, under {}", message.printedBy, message.module));
    to.line("status", to.first(message.status) ? carried(message) : message.status);
    to.line("means", message.means);
    to.line("look first", message.look);
    if (std::regex_search(message.look, sdk) && to.first(page().lookAtSdk))
        to.line("", page().lookAtSdk);
    to.row({{"text", message.text},
            {"printedBy", message.printedBy},
            {"module", message.module},
            {"status", message.status},
            {"means", message.means},
            {"lookFirst", message.look}});
}

// ---- what can be asked for ----------------------------------------------------------------------

bool explainStatus(Answer &to, const std::string &asked)
{
    std::optional<uint32_t> number = statusNumber(asked);
    if (!number) {
        const auto named = std::ranges::find(page().statuses, asked, &Status::name);
        if (named == page().statuses.end())
            return false;
        number = named->number;
    }
    if (const Status *status = statusOf(*number)) {
        tell(to, *status);
        return true;
    }
    to.title(fmt::format("status {} ({:#x}): without a name here", *number, *number));
    to.line("means", "a status of the board's SDK, or the sum of several statuses");
    to.line("look first", "the SDK's list; for a sum, the lines above");
    to.row({{"status", *number}});
    return true;
}

// %u and the like are what printf makes of them. A line may have lost the blanks and the line end around it.
std::regex patternOf(std::string text)
{
    static const std::regex special(R"([.*+?^${}()|\[\]\\])");
    static const std::regex around(R"(^ +|\\n$)");
    text = std::regex_replace(std::regex_replace(text, around, ""), special, R"(\$&)");
    for (const auto &[conversion, printed] :
         {std::pair{"%0?2?x", "[0-9a-f]+"}, {"%[ud]", "-?[0-9]+"}, {"%s", ".*"}})
        text = std::regex_replace(text, std::regex(conversion), printed);
    return std::regex(text);
}

// A line as it was printed, or words of one.
bool explainText(Answer &to, const std::string &asked)
{
    static const std::vector<std::regex> patterns = [] {
        std::vector<std::regex> made;
        for (const Message &message : page().messages)
            made.push_back(patternOf(message.text));
        return made;
    }();
    for (size_t i = 0; i < patterns.size(); ++i)
        if (std::regex_search(asked, patterns[i]))
            tell(to, page().messages[i]);
    if (to.empty() && asked.size() > 2) {
        std::vector<const Message *> found;
        for (const Message &message : page().messages)
            if (message.text.find(asked) != std::string::npos)
                found.push_back(&message);
        constexpr size_t kMost = 8;
        if (found.size() > kMost)
            to.title(fmt::format("{} texts have these words; explain one of them", found.size()));
        for (const Message *message : found) {
            if (found.size() <= kMost) {
                tell(to, *message);
                continue;
            }
            to.line("", message->text);
            to.row({{"text", message->text}});
        }
    }
    static const std::regex carriedStatus(R"((?:status|retVal:|ret[ =]+)\s*(0x[0-9a-f]+|\d+))");
    std::set<uint32_t> told;
    for (std::sregex_iterator match(asked.begin(), asked.end(), carriedStatus), end; match != end; ++match)
        if (const Status *status = statusOf(parseNumber((*match)[1].str()).value_or(0));
            status != nullptr && status->number != 0 && told.insert(status->number).second)
            tell(to, *status);
    return !to.empty();
}

bool mentions(const std::string &text, const std::string &name)
{
    return std::regex_search(text, std::regex(fmt::format(R"(\b{}\b)", name)));
}

// What the lines are of which an operation, or a call that it makes, is the cause.
void tellLinesOf(Answer &to, const std::string &name)
{
    // ZR_VLAN_Create works through HAL_VLAN_CreateZr.
    const std::string chip = name.starts_with("ZR_") ? fmt::format("HAL_{}Zr", name.substr(3)) : name;
    for (const Message &message : page().messages)
        if (mentions(message.printedBy, name) || mentions(message.printedBy, chip) ||
            mentions(message.means, name))
            tell(to, message);
}

// A call that the library makes of its platform: its declaration, and the lines of which its failure is the
// cause.
bool explainCall(Answer &to, const std::string &asked)
{
    static const std::regex name(R"(\w+)");
    const std::string headers(kPlatformHeaders);
    std::smatch found;
    if (!std::regex_match(asked, name) ||
        !std::regex_search(headers, found,
                           std::regex(fmt::format(R"((?:^|\n)(\w[^\n;{{}}]*\b{}\([^;]*;))", asked))))
        return false;
    const std::string declared = std::regex_replace(found[1].str(), std::regex(R"(\s+)"), " ");
    to.title(declared);
    // The comment is above the declaration, or above the group that it is in.
    std::string above;
    const std::vector<std::string_view> lines =
        split(std::string_view(headers).substr(0, static_cast<size_t>(found.position(1))), '\n');
    for (auto line = lines.rbegin() + 1;
         line != lines.rend() && (above.empty() ? !line->empty() : line->starts_with("//")); ++line)
        if (line->starts_with("//"))
            above = fmt::format("{}{}{}", line->substr(3), above.empty() ? "" : " ", above);
    to.line("is", asked.starts_with("l2sw") ? "a call of the chip SDK" : "a service of manager or board");
    to.line("about", above);
    to.row({{"call", asked}, {"declaration", declared}, {"about", above}});
    tellLinesOf(to, asked);
    return true;
}

bool explainOperation(Answer &to, const std::string &asked)
{
    static const std::regex name(R"((?:ZR|HAL|L2sw|COM)_\w+)");
    if (std::regex_match(asked, name))
        tellLinesOf(to, asked);
    return !to.empty();
}

struct Named {
    std::string slot;
    std::string operation;
};

#define ZR_NAMED(table, number, member, operation)                                                             \
    {fmt::format("{} {}", Module<table>::kName, number), #operation},

// The operations that a command calls: its slots' and those that it names.
std::vector<std::string> operationsOf(const Command &command)
{
    static const std::vector<Named> all = {ZR_SLOTS(ZR_NAMED)};
    std::vector<std::string> found;
    for (const Named &named : all) {
        const size_t blank = named.slot.find(' ');
        if (usesSlot(command, named.slot.substr(0, blank),
                     parseNumber(named.slot.substr(blank + 1)).value_or(0)))
            found.push_back(named.operation);
    }
    if (found.empty() && command.slot.find('_') != std::string::npos)
        found.push_back(command.slot);
    return found;
}

bool explainCommand(Answer &to, const std::string &asked)
{
    const auto command = std::ranges::find(commands(), asked, [](const Command *each) { return each->name; });
    if (command == commands().end())
        return false;
    const std::vector<std::string> operations = operationsOf(**command);
    to.title(usage(**command));
    to.line("does", (*command)->help);
    to.line("calls", fmt::to_string(fmt::join(operations, ", ")));
    to.row({{"command", asked}, {"help", (*command)->help}, {"operations", operations}});
    for (const std::string &operation : operations)
        tellLinesOf(to, operation);
    return true;
}

} // namespace

std::string_view sdkStatusName(uint32_t status)
{
    const Status *found = statusOf(status);
    return found != nullptr && found->of != "library" ? std::string_view(found->name) : std::string_view();
}

Outcome explain(const std::string &asked)
{
    constexpr size_t kLongest = 1000; // what is looked for grows with it, on the stack as well
    if (asked.size() > kLongest)
        throw UsageError{
            fmt::format("expected a text of at most {} characters, found {}", kLongest, asked.size())};
    Answer answer;
    if (explainStatus(answer, asked) || explainCommand(answer, asked) || explainCall(answer, asked) ||
        explainOperation(answer, asked) || explainText(answer, asked))
        return answer.outcome();
    std::vector<std::string_view> names;
    for (const Command *command : commands())
        names.push_back(command->name);
    throw UsageError{fmt::format("nothing is known of {}{}", shown(asked),
                                 didYouMean(asked, names,
                                            "; a printed line, a status, a platform call, an "
                                            "operation or a command is explained"))};
}

} // namespace zrbench
