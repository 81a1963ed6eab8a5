#include "tools/zrbench/junit_writer.h"

#include <fmt/format.h>

namespace zrbench
{

namespace
{

// A text within an attribute. XML has no way to write most control characters.
std::string escaped(std::string_view text)
{
    std::string result;
    for (const char c : text) {
        if (c == '&')
            result += "&amp;";
        else if (c == '<')
            result += "&lt;";
        else if (c == '"')
            result += "&quot;";
        else if (c == '\n')
            result += "&#10;";
        else
            result += static_cast<unsigned char>(c) < 0x20 ? '?' : c;
    }
    return result;
}

} // namespace

JunitFile::JunitFile(const std::string &path, const std::vector<std::string> &read) : output_(path)
{
    for (const std::string &file : read)
        if (output_.sameAs(file))
            throw UsageError{fmt::format("{} would be written over", file)};
    output_.start();
    write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites>\n");
}

void JunitFile::write(std::string_view text)
{
    output_.write(text);
    output_.check();
}

void JunitFile::suite(const std::string &name, const RunCounts &counts, const std::string &cases)
{
    write(fmt::format("<testsuite name=\"{}\" tests=\"{}\" failures=\"{}\" errors=\"0\">\n{}</testsuite>\n",
                      escaped(name), counts.steps, counts.deviating, cases));
}

void JunitFile::error(const std::string &name, const std::string &text)
{
    write(fmt::format(
        "<testsuite name=\"{0}\" tests=\"1\" failures=\"0\" errors=\"1\">\n"
        "<testcase classname=\"{0}\" name=\"{0}\"><error message=\"{1}\"/></testcase>\n</testsuite>\n",
        escaped(name), escaped(text)));
}

void JunitFile::finish()
{
    write("</testsuites>\n");
}

void JunitWriter::step(const StepReport &step)
{
    std::string found;
    for (const CheckedRun &run : step.runs)
        for (const std::string &deviation : run.deviations)
            found += fmt::format("{}{}: {}", found.empty() ? "" : "\n", run.invocation->text, deviation);
    cases_ += fmt::format("<testcase classname=\"steps\" name=\"{} {}\"", step.number, escaped(step.text));
    cases_ += found.empty() ? "/>\n" : fmt::format("><failure message=\"{}\"/></testcase>\n", escaped(found));
}

void JunitWriter::summary(const std::string &title, const RunCounts &counts)
{
    file_.suite(title, counts, cases_);
}

} // namespace zrbench
