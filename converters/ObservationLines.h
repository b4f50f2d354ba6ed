#pragma once

#include "framework/ConvGen.h"

#include <string>
#include <string_view>

/// What the two formats share that have one observation a line, each naming its station: what goes
/// into the field book. How a line is cut and where a station begins is each one's own.
class CConvObservationLines : public CConvGen {
protected:
    CConvObservationLines(CLibCmp& fieldBook, std::string* fileName);

    static constexpr std::size_t kShortestLine = 2; ///< a shorter one holds no observation

    /// The fields of a line.
    struct Fields {
        std::string_view station;
        std::string_view point;
        std::string_view instrumentHeight;
        std::string_view targetHeight;
        std::string_view zenithAngle;
        std::string_view horizontalAngle;
        std::string_view slopeDistance;
        std::string_view code;
    };

    void WriteStation(const Fields& fields);
    void WritePoint(const Fields& fields);
    /// Remarks on the fields of the current line, where somebody listens; whole: it has all of them.
    void JudgeLine(const Fields& fields, bool isWhole);

    std::string previousStation_; ///< of the line before
};
