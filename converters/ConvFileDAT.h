#pragma once

#include "framework/ConvGen.h"
#include "framework/Export.h"
#include "host/NoValue.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// Reads space-separated DAT files (not those that instruments download under that extension).
class CConvFileDAT : public CConvGen {
public:
    CONVFILE_API CConvFileDAT(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFileDAT() override;

    /// Converts the file into one job named after it; false where it cannot be opened.
    CONVFILE_API bool Esegui();

private:
    /// What a line says of a point, and of the station that it stands with.
    struct Point {
        std::string_view name;
        double instrumentHeight = kNoValue;
        double targetHeight = kNoValue;
        Reading reading = {};
    };

    bool ReadLine();
    void ConvertLine();
    void ThreeLines();
    Point PointOf(std::string_view line);
    Point PointOfStation(std::string_view line);
    double Metres(std::string_view millimetres);
    Reading ReadingOf(std::span<const std::string_view, 3> fields);
    void WritePoint(const Point& point, std::string_view code);
    void JudgeLine(std::string_view line, std::span<const std::string_view> fields);
    void NoteUnused(const Cause& cause, std::string_view text, std::uint64_t line);

    std::uint64_t textLine_ = 0; ///< where the working text was read
};
