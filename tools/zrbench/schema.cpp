#include "tools/zrbench/schema.h"

#include <fmt/format.h>

#include "platform/manager.h"
#include "tools/zrbench/commands.h"
#include "tools/zrbench/status.h"
#include "tools/zrbench/values.h"

using Json = nlohmann::ordered_json;

namespace zrbench
{

namespace
{

// A number, or a text that becomes one: 0x2a0, or $v of a repeated step.
Json numberUpTo(uint32_t most)
{
    return {{"anyOf",
             {{{"type", "integer"}, {"minimum", 0}, {"maximum", most}},
              {{"type", "boolean"}},
              {{"type", "string"}, {"pattern", "^(0[xX][0-9a-fA-F]+|[0-9]+)$|\\$"}}}}};
}

Json text(const char *pattern = nullptr)
{
    Json schema = {{"type", "string"}};
    if (pattern != nullptr)
        schema["pattern"] = pattern;
    return schema;
}

Json listOf(Json items)
{
    return {{"type", "array"}, {"items", std::move(items)}};
}

Json object(Json properties, Json required = Json::array())
{
    return {{"type", "object"},
            {"properties", std::move(properties)},
            {"required", std::move(required)},
            {"additionalProperties", false}};
}

Json wordsOf(std::string_view choices)
{
    Json words = Json::array();
    for (const std::string_view choice : split(choices, '|'))
        words.push_back(choice);
    return words;
}

Json reference(const char *name)
{
    return {{"$ref", fmt::format("#/definitions/{}", name)}};
}

Json schemaOf(const Argument &argument)
{
    switch (argument.type) {
    case Type::Number: {
        Json schema = numberUpTo(argument.most);
        for (const auto &[name, unused] : namedNumbers(argument.choices))
            schema["anyOf"].push_back({{"const", name}});
        return schema;
    }
    case Type::Mac:
        return text("^([0-9a-fA-F]{1,2}:){5}[0-9a-fA-F]{1,2}$|\\$");
    case Type::Ports:
        return reference("ports");
    case Type::Word:
        if (!argument.choices.empty())
            return {{"anyOf", {{{"enum", wordsOf(argument.choices)}}, text("\\$")}}};
        return text();
    case Type::Json:
        if (!argument.choices.empty())
            return {{"type", "object"}, {"propertyNames", {{"enum", wordsOf(argument.choices)}}}};
        return true;
    case Type::Text:
    case Type::File:
    case Type::Call:
    case Type::Line:
        return text();
    }
    return true;
}

// Lines of the command. "fail" is not the start of "fail none".
std::string patternOf(const Command &command)
{
    std::string words(command.name);
    if (const size_t blank = words.find(' '); blank != std::string::npos)
        return fmt::format("^\\s*{}\\s+{}(\\s|$)", words.substr(0, blank), words.substr(blank + 1));
    std::string others;
    for (const Command *other : commands())
        if (other->name.starts_with(words + " "))
            others += fmt::format("{}{}", others.empty() ? "" : "|", other->name.substr(words.size() + 1));
    if (words == "?")
        words = "\\?";
    return others.empty() ? fmt::format("^\\s*{}(\\s|$)", words)
                          : fmt::format("^\\s*{}(?!\\s+({})(\\s|$))(\\s|$)", words, others);
}

// What a step of the command may hold besides what every step may.
Json stepOf(const Command &command, const Json &common)
{
    Json properties = Json::object();
    Json names = Json::array();
    for (const auto &[name, unused] : common.items())
        names.push_back(name);
    for (const Argument &argument : command.arguments) {
        Json schema = schemaOf(argument);
        if (schema.is_object() && !argument.meaning.empty())
            schema["description"] = argument.meaning;
        properties[std::string(argument.name)] = std::move(schema);
        names.push_back(argument.name);
    }
    properties["do"] = {{"description", fmt::format("{}: {}", usage(command), command.help)}};
    return {{"if", {{"properties", {{"do", {{"pattern", patternOf(command)}}}}}}},
            {"then", {{"properties", std::move(properties)}, {"propertyNames", {{"enum", std::move(names)}}}}}};
}

Json stepSchema()
{
    const Json number = reference("number");
    const Json common = {
        {"do", text()},
        {"expect", {{"anyOf", {number, {{"enum", wordsOf(statusWords())}}, text("^[a-z ]+$")}}}},
        {"lines", listOf(text())},
        {"holds", number},
        {"out", {{"type", "object"}}},
        {"shows", listOf(text())},
        {"note", text()},
        {"each",
         {{"type", "object"}, {"minProperties", 1}, {"additionalProperties", text("^[0-9xXa-fA-F,-]+$")}}},
    };
    Json patterns = Json::array();
    Json kinds = Json::array();
    for (const Command *command : commands()) {
        patterns.push_back(text(patternOf(*command).c_str()));
        kinds.push_back(stepOf(*command, common));
    }
    Json step = {{"type", "object"}, {"properties", common}, {"required", {"do"}}, {"allOf", std::move(kinds)}};
    step["properties"]["do"] = reference("line");
    return {{"line", {{"type", "string"}, {"anyOf", std::move(patterns)}}},
            {"step",
             {{"anyOf",
               {reference("line"), object({{"say", text()}}, {"say"}),
                object({{"include", text()}}, {"include"}), std::move(step)}}}}};
}

} // namespace

Json deviceSchema()
{
    Json definitions = stepSchema();
    definitions["number"] = numberUpTo(UINT32_MAX);
    definitions["ports"] = {{"anyOf", {text("^(-|[0-9, -]+)$|\\$"), listOf(reference("number"))}}};
    const Json number = reference("number");
    const Json unit =
        object({{"unit", numberUpTo(LSWM_UNITS - 1)},
                {"maxFrameSize", number},
                {"reservedPort", number},
                {"cascadeTrunk", number},
                {"portSets", {{"type", "object"}, {"additionalProperties", reference("ports")}}},
                {"ports",
                 {{"type", "object"}, {"additionalProperties", object({{"flags", number}, {"kind", number}})}}},
                {"board", listOf(text())}},
               {"unit"});
    Json schema = {{"$schema", "http://json-schema.org/draft-07/schema#"},
                   {"title", "A device and its steps, for zrbench run"}};
    schema.update(object({{"$schema", text()},
                          {"about", text()},
                          {"environment", {{"type", "object"}, {"additionalProperties", text()}}},
                          {"units", listOf(unit)},
                          {"cables", listOf({{"type", "array"},
                                             {"items", text("^[0-9xX]+/[0-9xXa-fA-F]+$")},
                                             {"minItems", 2},
                                             {"maxItems", 2}})},
                          {"steps", listOf(reference("step"))}}));
    schema["definitions"] = std::move(definitions);
    return schema;
}

} // namespace zrbench
