#include "ui/application_icon.h"

#include "ui/symbols.h"

#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QIconEngine>
#include <QImageReader>
#include <QPainter>

#include <algorithm>
#include <vector>

namespace brisk {

namespace {

/// Named, since to find a format out every image plugin is loaded.
constexpr const char* format = "png";

/// Reads a file only when that size is shown: most starts show none.
class FilesIconEngine final : public QIconEngine {
public:
    struct File {
        QString name;
        QSize size;
    };
    explicit FilesIconEngine(std::vector<File> files) : files_(std::move(files)) {}

    void paint(QPainter* painter, const QRect& rectangle, QIcon::Mode mode, QIcon::State state) override {
        const double ratio = painter->device()->devicePixelRatioF();
        painter->drawPixmap(rectangle, pixmap(rectangle.size() * ratio, mode, state));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode, QIcon::State) override {
        const auto fitting =
            std::ranges::find_if(files_, [&](const File& file) { return file.size.width() >= size.width(); });
        QImageReader reader(fitting != files_.end() ? fitting->name : files_.back().name, format);
        const QPixmap read = QPixmap::fromImageReader(&reader);
        return read.isNull() || read.size() == size ? read
                                                    : read.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }

    /// Those that a desktop shows a window by; what is larger would burden the X server with every window of ours.
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override {
        constexpr int largestOfWindows = 128;
        QList<QSize> sizes;
        for (const File& file : files_) {
            if (file.size.width() <= largestOfWindows) {
                sizes.append(file.size);
            }
        }
        return sizes;
    }

    QIconEngine* clone() const override { return new FilesIconEngine(*this); }

private:
    /// From small to large; at least one.
    std::vector<File> files_;
};

} // namespace

QStringList applicationIconResource() {
    QStringList files;
    for (const QFileInfo& file : QDir(QStringLiteral(":/icon")).entryInfoList()) {
        files.append(file.filePath());
    }
    return files;
}

QIcon applicationIcon(const QColor& symbolColor, const QStringList& bundleResource) {
    std::vector<FilesIconEngine::File> files;
    for (const QString& name : bundleResource) {
        if (const QSize size = QImageReader(name, format).size(); size.isValid()) {
            files.push_back({name, size});
        }
    }
    if (!files.empty()) {
        std::ranges::sort(files, {}, [](const FilesIconEngine::File& file) { return file.size.width(); });
        return QIcon(new FilesIconEngine(std::move(files)));
    }
    const QIcon ofWindows = QGuiApplication::windowIcon();
    return ofWindows.isNull() ? symbolIcon(QStringLiteral("flame.fill"), symbolColor) : ofWindows;
}

} // namespace brisk
