#pragma once

#include <sys/types.h>

#include <chrono>
#include <csignal>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace brisk::desktop {

/// The whole environment of a child: nothing is inherited.
using Environment = std::map<std::string, std::string>;

/// A child process in a process group of its own. It and its group are stopped when this object goes, and it gets its
/// stop signal when the thread that started it dies, so nothing outlives a crashed test. Setting up throws
/// `std::runtime_error` with what failed.
class Process {
public:
    /// Starts `arguments[0]`, looked up on PATH, with no standard input and with its outputs kept for `output` and
    /// `errors`. A child that stays after `stopSignal` for two seconds is killed.
    Process(std::vector<std::string> arguments, const Environment& environment, int stopSignal = SIGKILL);
    Process(Process&& other) noexcept;
    Process& operator=(Process&& other) noexcept;
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process();

    pid_t id() const { return id_; }
    bool isRunning();
    /// What `waitpid` said of its end, once it ended.
    std::optional<int> waitStatus();

    /// Standard output so far.
    std::string output() const;
    /// Standard error so far.
    std::string errors() const;

    /// SIGSTOP and SIGCONT to the group: the program hangs, and goes on.
    void pause() const;
    void resume() const;
    void signal(int number) const;
    /// Stops the group and waits until the process is gone.
    void stop();

private:
    void reap(int flags);

    pid_t id_ = -1;
    std::optional<int> waitStatus_;
    int stopSignal_ = SIGKILL;
    int outputFile_ = -1;
    int errorFile_ = -1;
};

/// The number after a name in one of a process's tables below /proc: after "VmRSS:" in "status". Throws
/// `std::runtime_error` when there is none.
long processNumber(pid_t process, const std::string& table, const std::string& name);

/// A directory that goes with everything in it.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory();

    const std::string& path() const { return path_; }
    /// Writes a file below the directory, making the folders on its way, and returns its full path.
    std::string write(const std::string& relativePath, const std::string& content) const;
    /// What a file below the directory holds; empty when there is none.
    std::string read(const std::string& relativePath) const;

private:
    std::string path_;
};

/// Whether a program of that name is on PATH.
bool isInstalled(const std::string& program);

/// An environment in which a program sees only `display` and a home of its own below `directory`, and no message bus.
Environment isolatedEnvironment(const TemporaryDirectory& directory, const std::string& display);

} // namespace brisk::desktop
