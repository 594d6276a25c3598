#pragma once

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

namespace brisk {

/// Runs `body` in a forked process, for what cannot be taken back in this one: limits, identities, being killed. To be
/// used while no other thread runs.
class ChildProcess {
public:
    /// The child ends with the Boolean that `body` gives.
    template <typename Body>
    explicit ChildProcess(Body body) {
        // Or the child would print again what this process has yet to.
        (void)std::fflush(nullptr);
        pid_ = fork();
        EXPECT_NE(pid_, -1);
        if (pid_ == 0) {
            _exit(body() ? 0 : 1);
        }
    }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess() {
        if (pid_ > 0) {
            kill();
        }
    }

    /// Waits for the end; whether `body` ran to it and gave true.
    bool succeeds() {
        const int status = wait();
        return WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }

    /// Whether it was still running.
    bool kill() {
        ::kill(pid_, SIGKILL);
        const int status = wait();
        return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    }

private:
    int wait() {
        int status = 0;
        EXPECT_EQ(waitpid(pid_, &status, 0), pid_);
        pid_ = -1;
        return status;
    }

    pid_t pid_ = -1;
};

/// Takes from this process, a child's, the privileges to which permission bits do not apply.
inline bool becomeUnprivileged() {
    constexpr unsigned nobody = 65534;
    return geteuid() != 0 || (setgid(nobody) == 0 && setuid(nobody) == 0);
}

/// Puts an empty disk of a few pages (`size=64k`) over the folder, for this process, a child's, alone. Whether it may.
inline bool mountSmallDisk(const std::filesystem::path& folder, const char* size) {
    const auto user = std::to_string(geteuid());
    const auto group = std::to_string(getegid());
    // In a namespace of its own a process may mount without being root, once it says who it is there.
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
        return false;
    }
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << user << ' ' << user << " 1";
    std::ofstream("/proc/self/gid_map") << group << ' ' << group << " 1";
    return mount("none", folder.c_str(), "tmpfs", 0, size) == 0;
}

} // namespace brisk
