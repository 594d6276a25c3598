#pragma once

#include <QUrl>
#include <QWidget>

#include <functional>
#include <string>

namespace brisk {

/// The About pane: what the program is called, which version it is, and who made it.
class BriskAboutView final : public QWidget {
    Q_OBJECT

public:
    struct Texts {
        std::string version;
        /// Empty or no web address: there is no website to open.
        std::string websiteAddress;
        std::string makerLine;
    };
    struct Actions {
        std::function<void(const std::string& url)> openWebsite;
        std::function<void()> showAcknowledgements;
    };

    BriskAboutView(const Texts& texts, const Actions& actions, QWidget* parent = nullptr);
};

} // namespace brisk
