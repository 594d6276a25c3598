#pragma once

#include <string>

namespace brisk {

/// Writes one line to standard output, in one call and flushed, so that lines of two threads never mix and none is lost
/// with the process. Any thread.
void printLine(std::string line);

} // namespace brisk
