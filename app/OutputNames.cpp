#include "app/OutputNames.h"

#include "app/Options.h"
#include "app/Platform.h"
#include "routines/FileName.h"
#include "views/Display.h"

#include <algorithm>
#include <cwctype>
#include <functional>
#include <system_error>
#include <unordered_map>
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

using Name = fs::path::string_type;

/// The same for all names that the system takes for one.
Name Folded(Name name) {
#if defined(_WIN32)
    std::ranges::transform(name, name.begin(), std::towlower);
#endif
    return name;
}

/// A folder, whichever way it is named.
struct Folder {
    fs::path path; ///< without links
    bool isThere = false;
};

/// What all paths of one file have in common, also where there is none yet.
struct Place {
    const Folder* folder = nullptr;
    Name name; ///< folded

    bool operator==(const Place&) const = default;
};

struct HashOfPlace {
    std::size_t operator()(const Place& place) const {
        return std::hash<const Folder*>()(place.folder) ^ std::hash<Name>()(place.name);
    }
};

/// Folders have many files: each is resolved once.
class Finder {
public:
    const Folder& FolderOf(const fs::path& path) {
        const auto [found, isNew] = named_.try_emplace(path.native());
        if (isNew) {
            const fs::path bare = path.has_filename() ? path : path.parent_path(); // no last slash
            fs::path resolved = Resolved(bare.empty() ? "." : bare);
            std::error_code error;
            const bool isThere = fs::exists(resolved, error);
            Folder& folder = folders_[Folded(resolved.native())];
            folder = {.path = std::move(resolved), .isThere = isThere};
            found->second = &folder;
        }
        return *found->second;
    }
    Place Of(const fs::path& path) {
        const Folder& folder = FolderOf(path.parent_path());
        return folder.isThere ? WithLinks(folder, path) : PlaceIn(folder, path.filename());
    }
    Place Of(const Folder& folder, const fs::path& name) {
        return folder.isThere ? WithLinks(folder, folder.path / name) : PlaceIn(folder, name);
    }

private:
    static fs::path Resolved(const fs::path& path) {
        std::error_code error;
        const fs::path full = fs::weakly_canonical(fs::absolute(path, error), error);
        return error ? path : full;
    }
    static Place PlaceIn(const Folder& folder, const fs::path& name) {
        return {.folder = &folder, .name = Folded(name.native())};
    }
    Place WithLinks(const Folder& folder, const fs::path& path) {
        std::error_code error;
        if (!fs::is_symlink(path, error))
            return PlaceIn(folder, path.filename());
        const fs::path file = Resolved(path);
        return PlaceIn(FolderOf(file.parent_path()), file.filename());
    }

    std::unordered_map<Name, const Folder*> named_;
    std::unordered_map<Name, Folder> folders_; ///< without links, folded
};

/// Where one file is, and where its output may go.
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
        Places& places = all.emplace_back();
        places.folder = folder / input.below;
        (places.brief = path.stem()) += extension;
        (places.full = path.filename()) += extension;
        places.file = finder.Of(path);
        const Folder& outputs = finder.FolderOf(places.folder);
        places.briefOutput = finder.Of(outputs, places.brief);
        places.fullOutput = finder.Of(outputs, places.full);
    }
    return all;
}

/// How many files would have their output at a place under the short name; none for one that only
/// a long name leads to.
using Counts = std::unordered_map<Place, std::size_t, HashOfPlace>;

Counts CountBrief(const std::vector<Places>& all) {
    Counts counts;
    for (const Places& places : all) {
        ++counts[places.briefOutput];
        counts.try_emplace(places.fullOutput);
    }
    return counts;
}

/// Takes out those found files that lie where an output might go or beside another of their stem,
/// and that nothing fits.
std::size_t TakeOut(Inputs& inputs, std::vector<Places>& all, const FitsNothing& fitsNothing) {
    const Counts counts = CountBrief(all);
    std::size_t kept = 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
        const Input& input = inputs.files[i];
        const bool mayBeNone = counts.at(all[i].briefOutput) > 1 || counts.contains(all[i].file);
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

    const Counts counts = CountBrief(all);
    std::unordered_map<Place, const Input*, HashOfPlace> written;
    std::vector<fs::path> outputs;
    outputs.reserve(all.size());
    for (std::size_t i = 0; i < all.size(); ++i) {
        const Places& places = all[i];
        const Input& input = inputs.files[i];
        const bool isShared = counts.at(places.briefOutput) > 1;
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
