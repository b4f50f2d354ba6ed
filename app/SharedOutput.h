#pragma once

#include "views/Conversion.h"
#include "views/Output.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace convfile::app {

/// One output that several files share, each behind the one before. Files may be rendered at the
/// same time: the one whose turn it is writes at once, the text of others is kept until then.
class SharedOutput {
public:
    /// True once all before a file are written.
    using IsTurn = std::function<bool()>;

    /// What there is of one file.
    struct Part {
        bool isBegun = false;          ///< the output has the beginning of it
        std::vector<std::string> kept; ///< what the output has not
    };

    /// `files` is how many may come.
    SharedOutput(std::string_view view, std::ostream& stream, std::size_t files);

    /// Throws std::bad_alloc; where the part is begun, the output is of no use after that.
    void Render(const views::Conversion& conversion, const IsTurn& isTurn, Part& part);
    /// Ends a part in its turn.
    void Finish(const Part& part);
    /// Writes now what may wait for more.
    void Flush() { sink_.Flush(); }
    /// False where something could not be written.
    bool End();

private:
    std::string view_;
    views::Sink sink_;
    std::unique_ptr<views::Output> output_;
};

} // namespace convfile::app
