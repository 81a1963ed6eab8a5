#include "tools/zrbench/page.h"

#include <ctime>
#include <fmt/format.h>
#include <map>

#include "tools/zrbench/explain.h"
#include "tools/zrbench/json_writer.h"
#include "tools/zrbench/version.h"

using nlohmann::json;

namespace zrbench
{

namespace
{

// Values that come often, each kept once.
class Pool
{
public:
    size_t place(const json &value)
    {
        const auto [known, added] =
            places_.try_emplace(value.dump(-1, ' ', false, json::error_handler_t::replace), values_.size());
        if (added)
            values_.push_back(value);
        return known->second;
    }
    json places(const json &values)
    {
        json found = json::array();
        for (const json &value : values)
            found.push_back(place(value));
        return found;
    }
    const json &values() const { return values_; }

private:
    std::map<std::string, size_t> places_;
    json values_ = json::array();
};

// What the page tells with steps, beside them.
struct Lookup {
    Pool stages;   // of the ways of frames
    Pool meanings; // what `explain` tells
    json explained = json::object();

    void explainOnce(const std::string &text)
    {
        constexpr size_t kMost = 300; // of many lines that differ in a number the rest would tell the same
        if (explained.contains(text) || explained.size() >= kMost)
            return;
        try {
            explained[text] = meanings.places(explain(text).rows);
        } catch (const UsageError &) {
            explained[text] = json::array();
        }
    }

    // A table is shown as its text, a frame's way by its stages.
    void shorten(json &run)
    {
        if (run.contains("rows") && run.at("command").get_ref<const std::string &>().starts_with("frame ")) {
            std::string &text = run.at("text").get_ref<std::string &>();
            text.resize(std::min(text.find('\n'), text.size()));
            run["way"] = stages.places(run.at("rows"));
        }
        run.erase("rows");
        for (const json &line : run.value("lines", json::array()))
            explainOnce(line.at("text").get<std::string>());
        if (run.value("status", 0U) != 0)
            explainOnce(std::to_string(run.at("status").get<uint32_t>()));
    }
};

// Where the template has its sample, the data: as ASCII, and without what could end the element that holds it.
std::string pageOf(const json &data)
{
    constexpr std::string_view kStart = R"(<script type="application/json" id="data">)";
    const size_t start = kPageTemplate.find(kStart) + kStart.size();
    std::string page(kPageTemplate.substr(0, start));
    for (const char c : data.dump(-1, ' ', true, json::error_handler_t::replace)) {
        if (c == '<' || c == '>' || c == '&')
            page += fmt::format("\\u{:04x}", c);
        else
            page += c;
    }
    return page.append(kPageTemplate.substr(kPageTemplate.find("</script>", start)));
}

json pageData(const std::string &title)
{
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    char made[32];
    std::strftime(made, sizeof made, "%Y-%m-%d %H:%M UTC", gmtime_r(&now, &parts));
    return {{"title", title}, {"version", version()}, {"made", made}};
}

void writeData(Output &file, const json &data)
{
    file.start();
    file.write(pageOf(data));
    file.check();
}

} // namespace

void PageWriter::keepState(json &states, json &last) const
{
    if (session_.inspection().dump == nullptr ||
        (!states.empty() && states.back().at("steps") == steps_.size()))
        return;
    json state = session_.state();
    json kept = {{"steps", steps_.size()}};
    if (states.empty())
        kept["state"] = state;
    else
        kept["changes"] = json::diff(last, state);
    states.push_back(std::move(kept));
    last = std::move(state);
}

void PageWriter::heading(const std::string &text)
{
    if (!steps_.empty())
        keepState(states_, last_);
    sections_.push_back({{"title", text}, {"steps", steps_.size()}});
}

void PageWriter::step(const StepReport &step)
{
    steps_.push_back(stepJson(step));
}

void PageWriter::write(Output &file) const
{
    json data = pageData(title_);
    json states = states_;
    json last = last_;
    keepState(states, last);
    json steps = steps_;
    Lookup lookup;
    for (json &step : steps) {
        if (!step.contains("runs"))
            lookup.shorten(step);
        else
            for (json &run : step.at("runs"))
                lookup.shorten(run);
    }
    data.update({{"sections", sections_},
                 {"steps", std::move(steps)},
                 {"states", std::move(states)},
                 {"stages", lookup.stages.values()},
                 {"meanings", lookup.meanings.values()},
                 {"explained", std::move(lookup.explained)}});
    writeData(file, data);
}

void PageWriter::write(const std::string &file) const
{
    Output output(file);
    write(output);
}

void writeStatePage(const std::string &title, const json &state, const std::string &file)
{
    json data = pageData(title);
    data["states"] = json::array({{{"steps", 0}, {"state", state}}});
    Output output(file);
    writeData(output, data);
}

} // namespace zrbench
