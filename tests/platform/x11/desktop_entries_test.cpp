#include "platform/x11/desktop_entries.h"

#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

namespace brisk::x11 {
namespace {

TEST(DesktopEntries, NameAnApplicationByItsWindowClass) {
    const TemporaryFolder folder;
    const auto applications = folder.path() / "applications";
    std::filesystem::create_directories(applications / "kde");
    std::ofstream{applications / "org.example.Editor.desktop"}
        << "[Desktop Entry]\nName=Editor\nName[de]=Schreiber\nName[de_AT]=Schreiberl\nStartupWMClass = editor-window\n"
           "[Desktop Action new]\nName=New Document\nStartupWMClass=nothing\n";
    std::ofstream{applications / "kde" / "viewer.desktop"} << "[Desktop Entry]\r\nName=Viewer\\sPlus\r\n";
    std::ofstream{applications / "editor-window.desktop"} << "[Desktop Entry]\nName=Named like the class\n";
    std::ofstream{applications / "broken.desktop"} << "=\n[Desktop Entry\nName\n\xFF\xFE=\n";
    setenv("XDG_DATA_HOME", folder.path().c_str(), 1);
    setenv("XDG_DATA_DIRS", "/nonexistent:", 1);
    struct Row {
        const char* why;
        const char* locale;
        const char* windowClass;
        std::optional<std::string> name;
    };
    for (const Row& row : {
             Row{"said by the entry, which goes before the file's name", "C", "editor-window", "Editor"},
             Row{"in the user's language", "de_DE.UTF-8", "editor-window", "Schreiber"},
             Row{"and country", "de_AT.UTF-8@euro", "editor-window", "Schreiberl"},
             Row{"by the file's name, in a folder below, with escapes undone", "C", "Viewer", "Viewer Plus"},
             Row{"a key of another group does not count", "C", "nothing", std::nullopt},
             Row{"an entry without a name", "C", "broken", std::nullopt},
             Row{"no class", "C", "", std::nullopt},
         }) {
        SCOPED_TRACE(row.why);
        setenv("LC_ALL", row.locale, 1);
        EXPECT_EQ(desktopEntryName(row.windowClass), row.name);
    }
}

} // namespace
} // namespace brisk::x11
