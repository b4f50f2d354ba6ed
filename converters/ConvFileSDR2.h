#pragma once

#include "framework/ConvGen.h"
#include "framework/Export.h"
#include "host/NoValue.h"
#include "routines/TextFile.h"

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
    bool OpenFile();
    bool LeggeUnaRigaSDR2();
    void ConvertiRiga();
    void ConversioneRigaP();

    struct Record;
    static const Record kRecords[];

    void JobName(std::string_view rest);
    void TimeStamp(std::string_view rest);
    void Station(std::string_view rest);
    void TargetHeight(std::string_view rest);
    void Observation(std::string_view rest);

    bool jobPending_ = false; ///< a job name waits for its time stamp
    std::string jobName_;
    std::string timeStamp_;
    std::string stationName_;
    std::string pointName_;
    std::string code_;
    double instrumentHeight_ = kNoValue;
    double targetHeight_ = kNoValue; ///< kept for all following observations
    double slopeDistance_ = kNoValue;
    double verticalAngle_ = kNoValue;
    double horizontalAngle_ = kNoValue;
    TextFile file_;
};
