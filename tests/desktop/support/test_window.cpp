#include "desktop/support/test_window.h"

#include "desktop/support/wait.h"

#include <unistd.h>
#include <xcb/xcb_icccm.h>

#include <array>
#include <limits>
#include <sstream>
#include <stdexcept>

namespace brisk::desktop {
namespace {

constexpr std::array<const char*, 5> kindNames{"NORMAL", "DIALOG", "UTILITY", "DOCK", "DESKTOP"};

void setText(DesktopConnection& connection, xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
             const std::string& text) {
    xcb_change_property(connection.xcb(), XCB_PROP_MODE_REPLACE, window, property, type, 8,
                        static_cast<std::uint32_t>(text.size()), text.data());
}

void setSizeHints(DesktopConnection& connection, xcb_window_t window, const WindowDescription& description) {
    xcb_size_hints_t hints{};
    const PixelRect& client = description.client;
    xcb_icccm_size_hints_set_position(&hints, 1, client.x, client.y);
    xcb_icccm_size_hints_set_size(&hints, 1, client.width, client.height);
    if (const auto& size = description.minimumSize) {
        xcb_icccm_size_hints_set_min_size(&hints, size->width, size->height);
    }
    if (const auto& size = description.maximumSize) {
        xcb_icccm_size_hints_set_max_size(&hints, size->width, size->height);
    }
    if (const auto& size = description.sizeIncrements) {
        xcb_icccm_size_hints_set_resize_inc(&hints, size->width, size->height);
    }
    if (const auto& size = description.baseSize) {
        xcb_icccm_size_hints_set_base_size(&hints, size->width, size->height);
    }
    xcb_icccm_set_wm_normal_hints(connection.xcb(), window, &hints);
}

void setMotifHints(DesktopConnection& connection, xcb_window_t window, const WindowDescription& description) {
    if (!description.motifFunctions && !description.clientShadow) {
        return;
    }
    constexpr std::uint32_t functionsGiven = 1;
    constexpr std::uint32_t decorationsGiven = 2;
    const std::uint32_t flags =
        (description.motifFunctions ? functionsGiven : 0) | (description.clientShadow ? decorationsGiven : 0);
    connection.setCardinals(window, "_MOTIF_WM_HINTS", connection.atom("_MOTIF_WM_HINTS"),
                            {flags, description.motifFunctions.value_or(0), 0, 0, 0});
}

void setStrut(DesktopConnection& connection, xcb_window_t window, const Strut& strut) {
    const auto edge = static_cast<std::size_t>(strut.edge);
    std::vector<std::uint32_t> items(12);
    items[edge] = static_cast<std::uint32_t>(strut.thickness);
    items[4 + 2 * edge] = static_cast<std::uint32_t>(strut.start);
    items[5 + 2 * edge] = static_cast<std::uint32_t>(strut.end);
    connection.setCardinals(window, "_NET_WM_STRUT_PARTIAL", XCB_ATOM_CARDINAL, items);
    items.resize(4);
    connection.setCardinals(window, "_NET_WM_STRUT", XCB_ATOM_CARDINAL, items);
}

void setInitialState(DesktopConnection& connection, xcb_window_t window, const WindowDescription& description) {
    std::vector<std::uint32_t> states;
    if (description.isMaximized) {
        states = {connection.atom("_NET_WM_STATE_MAXIMIZED_VERT"), connection.atom("_NET_WM_STATE_MAXIMIZED_HORZ")};
    }
    if (description.isFullscreen) {
        states.push_back(connection.atom("_NET_WM_STATE_FULLSCREEN"));
    }
    if (!states.empty()) {
        connection.setCardinals(window, "_NET_WM_STATE", XCB_ATOM_ATOM, states);
    }
}

/// `description` as numbers for one command line argument, and back.
template <class... Fields>
std::string joined(Fields... fields) {
    std::ostringstream text;
    ((text << fields << ','), ...);
    return text.str();
}

std::vector<std::int64_t> numbers(const std::string& text) {
    std::vector<std::int64_t> result;
    std::istringstream stream(text);
    for (std::string number; std::getline(stream, number, ',');) {
        result.push_back(std::stoll(number));
    }
    return result;
}

} // namespace

TestClient::TestClient(const std::string& display) : connection_(display) {}

xcb_window_t TestClient::open(const WindowDescription& description) {
    xcb_connection_t* xcb = connection_.xcb();
    const xcb_window_t window = xcb_generate_id(xcb);
    const PixelRect& client = description.client;
    const std::array<std::uint32_t, 3> values{description.background, description.overridesRedirect ? 1U : 0U,
                                              XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_KEY_PRESS |
                                                  XCB_EVENT_MASK_BUTTON_PRESS};
    xcb_create_window(xcb, XCB_COPY_FROM_PARENT, window, connection_.root(), static_cast<std::int16_t>(client.x),
                      static_cast<std::int16_t>(client.y), static_cast<std::uint16_t>(client.width),
                      static_cast<std::uint16_t>(client.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());

    setText(connection_, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, description.title);
    setText(connection_, window, connection_.atom("_NET_WM_NAME"), connection_.atom("UTF8_STRING"), description.title);
    setText(connection_, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING,
            description.className + '\0' + description.className + '\0');
    std::array<char, 256> host{};
    gethostname(host.data(), host.size() - 1);
    setText(connection_, window, XCB_ATOM_WM_CLIENT_MACHINE, XCB_ATOM_STRING, host.data());
    if (description.hasProcessID) {
        const auto own = static_cast<std::uint32_t>(getpid());
        connection_.setCardinals(window, "_NET_WM_PID", XCB_ATOM_CARDINAL,
                                 {description.claimedProcessID.value_or(own)});
    }
    connection_.setCardinals(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM,
                             {connection_.atom(std::string("_NET_WM_WINDOW_TYPE_") +
                                               kindNames[static_cast<std::size_t>(description.kind)])});
    connection_.setCardinals(window, "WM_PROTOCOLS", XCB_ATOM_ATOM,
                             {connection_.atom("WM_DELETE_WINDOW"), connection_.atom("_NET_WM_PING")});
    xcb_icccm_wm_hints_t hints{};
    xcb_icccm_wm_hints_set_input(&hints, 1);
    xcb_icccm_wm_hints_set_normal(&hints);
    xcb_icccm_set_wm_hints(xcb, window, &hints);
    setSizeHints(connection_, window, description);
    setMotifHints(connection_, window, description);
    setInitialState(connection_, window, description);
    if (const auto& shadow = description.clientShadow) {
        connection_.setCardinals(window, "_GTK_FRAME_EXTENTS", XCB_ATOM_CARDINAL,
                                 {static_cast<std::uint32_t>(shadow->left), static_cast<std::uint32_t>(shadow->right),
                                  static_cast<std::uint32_t>(shadow->top), static_cast<std::uint32_t>(shadow->bottom)});
    }
    if (description.strut) {
        setStrut(connection_, window, *description.strut);
    }
    records_[window] = {};
    xcb_map_window(xcb, window);
    connection_.synchronize();
    return window;
}

void TestClient::close(xcb_window_t window) {
    xcb_destroy_window(connection_.xcb(), window);
    connection_.synchronize();
}

const TestClient::Record& TestClient::record(xcb_window_t window) {
    dispatchEvents();
    return records_.at(window);
}

void TestClient::forgetRecords() {
    connection_.synchronize();
    dispatchEvents();
    for (auto& [window, record] : records_) {
        record = {};
    }
}

bool TestClient::dispatchEvents() {
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.xcb())}) {
        dispatch(*event);
    }
    xcb_flush(connection_.xcb());
    return xcb_connection_has_error(connection_.xcb()) == 0;
}

void TestClient::dispatch(const xcb_generic_event_t& event) {
    // The wire format: the type says which structure the 32 bytes are, its top bit that a client sent them.
    constexpr std::uint8_t sentByClient = 0x80;
    switch (event.response_type & ~sentByClient) {
    case XCB_CONFIGURE_NOTIFY: {
        const auto& notify = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
        const PixelRect rect{.x = notify.x, .y = notify.y, .width = notify.width, .height = notify.height};
        records_[notify.window].configurations.push_back({rect, (event.response_type & sentByClient) != 0});
        break;
    }
    case XCB_KEY_PRESS: {
        const auto& press = reinterpret_cast<const xcb_key_press_event_t&>(event);
        records_[press.event].pressedKeys.push_back(press.detail);
        break;
    }
    case XCB_BUTTON_PRESS: {
        const auto& press = reinterpret_cast<const xcb_button_press_event_t&>(event);
        ++records_[press.event].buttonPresses;
        break;
    }
    case XCB_CLIENT_MESSAGE: {
        auto message = reinterpret_cast<const xcb_client_message_event_t&>(event);
        if (message.data.data32[0] == connection_.atom("WM_DELETE_WINDOW")) {
            records_[message.window].isCloseRequested = true;
        } else if (message.data.data32[0] == connection_.atom("_NET_WM_PING")) {
            message.window = connection_.root();
            xcb_send_event(connection_.xcb(), 0, connection_.root(),
                           XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                           reinterpret_cast<const char*>(&message));
        }
        break;
    }
    default:
        break;
    }
}

Process startTestClient(const Environment& environment, std::span<const WindowDescription> windows) {
    std::vector<std::string> arguments{BRISK_TEST_CLIENT_PATH};
    for (const WindowDescription& window : windows) {
        for (std::string& argument : toArguments(window)) {
            arguments.push_back(std::move(argument));
        }
    }
    return {std::move(arguments), environment};
}

std::vector<xcb_window_t> testClientWindows(Process& process, std::size_t count) {
    std::vector<xcb_window_t> windows;
    const bool areCreated = waitUntil([&] {
        windows.clear();
        std::istringstream lines(process.output());
        for (std::string line; std::getline(lines, line) && !lines.eof();) {
            windows.push_back(static_cast<xcb_window_t>(std::stoul(line)));
        }
        return windows.size() >= count;
    });
    if (!areCreated) {
        throw std::runtime_error("the test client opened no window: " + process.errors());
    }
    return windows;
}

std::vector<std::string> toArguments(const WindowDescription& description) {
    std::vector<std::string> arguments{"--window"};
    const auto add = [&arguments](const char* name, std::string value) {
        arguments.emplace_back(name);
        arguments.push_back(std::move(value));
    };
    const auto addSize = [&add](const char* name, const std::optional<PixelSize>& size) {
        if (size) {
            add(name, joined(size->width, size->height));
        }
    };
    add("--title", description.title);
    add("--class", description.className);
    const PixelRect& client = description.client;
    add("--client", joined(client.x, client.y, client.width, client.height));
    addSize("--minimum", description.minimumSize);
    addSize("--maximum", description.maximumSize);
    addSize("--increments", description.sizeIncrements);
    addSize("--base", description.baseSize);
    if (const auto& shadow = description.clientShadow) {
        add("--shadow", joined(shadow->left, shadow->right, shadow->top, shadow->bottom));
    }
    if (const auto& strut = description.strut) {
        add("--strut", joined(static_cast<int>(strut->edge), strut->thickness, strut->start, strut->end));
    }
    add("--kind", joined(static_cast<int>(description.kind)));
    add("--flags", joined(description.hasProcessID, description.isMaximized, description.isFullscreen,
                          description.overridesRedirect));
    if (description.claimedProcessID) {
        add("--process", joined(*description.claimedProcessID));
    }
    if (description.motifFunctions) {
        add("--functions", joined(*description.motifFunctions));
    }
    add("--background", joined(description.background));
    return arguments;
}

std::vector<WindowDescription> windowsFromArguments(std::span<char* const> arguments) {
    std::vector<WindowDescription> windows;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string name = arguments[i];
        if (name == "--window") {
            windows.emplace_back();
            continue;
        }
        if (windows.empty() || i + 1 == arguments.size()) {
            throw std::runtime_error("expected --window, then pairs of name and value, at " + name);
        }
        WindowDescription& window = windows.back();
        const std::string value = arguments[++i];
        if (name == "--title") {
            window.title = value;
            continue;
        }
        if (name == "--class") {
            window.className = value;
            continue;
        }
        const auto items = numbers(value);
        const auto item = [&items](std::size_t index) { return static_cast<int>(items.at(index)); };
        const auto size = [&item] { return PixelSize{.width = item(0), .height = item(1)}; };
        if (name == "--client") {
            window.client = {.x = item(0), .y = item(1), .width = item(2), .height = item(3)};
        } else if (name == "--minimum") {
            window.minimumSize = size();
        } else if (name == "--maximum") {
            window.maximumSize = size();
        } else if (name == "--increments") {
            window.sizeIncrements = size();
        } else if (name == "--base") {
            window.baseSize = size();
        } else if (name == "--shadow") {
            window.clientShadow = {.left = item(0), .right = item(1), .top = item(2), .bottom = item(3)};
        } else if (name == "--strut") {
            window.strut = {
                .edge = static_cast<Strut::Edge>(item(0)), .thickness = item(1), .start = item(2), .end = item(3)};
        } else if (name == "--kind") {
            window.kind = static_cast<WindowKind>(item(0));
        } else if (name == "--flags") {
            window.hasProcessID = item(0) != 0;
            window.isMaximized = item(1) != 0;
            window.isFullscreen = item(2) != 0;
            window.overridesRedirect = item(3) != 0;
        } else if (name == "--process") {
            window.claimedProcessID = static_cast<std::uint32_t>(items.at(0));
        } else if (name == "--functions") {
            window.motifFunctions = static_cast<std::uint32_t>(items.at(0));
        } else if (name == "--background") {
            window.background = static_cast<std::uint32_t>(items.at(0));
        } else {
            throw std::runtime_error("unknown argument " + name);
        }
    }
    return windows;
}

} // namespace brisk::desktop
