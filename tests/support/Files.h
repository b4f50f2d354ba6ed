#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace convfile::test {

/// A folder of its own, removed with all it holds.
class TempFolder {
public:
    TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder();

    /// Writes a file into the folder; gives its path.
    std::string Write(const std::string& name, std::string_view bytes) const;
    std::string Path(const std::string& name) const { return (folder_ / name).string(); }

private:
    std::filesystem::path folder_;
};

std::string ReadBytes(const std::filesystem::path& file);
void WriteBytes(const std::filesystem::path& file, std::string_view bytes);

/// A reference file, beside it the field book it must give.
struct Golden {
    std::string format; ///< short name of the format, which its folder is named after
    std::filesystem::path file;
    std::filesystem::path json;
};

/// All reference files, folder by folder. A converter joins by adding its folder.
std::vector<Golden> GoldenFiles();

} // namespace convfile::test
