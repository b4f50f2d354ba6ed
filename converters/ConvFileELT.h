#pragma once

#include "framework/ConvFileBase.h"
#include "framework/Export.h"
#include "host/NoValue.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Reads ELT report files, with German, Italian and English titles.
class CConvFileELT : public CConvFileBase {
public:
    CONVFILE_API CConvFileELT(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFileELT() override;

    /// As that of the base; the job's texts are written at its end.
    CONVFILE_API bool Esegui();

protected:
    void ProcessaRiga() override;

private:
    /// What a value stands behind: a bar and what follows it, of which the first three characters,
    /// the first in the lowest byte, tell nearly all tags apart.
    struct Tag {
        std::string_view text;
        std::uint32_t start = 0;
        std::uint32_t mask = 0; ///< of as many characters as the tag has, three at most

        template <std::size_t Size>
        consteval Tag(const char (&tag)[Size]) // NOLINT: written as the texts that they are
            : text(tag, Size - 1) {
            start = StartOf(text);
            for (std::size_t i = 1; i < std::min(text.size(), kStart + 1); ++i)
                mask |= std::uint32_t{0xFF} << 8 * (i - 1);
        }
    };
    static constexpr std::size_t kStart = 3;

    /// The first characters behind a bar; 0 behind the end of the text.
    static constexpr std::uint32_t StartOf(std::string_view bar) {
        std::uint32_t start = 0;
        for (std::size_t i = 1; i < std::min(bar.size(), kStart + 1); ++i)
            start |= std::uint32_t{static_cast<unsigned char>(bar[i])} << 8 * (i - 1);
        return start;
    }

    // Operations in the library's own vocabulary.
    void ConvertiRigaPI();
    void ConvertiAltraRiga();
    bool FindTag(const Tag& tag, std::string& text) const;
    std::string_view SeparaCampoNome(const Tag& tag, std::size_t skip, char stop) const;
    double SeparaCampoDouble(const Tag& tag);
    void AggiungiPunto(const Reading& reading);

    void FindBars();
    std::size_t BarOf(const Tag& tag) const;
    std::size_t PositionOf(const Tag& tag) const;
    bool HasTag(const Tag& tag) const { return PositionOf(tag) != std::string_view::npos; }
    void InputValues();
    void StartOfMeasurements();
    void WriteJobTexts();
    void TitleLine();
    bool OffsetLine();
    bool NamesOfLine();
    void MeasurementLine();
    void NoteOtherTags();
    void NoteStationWithoutPoint();
    static bool HasAngles(const Reading& reading);
    void ApplyOffsets(Reading& reading) const;

    static const Tag kPoint;
    static const Tag kJobTitles[2];
    static const Tag kOperatorTitles[6];
    static const Tag kInstrumentTitles[2];
    static const Tag kSerialTitles[2];
    static const Tag kDateTitles[2];

    /// A bar of the current line, and what follows it.
    struct Bar {
        std::uint32_t position;
        std::uint32_t start;
    };
    std::vector<Bar> bars_ = std::vector<Bar>(TextFile::kLongestLine);
    std::size_t barCount_ = 0;
    std::uint64_t tagsSeen_ = 0; ///< by the low bits of what stands behind the bars

    /// Texts of the job as the titles gave them. What the last start of measurements took of them
    /// is written once, at the end: they gather over the whole file.
    struct JobTexts {
        std::uint64_t lastLine = 0;     ///< of the titles
        std::uint64_t titleLine = 0;    ///< that gave the title
        std::uint64_t line = 0;         ///< that gave what was taken last
        std::string title;              ///< of the job, not yet taken; empty: none
        bool titleIsName = false;       ///< there was no job whose name it could follow
        std::string name;               ///< as taken: the job's own with the titles behind it
        bool named = false;             ///< a title was taken
        std::string operators;          ///< grows with each title line
        std::size_t operatorsTaken = 0; ///< so much of it
        std::string instruments;        ///< grows as well
        std::size_t instrumentsTaken = 0;
        std::string date; ///< the last one
        std::string dateTaken;
    };
    JobTexts job_;

    std::string stationName_;
    std::string stationCode_;
    std::uint64_t stationLine_ = 0; ///< that names the station
    std::string pointName_;
    std::string pointCode_;
    std::string previousStation_; ///< the station under which the last point was written

    /// The last point written from a line without reduced values: a reduced line that follows may
    /// only say the same again.
    std::string lastPoint_;
    double lastHorizontalAngle_ = kNoValue;

    double instrumentHeight_ = 0;
    double targetHeight_ = 0;
    double temperature_ = kNoValue;
    double pressure_ = kNoValue;

    double alongOffset_ = kNoValue;
    double lateralOffset_ = kNoValue;
    double verticalOffset_ = kNoValue;

    bool hasStationLines_ = false; ///< the file names its stations on lines of their own
    bool setsHz_ = false;          ///< the circle is being set: angles alone are no points
};
