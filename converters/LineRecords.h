#pragma once

#include "framework/ConvGen.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// What the formats with one value a line share: a record is opened by a line of its own, filled by
/// those that follow in any order, and written when the next one opens or the file ends.
class CConvLineRecords : public CConvGen {
protected:
    CConvLineRecords(CLibCmp& fieldBook, std::string* fileName);

    enum class RecordType { None, Job, Station, Point };

    /// What the slots hold. A code fills its slot whatever record is open.
    /// Job: name, operator, instrument, date; station: name, code, height, temperature, pressure;
    /// point: name, code, height, horizontal angle, zenith angle (or height difference),
    /// slope distance (or horizontal distance).
    enum Slot : std::size_t { kName, kCode, kHeight, kHorizontalAngle, kVertical, kDistance };
    static constexpr std::size_t kSlots = 6;

    /// How zenith angle and distance of the points are given. It is that of the last line that
    /// carried one of them, whichever record it belonged to, on purpose: collectors leave out what
    /// did not change since the point before.
    enum class DistanceMode { Unchanged, Polar, Reduced };

    /// A code that fills a slot.
    struct SlotCode {
        std::string_view code;
        Slot slot;
        DistanceMode mode;
    };

    // Operations in the library's own vocabulary.
    /// Writes the open record and opens another, its first slot filled.
    void NuovoRecord(RecordType type, std::string_view name);
    /// Writes the open record.
    void SalvaRecord();
    /// Stores a value where the table has its code; false: it has not.
    bool FillSlot(std::span<const SlotCode> table, std::string_view code, std::string_view value);

    std::array<std::string, kSlots> slots_;

private:
    // Operations in the library's own vocabulary.
    void SalvaRigaL();
    void SalvaRigaS();
    void SalvaRigaP();

    void JudgeValue(const SlotCode& code, std::string_view value);

    std::uint64_t recordLine_ = 0; ///< that opened the record
    RecordType type_ = RecordType::None;
    DistanceMode mode_ = DistanceMode::Polar;
};
