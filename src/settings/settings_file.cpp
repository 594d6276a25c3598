#include "settings/settings_file.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <optional>
#include <utility>

namespace brisk {

namespace {

namespace fs = std::filesystem;

class FileDescriptor {
public:
    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() {
        if (isOpen()) {
            close(descriptor_);
        }
    }
    bool isOpen() const { return descriptor_ >= 0; }
    int get() const { return descriptor_; }

private:
    int descriptor_;
};

std::error_code lastError() {
    return {errno, std::generic_category()};
}

/// Calls again what a signal interrupted.
template <typename Call>
auto retrying(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR) {
        result = call();
    }
    return result;
}

std::error_code errorUnlessRegular(const struct stat& status) {
    if (S_ISDIR(status.st_mode)) {
        return std::make_error_code(std::errc::is_a_directory);
    }
    return S_ISREG(status.st_mode) ? std::error_code() : std::make_error_code(std::errc::operation_not_supported);
}

/// The path at the end of a chain of symbolic links, whether or not anything is there. The system's own resolution
/// gives up where nothing is, but that is where a save through a dangling link has to write.
std::variant<fs::path, std::error_code> followLinks(fs::path path) {
    // As many as the kernel follows.
    constexpr int maximumLinks = 40;
    for (int i = 0; i < maximumLinks; ++i) {
        std::error_code error;
        if (!fs::is_symlink(fs::symlink_status(path, error))) {
            return path;
        }
        const fs::path target = fs::read_symlink(path, error);
        if (error) {
            return error;
        }
        path = path.parent_path() / target;
    }
    return std::make_error_code(std::errc::too_many_symbolic_link_levels);
}

std::error_code writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = retrying([&] { return write(descriptor, bytes.data(), bytes.size()); });
        if (written < 0) {
            return lastError();
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return {};
}

/// What the temporaries of a file's saves are called, up to the six characters that make each one unique.
std::string temporaryPrefix(const fs::path& path) {
    std::string prefix = ".";
    return prefix.append(path.filename().string()).append(".saving-");
}
constexpr std::size_t uniqueLength = 6;

/// A file beside the one it is to replace, removed unless it did. It is locked as long as it is in use, which is how
/// other saves tell it from one whose save was killed.
class Temporary {
public:
    static std::variant<Temporary, std::error_code> create(const fs::path& target) {
        constexpr int maximumAttempts = 16;
        for (int i = 0; i < maximumAttempts; ++i) {
            std::string name =
                (target.parent_path() / temporaryPrefix(target)).string() + std::string(uniqueLength, 'X');
            FileDescriptor file(mkostemp(name.data(), O_CLOEXEC));
            if (!file.isOpen()) {
                return lastError();
            }
            Temporary temporary(std::move(file), name);
            // Between the creation and the lock another save may have taken it for a leftover.
            struct stat status {};
            if (flock(temporary.file_.get(), LOCK_EX | LOCK_NB) == -1 && errno == EWOULDBLOCK) {
                continue;
            }
            if (fstat(temporary.file_.get(), &status) == 0 && status.st_nlink > 0) {
                return temporary;
            }
        }
        return std::make_error_code(std::errc::device_or_resource_busy);
    }

    Temporary(Temporary&& other) noexcept
        : file_(std::move(other.file_)), path_(std::exchange(other.path_, fs::path())) {}
    Temporary(const Temporary&) = delete;
    Temporary& operator=(const Temporary&) = delete;
    Temporary& operator=(Temporary&&) = delete;
    ~Temporary() {
        if (!path_.empty()) {
            unlink(path_.c_str());
        }
    }

    int descriptor() const { return file_.get(); }

    std::error_code replace(const fs::path& target) {
        if (rename(path_.c_str(), target.c_str()) == -1) {
            return lastError();
        }
        path_.clear();
        return {};
    }

private:
    Temporary(FileDescriptor file, fs::path path) : file_(std::move(file)), path_(std::move(path)) {}

    FileDescriptor file_;
    /// Empty once there is nothing to remove.
    fs::path path_;
};

/// Removes what killed saves of `target` left behind. Failure is silent: it concerns no one's settings.
void removeStaleTemporaries(const fs::path& target) {
    const std::string prefix = temporaryPrefix(target);
    std::error_code error;
    for (fs::directory_iterator entry(target.parent_path(), error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (!name.starts_with(prefix) || name.size() != prefix.size() + uniqueLength) {
            continue;
        }
        const FileDescriptor file(open(entry->path().c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC));
        if (file.isOpen() && flock(file.get(), LOCK_EX | LOCK_NB) == 0) {
            unlink(entry->path().c_str());
        }
    }
}

/// Makes the rename itself survive a power failure. By now the new file is in place, and some file systems cannot
/// synchronise a folder: there is no failure to report.
void synchronizeFolder(const fs::path& folder) {
    const FileDescriptor file(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (file.isOpen()) {
        retrying([&] { return fsync(file.get()); });
    }
}

/// Takes the name with an empty item of the kind that a rename of `path` replaces: an exclusive creation is the only
/// way to claim a name that every file system has.
std::error_code reserveName(const fs::path& name, bool isDirectory) {
    if (isDirectory) {
        return mkdir(name.c_str(), S_IRWXU) == 0 ? std::error_code() : lastError();
    }
    const FileDescriptor file(open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    return file.isOpen() ? std::error_code() : lastError();
}

} // namespace

bool itemExists(const fs::path& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0;
}

std::variant<std::string, std::error_code> readFile(const fs::path& path) {
    const FileDescriptor file(retrying([&] { return open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC); }));
    struct stat status {};
    if (!file.isOpen() || fstat(file.get(), &status) == -1) {
        return lastError();
    }
    if (const std::error_code error = errorUnlessRegular(status)) {
        return error;
    }
    std::string bytes;
    constexpr std::size_t chunkSize = 65536;
    std::array<char, chunkSize> chunk{};
    // The size is only what the file had when it was asked: another program may be writing it.
    if (std::cmp_less_equal(status.st_size, maximumSettingsFileSize)) {
        bytes.reserve(static_cast<std::size_t>(status.st_size));
        while (bytes.size() <= maximumSettingsFileSize) {
            const ssize_t count = retrying([&] { return read(file.get(), chunk.data(), chunk.size()); });
            if (count < 0) {
                return lastError();
            }
            if (count == 0) {
                return bytes;
            }
            bytes.append(chunk.data(), static_cast<std::size_t>(count));
        }
    }
    return std::make_error_code(std::errc::file_too_large);
}

std::error_code writeFileAtomically(const fs::path& path, std::string_view bytes) {
    const auto followed = followLinks(path);
    if (const auto* error = std::get_if<std::error_code>(&followed)) {
        return *error;
    }
    const auto& target = std::get<fs::path>(followed);

    std::optional<mode_t> oldPermissions;
    struct stat status {};
    if (stat(target.c_str(), &status) == 0) {
        if (const std::error_code error = errorUnlessRegular(status)) {
            return error;
        }
        oldPermissions = status.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO);
    }

    removeStaleTemporaries(target);
    auto created = Temporary::create(target);
    if (const auto* error = std::get_if<std::error_code>(&created)) {
        return *error;
    }
    auto& temporary = std::get<Temporary>(created);
    if (const std::error_code error = writeAll(temporary.descriptor(), bytes)) {
        return error;
    }
    if (oldPermissions && fchmod(temporary.descriptor(), *oldPermissions) == -1) {
        return lastError();
    }
    // Before the rename, or a power failure could leave the new name with none of the bytes.
    if (retrying([&] { return fsync(temporary.descriptor()); }) == -1) {
        return lastError();
    }
    if (const std::error_code error = temporary.replace(target)) {
        return error;
    }
    synchronizeFolder(target.parent_path());
    return {};
}

void removeLeftovers(const fs::path& path) {
    const auto followed = followLinks(path);
    if (const auto* target = std::get_if<fs::path>(&followed)) {
        removeStaleTemporaries(*target);
    }
}

std::error_code createFolder(const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    return error;
}

std::variant<fs::path, std::error_code> moveAside(const fs::path& path, const fs::path& wanted) {
    std::error_code error;
    const bool isDirectory = fs::is_directory(fs::symlink_status(path, error));
    fs::path backup = wanted;
    for (int number = 2; (error = reserveName(backup, isDirectory)); ++number) {
        if (error != std::errc::file_exists) {
            return error;
        }
        backup = wanted.parent_path() / wanted.stem();
        (backup += '-') += std::to_string(number);
        backup += wanted.extension();
    }
    if (rename(path.c_str(), backup.c_str()) == -1) {
        error = lastError();
        (void)std::remove(backup.c_str());
        return error;
    }
    return backup;
}

} // namespace brisk
