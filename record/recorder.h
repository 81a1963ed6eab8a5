// Where the recorded calls go: one line a call, each written at once, so that a killed process leaves whole
// lines.
#pragma once

#include "record/calls.h"

namespace zrrecord
{

// What a line tells: an operation begins, or ended; a call of the platform; a call of the library by the SDK
// through the services that it was given; a value that the library reads without a call.
enum : char { kBegin = '>', kEnd = '<', kPlatform = '|', kService = '^', kValue = '=' };

// One call while it lasts: what stood behind its pointers before is noted, errno left alone.
class Call
{
public:
    Call(char kind, const Function &function, const uint64_t *bits, const void *caller,
         const char *text = nullptr);
    Call(const Call &) = delete;
    Call &operator=(const Call &) = delete;
    void end(uint64_t result);

private:
    const Function &function_;
    const uint64_t *bits_;
    char kind_;
    bool recorded_ = false;
    char *start_ = nullptr; // room for what precedes the text; the contents before; the text
    char *text_ = nullptr;
    char *textEnd_ = nullptr;
    uint64_t time_ = 0;
};

// Whether an environment variable asks for a recording, and it has not ended.
bool recording();

// The platform's own function: behind the recorder, or among the libraries that the caller is linked to. Null
// when there is none.
void *realSymbol(const char *name, const void *self, const void *caller);
// Whether the address lies in the library that the slots belong to.
bool inLibrary(const void *caller);

void blockTaken(uint64_t address);
void blockFreed(uint64_t address);

} // namespace zrrecord
