#include "soak/resource_use.h"

#include "desktop/support/process.h"

#include <xcb/res.h>

#include <filesystem>
#include <iterator>
#include <sstream>
#include <vector>

namespace brisk::desktop {

namespace {

constexpr const char* memory = "PSS kB";
constexpr const char* residentMemory = "RSS kB";

long entries(const std::filesystem::path& folder) {
    return std::distance(std::filesystem::directory_iterator(folder), std::filesystem::directory_iterator());
}

/// One id of each connection that the process has to the server.
std::vector<std::uint32_t> connectionsOf(pid_t process, xcb_connection_t* xcb) {
    const xcb_res_client_id_spec_t everyClient{.client = 0, .mask = XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const Reply<xcb_res_query_client_ids_reply_t> ids{
        xcb_res_query_client_ids_reply(xcb, xcb_res_query_client_ids(xcb, 1, &everyClient), nullptr)};
    std::vector<std::uint32_t> clients;
    for (auto id = xcb_res_query_client_ids_ids_iterator(ids.get()); id.rem > 0; xcb_res_client_id_value_next(&id)) {
        if (xcb_res_client_id_value_value_length(id.data) > 0 &&
            *xcb_res_client_id_value_value(id.data) == static_cast<std::uint32_t>(process)) {
            clients.push_back(id.data->spec.client);
        }
    }
    return clients;
}

} // namespace

ResourceUse ResourceUse::of(pid_t process, DesktopConnection& desktop) {
    ResourceUse use;
    const auto folder = std::filesystem::path("/proc") / std::to_string(process);
    use.measures_[memory] = processNumber(process, "smaps_rollup", "Pss:");
    use.measures_[residentMemory] = processNumber(process, "status", "VmRSS:");
    use.measures_["handles"] = entries(folder / "fd");
    use.measures_["threads"] = entries(folder / "task");
    xcb_connection_t* const xcb = desktop.xcb();
    for (const std::uint32_t client : connectionsOf(process, xcb)) {
        const Reply<xcb_res_query_client_resources_reply_t> resources{
            xcb_res_query_client_resources_reply(xcb, xcb_res_query_client_resources(xcb, client), nullptr)};
        for (auto type = xcb_res_query_client_resources_types_iterator(resources.get()); type.rem > 0;
             xcb_res_type_next(&type)) {
            use.measures_["X resources"] += static_cast<long>(type.data->count);
        }
        const Reply<xcb_res_query_client_pixmap_bytes_reply_t> pixmaps{
            xcb_res_query_client_pixmap_bytes_reply(xcb, xcb_res_query_client_pixmap_bytes(xcb, client), nullptr)};
        use.measures_["X pixmap bytes"] += static_cast<long>(pixmaps->bytes);
    }
    return use;
}

std::string ResourceUse::growthSince(const ResourceUse& before) const {
    // An allocator keeps some pages more or less; a leak of a hundred bytes a time shows.
    constexpr long noise = 512;
    return listed(before, [](const std::string& name, long old, long now) {
        return now > old + (name == memory || name == residentMemory ? noise : 0);
    });
}

std::string ResourceUse::comparedTo(const ResourceUse& before) const {
    return listed(before, [](const std::string&, long, long) { return true; });
}

std::string
ResourceUse::listed(const ResourceUse& before,
                    const std::function<bool(const std::string& name, long old, long now)>& isWanted) const {
    std::ostringstream list;
    for (const auto& [name, now] : measures_) {
        const auto known = before.measures_.find(name);
        const long old = known == before.measures_.end() ? 0 : known->second;
        if (isWanted(name, old, now)) {
            list << (list.tellp() > 0 ? ", " : "") << name << ' ' << old << " -> " << now;
        }
    }
    return list.str();
}

} // namespace brisk::desktop
