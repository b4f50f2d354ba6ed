#include "app/OutputNames.h"

#include "app/Options.h"
#include "app/Platform.h"
#include "routines/FileName.h"
#include "views/Display.h"

#include <algorithm>
#include <cwctype>
#include <map>
#include <set>
#include <system_error>
#include <unordered_map>
#include <utility>

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
using Places = std::set<Place>;

/// What all paths of one place have in common, also where there is no file.
class Finder {
public:
    Place Of(const fs::path& path) {
        std::error_code error;
        fs::path place = fs::is_symlink(path, error)
                             ? Resolved(path)
                             : FolderOf(path.parent_path()) / path.filename();
        Place text = place.native();
#if defined(_WIN32)
        std::ranges::transform(text, text.begin(), std::towlower); // names there have no case
#endif
        return text;
    }

private:
    static fs::path Resolved(const fs::path& path) {
        std::error_code error;
        const fs::path full = fs::weakly_canonical(fs::absolute(path, error), error);
        return error ? path : full;
    }
    /// Folders have many files: each is resolved once.
    const fs::path& FolderOf(const fs::path& folder) {
        const auto [found, isNew] = folders_.try_emplace(folder.native());
        if (isNew)
            found->second = Resolved(folder.empty() ? "." : folder);
        return found->second;
    }

    std::unordered_map<Place, fs::path> folders_;
};

/// Takes out those found files that `mayBeNone` picks and nothing fits.
template <class Pick>
std::size_t TakeOut(Inputs& inputs, const Pick& mayBeNone, const FitsNothing& fitsNothing) {
    return std::erase_if(inputs.files, [&](const Input& input) {
        return input.IsFound() && mayBeNone(input) && fitsNothing(input);
    });
}

/// Names for the outputs of all files: the same file has the same name in both.
class Names {
public:
    Names(const fs::path& folder, std::string_view extension)
        : folder_(folder), extension_("." + std::string(extension)) {}

    /// Without its own extension.
    fs::path Short(const Input& input) const {
        fs::path name = Bare(input).stem();
        return folder_ / input.below / (name += extension_);
    }
    /// With it.
    fs::path Long(const Input& input) const {
        fs::path name = Bare(input);
        return folder_ / input.below / (name += extension_);
    }

private:
    static fs::path Bare(const Input& input) { return PathOf(input.file).filename(); }

    fs::path folder_;
    std::string extension_;
};

/// How many files would have each short name.
std::map<Place, std::size_t> CountShort(const Inputs& inputs, const Names& names, Finder& finder) {
    std::map<Place, std::size_t> count;
    for (const Input& input : inputs.files)
        ++count[finder.Of(names.Short(input))];
    return count;
}

} // namespace

std::size_t TakeOutOutput(Inputs& inputs, const fs::path& output, const FitsNothing& fitsNothing,
                          std::string& problem) {
    Finder finder;
    const Place place = finder.Of(output);
    const auto isOutput = [&](const Input& input) {
        std::error_code error;
        const fs::path path = PathOf(input.file);
        return input.file != kStandardInput && (fs::equivalent(path, output, error) ||
                                                (!input.IsFound() && finder.Of(path) == place));
    };
    const std::size_t takenOut = TakeOut(inputs, isOutput, fitsNothing);
    if (std::ranges::any_of(inputs.files, isOutput))
        problem = IsAnInput(NameOf(output));
    return takenOut;
}

std::vector<fs::path> NameOutputs(Inputs& inputs, const fs::path& folder,
                                  std::string_view extension, const FitsNothing& fitsNothing,
                                  std::size_t& takenOut, std::string& problem) {
    const Names names(folder, extension);
    Finder finder;
    Places mayBeWritten;
    for (const Input& input : inputs.files) {
        mayBeWritten.insert(finder.Of(names.Short(input)));
        mayBeWritten.insert(finder.Of(names.Long(input)));
    }
    const auto sharing = CountShort(inputs, names, finder);
    const auto mayBeNone = [&](const Input& input) {
        return sharing.at(finder.Of(names.Short(input))) > 1 ||
               mayBeWritten.contains(finder.Of(PathOf(input.file)));
    };
    takenOut = TakeOut(inputs, mayBeNone, fitsNothing);

    const auto stillSharing = CountShort(inputs, names, finder);
    std::map<Place, const Input*> written;
    std::vector<fs::path> outputs;
    for (const Input& input : inputs.files) {
        const fs::path brief = names.Short(input);
        outputs.push_back(stillSharing.at(finder.Of(brief)) > 1 ? names.Long(input) : brief);
        const auto [first, isNew] = written.emplace(finder.Of(outputs.back()), &input);
        if (!isNew) {
            problem = ShownName(first->second->file) + " and " + ShownName(input.file) +
                      " would have the same output, " + ShownName(NameOf(outputs.back()));
            return {};
        }
    }
    for (const Input& input : inputs.files) {
        if (input.file != kStandardInput && written.contains(finder.Of(PathOf(input.file)))) {
            problem = IsAnInput(input.file);
            return {};
        }
    }
    return outputs;
}

} // namespace convfile::app
