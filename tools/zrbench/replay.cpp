#include "tools/zrbench/replay.h"

#include <algorithm>
#include <dlfcn.h>
#include <fmt/format.h>
#include <optional>

#include "record/replay.h"
#include "tools/zrbench/output.h"
#include "tools/zrbench/platform.h"
#include "tools/zrbench/session.h"

namespace zrbench
{

namespace
{

constexpr size_t kCallsBefore = 3; // that are shown with a difference
constexpr size_t kEnd = 64 * 1024;

// What an operation, or a call of it, did differently.
struct Difference {
    size_t line = 0;
    std::string what;
    std::vector<std::string> before; // the calls that went as recorded
    std::string recorded;            // empty: nothing
    std::string seen;
};

std::string valueOf(const std::vector<std::pair<std::string, std::string>> &values, const std::string &name)
{
    const auto found = std::ranges::find(values, name, &std::pair<std::string, std::string>::first);
    return found == values.end() ? std::string() : found->second;
}

// "cfg.memberMask: recorded 3, now 1"
std::vector<std::string> fieldsThatDiffer(const std::string &recorded, const std::string &seen)
{
    const auto before = valuesIn(recorded);
    const auto now = valuesIn(seen);
    std::vector<std::string> differing;
    auto compare = [&](const std::string &name, const std::string &a, const std::string &b) {
        // A field that is 0 is not written.
        auto shownOf = [&](const std::string &value) {
            return !value.empty() ? value : name.find('.') != std::string::npos ? "0" : "unchanged";
        };
        if (a != b)
            differing.push_back(fmt::format("{}: recorded {}, now {}", name, shownOf(a), shownOf(b)));
    };
    for (const auto &[name, value] : before)
        compare(name, value, valueOf(now, name));
    for (const auto &[name, value] : now)
        if (valueOf(before, name).empty())
            compare(name, "", value);
    return differing;
}

class Replayer
{
public:
    Replayer(const std::string &library)
        : platform_(located("libzrreplay.so"), RTLD_NOW | RTLD_GLOBAL), library_(located(library), RTLD_NOW),
          run_(platform_.need<decltype(zrreplay_run)>("zrreplay_run"))
    {
        platform_.need<decltype(zrreplay_on_call)>("zrreplay_on_call")(answer, find, this);
        library_.need<void(uint32_t)>("ZR_COMMON_FuncListInit")(0);
    }
    Replayer(const Replayer &) = delete;
    Replayer &operator=(const Replayer &) = delete;

    std::string layout() const { return platform_.need<decltype(zrreplay_layout)>("zrreplay_layout")(); }

    void takeValue(const Recording &recording, const RecordedCall &value)
    {
        if (run_(value.call.c_str(), end_, sizeof end_) != 0)
            throw unreadable(recording, value);
    }

    // The first difference of an operation.
    std::optional<Difference> operation(const Recording &recording, const RecordedCall &call)
    {
        difference_.reset();
        unfinished_ = !call.ended;
        recording_ = &recording;
        runWithin(call);
        if (failed_)
            throw *std::exchange(failed_, {});
        return std::exchange(difference_, {});
    }

    size_t calls() const { return calls_; }

private:
    struct Level {
        const std::vector<RecordedCall> *expected;
        size_t next = 0;
        std::vector<const RecordedCall *> made;
        size_t line;
    };

    static UsageError unreadable(const Recording &recording, const RecordedCall &call)
    {
        return UsageError{fmt::format("{}:{}: damaged: cannot read the arguments of {}", recording.file,
                                      call.line, call.name())};
    }

    void differ(Difference difference)
    {
        if (difference_)
            return;
        for (const RecordedCall *made : levels_.back().made)
            difference.before.push_back(made->text());
        if (difference.before.size() > kCallsBefore)
            difference.before.erase(difference.before.begin(), difference.before.end() - kCallsBefore);
        difference_ = std::move(difference);
    }

    // Skips what the library does not see, and takes the values that it reads without a call.
    void skip(Level &level)
    {
        while (level.next < level.expected->size()) {
            const RecordedCall &next = (*level.expected)[level.next];
            if (next.kind == RecordedCall::Platform)
                return;
            if (next.kind == RecordedCall::Value)
                takeValue(*recording_, next);
            ++level.next;
        }
    }

    void runWithin(const RecordedCall &call)
    {
        levels_.push_back({&call.within, 0, {}, call.line});
        skip(levels_.back());
        std::vector<char> end(kEnd);
        const int status = run_(call.call.c_str(), end.data(), end.size());
        Level &level = levels_.back();
        skip(level);
        if (status == 2)
            failed_ = unreadable(*recording_, call);
        else if (status != 0)
            differ({call.line, "the library has no such operation", {}, {}, {}});
        else if (level.next < level.expected->size() && call.ended) {
            const RecordedCall &missing = (*level.expected)[level.next];
            differ({missing.line, "a recorded call is not made", {}, missing.call, {}});
        } else if (call.ended && call.end != end.data()) {
            differ({call.line, "another result", {}, call.end, end.data()});
        }
        levels_.pop_back();
    }

    static void *find(const char *operation, void *self)
    {
        return static_cast<Replayer *>(self)->library_.find(operation);
    }

    static const char *answer(const char *call, void *self)
    {
        return static_cast<Replayer *>(self)->answered(call);
    }

    // What follows the call in the recording; null when it is not there.
    const char *answered(const std::string &call)
    {
        if (levels_.empty())
            return nullptr;
        ++calls_;
        const std::string name = call.substr(0, call.find('('));
        Level &level = levels_.back();
        const size_t size = level.expected->size();
        size_t found = level.next;
        if (found == size) {
            if (!unfinished_)
                differ({level.line, "a call that is not recorded", {}, {}, call});
            return nullptr;
        }
        const RecordedCall &expected = (*level.expected)[found];
        if (expected.call != call) {
            differ({expected.line,
                    expected.name() == name ? "a call with other arguments" : "another call",
                    {},
                    expected.call,
                    call});
            // Goes on at the same call, or at one of the same function.
            for (found = level.next; found < size && (*level.expected)[found].call != call;)
                ++found;
            for (size_t i = level.next; found == size && i < size; ++i)
                found = (*level.expected)[i].name() == name ? i : size;
            if (found == size)
                return nullptr;
        }
        const RecordedCall &answer = (*level.expected)[found];
        level.made.push_back(&answer);
        const size_t depth = levels_.size() - 1;
        for (const RecordedCall &service : answer.within)
            if (service.kind == RecordedCall::Service)
                runWithin(service);
        levels_[depth].next = found + 1;
        skip(levels_[depth]);
        return answer.end.c_str();
    }

    SharedObject platform_;
    SharedObject library_;
    decltype(zrreplay_run) *run_;
    const Recording *recording_ = nullptr;
    std::vector<Level> levels_;
    std::optional<Difference> difference_;
    std::optional<UsageError> failed_;
    bool unfinished_ = false;
    size_t calls_ = 0;
    char end_[kEnd] = {};
};

void tell(const Recording &recording, const RecordedCall &operation, const Difference &difference)
{
    print("{}:{}: {}: {}\n", recording.file, difference.line, operation.name(), difference.what);
    print("  operation  {} (line {})\n", operation.call, operation.line);
    for (const std::string &call : difference.before)
        print("  before     {}\n", call);
    print("  recorded   {}\n", difference.recorded.empty() ? "-" : difference.recorded);
    print("  now        {}\n", difference.seen.empty() ? "-" : difference.seen);
    const std::string a = difference.recorded.substr(0, difference.recorded.find('('));
    if (!difference.recorded.empty() && !difference.seen.empty() &&
        (difference.recorded[0] == ' ' || difference.seen.starts_with(a + "(")))
        for (const std::string &field : fieldsThatDiffer(difference.recorded, difference.seen))
            print("  differs    {}\n", field);
}

} // namespace

bool replay(const Recording &recording, const std::string &library, bool all)
{
    const auto replayer = std::make_unique<Replayer>(library);
    if (replayer->layout() != recording.layout)
        throw UsageError{
            fmt::format("{}:3: the records have other sizes here: {}", recording.file, replayer->layout())};
    size_t operations = 0;
    size_t differing = 0;
    for (const RecordedCall &call : recording.calls) {
        if (call.kind == RecordedCall::Value)
            replayer->takeValue(recording, call);
        if (call.kind != RecordedCall::Operation)
            continue;
        ++operations;
        if (const std::optional<Difference> difference = replayer->operation(recording, call)) {
            ++differing;
            tell(recording, call, *difference);
            if (!all)
                break;
        }
    }
    print("{}: {} operations and {} platform calls replayed, {}\n", recording.file, operations,
          replayer->calls(), differing == 0 ? "identical" : fmt::format("{} with differences", differing));
    if (!recording.calls.empty() && recording.why.empty())
        print("The recording has no end: the program was killed, or still runs.\n");
    return differing == 0;
}

} // namespace zrbench
