// Runs the pairs and prints each operation's time beside the hand-written code's, with their ratio.
#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "bench/pair.h"
#include "frame/func_list.h"

namespace
{

class RatioReporter : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context &) override { return true; }

    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.run_type != Run::RT_Iteration)
                continue;
            const std::string name = run.run_name.function_name;
            const size_t slash = name.rfind('/');
            times_[name.substr(0, slash)][name.substr(slash + 1)].push_back(run.GetAdjustedRealTime());
        }
    }

    void Finalize() override
    {
        std::printf("%-40s %12s %12s %8s\n", "operation", "library ns", "direct ns", "ratio");
        for (auto &[name, sides] : times_) {
            const double library = median(sides["library"]);
            const double direct = median(sides["direct"]);
            std::printf("%-40s %12.2f %12.2f %8.2f\n", name.c_str(), library, direct, library / direct);
        }
    }

private:
    static double median(std::vector<double> &times)
    {
        if (times.empty())
            return 0;
        std::sort(times.begin(), times.end());
        return times[times.size() / 2];
    }
    std::map<std::string, std::map<std::string, std::vector<double>>> times_;
};

} // namespace

int main(int argc, char **argv)
{
    ZR_COMMON_FuncListInit(0);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
}
