#include "platform/x11/window_description.h"

#include <unistd.h>

#include <array>
#include <climits>
#include <limits>

namespace brisk::x11 {

namespace {

constexpr std::uint32_t maximumTypes = 32;
constexpr std::uint32_t maximumClassWords = 128;

std::optional<xcb_res_query_client_ids_cookie_t> requestOwner(Connection& connection, xcb_window_t window) {
    if (!connection.has(xcb_res_id)) {
        return std::nullopt;
    }
    const xcb_res_client_id_spec_t wanted{.client = window, .mask = XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    return xcb_res_query_client_ids(connection.xcb(), 1, &wanted);
}

/// The process that the server sees at the other end of the client's connection; none for one from another machine.
std::optional<ProcessIdentifier> takeOwner(Connection& connection,
                                           const std::optional<xcb_res_query_client_ids_cookie_t>& cookie) {
    if (!cookie) {
        return std::nullopt;
    }
    const Reply<xcb_res_query_client_ids_reply_t> reply{
        xcb_res_query_client_ids_reply(connection.xcb(), *cookie, nullptr)};
    if (!reply) {
        return std::nullopt;
    }
    for (auto id = xcb_res_query_client_ids_ids_iterator(reply.get()); id.rem > 0; xcb_res_client_id_value_next(&id)) {
        if ((id.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) != 0 &&
            xcb_res_client_id_value_value_length(id.data) == 1) {
            const std::uint32_t process = *xcb_res_client_id_value_value(id.data);
            if (process > 0 && process <= std::uint32_t{std::numeric_limits<ProcessIdentifier>::max()}) {
                return static_cast<ProcessIdentifier>(process);
            }
        }
    }
    return std::nullopt;
}

} // namespace

std::string classIn(const std::string& property) {
    const auto instanceEnd = property.find('\0');
    if (instanceEnd == std::string::npos) {
        return {};
    }
    const auto classEnd = property.find('\0', instanceEnd + 1);
    return property.substr(instanceEnd + 1, classEnd == std::string::npos ? classEnd : classEnd - instanceEnd - 1);
}

DescriptionRequest::DescriptionRequest(Connection& connection, const Atoms& atoms, xcb_window_t window)
    : connection_(connection),
      atoms_(atoms),
      attributes_(xcb_get_window_attributes(connection.xcb(), window)),
      owner_(requestOwner(connection, window)),
      class_(connection, window, XCB_ATOM_WM_CLASS, maximumClassWords),
      type_(connection, window, atoms.netWindowType, maximumTypes),
      strut_(connection, window, atoms.netStrut, 4),
      strutPartial_(connection, window, atoms.netStrutPartial, 12) {}

bool DescriptionRequest::take(Window& window) {
    const Reply<xcb_get_window_attributes_reply_t> attributes{
        xcb_get_window_attributes_reply(connection_.xcb(), attributes_, nullptr)};
    window.process = takeProcess(window.id);
    window.windowClass = classIn(class_.takeText(atoms_.utf8String).value_or(std::string{}));
    const auto types = type_.takeWords(XCB_ATOM_ATOM).value_or(std::vector<std::uint32_t>{});
    const auto strut = strut_.takeWords(XCB_ATOM_CARDINAL);
    const auto strutPartial = strutPartial_.takeWords(XCB_ATOM_CARDINAL);
    if (!attributes) {
        return false;
    }
    window.isStale = false;
    window.isMapped = attributes->map_state != XCB_MAP_STATE_UNMAPPED;
    // The first type that is known counts; types after it are there for window managers that know more.
    const bool isPartOfDesktop =
        !types.empty() && (types.front() == atoms_.netWindowTypeDesktop || types.front() == atoms_.netWindowTypeDock);
    window.isFocusable = attributes->override_redirect == 0 && !isPartOfDesktop;
    window.strut = strutIn(strutPartial, strut);
    return true;
}

ProcessIdentity DescriptionRequest::takeProcess(xcb_window_t window) {
    if (const auto owner = takeOwner(connection_, owner_)) {
        // A client outlives its process where it was handed on to a child; the id still names the windows' owner.
        return runningProcess(*owner).value_or(ProcessIdentity{.id = *owner});
    }
    // No local process is at the other end, or the server cannot tell. What the window says of itself counts only where
    // it says that it speaks of this machine.
    const PropertyRequest claimedProcess{connection_, window, atoms_.netWindowProcessID, 1};
    const PropertyRequest claimedMachine{connection_, window, XCB_ATOM_WM_CLIENT_MACHINE, HOST_NAME_MAX / 4};
    const auto process = claimedProcess.takeWords(XCB_ATOM_CARDINAL, 1);
    const auto machine = claimedMachine.takeText(atoms_.utf8String);
    std::array<char, HOST_NAME_MAX + 1> thisMachine{};
    if (process && machine && gethostname(thisMachine.data(), thisMachine.size() - 1) == 0 &&
        *machine == thisMachine.data()) {
        if (const auto running = runningProcess(static_cast<ProcessIdentifier>(process->front()))) {
            return *running;
        }
    }
    // The server gives each client a range of ids; the number of the range stands for the client.
    const std::uint32_t idMask = xcb_get_setup(connection_.xcb())->resource_id_mask;
    return {.id = -static_cast<ProcessIdentifier>(window / (idMask + 1U))};
}

} // namespace brisk::x11
