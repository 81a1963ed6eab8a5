// Steps as test cases, in the XML that build servers read.
#pragma once

#include <string>

#include "tools/zrbench/output.h"
#include "tools/zrbench/report.h"

namespace zrbench
{

// The file that several runs write to, one test suite each.
class JunitFile
{
public:
    // Throws UsageError, also for a path that is one of those that are read.
    JunitFile(const std::string &path, const std::vector<std::string> &read);
    JunitFile(const JunitFile &) = delete;
    JunitFile &operator=(const JunitFile &) = delete;
    ~JunitFile() = default;

    void suite(const std::string &name, const RunCounts &counts, const std::string &cases);
    // A file that could not be run.
    void error(const std::string &name, const std::string &text);
    // Completes the file.
    void finish();

private:
    void write(std::string_view text);

    Output output_;
};

class JunitWriter final : public StepWriter
{
public:
    explicit JunitWriter(JunitFile &file) : file_(file) {}

    void heading(const std::string &) override {}
    void step(const StepReport &step) override;
    void summary(const std::string &title, const RunCounts &counts) override;

private:
    JunitFile &file_;
    std::string cases_;
};

} // namespace zrbench
