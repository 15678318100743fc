#pragma once
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Opens the file, reads its first and its last 64 KiB and adds up their words and its size: the least that a
   movie hash can cost. No checks; 0 when anything fails. */
uint64_t movieHashFloor(const char *path);

#ifdef __cplusplus
}
#endif
