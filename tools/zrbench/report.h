// What the steps of a run came to: counted, and told as text, as JSON or to whoever else keeps them.
#pragma once

#include <memory>
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

// A step with one run, or with several that are told as one unless they deviate.
struct StepReport {
    unsigned number; // from 1
    const std::string &text;
    const std::string &note;
    const std::vector<CheckedRun> &runs;
    bool deviates;
    bool refused;           // as expected
    bool always;            // told even by a quiet report
    std::string_view place; // in a device file
};

struct RunCounts {
    unsigned steps = 0;
    unsigned refused = 0;    // as expected
    unsigned deviating = 0;  // not as expected
    unsigned heldBlocks = 0; // memory blocks that the library has not freed
};

class StepWriter
{
public:
    StepWriter() = default;
    StepWriter(const StepWriter &) = delete;
    StepWriter &operator=(const StepWriter &) = delete;
    virtual ~StepWriter() = default;

    virtual void heading(const std::string &text) = 0;
    virtual void step(const StepReport &step) = 0;
    // The end of the run that `title` names.
    virtual void summary(const std::string &title, const RunCounts &counts) = 0;
};

// For people.
class TextWriter final : public StepWriter
{
public:
    TextWriter(bool colour, bool quiet) : colour_(colour), quiet_(quiet) {}

    void heading(const std::string &text) override;
    void step(const StepReport &step) override;
    void summary(const std::string &title, const RunCounts &counts) override;

private:
    std::string painted(const char *colour, const std::string &text) const;
    std::string verdict(const std::vector<CheckedRun> &runs) const;
    void details(const CheckedRun &run) const;

    bool colour_;
    bool quiet_;
};

class Report
{
public:
    explicit Report(std::unique_ptr<StepWriter> writer) { add(std::move(writer)); }
    void add(std::unique_ptr<StepWriter> writer) { writers_.push_back(std::move(writer)); }

    void heading(const std::string &text);
    void step(const std::string &text, const std::string &note, const std::vector<CheckedRun> &runs,
              bool always = false, std::string_view place = {});
    void summary(const std::string &title, const Session &session);

    // Steps that were not as expected.
    unsigned deviating() const { return counts_.deviating; }

private:
    std::vector<std::unique_ptr<StepWriter>> writers_;
    RunCounts counts_;
};

// A printed line's module as the manager's numbers name it: "vlan"; empty for a number without a name.
std::string_view moduleName(uint32_t module);

} // namespace zrbench
