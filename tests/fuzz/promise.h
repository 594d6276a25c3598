#pragma once

#include <cstdio>
#include <cstdlib>

namespace brisk {

/// Ends the process when a promise is broken, so that the fuzzer keeps the input that broke it.
inline void promise(bool isKept, const char* what) {
    if (!isKept) {
        std::fprintf(stderr, "Broken promise: %s\n", what);
        std::abort();
    }
}

} // namespace brisk
