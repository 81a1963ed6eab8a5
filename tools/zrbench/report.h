// Prints a run: one line per step, the lines that it caused, and what was not as expected.
#pragma once

#include <string>
#include <vector>

#include "tools/zrbench/session.h"

namespace zrbench
{

// What a step shows stands indented below it.
constexpr size_t kStepIndent = 7;

// An invocation, its result, and what was not as expected.
struct CheckedRun {
    const Invocation *invocation;
    Result result;
    std::vector<std::string> deviations;
};

class Report
{
public:
    Report(bool colour, bool quiet) : colour_(colour), quiet_(quiet) {}

    void heading(const std::string &text) const;
    // A step with one run or several; several are shown as one unless they deviate. Counts the step. With
    // `always` it is printed even when the report is quiet.
    void step(const std::string &text, const std::string &note, const std::vector<CheckedRun> &runs,
              bool always = false);
    // The counts. `heldBlocks`: memory blocks that the library has not freed.
    void summary(const std::string &title, unsigned heldBlocks) const;

    // Steps that were not as expected.
    unsigned deviating() const { return deviating_; }

private:
    std::string painted(const char *colour, const std::string &text) const;
    std::string verdict(const std::vector<CheckedRun> &runs) const;
    void details(const CheckedRun &run) const;

    bool colour_;
    bool quiet_;
    unsigned number_ = 0;
    unsigned refused_ = 0;
    unsigned deviating_ = 0;
};

} // namespace zrbench
