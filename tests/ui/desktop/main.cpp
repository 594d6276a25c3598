#include "ui/desktop/virtual_screen.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <memory>

namespace brisk::desktop {

namespace {
std::unique_ptr<VirtualServer> server;
} // namespace

VirtualServer& virtualScreen() {
    return *server;
}

} // namespace brisk::desktop

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests)) {
        return RUN_ALL_TESTS();
    }
    using namespace brisk::desktop;
    server = std::make_unique<VirtualServer>(PixelSize{.width = 1800, .height = 800});
    server->setMonitors({{.area = leftMonitor}, {.area = primaryMonitor, .isPrimary = true}});
    for (const auto& [name, value] : server->environment()) {
        qputenv(name.c_str(), QByteArray::fromStdString(value));
    }
    qputenv("QT_QPA_PLATFORM", "xcb");
    int result = 0;
    {
        const QApplication application(argc, argv);
        result = RUN_ALL_TESTS();
    }
    server.reset();
    return result;
}
