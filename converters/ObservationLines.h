#pragma once

#include "framework/ConvGen.h"
#include "routines/TextFile.h"

#include <string>
#include <string_view>

/// What the two formats share that have one observation a line, each naming its station: reading,
/// and what goes into the field book. How a line is cut and where a station begins is each one's
/// own.
class CConvObservationLines : public CConvGen {
protected:
    CConvObservationLines(CLibCmp& fieldBook, std::string* fileName);

    /// The fields of a line.
    struct Fields {
        std::string_view station;
        std::string_view point;
        std::string_view instrumentHeight;
        std::string_view targetHeight;
        std::string_view verticalAngle;
        std::string_view horizontalAngle;
        std::string_view slopeDistance;
        std::string_view code;
    };

    /// Opens the file and adds the job that is named after it; false where it cannot be opened.
    bool OpenFile();
    /// The next line, without its last character.
    bool LeggeUnaRiga();
    void AggiungiStazione(const Fields& fields);
    void AggiungiPunto(const Fields& fields);

    std::string_view line_; ///< what is left of the current line
    std::string previousStation_;

private:
    TextFile file_;
};
