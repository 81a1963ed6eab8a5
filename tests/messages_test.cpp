// docs/messages.md against the sources: every printed text stands in the document, under the module and the
// operation that print it and with the status that is fixed in the code; and the document has no other.
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>
#include <string>

#include <nlohmann/json.hpp>

#include "kit/zrbench.h"

namespace
{

// Module number (empty for the command line), operation and text, to the status column. Of the code, the
// status is empty where only the call knows it.
using Message = std::array<std::string, 3>;
using Messages = std::map<Message, std::string>;
using Matches = std::sregex_iterator;
using zrtest::ZrbenchTest;

std::string contents(const std::filesystem::path &path)
{
    std::ifstream file(path);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

// Modules, statuses and trace levels by name.
std::map<std::string, std::string> readConstants()
{
    std::map<std::string, std::string> constants;
    const std::string header = contents(ZRLSW_SOURCE_DIR "/src/platform/manager.h");
    const std::regex enumerator(R"((LSW_\w+) = (\d+))");
    for (Matches match(header.begin(), header.end(), enumerator), end; match != end; ++match)
        constants[(*match)[1]] = (*match)[2];
    return constants;
}

std::string joined(const std::string &literals)
{
    return std::regex_replace(literals, std::regex(R"(^"|"\s*"|"\s*$)"), "");
}

void collect(const std::string &operation, const std::string &body, Messages &messages)
{
    static const auto constants = readConstants();
    static const std::regex anyCall(R"(\bZR_(PRINT_FAILED|FAILED|CHIP_FAILED|TRACE)\(|LSWM_DebugInfoPrint\()");
    static const std::regex call(
        R"re((\bZR_(?:PRINT_FAILED|FAILED|CHIP_FAILED|TRACE)|LSWM_DebugInfoPrint)\(\s*(\w+),\s*([^"]*?),\s*((?:"(?:[^"\\]|\\.)*"\s*)+))re");

    static const std::regex pieceOfText(R"re(sprintf_s\([^"]*((?:"(?:[^"\\]|\\.)*"\s*)+))re");

    EXPECT_EQ(std::distance(Matches(body.begin(), body.end(), call), Matches()),
              std::distance(Matches(body.begin(), body.end(), anyCall), Matches()))
        << operation << " prints a text that is no literal";
    for (Matches match(body.begin(), body.end(), call), end; match != end; ++match) {
        std::string module = (*match)[2];
        std::string status = (*match)[3];
        if ((*match)[1] == "ZR_TRACE") {
            std::swap(module, status);
            status = "trace " + constants.at("LSW_TRACE_" + status);
        } else if ((*match)[1] == "LSWM_DebugInfoPrint") {
            module = module.substr(std::string("LSW_MODULE_").size());
            status = "trace always";
        } else if (!std::isdigit(status.front())) {
            status = constants.contains(status) ? constants.at(status) : "";
        }
        messages[{constants.at("LSW_MODULE_" + module), operation, joined((*match)[4])}] = status;
    }
    if (body.find("LSWM_CmdCliPrint(") != std::string::npos)
        for (Matches match(body.begin(), body.end(), pieceOfText), end; match != end; ++match)
            messages[{"", operation, joined((*match)[1])}] = "none";
}

Messages printedTexts()
{
    const std::regex head(R"([a-z][^(]*?(\w+)\(.*[^;])"); // of a function: nothing else begins a line so
    Messages messages;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(ZRLSW_SOURCE_DIR "/src")) {
        if (!entry.is_regular_file() || entry.path().filename() == "print.h" ||
            entry.path().filename() == "manager.h")
            continue;
        std::istringstream file(contents(entry.path()));
        std::string operation;
        std::string body;
        for (std::string line; std::getline(file, line); body += line + "\n") {
            if (std::smatch match; std::regex_match(line, match, head)) {
                collect(operation, body, messages);
                operation = match[1];
                body.clear();
            }
        }
        collect(operation, body, messages);
    }
    return messages;
}

Messages documentedTexts()
{
    const auto constants = readConstants();
    const std::regex heading(R"(## .*\((?:module (\d+), `(\w+)`|no module)\))");
    const std::regex row(R"(\| `([^`]+)` \| `(\w+)`[^|]* \| ([^|]+) \| [^|]+ \| [^|]*\|)");
    Messages messages;
    std::istringstream file(contents(ZRLSW_SOURCE_DIR "/docs/messages.md"));
    std::string module;
    for (std::string line; std::getline(file, line);) {
        std::smatch match;
        if (std::regex_match(line, match, heading)) {
            module = match[1];
            EXPECT_TRUE(module.empty() || constants.at(match[2]) == module) << line;
        } else if (line.starts_with("| `")) {
            EXPECT_TRUE(std::regex_match(line, match, row)) << "not a row: " << line;
            if (!match.empty() && !messages.try_emplace({module, match[2], match[1]}, match[3]).second)
                ADD_FAILURE() << "twice: " << line;
        }
    }
    return messages;
}

TEST(Messages, StandInTheDocumentAsTheyArePrinted)
{
    const Messages printed = printedTexts();
    Messages documented = documentedTexts();
    EXPECT_FALSE(printed.empty());
    for (const auto &[message, status] : printed) {
        const auto row = documented.extract(message);
        if (!row)
            ADD_FAILURE() << "not in the document: " << testing::PrintToString(message);
        else if (status.empty())
            EXPECT_FALSE(row.mapped().starts_with("trace")) << testing::PrintToString(message);
        else
            EXPECT_EQ(row.mapped(), status) << testing::PrintToString(message);
    }
    for (const auto &[message, status] : documented)
        ADD_FAILURE() << "not printed: " << testing::PrintToString(message);
}

// Every text as it is printed, and every status of the stand-in, is explained by zrbench.
using MessagesExplained = ZrbenchTest;

TEST_F(MessagesExplained, ByTheLineAsItWasPrinted)
{
    std::vector<std::string> expected;
    std::string typed;
    for (const auto &[message, status] : printedTexts()) {
        std::string line = std::regex_replace(message[2], std::regex(R"(\\n$)"), "");
        for (const auto &[conversion, printed] :
             {std::pair{"%02x", "0a"}, {"%x", "1f"}, {"%[ud]", "7"}, {"%s", "name"}})
            line = std::regex_replace(line, std::regex(conversion), printed);
        typed += "explain " + line + "\n";
        expected.push_back(message[2]);
    }
    const std::string statuses =
        contents(ZRLSW_SOURCE_DIR "/sim/chip/status.h") + contents(ZRLSW_SOURCE_DIR "/sim/chip/vlan_table.h");
    const std::regex enumerator(R"(kSdk\w+ = (\w+))");
    for (Matches match(statuses.begin(), statuses.end(), enumerator), end; match != end; ++match)
        typed += "explain " + (*match)[1].str() + "\n";

    std::istringstream lines(shell(typed, "--json").output);
    std::string line;
    for (const std::string &text : expected) {
        ASSERT_TRUE(std::getline(lines, line));
        const auto rows = nlohmann::json::parse(line).value("rows", nlohmann::json::array());
        EXPECT_TRUE(std::ranges::any_of(rows, [&](const auto &row) { return row.value("text", "") == text; }))
            << line;
    }
    size_t named = 0;
    while (std::getline(lines, line) && !line.starts_with("{\"heldBlocks"))
        named += nlohmann::json::parse(line)["rows"][0].contains("name") ? 1 : 0;
    EXPECT_EQ(named, static_cast<size_t>(
                         std::distance(Matches(statuses.begin(), statuses.end(), enumerator), Matches())));
}

} // namespace
