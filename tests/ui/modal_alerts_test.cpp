#include "ui/modal_alerts.h"

#include "app/no_feed_updater.h"
#include "ui/qt_application.h"
#include "ui/trust_explanation.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>

namespace brisk {
namespace {

/// Runs once a modal dialog is up, and closes what is still open then.
void whileModal(const std::function<void(QMessageBox&)>& act) {
    QTimer::singleShot(0, [act] {
        const QPointer<QMessageBox> box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_TRUE(box && QTest::qWaitForWindowActive(box));
        act(*box);
        box->reject();
    });
}

TEST(ModalAlerts, ShowsTheTextsToTheLetterAndClosesByKey) {
    ModalAlerts alerts;
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape, Qt::Key_Space}) {
        whileModal([&](QMessageBox& box) {
            EXPECT_TRUE(alerts.isRunningModal());
            EXPECT_EQ(box.text(), "Could not apply <b>Wide</b>");
            EXPECT_EQ(box.informativeText(), "a & b did not accept the requested window frame.");
            for (const QLabel* label : box.findChildren<QLabel*>()) {
                EXPECT_TRUE(label->text().isEmpty() || label->textFormat() == Qt::PlainText);
            }
            ASSERT_EQ(box.buttons().size(), 1);
            EXPECT_EQ(box.buttons().front()->text(), "OK");
            ASSERT_NE(box.focusWidget(), nullptr) << "the keyboard reaches it";
            QTest::keyClick(box.focusWidget(), key);
            EXPECT_FALSE(box.isVisible());
        });
        alerts.runModal({.messageText = "Could not apply <b>Wide</b>",
                         .informativeText = "a & b did not accept the requested window frame."});
        EXPECT_FALSE(alerts.isRunningModal());
    }
}

TEST(ModalAlerts, AreUnwoundByTheEndOfTheProgramAndNotReplaced) {
    ModalAlerts alerts;
    QtApplication shell([](const MenuItem&) {});
    int returned = 0;
    QTimer::singleShot(0, [&] {
        QTimer::singleShot(0, [&] {
            shell.terminate();
            alerts.runModal({.messageText = "Another"});
            ++returned;
        });
        alerts.runModal({.messageText = "One"});
        ++returned;
    });
    EXPECT_EQ(QApplication::exec(), 0);
    EXPECT_EQ(returned, 2);
}

TEST(NoFeedUpdater, SaysThatItCannotCheck) {
    ModalAlerts alerts;
    NoFeedUpdater updater(alerts);
    bool isSaid = false;
    whileModal([&](QMessageBox& box) {
        isSaid = box.text() == "Brisk cannot check for updates";
        updater.checkForUpdates();
    });
    updater.checkForUpdates();
    EXPECT_TRUE(isSaid);
    EXPECT_FALSE(alerts.isRunningModal());
}

TEST(TrustExplanation, WaitsForNobodyAndIsShownOnce) {
    const ModalAlerts alerts;
    TrustExplanation explanation;
    const auto visible = [] {
        QWidgetList boxes = QApplication::topLevelWidgets();
        boxes.removeIf([](const QWidget* window) {
            return !window->isVisible() || qobject_cast<const QMessageBox*>(window) == nullptr;
        });
        return boxes;
    };
    explanation.show();
    explanation.show();
    ASSERT_EQ(visible().size(), 1);
    EXPECT_FALSE(alerts.isRunningModal()) << "shortcuts work beside it";
    QTest::keyClick(visible().front(), Qt::Key_Return);
    EXPECT_EQ(visible().size(), 0);
    explanation.show();
    EXPECT_EQ(visible().size(), 1);
}

} // namespace
} // namespace brisk
