// Steps for programs: one JSON object a line.
#pragma once

#include "tools/zrbench/report.h"

namespace zrbench
{

// The step as an object; docs/device-files.md lists its members. A step of several runs has them in "runs".
nlohmann::json stepJson(const StepReport &step);

class JsonWriter final : public StepWriter
{
public:
    explicit JsonWriter(bool quiet) : quiet_(quiet) {}

    void heading(const std::string &text) override { section_ = text; }
    void step(const StepReport &step) override;
    void summary(const std::string &title, const RunCounts &counts) override;

private:
    bool quiet_;
    std::string section_; // for the next step
};

} // namespace zrbench
