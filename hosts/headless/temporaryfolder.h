// A folder of one run of a script; removed with all that lies in it.
#pragma once

#include <filesystem>
#include <string>

#include <stdlib.h>

namespace vx3::headless {

class TemporaryFolder
{
public:
    explicit TemporaryFolder(const std::string& prefix)
    {
        std::string pattern = (std::filesystem::temp_directory_path() / (prefix + "XXXXXX")).string();
        if (mkdtemp(pattern.data()))
            path = pattern;
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        if (!path.empty())
            std::filesystem::remove_all(path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& Path() const { return path; } // empty: it could not be made

private:
    std::string path;
};

} // namespace vx3::headless
