#pragma once

#include "converters/SdrRecords.h"
#include "framework/ConvGen.h"
#include "framework/Export.h"
#include "host/NoValue.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Reads SDR33 field files, the successors of SDR2. There is no classic reading of them: what the
/// rules say makes no difference.
class CConvFileSDR33 : public CConvGen {
public:
    CONVFILE_API CConvFileSDR33(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFileSDR33() override;

    /// Converts the file into a job named after it, which its first job record renames; false where
    /// it cannot be opened.
    CONVFILE_API bool Esegui();

private:
    struct Record;
    static const Record kRecords[];

    /// A point whose coordinates stand before its observation.
    struct KnownPoint {
        std::string name;
        Place place;
    };

    void ConvertLine();
    void Header();
    void Instrument();
    void JobName();
    void TimeStamp();
    void WriteStation();
    void TargetHeight();
    void Backsight();
    void WriteOrientationPoint();
    void WritePoint();
    void AddStation(std::string_view name, std::string_view code, double instrumentHeight);
    Place TakePlaceOf(std::string_view name);

    std::string_view Field(std::size_t index) const;
    double Number(std::size_t index);
    double Length(std::size_t index) { return units_.Metres(Number(index)); }
    Place PlaceAt(std::size_t index);

    SdrUnits units_;
    bool firstJob_ = true;    ///< the first job record names the job that is there
    bool jobIsBegun_ = false; ///< the current job has a date, a station or a point
    bool hasStation_ = false; ///< it has a current station, of that name
    std::string stationName_;
    double targetHeight_ = kNoValue;      ///< kept for all following observations
    std::vector<KnownPoint> knownPoints_; ///< since the last observation
};
