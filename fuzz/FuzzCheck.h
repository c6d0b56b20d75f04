#pragma once

#include <cstdio>
#include <cstdlib>

// Stops the run with a message when a property of the code under test does not hold; libFuzzer
// then keeps the input that broke it.
#define FUZZ_CHECK(condition)                                                                      \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            std::fprintf(stderr, "%s:%d: check failed: %s\n", __FILE__, __LINE__, #condition);     \
            std::abort();                                                                          \
        }                                                                                          \
    } while (false)
