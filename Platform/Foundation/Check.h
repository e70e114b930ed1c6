#pragma once

#include <cstdio>
#include <cstdlib>

// Stops the process, in release builds too, if the program itself is wrong. What can go wrong outside the program (a
// missing file, damaged bytes) is never checked this way: it is a value or a Result.
#define QB_CHECK(condition)                                                                                            \
    do {                                                                                                               \
        if (!(condition)) [[unlikely]] {                                                                               \
            std::fprintf(stderr, "%s:%d: check failed: %s\n", __FILE__, __LINE__, #condition);                         \
            std::abort();                                                                                              \
        }                                                                                                              \
    } while (false)
