#include "qtfilenames.h"

#include <QMimeData>
#include <QUrl>

namespace vx3::desktop {

std::vector<std::string> PathsOf(const QMimeData& data)
{
    std::vector<std::string> paths;
    for (const QUrl& url : data.urls()) {
        if (!url.isLocalFile())
            continue;
        const QByteArray bytes = QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
        if (bytes.startsWith('/'))
            paths.emplace_back(bytes.constData(), static_cast<size_t>(bytes.size()));
    }
    return paths;
}

std::unique_ptr<QMimeData> MimeOf(const std::vector<std::string>& paths)
{
    QList<QUrl> urls;
    for (const std::string& path : paths)
        urls.append(QUrl::fromEncoded("file://" + QByteArray::fromStdString(path).toPercentEncoding("/")));
    auto data = std::make_unique<QMimeData>();
    data->setUrls(urls);
    return data;
}

} // namespace vx3::desktop
