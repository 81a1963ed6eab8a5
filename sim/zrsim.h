/* The stand-in's inspection interface, in C so that a program can look it up at run time and go
 * without it on the board. It watches and disturbs platform calls; it configures nothing: a chip is
 * configured through the operation tables alone, and the world around it (cables, frames, revisions)
 * through the board's command interpreter. */
#pragma once

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Kinds of lines that the library prints through the manager. */
enum { ZRSIM_LINE_FAIL = 0, ZRSIM_LINE_TRACE = 1, ZRSIM_LINE_CLI = 2 };

/* Receives every printed line; `module` and `status` are 0 where a kind has none. Null restores the
 * default: failures and traces go to stderr, command-line text to stdout. */
typedef void (*zrsim_line_fn)(int kind, uint32_t module, uint32_t status, const char *text, void *context);
void zrsim_on_line(zrsim_line_fn fn, void *context);

/* Receives every platform call once it has returned: "name(arguments) = result". `depth` is 0 for calls
 * that the library made itself, 1 for calls made underneath such a call, and so on. Null stops it. */
typedef void (*zrsim_call_fn)(const char *text, unsigned depth, void *context);
void zrsim_on_call(zrsim_call_fn fn, void *context);

/* Makes calls of `name` fail with `status`: all of them (nth 0), the nth (from 1), or the nth and all
 * after it. A failed call is not made; its outputs stay as they were. A status of 0 makes the call do
 * nothing and claim success. Returns 0, or 1 when the platform has no such call. */
int zrsim_fail(const char *name, unsigned nth, int andAfter, uint32_t status);
void zrsim_fail_none(void);

/* Calls of `name` since the last zrsim_reset; every call for null. Counted while the gate is on: that
 * is, while a call sink or a failure is set. */
unsigned zrsim_calls(const char *name);

/* A frame's way through the chips, told by events in the order in which it happens. Texts and bytes are good
 * only while the event is told. */
enum { ZRSIM_FRAME_STAGE, ZRSIM_FRAME_OUT, ZRSIM_FRAME_CPU, ZRSIM_FRAME_DROPPED };
typedef struct {
    int kind;
    uint32_t unit;
    uint32_t port;    /* OUT, CPU: that it leaves by; else: that it came in at */
    const char *name; /* STAGE: the stage's; DROPPED: the reason's short name */
    const char *text; /* STAGE: what it decided by which entry; DROPPED: the reason in words */
    int tagged;       /* OUT, CPU, with the next two */
    uint32_t vlan;
    uint32_t priority;    /* 802.1p */
    const uint8_t *bytes; /* OUT, CPU: without FCS */
    size_t size;
} zrsim_frame_event;
typedef void (*zrsim_frame_fn)(const zrsim_frame_event *event, void *context);

/* Puts a frame (without FCS) into a port of unit 0 to 2. Flags: tell the stages; leave no trace in any table,
 * counter or register; with a wrong FCS. `fn` may be null, and must not put frames in itself. Returns 0, or 1
 * for no such unit or more than 65536 bytes. */
enum { ZRSIM_FRAME_EXPLAIN = 1, ZRSIM_FRAME_DRY = 2, ZRSIM_FRAME_BAD_FCS = 4 };
int zrsim_frame(uint32_t unit, uint32_t port, const uint8_t *bytes, size_t size, int flags, zrsim_frame_fn fn,
                void *context);

/* Trace levels up to `level` are on; 0 switches all off. */
void zrsim_trace_level(uint32_t level);

/* Blocks taken with LSWM_MemAlloc and not yet given back; frees of blocks that were not live. */
unsigned zrsim_live_blocks(void);
unsigned zrsim_bad_frees(void);

/* The state of the three chips, the board and the manager as JSON. Returns the text's length; writes
 * at most `size` - 1 characters and a terminator. */
size_t zrsim_dump(char *buffer, size_t size);

/* The usage of the nth command of the board's interpreter, from 0: "link PORT up|down"; null behind the last.
 */
const char *zrsim_board_usage(unsigned nth);

/* Back to the state at load: chips in reset, no failures, no unit information. */
void zrsim_reset(void);

#ifdef __cplusplus
}
#endif
