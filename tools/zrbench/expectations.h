// Expectations taken from what happened: those of a file anew, or those of what was typed.
#pragma once

#include "tools/zrbench/device.h"
#include "tools/zrbench/report.h"

namespace zrbench
{

// Takes the expectations of a file's steps anew where they were not met; all else in the file stays as it is.
class ExpectationUpdate final : public StepWriter
{
public:
    explicit ExpectationUpdate(std::string file) : file_(std::move(file)) {}

    void heading(const std::string &) override {}
    void step(const StepReport &step) override;
    // Writes the file and tells what changed in it. Throws UsageError, and leaves the file as it was.
    void summary(const std::string &title, const RunCounts &counts) override;

private:
    struct Missed {
        std::string place;
        nlohmann::ordered_json expectations; // of all runs alike; null when they differ
    };
    std::string file_;
    std::vector<Missed> missed_;
};

// What was done in a session, to become a device file.
class SessionLog
{
public:
    void add(const CheckedRun &run);
    // A device file that was run, "" for the one within the program.
    void addFile(const std::string &file);
    // Throws UsageError, and leaves a file of that name as it was.
    void write(const std::string &file) const;

private:
    struct Entry {
        bool included;
        std::string file;
        nlohmann::ordered_json step;
    };
    std::vector<Entry> entries_;
};

// Replaces a file whole or not at all. Throws UsageError.
void replaceFile(const std::string &file, std::string_view text);

} // namespace zrbench
