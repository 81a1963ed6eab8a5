#include "tools/zrbench/recording.h"

#include <charconv>
#include <fmt/format.h>
#include <fstream>
#include <map>

#include "tools/zrbench/command.h"
#include "tools/zrbench/tables.h"
#include "tools/zrbench/values.h"

namespace zrbench
{

namespace
{

constexpr std::string_view kFirstLine = "zrlsw recording ";
constexpr std::string_view kVersion = "1";
constexpr unsigned kDeepest = 16;

// Behind the value that starts at `at`: brackets, quotes and what they hold are one value.
size_t behindValue(std::string_view text, size_t at)
{
    const char first = at < text.size() ? text[at] : '\0';
    if (first == '"') {
        for (++at; at < text.size() && text[at] != '"'; ++at)
            at += text[at] == '\\' ? 1 : 0;
        return at + 1;
    }
    if (first == '{' || first == '[')
        return text.find(first == '{' ? '}' : ']', at) + 1;
    return std::min(text.find_first_of(" ,)}", at), text.size());
}

// Where the arguments end, with their parenthesis; npos when they do not.
size_t behindCall(std::string_view text)
{
    size_t at = text.find('(');
    if (at == 0 || at == std::string_view::npos)
        return std::string_view::npos;
    for (++at; at < text.size() && text[at] != ')';) {
        const size_t equals = text.find('=', at);
        if (equals == std::string_view::npos)
            return equals;
        const size_t end = behindValue(text, equals + 1);
        if (end == 0 || end > text.size())
            return std::string_view::npos;
        at = text.substr(end).starts_with(", ") ? end + 2 : end;
        if (at == end && (at == text.size() || text[at] != ')'))
            return std::string_view::npos;
    }
    return at < text.size() ? at + 1 : std::string_view::npos;
}

class Reader
{
public:
    explicit Reader(const std::string &file) : stream_(file, std::ios::binary)
    {
        recording_.file = file;
        if (!stream_)
            throw UsageError{fmt::format("cannot read {}: {}", file, std::strerror(errno))};
    }

    Recording read()
    {
        head();
        while (next()) {
            if (!recording_.why.empty())
                fail("there is something behind the end of the recording");
            takeLine();
        }
        // What was under way when the recording ended.
        for (auto &[number, thread] : threads_) {
            if (thread.open.empty())
                continue;
            RecordedCall &operation = recording_.calls[thread.place];
            operation.within = std::move(thread.pending[1]);
        }
        return std::move(recording_);
    }

private:
    struct Thread {
        std::vector<unsigned> open; // depths of the operations under way
        size_t place = 0;           // of the outermost one, among the calls
        std::vector<RecordedCall> pending[kDeepest + 2];
    };

    [[noreturn]] void fail(const std::string &why) const
    {
        throw UsageError{fmt::format("{}:{}: {}", recording_.file, number_, why)};
    }

    bool next()
    {
        ++number_;
        if (!std::getline(stream_, line_))
            return false;
        if (stream_.eof())
            fail("the recording is cut off within this line");
        return true;
    }

    std::string headLine(std::string_view start)
    {
        if (!next() || !line_.starts_with(start))
            fail(fmt::format("not a recording: expected \"{}\", found {}", start, shown(line_.substr(0, 40))));
        return line_.substr(start.size());
    }

    void head()
    {
        if (const std::string version = headLine(kFirstLine); version != kVersion)
            fail(fmt::format("a recording of version {}: this program reads version {}", shown(version),
                             kVersion));
        const std::string recorder = headLine("recorder ");
        recording_.machine = recorder.substr(std::min(recorder.find(' ') + 1, recorder.size()));
        headLine("layout ");
        recording_.layout = line_;
        headLine("started ");
    }

    // The next word of the line.
    std::string_view word()
    {
        const size_t start = at_;
        at_ = std::min(line_.find(' ', at_), line_.size());
        const std::string_view found = std::string_view(line_).substr(start, at_ - start);
        at_ = std::min(at_ + 1, line_.size());
        return found;
    }

    uint64_t number(std::string_view text) const
    {
        uint64_t value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error != std::errc{} || end != text.data() + text.size())
            fail(fmt::format("damaged: expected TIME DURATION THREAD DEPTH KIND CALL, found {}",
                             shown(line_.substr(0, 60))));
        return value;
    }

    void takeLine()
    {
        at_ = 0;
        RecordedCall call;
        call.line = number_;
        const std::string_view time = word();
        const size_t point = std::min(time.find('.'), time.size());
        call.time = number(time.substr(0, point)) * 1000000000 +
                    number(point < time.size() ? time.substr(point + 1) : std::string_view());
        const std::string_view duration = word();
        call.duration = duration == "-" ? 0 : number(duration);
        call.thread = static_cast<unsigned>(number(word()));
        const uint64_t depth = number(word());
        const std::string_view kind = word();
        const std::string_view rest = std::string_view(line_).substr(at_);
        if (kind == "." && rest.starts_with("end ")) {
            recording_.why = rest.substr(4);
            return;
        }
        const size_t end = behindCall(rest);
        if (kind.size() != 1 || std::string_view("><|^=").find(kind[0]) == std::string_view::npos ||
            depth > kDeepest || end == std::string_view::npos)
            number({}); // tells what is wrong
        call.kind = kind[0];
        call.call = rest.substr(0, end);
        call.end = rest.substr(end);
        place(threads_[call.thread], static_cast<unsigned>(depth), std::move(call));
    }

    void place(Thread &thread, unsigned depth, RecordedCall call)
    {
        if (call.kind == '>') {
            if (!thread.open.empty() && thread.open.back() >= depth)
                fail(fmt::format("damaged: {} begins before another has ended", call.name()));
            thread.open.push_back(depth);
            if (depth == 0) {
                thread.place = recording_.calls.size();
                call.kind = RecordedCall::Operation;
                call.ended = false;
                recording_.calls.push_back(std::move(call));
            }
            return;
        }
        if (call.kind != RecordedCall::Value)
            call.within = std::exchange(thread.pending[depth + 1], {});
        if (call.kind == RecordedCall::Operation) {
            if (thread.open.empty() || thread.open.back() != depth ||
                (depth == 0 && recording_.calls[thread.place].call != call.call))
                fail(fmt::format("damaged: {} ends without having begun", call.name()));
            thread.open.pop_back();
        }
        if (depth > 0)
            thread.pending[depth].push_back(std::move(call));
        else if (call.kind == RecordedCall::Operation)
            recording_.calls[thread.place] = std::move(call);
        else
            recording_.calls.push_back(std::move(call));
    }

    std::ifstream stream_;
    std::string line_;
    size_t number_ = 0;
    size_t at_ = 0;
    Recording recording_;
    std::map<unsigned, Thread> threads_;
};

void addValues(std::string_view text, const std::string &path,
               std::vector<std::pair<std::string, std::string>> &values)
{
    for (size_t at = 0; at < text.size();) {
        const size_t equals = text.find('=', at);
        if (equals == std::string_view::npos)
            return;
        const size_t end = std::min(behindValue(text, equals + 1), text.size());
        const std::string name = path + std::string(text.substr(at, equals - at));
        const std::string_view value = text.substr(equals + 1, end - equals - 1);
        if (value.starts_with('{')) {
            values.emplace_back(name, "{}");
            addValues(value.substr(1, value.size() - 2), name + ".", values);
        } else {
            values.emplace_back(name, value);
        }
        at = text.find_first_not_of(" ,)", end);
    }
}

} // namespace

Recording readRecording(const std::string &file)
{
    return Reader(file).read();
}

std::vector<std::pair<std::string, std::string>> valuesIn(std::string_view text)
{
    std::vector<std::pair<std::string, std::string>> values;
    if (text.starts_with(" = ")) {
        const size_t end = std::min(behindValue(text, 3), text.size());
        values.emplace_back("result", text.substr(3, end - 3));
        text.remove_prefix(std::min(end + 1, text.size()));
    } else if (text.starts_with(' ')) {
        text.remove_prefix(1);
    } else {
        text.remove_prefix(std::min(text.find('(') + 1, text.size()));
    }
    addValues(text, "", values);
    return values;
}

std::pair<std::string_view, size_t> slotOf(std::string_view operation)
{
#define ZR_PLACE(table, slot, member, name)                                                                    \
    if (operation == #name)                                                                                    \
        return {Module<table>::kName, slot};
    ZR_SLOTS(ZR_PLACE)
#undef ZR_PLACE
    return {};
}

} // namespace zrbench
