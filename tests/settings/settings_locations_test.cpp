#include "settings/settings_locations.h"

#include <gtest/gtest.h>

#include <optional>

namespace brisk {
namespace {

/// Sets a variable, or takes it away, until the end of the test.
class EnvironmentVariable {
public:
    EnvironmentVariable(const char* name, const char* value) : name_(name) {
        if (const char* old = std::getenv(name)) {
            old_ = old;
        }
        set(value);
    }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
    ~EnvironmentVariable() { set(old_ ? old_->c_str() : nullptr); }

private:
    void set(const char* value) {
        if (value != nullptr) {
            setenv(name_, value, 1);
        } else {
            unsetenv(name_);
        }
    }
    const char* name_;
    std::optional<std::string> old_;
};

TEST(SettingsLocations, FoldersComeFromTheEnvironment) {
    struct Row {
        const char* why;
        const char* home;
        const char* data;
        const char* expectedHome;
        const char* expectedSupport;
    };
    for (const Row& row : {
             Row{"both named", "/home/user", "/data", "/home/user", "/data"},
             Row{"no data folder", "/home/user", nullptr, "/home/user", "/home/user/.local/share"},
             Row{"an empty variable is as good as none", "/home/user", "", "/home/user", "/home/user/.local/share"},
             Row{"a relative data folder is invalid", "/home/user", "data", "/home/user", "/home/user/.local/share"},
         }) {
        SCOPED_TRACE(row.why);
        const EnvironmentVariable home("HOME", row.home);
        const EnvironmentVariable data("XDG_DATA_HOME", row.data);
        const SettingsFolders folders = settingsFoldersOfUser();
        EXPECT_EQ(folders.home, row.expectedHome);
        EXPECT_EQ(folders.applicationSupport, row.expectedSupport);
    }
    const EnvironmentVariable home("HOME", nullptr);
    EXPECT_TRUE(settingsFoldersOfUser().home.is_absolute()) << "the password database answers, or the root does";
}

TEST(SettingsLocations, EachPlaceIsTheCounterpartOfTheOther) {
    const SettingsFolders folders{.home = "/h", .applicationSupport = "/h/s"};
    const std::filesystem::path iCloud = "/h/Library/Mobile Documents/com~apple~CloudDocs/brisk/native-settings.json";
    EXPECT_EQ(counterpartFileURL(folders, "/h/s/brisk/native-settings.json"), iCloud);
    EXPECT_EQ(counterpartFileURL(folders, "/h/./x/../s//brisk/native-settings.json"), iCloud) << "the same path";
    EXPECT_EQ(counterpartFileURL(folders, iCloud), "/h/s/brisk/native-settings.json");
    EXPECT_EQ(counterpartFileURL(folders, "/elsewhere.json"), "/h/s/brisk/native-settings.json");
}

} // namespace
} // namespace brisk
