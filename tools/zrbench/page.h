// A run as one page of HTML, to be looked at in a browser and attached to a ticket: tools/report/report.html
// with the data of the run in it. Whatever comes from a device file, a recording or a frame is data there,
// never markup.
#pragma once

#include <string>

#include "tools/zrbench/output.h"
#include "tools/zrbench/report.h"

namespace zrbench
{

extern const std::string_view kPageTemplate;

// Keeps the steps, and the state that each section of them left.
class PageWriter final : public StepWriter
{
public:
    // `title` names the run.
    PageWriter(const Session &session, std::string title) : session_(session), title_(std::move(title)) {}

    void heading(const std::string &text) override;
    void step(const StepReport &step) override;
    void summary(const std::string &, const RunCounts &) override {}

    // The steps so far and the present state. Throws UsageError.
    void write(Output &file) const;
    void write(const std::string &file) const;

private:
    void keepState(nlohmann::json &states, nlohmann::json &last) const;

    const Session &session_;
    std::string title_;
    nlohmann::json sections_ = nlohmann::json::array();
    nlohmann::json steps_ = nlohmann::json::array();
    nlohmann::json states_ = nlohmann::json::array(); // the first whole, the others as what changed
    nlohmann::json last_;                             // of them
};

// The page of a state alone. Throws UsageError.
void writeStatePage(const std::string &title, const nlohmann::json &state, const std::string &file);

} // namespace zrbench
