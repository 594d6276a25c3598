#pragma once

#include "platform/link_opener.h"
#include "platform/simulated/call_log.h"

namespace brisk::simulated {

class LinkOpener final : public brisk::LinkOpener {
public:
    explicit LinkOpener(CallLog& log) : log_(log) {}
    void openURL(std::string_view url) override { log_.record("openURL " + std::string(url)); }
    void selectFile(const std::filesystem::path& file) override { log_.record("selectFile " + file.string()); }

private:
    CallLog& log_;
};

} // namespace brisk::simulated
