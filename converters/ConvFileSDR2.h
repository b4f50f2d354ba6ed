#pragma once

#include "converters/SdrUnits.h"
#include "framework/ConvGen.h"
#include "framework/Export.h"
#include "host/NoValue.h"

#include <cstdint>
#include <string>
#include <string_view>

/// Reads Sokkia SDR2 field files.
class CConvFileSDR2 : public CConvGen {
public:
    CONVFILE_API CConvFileSDR2(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFileSDR2() override;

    /// False where the file cannot be opened. A job is added by the file's own job records.
    CONVFILE_API bool Esegui();

private:
    // Operations in the library's own vocabulary.
    bool LeggeUnaRigaSDR2();
    void ConvertiRiga();
    void ConversioneRigaP(std::string_view rest);

    struct Record;
    static const Record kRecords[];

    void JobName(std::string_view rest);
    void TimeStamp(std::string_view rest);
    void Station(std::string_view rest);
    void TargetHeight(std::string_view rest);

    double NumberIn(std::string_view field);
    double TakeNumber(std::string_view& rest);
    void Header(std::string_view rest);
    void Instrument();
    void ReadPlace(std::string_view fields);
    void NoteOther(std::string_view code);
    void NoteUnusedJob();

    SdrUnits units_;
    std::uint64_t textLine_ = 0; ///< that the current line's text stands on
    std::uint64_t jobLine_ = 0;  ///< of the job name
    bool repeats_ = false;       ///< that text was read before
    bool jobPending_ = false;    ///< a job name waits for its time stamp
    std::string jobName_;
    double targetHeight_ = kNoValue; ///< kept for all following observations
};
