#include "tools/zrbench/expectations.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fmt/format.h>

#include "tools/zrbench/in_service.h"
#include "tools/zrbench/json_text.h"
#include "tools/zrbench/output.h"
#include "tools/zrbench/values.h"

using Json = nlohmann::ordered_json;

namespace zrbench
{

namespace
{

// Everything that a step can be expected to bring about, as it did; what a file need not say is left out.
Json expectationsOf(const CheckedRun &run)
{
    const Outcome &outcome = run.result.outcome;
    Json found = Json::object();
    if (outcome.hasStatus && outcome.status != LSW_OK && !outcome.expected)
        found["expect"] = outcome.status;
    for (const auto &[name, value] : outcome.outputs)
        found["out"][name] = value.is_array() ? Json(plainText(value)) : Json(value);
    for (const Line &line : run.result.lines)
        if (line.kind == ZRSIM_LINE_FAIL)
            found["lines"].push_back(line.text);
    if (run.result.held.value_or(0) > 0)
        found["holds"] = *run.result.held;
    return found;
}

struct Edit {
    size_t begin, end;
    std::string text;
};

// The new expectations of one step. Members that the step lacks and need not have are not added.
void updateStep(const JsonPart &step, Json found, const std::string &place, std::vector<Edit> &edits)
{
    const auto change = [&](std::string_view key, const JsonPart &old, const Json &value) {
        const std::string text = spaced(value);
        if (Json::parse(old.text(), nullptr, true, true) == value)
            return;
        print("{}/{}: {} -> {}\n", place, key, old.text(), text);
        edits.push_back({old.begin(), old.end(), text});
    };
    if (step.text().starts_with('"')) {
        Json whole = {{"do", Json::parse(step.text())}};
        found.erase("out");
        whole.update(found);
        change("", step, whole);
        return;
    }
    const Json usual = {{"expect", 0}, {"lines", Json::array()}, {"holds", 0}};
    for (const auto &[key, otherwise] : usual.items()) {
        const Json value = found.contains(key) ? found[key] : otherwise;
        if (const std::optional<JsonPart> old = step.member(key)) {
            change(key, *old, value);
        } else if (value != otherwise) {
            print("{}/{}: {}\n", place, key, spaced(value));
            edits.push_back(
                {step.behindLast(), step.behindLast(), fmt::format(", \"{}\": {}", key, spaced(value))});
        }
    }
    if (const std::optional<JsonPart> out = step.member("out")) {
        const Json named = Json::parse(out->text(), nullptr, true, true);
        for (const auto &[name, unused] : named.items()) {
            const std::optional<JsonPart> old = out->member(name);
            if (found.contains("out") && found["out"].contains(name))
                change("out/" + name, *old, found["out"][name]);
            else
                print("{}/out/{}: there is no such output; left as it is\n", place, name);
        }
    }
}

} // namespace

void ExpectationUpdate::step(const StepReport &step)
{
    if (!step.deviates)
        return;
    Json expectations = expectationsOf(step.runs[0]);
    for (const CheckedRun &run : step.runs)
        if (expectationsOf(run) != expectations)
            expectations = nullptr;
    missed_.push_back({std::string(step.place), std::move(expectations)});
}

void ExpectationUpdate::summary(const std::string &, const RunCounts &)
{
    std::string text = contents(file_);
    std::vector<Edit> edits;
    const std::string prefix = file_ + ": /steps/";
    for (const auto &[place, expectations] : missed_) {
        const std::optional<uint32_t> index = place.starts_with(prefix)
                                                  ? parseNumber(std::string_view(place).substr(prefix.size()))
                                                  : std::nullopt;
        if (!index) {
            print("{}: included; left as it is\n", place);
        } else if (expectations.is_null()) {
            print("{}: its runs differ; left as it is\n", place);
        } else {
            updateStep(*JsonPart(text).member("steps")->element(*index), expectations, place, edits);
        }
    }
    if (edits.empty())
        return;
    std::ranges::stable_sort(edits, std::greater{}, &Edit::begin);
    for (const Edit &edit : edits)
        text.replace(edit.begin, edit.end - edit.begin, edit.text);
    replaceFile(file_, text);
}

void SessionLog::add(const CheckedRun &run)
{
    Json step = {{"do", run.invocation->text}};
    step.update(expectationsOf(run));
    entries_.push_back({false, {}, step.size() == 1 ? step["do"] : step});
}

void SessionLog::addFile(const std::string &file)
{
    entries_.push_back({true, file, {}});
}

void SessionLog::write(const std::string &file) const
{
    Json device = {{"about", "Saved from a session"}};
    Json steps = Json::array();
    const std::filesystem::path folder = std::filesystem::absolute(file).parent_path();
    for (const Entry &entry : entries_) {
        if (!entry.included) {
            steps.push_back(entry.step);
        } else if (!entry.file.empty()) {
            steps.push_back({{"include", std::filesystem::proximate(entry.file, folder).string()}});
        } else {
            Json within = Json::parse(kInService, nullptr, true, true);
            for (Json &step : within["steps"])
                steps.push_back(std::move(step));
            within.erase("steps");
            device.update(within);
        }
    }
    std::string text = "{\n";
    for (const auto &[key, value] : device.items())
        text += fmt::format("  \"{}\": {},\n", key, spaced(value));
    text += "  \"steps\": [";
    for (size_t i = 0; i < steps.size(); ++i)
        text += fmt::format("{}\n    {}", i == 0 ? "" : ",", spaced(steps[i]));
    replaceFile(file, text + "\n  ]\n}\n");
}

void replaceFile(const std::string &file, std::string_view text)
{
    std::error_code error;
    const std::filesystem::path target = std::filesystem::exists(file, error)
                                             ? std::filesystem::canonical(file, error)
                                             : std::filesystem::path(file);
    if (std::filesystem::exists(target, error) && !std::filesystem::is_regular_file(target, error)) {
        Output output(file); // a terminal, a pipe
        output.write(text);
        output.check();
        return;
    }
    const std::string next = target.string() + ".new";
    try {
        Output output(next);
        output.start();
        output.write(text);
        output.check();
        if (std::filesystem::exists(target, error))
            std::filesystem::permissions(next, std::filesystem::status(target, error).permissions(), error);
        if (std::rename(next.c_str(), target.c_str()) != 0)
            throw UsageError{fmt::format("cannot write {}: {}", file, std::strerror(errno))};
    } catch (const UsageError &) {
        std::filesystem::remove(next, error);
        throw;
    }
}

} // namespace zrbench
