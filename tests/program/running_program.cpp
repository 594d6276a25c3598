#include "program/running_program.h"

#include <string_view>

namespace brisk::desktop {

void RunningProgram::startWindowManager(WindowManager::Kind kind) {
    windowManager_ = std::make_unique<WindowManager>(server_, kind);
}

void RunningProgram::start(const Environment& additions) {
    server_.home().write("data/brisk/native-settings.json", settings_);
    Environment environment = additions;
    environment.merge(server_.environment());
    program_ = std::make_unique<Process>(std::vector<std::string>{BRISK_PROGRAM_PATH}, environment);
    // Trying for a key must not take it from the program.
    constexpr auto key = static_cast<xcb_keycode_t>(Key::left);
    constexpr std::uint16_t modifiers = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
    const auto hasTheHotKeys = [&] {
        xcb_grab_server(desktop_.xcb());
        const auto grab = xcb_grab_key_checked(desktop_.xcb(), 0, desktop_.root(), modifiers, key, XCB_GRAB_MODE_ASYNC,
                                               XCB_GRAB_MODE_ASYNC);
        xcb_ungrab_key(desktop_.xcb(), key, desktop_.root(), modifiers);
        xcb_ungrab_server(desktop_.xcb());
        const Reply<xcb_generic_error_t> error{xcb_request_check(desktop_.xcb(), grab)};
        return error && error->error_code == XCB_ACCESS;
    };
    ASSERT_TRUE(waitUntil(hasTheHotKeys)) << program_->errors();
}

xcb_window_t RunningProgram::openWindow(const WindowDescription& description) {
    const xcb_window_t window = client_.open(description);
    EXPECT_TRUE(waitUntil([&] {
        client_.dispatchEvents();
        if (desktop_.isManaged(window) && desktop_.activeWindow() != window) {
            desktop_.requestActivation(window);
        }
        return desktop_.isManaged(window) && desktop_.activeWindow() == window;
    }));
    return window;
}

void RunningProgram::press(Key key, std::initializer_list<Key> modifiers) {
    Keyboard(desktop_).press(key, modifiers);
}

std::vector<xcb_window_t> RunningProgram::programWindows() {
    std::vector<xcb_window_t> found;
    addProgramWindows(desktop_.root(), found);
    return found;
}

void RunningProgram::addProgramWindows(xcb_window_t parent, std::vector<xcb_window_t>& found) {
    using std::string_view_literals::operator""sv;
    const Reply<xcb_query_tree_reply_t> tree{
        xcb_query_tree_reply(desktop_.xcb(), xcb_query_tree(desktop_.xcb(), parent), nullptr)};
    if (!tree) {
        return;
    }
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        const xcb_window_t window = xcb_query_tree_children(tree.get())[i];
        const Reply<xcb_get_property_reply_t> windowClass{xcb_get_property_reply(
            desktop_.xcb(), xcb_get_property(desktop_.xcb(), 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, 16),
            nullptr)};
        const auto text =
            windowClass ? std::string_view(static_cast<char*>(xcb_get_property_value(windowClass.get())),
                                           static_cast<std::size_t>(xcb_get_property_value_length(windowClass.get())))
                        : std::string_view();
        const auto rect = desktop_.clientRect(window);
        if (text.starts_with("brisk\0"sv) && desktop_.isViewable(window) && rect && rect->width > 10) {
            found.push_back(window);
        }
        addProgramWindows(window, found);
    }
}

std::optional<xcb_window_t> RunningProgram::focusedDialog() {
    std::optional<xcb_window_t> dialog;
    const bool isThere = waitUntil([&] {
        const auto windows = programWindows();
        dialog = windows.size() == 1 && desktop_.activeWindow() == windows.front() ? std::optional(windows.front())
                                                                                   : std::nullopt;
        return dialog.has_value();
    });
    return isThere ? dialog : std::nullopt;
}

void RunningProgram::expectAnswersTheNextHotKey() {
    const xcb_window_t window = openWindow();
    press(Key::left);
    EXPECT_TRUE(waitUntil([&] {
        client_.dispatchEvents();
        // Whatever it had to say of the fault: a press meanwhile is ignored.
        if (!programWindows().empty()) {
            closeDialogs();
            desktop_.requestActivation(window);
            EXPECT_TRUE(waitUntil([&] { return desktop_.activeWindow() == window; }));
            press(Key::left);
        }
        return desktop_.visibleFrame(window) == leftHalf;
    })) << *desktop_.visibleFrame(window)
        << program_->errors();
    client_.close(window);
    EXPECT_TRUE(waitUntil([&] { return !desktop_.isManaged(window); }));
    EXPECT_TRUE(program_->isRunning());
}

void RunningProgram::closeDialogs() {
    EXPECT_TRUE(waitUntil([&] {
        const auto dialogs = programWindows();
        if (!dialogs.empty() && desktop_.activeWindow() == dialogs.front()) {
            constexpr auto escape = static_cast<Key>(9);
            press(escape, {});
        } else if (!dialogs.empty()) {
            desktop_.requestActivation(dialogs.front());
        }
        return dialogs.empty();
    }));
}

bool RunningProgram::comesTo(xcb_window_t window, const PixelRect& frame) {
    return waitUntil([&] {
        client_.dispatchEvents();
        return desktop_.visibleFrame(window) == frame;
    });
}

} // namespace brisk::desktop
