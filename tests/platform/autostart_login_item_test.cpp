#include "platform/freedesktop/autostart_login_item.h"
#include "platform/freedesktop/desktop_entry.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace brisk::freedesktop {
namespace {

namespace fs = std::filesystem;

TEST(DesktopEntry, ExecSurvivesTheWayThroughTheFile) {
    struct Row {
        const char* why;
        const char* path;
        const char* expected;
    };
    for (const Row& row : {
             Row{"nothing to quote", "/usr/bin/brisk", "/usr/bin/brisk"},
             Row{"a space", "/opt/my apps/brisk", "\"/opt/my apps/brisk\""},
             Row{"what quotes do not protect, escaped twice over: as argument and as string", "/a/\"b`$c\\d",
                 R"("/a/\\"b\\`\\$c\\\\d")"},
             Row{"reserved, but plain inside quotes", "/a/b'(c)&d", "\"/a/b'(c)&d\""},
             Row{"a percent sign is no field code", "/a/100%u", "/a/100%%u"},
             Row{"a line break does not end the key", "/a/b\nc", R"("/a/b\nc")"},
         }) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(execValue(row.path), row.expected);
        EXPECT_EQ(parseDesktopEntry("[Desktop Entry]\nTryExec=" + escapedString(row.path) + "\n").at("TryExec"),
                  row.path);
    }
    EXPECT_EQ(parseDesktopEntry("[Desktop Entry]\nA=" + escapedString("  b  ") + "\n").at("A"), "  b  ");
}

TEST(DesktopEntry, OnlyItsOwnGroupCounts) {
    const auto entry = parseDesktopEntry("Hidden=true\n"
                                         "# [Desktop Entry]\n"
                                         "[Desktop Action x]\nHidden=true\n"
                                         "[Desktop Entry]\r\n#Hidden=true\nName = Brisk \r\nName=Again\nnonsense\n"
                                         "[Other]\nHidden=true");
    EXPECT_EQ(entry, (decltype(entry){{"Name", "Brisk"}}));
    EXPECT_TRUE(parseDesktopEntry("").empty());
}

class AutostartLoginItemTest : public testing::Test {
protected:
    void write(const std::string& text) {
        fs::create_directories(file.parent_path());
        std::ofstream(file) << text;
    }

    TemporaryFolder home;
    fs::path file = home.path() / "config" / "autostart" / "brisk.desktop";
    int timesOpened = 0;
    AutostartLoginItem item{file.parent_path(), "/bin/sh", [this] { ++timesOpened; }};
};

TEST_F(AutostartLoginItemTest, ComesAndGoesWithItsEntry) {
    EXPECT_EQ(item.status(), LoginItemStatus::notRegistered);
    EXPECT_EQ(item.unregisterService(), std::nullopt) << "nothing to remove is no failure";
    EXPECT_EQ(item.registerService(), std::nullopt);
    EXPECT_EQ(item.status(), LoginItemStatus::enabled);
    std::ostringstream written;
    written << std::ifstream(file).rdbuf();
    const auto entry = parseDesktopEntry(written.str());
    EXPECT_EQ(entry.at("Type"), "Application");
    EXPECT_EQ(entry.at("Exec"), "/bin/sh");
    EXPECT_EQ(item.unregisterService(), std::nullopt);
    EXPECT_FALSE(fs::exists(file));
    EXPECT_EQ(item.status(), LoginItemStatus::notRegistered);
}

TEST_F(AutostartLoginItemTest, ReadsWhatOthersMadeOfTheEntry) {
    struct Row {
        const char* why;
        const char* text;
        LoginItemStatus expected;
    };
    for (const Row& row : {
             Row{"the user's own command", "[Desktop Entry]\nExec=sh -c brisk\n", LoginItemStatus::enabled},
             Row{"switched off by the standard's key", "[Desktop Entry]\nExec=brisk\nHidden=true\n",
                 LoginItemStatus::requiresApproval},
             Row{"switched off by a desktop's own key",
                 "[Desktop Entry]\nExec=brisk\nX-GNOME-Autostart-enabled=false\n", LoginItemStatus::requiresApproval},
             Row{"switched on again", "[Desktop Entry]\nExec=brisk\nHidden=false\nX-GNOME-Autostart-enabled=true\n",
                 LoginItemStatus::enabled},
             Row{"a program that has moved away", "[Desktop Entry]\nExec=brisk\nTryExec=/no/such/brisk\n",
                 LoginItemStatus::notFound},
             Row{"nothing to start", "[Desktop Entry]\nType=Application\n", LoginItemStatus::notFound},
             Row{"emptied", "", LoginItemStatus::notFound},
         }) {
        SCOPED_TRACE(row.why);
        write(row.text);
        EXPECT_EQ(item.status(), row.expected);
    }
    EXPECT_EQ(item.registerService(), std::nullopt);
    EXPECT_EQ(item.status(), LoginItemStatus::enabled) << "registering mends an entry that starts nothing";
}

TEST_F(AutostartLoginItemTest, FailuresSayWhatAndWhere) {
    fs::create_directories(file);
    EXPECT_EQ(item.status(), LoginItemStatus::notFound);
    for (const auto& error : {item.registerService(), item.unregisterService()}) {
        ASSERT_TRUE(error.has_value());
        EXPECT_NE(error->find(file.string()), std::string::npos) << *error;
    }
    fs::remove_all(home.path() / "config");
    std::ofstream(home.path() / "config") << "in the way";
    const auto error = item.registerService();
    ASSERT_TRUE(error.has_value());
    EXPECT_NE(error->find("create the folder"), std::string::npos) << *error;
    EXPECT_EQ(item.status(), LoginItemStatus::notRegistered);
}

TEST(AutostartFolder, FollowsTheUsersConfigurationFolder) {
    const auto folderWith = [](const char* configHome) {
        setenv("XDG_CONFIG_HOME", configHome, 1);
        fs::path folder = autostartFolderOfUser();
        unsetenv("XDG_CONFIG_HOME");
        return folder;
    };
    EXPECT_EQ(folderWith("/tmp/config"), "/tmp/config/autostart");
    EXPECT_EQ(folderWith("relative").filename(), "autostart");
    EXPECT_EQ(folderWith("relative").parent_path().filename(), ".config") << "a relative path is ignored";
}

} // namespace
} // namespace brisk::freedesktop
