/* libzrreplay.so stands in for the platform while a recording is replayed: it turns calls into the recording's
 * text and back. Who replays says what each call is answered. */
#pragma once

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Gets a call, "name(arguments)", and returns what follows it in the recording, " = 0 value=5"; null: nothing
 * is known, and the call does nothing and succeeds. */
typedef const char *(*zrreplay_answer_fn)(const char *call, void *context);
/* Finds an operation of the library that has no slot. */
typedef void *(*zrreplay_find_fn)(const char *operation, void *context);
void zrreplay_on_call(zrreplay_answer_fn answer, zrreplay_find_fn find, void *context);

/* Runs an operation, a service that the SDK was given, or takes a value ("g_lswmInfo(...)"), as it stands in
 * the recording, and writes what follows the call: " = 0 value=5". Returns 0; 1: there is no such operation, or
 * the library does not fill its slot; 2: its arguments cannot be read. */
int zrreplay_run(const char *call, char *end, size_t size);

/* The records of this machine in the form of a recording's head: "layout order=little pointer=8 ...". */
const char *zrreplay_layout(void);

#ifdef __cplusplus
}
#endif
