#include "program/notifier_panel.h"
#include "program/running_program.h"

#include <QCoreApplication>
#include <QDBusConnection>

#include <algorithm>

namespace brisk::desktop {
namespace {

// A panel across the bottom with nothing but a tray in it.
constexpr const char* panelConfiguration = R"(
panel_items = S
panel_size = 100% 30
panel_position = bottom center horizontal
systray_padding = 2 2 2
)";

/// A tray that takes items in as windows.
class EmbeddingTray : public RunningProgram {
protected:
    void SetUp() override {
        if (!isInstalled("tint2")) {
            GTEST_SKIP() << "tint2 is not installed";
        }
        startWindowManager();
    }

    void startPanel() {
        const std::string configuration = server_.home().write("panel", panelConfiguration);
        panel_ =
            std::make_unique<Process>(std::vector<std::string>{"tint2", "-c", configuration}, server_.environment());
    }
    /// The item in the panel, once it is there.
    std::optional<PixelRect> item() {
        std::optional<PixelRect> rect;
        (void)waitUntil([&] {
            const auto windows = programWindows();
            rect = windows.size() == 1 ? desktop_.clientRect(windows.front()) : std::nullopt;
            return rect && rect->y >= 870;
        });
        return rect;
    }

    std::unique_ptr<Process> panel_;
};

TEST_F(EmbeddingTray, GetsTheItemWhenItComesAndWhenItComesBack) {
    start();
    startPanel();
    EXPECT_TRUE(item());
    panel_.reset();
    ASSERT_TRUE(waitUntil([&] { return programWindows().empty(); }));
    startPanel();
    EXPECT_TRUE(item());
}

TEST_F(EmbeddingTray, OpensTheMenuWithEitherButton) {
    startPanel();
    start();
    const auto place = item();
    ASSERT_TRUE(place);
    const xcb_window_t window = openWindow();
    struct Row {
        std::uint8_t button;
        int itemsDown;
        PixelRect frame;
    };
    const PixelRect left{.x = 0, .y = 0, .width = 720, .height = 870};
    const PixelRect right{.x = 720, .y = 0, .width = 720, .height = 870};
    for (const Row& row : {Row{1, 2, right}, Row{3, 1, left}}) {
        SCOPED_TRACE(static_cast<int>(row.button));
        Pointer pointer(desktop_);
        pointer.moveTo(place->x + place->width / 2, place->y + place->height / 2);
        pointer.down(row.button);
        pointer.up(row.button);
        ASSERT_TRUE(waitUntil([&] { return programWindows().size() == 2; })) << "the item and its menu";
        for (int i = 0; i < row.itemsDown; ++i) {
            press(Key::down, {});
        }
        press(Key::returnKey, {});
        EXPECT_TRUE(comesTo(window, row.frame));
        EXPECT_TRUE(waitUntil([&] { return programWindows().size() == 1; }));
    }
}

/// A panel that shows items over a message bus of its own.
class NotifierTray : public RunningProgram {
protected:
    void SetUp() override {
        if (!isInstalled("dbus-daemon")) {
            GTEST_SKIP() << "dbus-daemon is not installed";
        }
        startWindowManager();
        bus_ = std::make_unique<Process>(
            std::vector<std::string>{"dbus-daemon", "--session", "--print-address", "--nofork"}, server_.environment());
        ASSERT_TRUE(waitUntil([&] { return bus_->output().ends_with('\n'); }));
        address_ = bus_->output();
        address_.pop_back();
        connection_ = std::make_unique<QDBusConnection>(
            QDBusConnection::connectToBus(QString::fromStdString(address_), connectionName));
        ASSERT_TRUE(connection_->isConnected());
    }
    void TearDown() override {
        program_.reset();
        connection_.reset();
        QDBusConnection::disconnectFromBus(connectionName);
    }

    void startOnBus() { start({{"DBUS_SESSION_BUS_ADDRESS", address_}}); }
    static bool becomes(const std::function<bool()>& condition) {
        return waitUntil([&] {
            QCoreApplication::processEvents();
            return condition();
        });
    }
    static bool hasItem(const NotifierPanel& panel) {
        return becomes([&] { return panel.items().size() == 1; });
    }
    static std::optional<ExportedItem> named(const QString& label, const std::optional<ExportedItem>& menu) {
        for (const QDBusVariant& child : menu ? menu->children : QList<QDBusVariant>()) {
            const auto item = qdbus_cast<ExportedItem>(child.variant());
            if (item.label() == label && item.properties.value(QStringLiteral("visible"), true).toBool()) {
                return item;
            }
        }
        return std::nullopt;
    }

    const QString connectionName = QStringLiteral("panel");
    std::unique_ptr<Process> bus_;
    std::string address_;
    std::unique_ptr<QDBusConnection> connection_;
};

TEST_F(NotifierTray, ShowsTheMenuAndItsCommandsWork) {
    settings_ = R"({"hasCompletedOnboarding": true, "customWindowLayouts": [{"id": "A", "name": "Right third",
        "selection": {"columns": 3, "rows": 1, "column": 2, "row": 0, "columnSpan": 1, "rowSpan": 1}}]})";
    NotifierPanel panel(*connection_, NotifierPanel::Host::present);
    startOnBus();
    ASSERT_TRUE(hasItem(panel));
    const xcb_window_t window = openWindow();

    const auto menu = panel.openMenu();
    const auto heading = named(QStringLiteral("Window Layouts"), menu);
    ASSERT_TRUE(heading);
    EXPECT_FALSE(heading->properties.value(QStringLiteral("enabled"), true).toBool());
    const auto right = named(QStringLiteral("Right Half"), menu);
    ASSERT_TRUE(right);
    EXPECT_EQ(qdbus_cast<QList<QStringList>>(right->properties.value(QStringLiteral("shortcut"))),
              QList<QStringList>({{"Control", "Alt", "Right"}}));
    panel.click(*right);
    EXPECT_TRUE(comesTo(window, rightHalf));
    const auto third = named(QStringLiteral("Right third"), named(QStringLiteral("Custom Layouts"), menu));
    ASSERT_TRUE(third);
    panel.click(*third);
    EXPECT_TRUE(comesTo(window, {.x = 960, .y = 0, .width = 480, .height = 900}));

    // The same items as long as the menu says the same: a panel may answer with what it was told before.
    const auto again = named(QStringLiteral("Right Half"), panel.openMenu());
    ASSERT_TRUE(again);
    EXPECT_EQ(again->id, right->id);
}

TEST_F(NotifierTray, IsFoundHoweverLateAndAgain) {
    startOnBus();
    {
        // The list of items is there before anything that shows it.
        NotifierPanel panel(*connection_, NotifierPanel::Host::absent);
        QCoreApplication::processEvents();
        panel.addHost();
        EXPECT_TRUE(hasItem(panel));
    }
    const NotifierPanel panel(*connection_, NotifierPanel::Host::present);
    ASSERT_TRUE(hasItem(panel));
    EXPECT_TRUE(panel.openMenu());
}

TEST_F(NotifierTray, MayGoWithItsBus) {
    {
        const NotifierPanel panel(*connection_, NotifierPanel::Host::present);
        startOnBus();
        ASSERT_TRUE(hasItem(panel));
    }
    bus_.reset();
    expectAnswersTheNextHotKey();
}

} // namespace
} // namespace brisk::desktop
