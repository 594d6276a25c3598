#include "ui/web_address.h"

#include <QString>

namespace brisk {

QUrl webAddress(std::string_view address) {
    const QUrl url(QString::fromUtf8(address.data(), static_cast<qsizetype>(address.size())), QUrl::StrictMode);
    const bool isWeb = url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http");
    return url.isValid() && isWeb && !url.host().isEmpty() ? url : QUrl();
}

} // namespace brisk
