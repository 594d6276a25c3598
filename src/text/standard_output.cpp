#include "text/standard_output.h"

#include <cstdio>

namespace brisk {

void printLine(std::string line) {
    line += '\n';
    (void)std::fputs(line.c_str(), stdout);
    (void)std::fflush(stdout);
}

} // namespace brisk
