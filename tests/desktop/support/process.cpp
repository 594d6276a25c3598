#include "desktop/support/process.h"

#include "desktop/support/wait.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace brisk::desktop {
namespace {

[[noreturn]] void fail(const std::string& what, int error = errno) {
    throw std::runtime_error(what + ": " + std::strerror(error));
}

std::vector<char*> pointers(std::vector<std::string>& strings) {
    std::vector<char*> result;
    result.reserve(strings.size() + 1);
    for (std::string& string : strings) {
        result.push_back(string.data());
    }
    result.push_back(nullptr);
    return result;
}

/// A nameless file: unlike a pipe it never fills up, and unlike a named one it needs no clearing away.
int memoryFile(const char* name) {
    const int file = memfd_create(name, MFD_CLOEXEC);
    if (file < 0) {
        fail("memfd_create");
    }
    // Two writers of one file, the program and its own children, must not overwrite each other.
    fcntl(file, F_SETFL, O_APPEND);
    return file;
}

std::string contents(int file) {
    std::string text;
    std::array<char, 4096> buffer{};
    for (ssize_t size = 0; (size = pread(file, buffer.data(), buffer.size(), static_cast<off_t>(text.size()))) > 0;) {
        text.append(buffer.data(), static_cast<std::size_t>(size));
    }
    return text;
}

} // namespace

Process::Process(std::vector<std::string> arguments, const Environment& environment, int stopSignal)
    : stopSignal_(stopSignal), outputFile_(memoryFile("output")), errorFile_(memoryFile("errors")) {
    // Everything that allocates happens before the fork.
    std::vector<std::string> variables;
    variables.reserve(environment.size());
    for (const auto& [name, value] : environment) {
        variables.emplace_back(name).append("=").append(value);
    }
    const std::vector<char*> argv = pointers(arguments);
    const std::vector<char*> envp = pointers(variables);
    std::array<int, 2> execFailure{};
    if (pipe2(execFailure.data(), O_CLOEXEC) != 0) {
        fail("pipe2");
    }
    const pid_t parent = getpid();

    id_ = fork();
    if (id_ < 0) {
        fail("fork");
    }
    if (id_ == 0) {
        setpgid(0, 0);
        prctl(PR_SET_PDEATHSIG, stopSignal_);
        if (getppid() != parent) {
            _exit(127);
        }
        const int input = open("/dev/null", O_RDONLY | O_CLOEXEC);
        dup2(input, STDIN_FILENO);
        dup2(outputFile_, STDOUT_FILENO);
        dup2(errorFile_, STDERR_FILENO);
        execvpe(argv[0], argv.data(), envp.data());
        const int error = errno;
        [[maybe_unused]] const ssize_t written = write(execFailure[1], &error, sizeof error);
        _exit(127);
    }
    // In both processes, since either may run first and the group must exist before it is signalled.
    setpgid(id_, id_);
    close(execFailure[1]);
    int error = 0;
    const bool failed = read(execFailure[0], &error, sizeof error) == sizeof error;
    close(execFailure[0]);
    if (failed) {
        waitpid(id_, nullptr, 0);
        close(outputFile_);
        close(errorFile_);
        fail("cannot start " + arguments.front(), error);
    }
}

Process::Process(Process&& other) noexcept
    : id_(std::exchange(other.id_, -1)),
      waitStatus_(std::exchange(other.waitStatus_, std::nullopt)),
      stopSignal_(other.stopSignal_),
      outputFile_(std::exchange(other.outputFile_, -1)),
      errorFile_(std::exchange(other.errorFile_, -1)) {}

Process& Process::operator=(Process&& other) noexcept {
    std::swap(id_, other.id_);
    std::swap(waitStatus_, other.waitStatus_);
    std::swap(stopSignal_, other.stopSignal_);
    std::swap(outputFile_, other.outputFile_);
    std::swap(errorFile_, other.errorFile_);
    return *this;
}

Process::~Process() {
    if (id_ > 0) {
        stop();
        close(outputFile_);
        close(errorFile_);
    }
}

void Process::reap(int flags) {
    int status = 0;
    if (!waitStatus_ && waitpid(id_, &status, flags) == id_) {
        waitStatus_ = status;
    }
}

bool Process::isRunning() {
    return !waitStatus();
}

std::optional<int> Process::waitStatus() {
    reap(WNOHANG);
    return waitStatus_;
}

std::string Process::output() const {
    return contents(outputFile_);
}

std::string Process::errors() const {
    return contents(errorFile_);
}

void Process::signal(int number) const {
    // Not once it is reaped: the id may be another's by then.
    if (!waitStatus_) {
        ::kill(-id_, number);
    }
}

void Process::pause() const {
    signal(SIGSTOP);
}

void Process::resume() const {
    signal(SIGCONT);
}

void Process::stop() {
    if (!isRunning()) {
        return;
    }
    signal(stopSignal_);
    if (stopSignal_ != SIGKILL && !waitUntil([this] { return !isRunning(); }, std::chrono::seconds(2))) {
        signal(SIGKILL);
    }
    reap(0);
}

TemporaryDirectory::TemporaryDirectory() {
    path_ = (std::filesystem::temp_directory_path() / "brisk-desktop-XXXXXX").string();
    if (mkdtemp(path_.data()) == nullptr) {
        fail("mkdtemp " + path_);
    }
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryDirectory::write(const std::string& relativePath, const std::string& content) const {
    const std::filesystem::path path = std::filesystem::path(path_) / relativePath;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path);
    file << content;
    if (!file.flush()) {
        throw std::runtime_error("cannot write " + path.string());
    }
    return path.string();
}

std::string TemporaryDirectory::read(const std::string& relativePath) const {
    std::ifstream file(std::filesystem::path(path_) / relativePath);
    return {std::istreambuf_iterator<char>(file), {}};
}

long processNumber(pid_t process, const std::string& table, const std::string& name) {
    const std::string path = "/proc/" + std::to_string(process) + '/' + table;
    std::ifstream file(path);
    for (std::string word; file >> word;) {
        if (long number = 0; word == name && file >> number) {
            return number;
        }
    }
    throw std::runtime_error("no " + name + " in " + path);
}

bool isInstalled(const std::string& program) {
    const char* path = std::getenv("PATH");
    std::istringstream folders(path == nullptr ? "" : path);
    for (std::string folder; std::getline(folders, folder, ':');) {
        if (access(folder.append("/").append(program).c_str(), X_OK) == 0) {
            return true;
        }
    }
    return false;
}

Environment isolatedEnvironment(const TemporaryDirectory& directory, const std::string& display) {
    const std::string& home = directory.path();
    Environment environment{
        {"DISPLAY", display},
        {"HOME", home},
        {"XDG_CONFIG_HOME", home + "/config"},
        {"XDG_DATA_HOME", home + "/data"},
        {"XDG_CACHE_HOME", home + "/cache"},
        {"XDG_STATE_HOME", home + "/state"},
        {"XDG_RUNTIME_DIR", home + "/runtime"},
        {"SHELL", "/bin/sh"},
        {"LANG", "C.UTF-8"},
        {"NO_AT_BRIDGE", "1"},
        {"GIO_USE_VFS", "local"},
        {"GSETTINGS_BACKEND", "keyfile"},
        {"DBUS_SESSION_BUS_ADDRESS", "disabled:"},
    };
    for (const char* folder : {"config", "data", "cache", "state", "runtime"}) {
        const std::filesystem::path path = std::filesystem::path(home) / folder;
        std::filesystem::create_directories(path);
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    }
    for (const char* inherited :
         {"PATH", "LD_LIBRARY_PATH", "ASAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS", "UBSAN_OPTIONS"}) {
        if (const char* value = std::getenv(inherited)) {
            environment[inherited] = value;
        }
    }
    return environment;
}

} // namespace brisk::desktop
