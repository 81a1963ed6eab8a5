// zrbench as a program that a test starts.
#pragma once

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace zrtest
{

#ifdef ZR_EMULATOR
inline const std::string kStart = ZR_EMULATOR " ";
#else
inline const std::string kStart;
#endif

constexpr int kAsExpected = 0;
constexpr int kNotAsExpected = 1;
constexpr int kUsage = 2;

struct Ended {
    int status;
    std::string output; // standard output and error, as they came
};

inline Ended shellCommand(const std::string &command)
{
    Ended ended{};
    std::FILE *pipe = popen((command + " 2>&1").c_str(), "r");
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe))
        ended.output += static_cast<char>(c);
    ended.status = WEXITSTATUS(pclose(pipe));
    return ended;
}

class ZrbenchTest : public testing::Test
{
protected:
    void SetUp() override
    {
        const auto lib = std::filesystem::path(ZRLSW_LIBRARY).parent_path();
        program_ = (lib.parent_path() / "bin" / "zrbench").string();
        command_ = kStart + "'" + program_ + "'";
        directory_ = std::filesystem::path(testing::TempDir()) / fmt::format("zrbench_test.{}", getpid());
        std::filesystem::create_directories(directory_);
        std::filesystem::current_path(directory_);
    }
    void TearDown() override
    {
        std::filesystem::current_path("/");
        std::filesystem::remove_all(directory_);
    }

    static std::string file(const std::string &name, const std::string &text)
    {
        std::ofstream(name) << text;
        return name;
    }
    static std::string contents(const std::string &path)
    {
        std::ostringstream text;
        text << std::ifstream(path).rdbuf();
        return text.str();
    }

    std::string commandLine(const std::string &arguments) const { return command_ + " " + arguments; }
    Ended bench(const std::string &arguments) const { return shellCommand(commandLine(arguments)); }
    Ended run(const std::string &device, const std::string &options = {}) const
    {
        return bench(fmt::format("run {} {}", file("device.json", device), options));
    }
    Ended steps(const std::string &list, const std::string &options = {}) const
    {
        return run(fmt::format(R"({{"steps": [{}]}})", list), options);
    }
    Ended shell(const std::string &typed, const std::string &options = {}) const
    {
        return shellCommand(fmt::format("{} shell {} < {}", command_, options, file("typed", typed)));
    }

    static bool lacksPackets(const Ended &ended)
    {
        return ended.output.find("built without the packet library") != std::string::npos;
    }

private:
    std::string program_;
    std::string command_; // how it is started
    std::filesystem::path directory_;
};

} // namespace zrtest
