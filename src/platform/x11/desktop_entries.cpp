#include "platform/x11/desktop_entries.h"

#include "platform/freedesktop/desktop_entry.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <string_view>
#include <vector>

namespace brisk::x11 {

namespace {

namespace fs = std::filesystem;

/// Larger than any entry; what is longer is something else.
constexpr std::uintmax_t maximumEntrySize = std::uintmax_t{1} << 20U;

std::string environment(const char* name, const std::string& otherwise) {
    const char* value = std::getenv(name);
    return value != nullptr && *value != '\0' ? value : otherwise;
}

using Entry = std::map<std::string, std::string, std::less<>>;

/// The folders of the XDG base directory rules, the user's own first. The rules have relative paths ignored.
std::vector<fs::path> applicationFolders() {
    std::vector<fs::path> folders;
    const auto add = [&folders](const fs::path& base) {
        if (base.is_absolute()) {
            folders.push_back(base / "applications");
        }
    };
    const fs::path home = environment("XDG_DATA_HOME", "");
    add(home.is_absolute() ? home : fs::path{environment("HOME", "")} / ".local/share");
    const std::string list = environment("XDG_DATA_DIRS", "/usr/local/share:/usr/share");
    for (std::size_t begin = 0; begin <= list.size();) {
        const std::size_t end = std::min(list.find(':', begin), list.size());
        add(list.substr(begin, end - begin));
        begin = end + 1;
    }
    return folders;
}

Entry readEntry(const fs::path& path) {
    std::error_code error;
    if (const auto size = fs::file_size(path, error); error || size > maximumEntrySize) {
        return {};
    }
    std::ifstream file{path, std::ios::binary};
    return freedesktop::parseDesktopEntry(std::string{std::istreambuf_iterator<char>{file}, {}});
}

/// "Name[de_AT]", "Name[de]", "Name", as the user's locale says.
std::optional<std::string> localizedName(const Entry& entry) {
    std::string locale = environment("LC_ALL", environment("LC_MESSAGES", environment("LANG", "")));
    locale.erase(std::min(locale.find_first_of(".@"), locale.size()));
    const std::string language = locale.substr(0, locale.find('_'));
    for (const std::string& key : {"Name[" + locale + "]", "Name[" + language + "]", std::string{"Name"}}) {
        if (const auto name = entry.find(key); name != entry.end() && !name->second.empty()) {
            return name->second;
        }
    }
    return std::nullopt;
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); });
}

} // namespace

std::optional<std::string> desktopEntryName(const std::string& windowClass) {
    if (windowClass.empty()) {
        return std::nullopt;
    }
    std::optional<std::string> ofSameFileName;
    for (const fs::path& folder : applicationFolders()) {
        std::error_code error;
        for (fs::recursive_directory_iterator file{folder, error}, end; !error && file != end; file.increment(error)) {
            if (file->path().extension() != ".desktop") {
                continue;
            }
            const auto entry = readEntry(file->path());
            const auto startupClass = entry.find("StartupWMClass");
            if (startupClass != entry.end() && startupClass->second == windowClass) {
                if (auto name = localizedName(entry)) {
                    return name;
                }
            }
            if (!ofSameFileName && equalIgnoringCase(file->path().stem().string(), windowClass)) {
                ofSameFileName = localizedName(entry);
            }
        }
    }
    return ofSameFileName;
}

} // namespace brisk::x11
