#pragma once

#include "framework/ConvFileBase.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

/// Base of the converters of keyword lines whose records are gathered in a buffer and written only
/// when a later line, or the end, shows that they are complete. What opens a record writes those
/// that are pending of the two other kinds first. How a station and a point are written is the
/// format's own.
class CConvPendingRecords : public CConvFileBase {
protected:
    /// How a format writes the station or the point in hand.
    using Save = void (CConvPendingRecords::*)();

    CConvPendingRecords(CLibCmp& fieldBook, std::string* fileName, Save saveStation,
                        Save savePoint);

    static constexpr std::size_t kShortestLine = 4; ///< shorter ones hold no record

    // What a slot holds, in each kind of record.
    static constexpr std::size_t kName = 0;
    static constexpr std::size_t kOperator = 1;
    static constexpr std::size_t kInstrument = 2;
    static constexpr std::size_t kDate = 3;
    static constexpr std::size_t kCode = 1;
    static constexpr std::size_t kHeight = 2;
    static constexpr std::size_t kTemperature = 3;
    static constexpr std::size_t kPressure = 4;
    static constexpr std::size_t kHorizontalAngle = 3;
    static constexpr std::size_t kZenithAngle = 4;
    static constexpr std::size_t kDistance = 5;
    static constexpr std::size_t kNote = 6;

    // Operations in the library's own vocabulary.
    void SalvaRigaL();
    void AnnullaCampi();
    /// The next field of the line, as it stands; without a comma all that is left.
    std::string_view SeparaCampo();

    /// The same of a field that is kept and becomes a number when its record is written.
    std::string_view NumberField(const Cause& noNumber = kNoNumberIsZero);
    /// Remarks on what is left of the line's fields once its record has taken its own.
    void NoteRest();

    /// Cuts keyword and fields of the line apart; false for a line without a keyword.
    bool CutKeyword(std::string_view& keyword);
    void FlushJob();
    void FlushStation();
    void FlushPoint();
    /// Job, station and point, for the destructors.
    void FlushAll();
    bool HasAny(std::initializer_list<std::size_t> slots) const;
    /// Part of a point: writes what is pending of jobs and stations, and the point itself where it
    /// has one of those values already.
    void BeginPoint(std::initializer_list<std::size_t> slots);
    /// The current line is about to add to the record in hand, and begins it where that is empty.
    void AddToRecord();
    /// Remarks on a point in hand that lacks an angle.
    void CheckAngles();

    void StationRecord();
    void SightedPoint();
    void SideShot();
    void AnglesReading();
    void PolarRecord();
    /// Horizontal angle, horizontal distance and height difference; the slope distance is kept with
    /// so many decimals. Distances without a decimal point are divided by `withoutPoint`.
    void ReducedRecord(int distanceDecimals, double withoutPoint = 1);

    std::array<std::string, 7> slots_; ///< the texts of the record in hand
    std::uint64_t recordLine_ = 0;     ///< on which the record in hand begins
    std::string_view fields_;          ///< what is left of the current line's fields
    bool jobPending_ = false;
    bool stationPending_ = false;
    bool pointPending_ = false;

private:
    void SaveStation();
    void SavePoint();
    void FillNameHeightCode();

    Save saveStation_;
    Save savePoint_;
    bool updatesJob_ = true; ///< the first job record is that of the job named after the file
};
