#include "app/Inputs.h"

#include "app/Options.h"
#include "app/Platform.h"

#include <algorithm>
#include <system_error>

namespace convfile::app {

namespace {

namespace fs = std::filesystem;

/// Lists one named folder.
class Walk {
public:
    Walk(Inputs& inputs, const fs::path& without) : inputs_(inputs), without_(without) {}

    void AddBelow(const fs::path& folder, const fs::path& below) {
        std::error_code error;
        std::vector<fs::directory_entry> entries;
        for (fs::directory_iterator next(folder, error), end; !error && next != end;
             next.increment(error))
            entries.push_back(*next);
        if (error)
            inputs_.unreadable.push_back(NameOf(folder));
        std::ranges::sort(
            entries, {}, [](const fs::directory_entry& entry) -> const auto& {
                return entry.path().native(); // all have the same parent
            });
        for (const fs::directory_entry& entry : entries)
            Add(entry, below);
    }

private:
    void Add(const fs::directory_entry& entry, const fs::path& below) {
        std::error_code error;
        if (IsHidden(entry.path()))
            return;
        if (entry.is_regular_file(error)) {
            inputs_.files.push_back({.file = NameOf(entry.path()),
                                     .below = below,
                                     .folder = inputs_.folders.size() - 1});
        } else if (entry.is_directory(error) && !IsLinkToFolder(entry.path()) &&
                   (without_.empty() || !fs::equivalent(entry.path(), without_, error))) {
            AddBelow(entry.path(), below / entry.path().filename());
        }
    }

    Inputs& inputs_;
    const fs::path& without_;
};

} // namespace

Inputs FindInputs(const std::vector<std::string>& names, const fs::path& without) {
    Inputs inputs;
    for (const std::string& name : names) {
        std::error_code error;
        if (name == kStandardInput || !fs::is_directory(PathOf(name), error)) {
            inputs.files.push_back({.file = name});
            continue;
        }
        inputs.folders.push_back(name);
        Walk(inputs, without).AddBelow(PathOf(name), {});
    }
    return inputs;
}

} // namespace convfile::app
