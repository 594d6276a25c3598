#pragma once

#include "platform/link_opener.h"

#include <QObject>

#include <functional>

namespace brisk::qt {

/// Links and folders by the user's preferred programs; files by the file manager that answers on the session bus
/// (freedesktop.org File Manager interface).
class LinkOpener final : public brisk::LinkOpener {
public:
    /// No desktop here has a page for the permission: `explainTrust` says instead what is missing.
    explicit LinkOpener(std::function<void()> explainTrust);

    void openURL(std::string_view url) override;
    void selectFile(const std::filesystem::path& file) override;

private:
    std::function<void()> explainTrust_;
    /// Owns the calls that have not been answered.
    QObject context_;
};

} // namespace brisk::qt
