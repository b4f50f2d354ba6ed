#include "app/OutputNames.h"

#include "app/Options.h"
#include "app/Platform.h"
#include "routines/FileName.h"
#include "views/Display.h"

#include <algorithm>
#include <cwctype>
#include <system_error>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace convfile::app {

using namespace views;

namespace {

namespace fs = std::filesystem;

std::string ShownName(const std::string& name) {
    return ShownUtf8(Utf8OfName(name));
}

std::string IsAnInput(const std::string& name) {
    return ShownName(name) + ": is one of the files to convert";
}

using Place = fs::path::string_type;

/// What all paths of one place have in common, also where there is no file.
class Finder {
public:
    Place Of(const fs::path& folder, const fs::path& name) {
        const Folder& known = FolderOf(folder);
        std::error_code error;
        Place place;
        if (known.isThere && fs::is_symlink(folder / name, error))
            place = Resolved(folder / name).native();
        else
            place = known.begin + name.native();
#if defined(_WIN32)
        std::ranges::transform(place, place.begin(), std::towlower); // names there have no case
#endif
        return place;
    }
    Place Of(const fs::path& path) {
        return Of(path.parent_path(), path.filename());
    }

private:
    struct Folder {
        Place begin; ///< of the places of what lies in it
        bool isThere = false;
    };

    static fs::path Resolved(const fs::path& path) {
        std::error_code error;
        const fs::path full = fs::weakly_canonical(fs::absolute(path, error), error);
        return error ? path : full;
    }
    /// Folders have many files: each is resolved once.
    const Folder& FolderOf(const fs::path& folder) {
        const auto [found, isNew] = folders_.try_emplace(folder.native());
        if (isNew) {
            const fs::path path = folder.empty() ? "." : folder;
            std::error_code error;
            found->second = {.begin = (Resolved(path) / "").native(),
                             .isThere = fs::exists(path, error)};
        }
        return found->second;
    }

    std::unordered_map<Place, Folder> folders_;
};

/// Where one file is, and where its output may go: the same file has the same place in both.
struct Places {
    fs::path folder; ///< of the output
    fs::path brief;  ///< its name without the file's own extension
    fs::path full;   ///< its name with it
    Place file;
    Place briefOutput;
    Place fullOutput;
};

std::vector<Places> PlacesOf(const Inputs& inputs, const fs::path& folder,
                             std::string_view extension, Finder& finder) {
    std::vector<Places> all;
    all.reserve(inputs.files.size());
    for (const Input& input : inputs.files) {
        const fs::path path = PathOf(input.file);
        Places places;
        places.folder = folder / input.below;
        (places.brief = path.stem()) += extension;
        (places.full = path.filename()) += extension;
        places.file = finder.Of(path);
        places.briefOutput = finder.Of(places.folder, places.brief);
        places.fullOutput = finder.Of(places.folder, places.full);
        all.push_back(std::move(places));
    }
    return all;
}

/// How many files would have each short name.
std::unordered_map<Place, std::size_t> CountBrief(const std::vector<Places>& all) {
    std::unordered_map<Place, std::size_t> count;
    for (const Places& places : all)
        ++count[places.briefOutput];
    return count;
}

/// Takes out those found files that lie where an output might go or beside another of their stem,
/// and that nothing fits.
std::size_t TakeOut(Inputs& inputs, std::vector<Places>& all, const FitsNothing& fitsNothing) {
    std::unordered_set<Place> mayBeWritten;
    for (const Places& places : all) {
        mayBeWritten.insert(places.briefOutput);
        mayBeWritten.insert(places.fullOutput);
    }
    const auto sharing = CountBrief(all);
    std::size_t kept = 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
        const Input& input = inputs.files[i];
        const bool mayBeNone =
            sharing.at(all[i].briefOutput) > 1 || mayBeWritten.contains(all[i].file);
        if (input.IsFound() && mayBeNone && fitsNothing(input))
            continue;
        if (kept < i) {
            inputs.files[kept] = std::move(inputs.files[i]);
            all[kept] = std::move(all[i]);
        }
        ++kept;
    }
    const std::size_t takenOut = all.size() - kept;
    inputs.files.resize(kept);
    all.resize(kept);
    return takenOut;
}

} // namespace

std::size_t TakeOutOutput(Inputs& inputs, const fs::path& output, const FitsNothing& fitsNothing,
                          std::string& problem) {
    Finder finder;
    std::error_code error;
    const Place place = finder.Of(output);
    const bool isThere = fs::exists(output, error);
    return std::erase_if(inputs.files, [&](const Input& input) {
        const fs::path path = PathOf(input.file);
        const bool isOutput =
            input.file != kStandardInput && ((isThere && fs::equivalent(path, output, error)) ||
                                             (!input.IsFound() && finder.Of(path) == place));
        if (isOutput && input.IsFound() && fitsNothing(input))
            return true;
        if (isOutput)
            problem = IsAnInput(NameOf(output));
        return false;
    });
}

std::vector<fs::path> NameOutputs(Inputs& inputs, const fs::path& folder,
                                  std::string_view extension, const FitsNothing& fitsNothing,
                                  std::size_t& takenOut, std::string& problem) {
    Finder finder;
    std::vector<Places> all = PlacesOf(inputs, folder, "." + std::string(extension), finder);
    takenOut = TakeOut(inputs, all, fitsNothing);

    const auto sharing = CountBrief(all);
    std::unordered_map<Place, const Input*> written;
    std::vector<fs::path> outputs;
    outputs.reserve(all.size());
    for (std::size_t i = 0; i < all.size(); ++i) {
        const Places& places = all[i];
        const Input& input = inputs.files[i];
        const bool isShared = sharing.at(places.briefOutput) > 1;
        outputs.push_back(places.folder / (isShared ? places.full : places.brief));
        const auto [first, isNew] =
            written.emplace(isShared ? places.fullOutput : places.briefOutput, &input);
        if (!isNew) {
            problem = ShownName(first->second->file) + " and " + ShownName(input.file) +
                      " would have the same output, " + ShownName(NameOf(outputs.back()));
            return {};
        }
    }
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (inputs.files[i].file != kStandardInput && written.contains(all[i].file)) {
            problem = IsAnInput(inputs.files[i].file);
            return {};
        }
    }
    return outputs;
}

} // namespace convfile::app
