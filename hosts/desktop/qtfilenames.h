// Files as programs hand them to each other: native bytes of paths here, URLs there.
#pragma once

#include <memory>
#include <string>
#include <vector>

class QMimeData;

namespace vx3::desktop {

// Of local files only. A URL keeps the bytes of a name also where they are no UTF-8.
std::vector<std::string> PathsOf(const QMimeData& data);
std::unique_ptr<QMimeData> MimeOf(const std::vector<std::string>& paths);

} // namespace vx3::desktop
