#include "tests/support/Files.h"

#include <algorithm>
#include <atomic>
#include <fstream>
#include <iterator>
#include <random>

namespace convfile::test {

namespace fs = std::filesystem;

TempFolder::TempFolder() {
    static std::atomic<unsigned> count{0};
    std::random_device random;
    const std::string name =
        "convfile-test-" + std::to_string(random()) + "-" + std::to_string(count++);
    // In memory where the system has such a folder: the tests write a hundred thousand small files.
    const fs::path memory = "/dev/shm";
    folder_ = (fs::is_directory(memory) ? memory : fs::temp_directory_path()) / name;
    fs::create_directories(folder_);
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
}

std::string TempFolder::Write(const std::string& name, std::string_view bytes) const {
    WriteBytes(folder_ / name, bytes);
    return Path(name);
}

std::string ReadBytes(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

void WriteBytes(const fs::path& file, std::string_view bytes) {
    std::ofstream stream(file, std::ios::binary);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

bool CanConvert([[maybe_unused]] const Format& format) {
#if defined(CONVFILE_READS_DATABASES)
    return true;
#else
    return format.kind != FormatKind::Database;
#endif
}

std::vector<Golden> GoldenFiles() {
    fs::current_path(CONVFILE_GOLDEN_FOLDER);
    std::vector<Golden> files;
    for (const auto& folder : fs::directory_iterator(".")) {
        const std::string format = folder.path().filename().string();
        const Format* const known = FormatByName(format);
        if (known && !CanConvert(*known))
            continue;
        for (const auto& entry : fs::directory_iterator(format)) {
            if (entry.path().extension() == ".json")
                continue;
            fs::path json = entry.path();
            json.replace_extension(".json");
            fs::path complete = entry.path();
            complete.replace_extension(".complete.json");
            if (!fs::exists(complete))
                complete.clear();
            files.push_back({format, entry.path(), json, complete});
        }
    }
    std::ranges::sort(files, {}, [](const Golden& golden) { return golden.file; });
    return files;
}

} // namespace convfile::test
