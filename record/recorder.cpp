#include "record/recorder.h"

#include <atomic>
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <pthread.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

namespace zrrecord
{

namespace
{

constexpr size_t kArena = 64 * 1024;    // of text that one thread has under way
constexpr size_t kLineRoom = 16 * 1024; // the longest line
constexpr size_t kPrefix = 96;
constexpr int kContexts = 32;          // threads that are within a call at the same time
constexpr uint64_t kReserve = 128;     // kept of the limit for the last line
constexpr int kLowestDescriptor = 200; // out of the way of a manager that counts on low numbers
constexpr uint64_t kSecond = 1000000000;

struct Context {
    std::atomic<bool> taken;
    char *top;
    char arena[kArena];
};

struct ThreadState {
    Context *context;
    unsigned depth;
    unsigned number; // from 1
    bool busy;       // a signal handler that calls the platform now is not recorded
};

enum State { kNotStarted, kOn, kOff };

Context contexts[kContexts];
thread_local ThreadState thread;
std::atomic<int> state{kNotStarted};
std::atomic<unsigned> threads{0};
std::atomic<uint64_t> written{0};
std::atomic_flag starting = ATOMIC_FLAG_INIT;
uint64_t limit = UINT64_MAX;
uint64_t startTime = 0;
int file = -1;

const LswmUnitInfo *unitInfo = nullptr;
const uint8_t *revisions = nullptr;
struct Values {
    LswmUnitInfo info[LSWM_UNITS];
    LswmPortSet map[LSWM_UNITS][LSWM_PORT_SETS];
    uint8_t revisions[LSWM_UNITS];
};
Values seen;

uint64_t now()
{
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return static_cast<uint64_t>(time.tv_sec) * kSecond + static_cast<uint64_t>(time.tv_nsec);
}

// "SECONDS DURATION THREAD DEPTH KIND "
void writePrefix(Writer &out, uint64_t time, bool ended, uint64_t duration, unsigned depth, char kind)
{
    const uint64_t since = time - startTime;
    out.decimal(since / kSecond);
    out.put('.');
    out.decimal(since % kSecond, 9);
    out.put(' ');
    if (ended)
        out.decimal(duration);
    else
        out.put('-');
    out.put(' ');
    out.decimal(thread.number);
    out.put(' ');
    out.decimal(depth);
    out.put(' ');
    out.put(kind);
    out.put(' ');
}

bool writeWhole(const char *line, size_t size)
{
    ssize_t done = -1;
    do
        done = write(file, line, size);
    while (done < 0 && errno == EINTR);
    return done == static_cast<ssize_t>(size);
}

// The recording's last line, as far as there is room for it.
void finish(const char *why, uint64_t size)
{
    int on = kOn;
    if (!state.compare_exchange_strong(on, kOff))
        return;
    char line[kPrefix];
    Writer out{line, line + sizeof line};
    writePrefix(out, now(), false, 0, 0, '.');
    out.text("end ");
    out.text(why);
    out.put('\n');
    if (!writeWhole(line, static_cast<size_t>(out.at - line)) && ftruncate(file, static_cast<off_t>(size)) != 0)
        return;
}

void emit(const char *line, size_t size)
{
    if (state.load(std::memory_order_relaxed) != kOn)
        return;
    const uint64_t before = written.fetch_add(size);
    if (before + size > limit) {
        finish("limit", before);
    } else if (!writeWhole(line, size)) {
        if (ftruncate(file, static_cast<off_t>(before)) == 0)
            finish("full", before);
        state = kOff;
    }
}

uint64_t limitAsked()
{
    uint64_t most = UINT64_MAX;
    if (const char *asked = getenv("ZRLSW_RECORD_LIMIT")) {
        char *unit = nullptr;
        most = strtoull(asked, &unit, 10);
        const int shift = *unit == 'K' ? 10 : *unit == 'M' ? 20 : *unit == 'G' ? 30 : 0;
        most = most > UINT64_MAX >> shift ? UINT64_MAX : most << shift;
    }
    rlimit allowed{};
    // Writing beyond it would end the process.
    if (getrlimit(RLIMIT_FSIZE, &allowed) == 0 && allowed.rlim_cur != RLIM_INFINITY && allowed.rlim_cur < most)
        most = allowed.rlim_cur;
    return most > kReserve ? most - kReserve : 0;
}

void writeHead()
{
    char head[2048];
    Writer out{head, head + sizeof head};
    out.text("zrlsw recording 1\nrecorder " ZRRECORD_VERSION " ");
#if defined(__aarch64__)
    out.text("aarch64");
#elif defined(__x86_64__)
    out.text("x86_64");
#else
    out.text("other");
#endif
    out.put('\n');
    writeLayout(out);
    out.text("\nstarted ");
    out.decimal(static_cast<uint64_t>(time(nullptr)));
    out.put('\n');
    emit(head, static_cast<size_t>(out.at - head));
}

// A child goes its own way: two processes would write one file.
void inChild()
{
    if (state == kOn)
        state = kOff;
}

void start(const void *caller)
{
    if (starting.test_and_set())
        return;
    const char *path = getenv("ZRLSW_RECORD");
    struct stat kind {
    };
    int opened = -1;
    if (path != nullptr && *path != '\0')
        opened = open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK, 0644);
    if (opened >= 0 && fstat(opened, &kind) == 0 && S_ISREG(kind.st_mode) && ftruncate(opened, 0) == 0) {
        file = fcntl(opened, F_DUPFD_CLOEXEC, kLowestDescriptor);
        if (file < 0)
            file = fcntl(opened, F_DUPFD_CLOEXEC, 3);
    }
    if (opened >= 0)
        close(opened);
    if (file < 0) {
        state = kOff;
        return;
    }
    limit = limitAsked();
    startTime = now();
    unitInfo = static_cast<const LswmUnitInfo *>(realSymbol("g_lswmInfo", nullptr, caller));
    revisions = static_cast<const uint8_t *>(realSymbol("l2sw_eco", nullptr, caller));
    pthread_atfork(nullptr, nullptr, inChild);
    state = kOn;
    writeHead();
}

__attribute__((destructor)) void atExit()
{
    if (state == kOn)
        finish("exit", written);
}

bool enterContext()
{
    if (thread.number == 0)
        thread.number = ++threads;
    for (unsigned i = 0; i < kContexts; ++i) {
        Context &context = contexts[(thread.number - 1 + i) % kContexts];
        if (!context.taken.exchange(true, std::memory_order_acquire)) {
            context.top = context.arena;
            thread.context = &context;
            return true;
        }
    }
    return false;
}

// The lines of values are made above everything that the thread has under way.
template <class Body> void emitValue(unsigned depth, Body &&body)
{
    Writer out{thread.context->top, thread.context->arena + kArena - 1};
    char *const start = out.at;
    writePrefix(out, now(), false, 0, depth, kValue);
    body(out);
    out.put('\n');
    emit(start, static_cast<size_t>(out.at - start));
}

void noteRevisions(unsigned depth)
{
    if (revisions == nullptr || memcmp(revisions, seen.revisions, sizeof seen.revisions) == 0)
        return;
    memcpy(seen.revisions, revisions, sizeof seen.revisions);
    emitValue(depth, [](Writer &out) {
        out.text("l2sw_eco(revisions=[");
        for (int unit = 0; unit < LSWM_UNITS; ++unit) {
            if (unit != 0)
                out.put(' ');
            out.decimal(seen.revisions[unit]);
        }
        out.text("])");
    });
}

void noteUnitInfo()
{
    for (uint32_t unit = 0; unitInfo != nullptr && unit < LSWM_UNITS; ++unit) {
        const LswmUnitInfo &info = unitInfo[unit];
        if (memcmp(&info, &seen.info[unit], sizeof info) == 0 &&
            (info.portMap == nullptr || memcmp(info.portMap, seen.map[unit], sizeof seen.map[unit]) == 0))
            continue;
        memcpy(&seen.info[unit], &info, sizeof info);
        if (info.portMap != nullptr)
            memcpy(seen.map[unit], info.portMap, sizeof seen.map[unit]);
        emitValue(0, [&](Writer &out) { writeUnitInfo(out, unit, info); });
    }
}

// ---- blocks of the manager's memory ---------------------------------------------------------

constexpr unsigned kBlocks = 8192;
constexpr unsigned kProbes = 64;
struct Block {
    std::atomic<uint64_t> address;
    uint32_t number;
};
Block blocks[kBlocks];
std::atomic<uint32_t> lastBlock{0};

Block *blockAt(uint64_t address, uint64_t wanted)
{
    const uint64_t first = (address >> 4) * 2654435761U;
    for (unsigned i = 0; i < kProbes; ++i) {
        Block &block = blocks[(first + i) % kBlocks];
        if (block.address == wanted)
            return &block;
    }
    return nullptr;
}

} // namespace

uint32_t blockNumber(uint64_t address)
{
    const Block *block = address == 0 ? nullptr : blockAt(address, address);
    return block == nullptr ? 0 : block->number;
}

void blockTaken(uint64_t address)
{
    const uint32_t number = ++lastBlock;
    // Other threads may take blocks at the same time: a place is taken by whoever changes it from empty.
    for (Block *block = nullptr; (block = blockAt(address, 0)) != nullptr;) {
        uint64_t none = 0;
        if (block->address.compare_exchange_strong(none, address)) {
            block->number = number;
            return;
        }
    }
}

void blockFreed(uint64_t address)
{
    if (Block *block = address == 0 ? nullptr : blockAt(address, address))
        block->address = 0;
}

bool recording()
{
    return state.load(std::memory_order_relaxed) == kOn;
}

Call::Call(char kind, const Function &function, const uint64_t *bits, const void *caller, const char *text)
    : function_(function), bits_(bits), kind_(kind)
{
    if (state.load(std::memory_order_relaxed) == kOff || thread.busy)
        return;
    const int error = errno;
    thread.busy = true;
    if (state == kNotStarted)
        start(caller);
    if (state == kOn && (thread.context != nullptr || enterContext())) {
        Context &context = *thread.context;
        if (thread.depth == 0) {
            noteUnitInfo();
            noteRevisions(0);
        }
        char *const end = context.arena + kArena;
        if (static_cast<size_t>(end - context.top) > 2 * kLineRoom) {
            recorded_ = true;
            start_ = context.top;
            text_ = start_ + kPrefix + savedSize(function);
            Writer out{text_, text_ + kLineRoom};
            writeCall(out, function, bits, text);
            textEnd_ = out.at;
            if (kind == kBegin) {
                Writer prefix{start_, text_};
                writePrefix(prefix, now(), false, 0, thread.depth, kBegin);
                const size_t size = static_cast<size_t>(prefix.at - start_);
                memmove(text_ - size, start_, size);
                *textEnd_ = '\n';
                emit(text_ - size, size + static_cast<size_t>(textEnd_ - text_) + 1);
            }
            save(function, bits, start_ + kPrefix);
            context.top = textEnd_ + kPrefix;
        }
        if (recorded_)
            ++thread.depth;
        else if (thread.depth == 0) {
            context.taken.store(false, std::memory_order_release);
            thread.context = nullptr;
        }
        time_ = now();
    }
    thread.busy = false;
    errno = error;
}

void Call::end(uint64_t result)
{
    if (!recorded_)
        return;
    const uint64_t time = now();
    const int error = errno;
    thread.busy = true;
    --thread.depth;
    Context &context = *thread.context;
    Writer out{textEnd_, text_ + kLineRoom};
    writeEnd(out, function_, bits_, result, start_ + kPrefix);
    if (out.full())
        out.at -= 1; // such a line is cut, and found damaged when it is read
    *out.at++ = '\n';
    // The contents before are of no use any more: what precedes the text takes their place.
    Writer prefix{start_, text_};
    writePrefix(prefix, time_, true, time - time_, thread.depth,
                kind_ == kBegin ? static_cast<char>(kEnd) : kind_);
    const size_t size = static_cast<size_t>(prefix.at - start_);
    memmove(text_ - size, start_, size);
    emit(text_ - size, static_cast<size_t>(out.at - text_) + size);
    context.top = start_;
    noteRevisions(thread.depth);
    if (thread.depth == 0) {
        thread.context = nullptr;
        context.taken.store(false, std::memory_order_release);
    }
    thread.busy = false;
    errno = error;
}

namespace
{

// Of the object that an address lies in, or of those that it is linked to.
void *symbolOf(const void *address, const char *name)
{
    Dl_info object{};
    if (address == nullptr || dladdr(address, &object) == 0)
        return nullptr;
    void *handle = dlopen(object.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
    if (handle == nullptr)
        return nullptr;
    void *found = dlsym(handle, name);
    dlclose(handle);
    return found;
}

std::atomic<const void *> library{nullptr}; // an address in it

} // namespace

void *realSymbol(const char *name, const void *self, const void *caller)
{
    void *found = dlsym(RTLD_NEXT, name);
    if (found == nullptr || found == self)
        found = symbolOf(caller, name);
    if (found == nullptr || found == self)
        found = symbolOf(library, name);
    return found == self ? nullptr : found;
}

bool inLibrary(const void *caller)
{
    Dl_info object{};
    Dl_info entry{};
    const void *address = symbolOf(caller, "ZR_COMMON_FuncListInit");
    const bool inside = address != nullptr && dladdr(caller, &object) != 0 && dladdr(address, &entry) != 0 &&
                        entry.dli_fbase == object.dli_fbase;
    if (inside)
        library = address;
    return inside;
}

} // namespace zrrecord
