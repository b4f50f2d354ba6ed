#pragma once

#include "export/Work.h"

#include <memory>
#include <span>
#include <string_view>

class OutputBuffer;

namespace convfile::exports {

/// Something that is made from what files gave, file by file.
class Output {
public:
    Output() = default;
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;
    virtual ~Output() = default;

    virtual void Add(const Work& work) = 0;
};

/// A kind of output; its name is that of its files' extension or of what is in them.
struct OutputKind {
    std::string_view name;
    bool oneFile; ///< a drawing: of one file only
    std::unique_ptr<Output> (*make)(OutputBuffer& out);
};

/// All kinds there are.
std::span<const OutputKind> OutputKinds();

/// The kind of that name; null where there is none.
const OutputKind* FindOutputKind(std::string_view name);

} // namespace convfile::exports
