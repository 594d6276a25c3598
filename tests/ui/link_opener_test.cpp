#include "platform/qt/link_opener.h"

#include "support/temporary_folder.h"

#include <QDesktopServices>
#include <QTest>
#include <QUrl>

#include <gtest/gtest.h>

#include <fstream>

namespace brisk {
namespace {

/// Stands in for the desktop's programs.
class OpenedLinks final : public QObject {
    Q_OBJECT

public:
    OpenedLinks() {
        for (const char* scheme : {"file", "https"}) {
            QDesktopServices::setUrlHandler(scheme, this, "open");
        }
    }
    ~OpenedLinks() override {
        for (const char* scheme : {"file", "https"}) {
            QDesktopServices::unsetUrlHandler(scheme);
        }
    }
    QList<QUrl> urls;

public slots:
    void open(const QUrl& url) { urls.append(url); }
};

TEST(LinkOpener, LeadsEachLinkWhereItIsShown) {
    OpenedLinks opened;
    int timesExplained = 0;
    qt::LinkOpener links([&] { ++timesExplained; });
    links.openURL(accessibilityPrivacySettingsLink);
    EXPECT_EQ(timesExplained, 1);
    EXPECT_TRUE(opened.urls.isEmpty());
    links.openURL("https://brisk.example/a%20b");
    EXPECT_EQ(opened.urls, QList<QUrl>{QUrl("https://brisk.example/a%20b")});
    EXPECT_EQ(timesExplained, 1);
}

TEST(LinkOpener, WithoutAFileManagerToAskTheClosestFolderIsOpened) {
    const TemporaryFolder folder;
    const auto file = folder.path() / "settings #1.json";
    std::ofstream(file) << "{}";
    for (const auto& wanted : {file, folder.path() / "not" / "yet" / "there.json"}) {
        OpenedLinks opened;
        qt::LinkOpener links([] {});
        links.selectFile(wanted);
        // Where there is a session bus without a file manager, its answer comes first.
        ASSERT_TRUE(QTest::qWaitFor([&] { return !opened.urls.isEmpty(); }, 5000));
        EXPECT_EQ(opened.urls, QList<QUrl>{QUrl::fromLocalFile(QString::fromStdString(folder.path().string()))});
    }
}

} // namespace
} // namespace brisk

#include "link_opener_test.moc"
