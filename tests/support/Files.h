#pragma once

#include "entry/FormatTable.h"

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

/// A reference file, beside it the field book it must give. The paths are relative, so that what a
/// conversion says of its file is the same on every machine.
struct Golden {
    std::string format; ///< short name of the format, which its folder is named after
    std::filesystem::path file;
    std::filesystem::path json;
    /// The book that it must give by the complete rules; empty: none is kept.
    std::filesystem::path completeJson = {};

    std::string Path() const { return file.generic_string(); }
};

/// All reference files that can be converted here, folder by folder. A converter joins by adding
/// its folder. The folder that has them all becomes the process's own.
std::vector<Golden> GoldenFiles();

/// True where files of that format can be converted here: not every build reads databases.
bool CanConvert(const Format& format);

} // namespace convfile::test
