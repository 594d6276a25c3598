#include "platform/x11/process.h"

#include <fstream>
#include <iterator>
#include <sstream>

namespace brisk::x11 {

namespace {

std::optional<std::string> readProcessFile(ProcessIdentifier id, const char* name) {
    std::ifstream file{"/proc/" + std::to_string(id) + "/" + name};
    if (!file) {
        return std::nullopt;
    }
    return std::string{std::istreambuf_iterator<char>{file}, {}};
}

} // namespace

std::optional<ProcessIdentity> runningProcess(ProcessIdentifier id) {
    const auto stat = id > 0 ? readProcessFile(id, "stat") : std::nullopt;
    // The program's name stands in parentheses and may hold anything, parentheses and spaces too.
    const auto nameEnd = stat ? stat->rfind(')') : std::string::npos;
    if (nameEnd == std::string::npos) {
        return std::nullopt;
    }
    std::istringstream fields{stat->substr(nameEnd + 1)};
    std::string state;
    fields >> state;
    constexpr int fieldsBetweenStateAndStartTime = 18;
    for (int i = 0; i < fieldsBetweenStateAndStartTime; ++i) {
        std::string skipped;
        fields >> skipped;
    }
    ProcessIdentity process{.id = id};
    fields >> process.startTime;
    if (!fields || state == "Z" || state == "X") {
        return std::nullopt;
    }
    return process;
}

std::optional<std::string> processName(ProcessIdentifier id) {
    auto name = readProcessFile(id, "comm");
    if (name && name->ends_with('\n')) {
        name->pop_back();
    }
    return name && !name->empty() ? name : std::nullopt;
}

} // namespace brisk::x11
