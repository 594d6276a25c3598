#include "desktop/support/test_window.h"

#include "desktop/support/wait.h"

#include <unistd.h>
#include <xcb/xcb_icccm.h>

#include <array>
#include <iomanip>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <type_traits>

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

// The fields of what a command line describes, in the order of its words; for both directions.
template <class Words>
void transfer(Words& words, PixelSize& size) {
    words(size.width, size.height);
}
template <class Words>
void transfer(Words& words, PixelRect& rect) {
    words(rect.x, rect.y, rect.width, rect.height);
}
template <class Words>
void transfer(Words& words, PixelExtents& extents) {
    words(extents.left, extents.right, extents.top, extents.bottom);
}
template <class Words>
void transfer(Words& words, Strut& strut) {
    words(strut.edge, strut.thickness, strut.start, strut.end);
}
template <class Words>
void transfer(Words& words, WindowDescription& window) {
    words(window.title, window.className, window.client, window.minimumSize, window.maximumSize, window.sizeIncrements,
          window.baseSize, window.clientShadow, window.kind, window.strut, window.claimedProcessID, window.isMaximized,
          window.isFullscreen, window.overridesRedirect, window.motifFunctions, window.background);
}

struct Writer {
    template <class... Fields>
    void operator()(Fields&... fields) {
        (write(fields), ...);
    }
    void write(std::string& word) { text << std::quoted(word) << ' '; }
    template <class Field>
    void write(std::optional<Field>& field) {
        bool isGiven = field.has_value();
        write(isGiven);
        if (isGiven) {
            write(*field);
        }
    }
    template <class Field>
    void write(Field& field) {
        if constexpr (std::is_enum_v<Field>) {
            text << static_cast<int>(field) << ' ';
        } else if constexpr (std::is_arithmetic_v<Field>) {
            text << field << ' ';
        } else {
            transfer(*this, field);
        }
    }
    std::ostringstream text;
};

struct Reader {
    explicit Reader(const char* words) : text(words) { text.exceptions(std::ios::failbit); }
    template <class... Fields>
    void operator()(Fields&... fields) {
        (read(fields), ...);
    }
    void read(std::string& word) { text >> std::quoted(word); }
    template <class Field>
    void read(std::optional<Field>& field) {
        bool isGiven = false;
        read(isGiven);
        if (isGiven) {
            read(field.emplace());
        }
    }
    template <class Field>
    void read(Field& field) {
        if constexpr (std::is_enum_v<Field>) {
            int number = 0;
            read(number);
            field = static_cast<Field>(number);
        } else if constexpr (std::is_arithmetic_v<Field>) {
            text >> field;
        } else {
            transfer(*this, field);
        }
    }
    std::istringstream text;
};

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
    const auto own = static_cast<std::uint32_t>(getpid());
    connection_.setCardinals(window, "_NET_WM_PID", XCB_ATOM_CARDINAL, {description.claimedProcessID.value_or(own)});
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

std::optional<PixelRect> frameAtRest(DesktopConnection& desktop, TestClient& client, xcb_window_t window,
                                     std::chrono::milliseconds quiet) {
    auto last = desktop.visibleFrame(window);
    auto since = std::chrono::steady_clock::now();
    const bool isAtRest = waitUntil([&] {
        client.dispatchEvents();
        if (const auto now = desktop.visibleFrame(window); now != last) {
            last = now;
            since = std::chrono::steady_clock::now();
        }
        return std::chrono::steady_clock::now() - since > quiet;
    });
    if (!isAtRest) {
        throw std::runtime_error("the window does not come to rest");
    }
    return last;
}

Process startTestClient(const Environment& environment, std::span<const WindowDescription> windows) {
    std::vector<std::string> arguments{BRISK_TEST_CLIENT_PATH};
    for (WindowDescription window : windows) {
        Writer writer;
        writer.write(window);
        arguments.push_back(writer.text.str());
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

std::vector<WindowDescription> windowsFromArguments(std::span<char* const> arguments) {
    std::vector<WindowDescription> windows;
    for (const char* argument : arguments) {
        Reader(argument).read(windows.emplace_back());
    }
    return windows;
}

} // namespace brisk::desktop
