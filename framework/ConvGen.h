#pragma once

#include "framework/Export.h"
#include "host/LibCmp.h"
#include "routines/Reduction.h"

#include <memory>
#include <string>

class CConvCod;

/// Root of every converter: the field book being filled, the file to convert, the host's code
/// table, and the operations through which jobs, stations and points are written. When it goes
/// away it tells the user, in one message at most, that data had to be transformed.
///
/// Units written into the field book: angles in gon, distances and heights in metres; an absent
/// measurement is the no-value marker. What the field book declines is skipped silently.
class CONVFILE_API CConvGen {
public:
    /// New stations go into the book's last job until the converter adds one. `fileName` is
    /// borrowed and must outlive the converter.
    CConvGen(CLibCmp& fieldBook, std::string* fileName);
    /// Copies share the code table; the last one deletes it.
    CConvGen(const CConvGen&) = default;
    CConvGen& operator=(const CConvGen&) = delete;
    virtual ~CConvGen();

protected:
    /// What the user is told at the end; a later one replaces an earlier.
    enum WarningKind : int {
        kNoWarning = 0,
        kReduced = 1,          ///< reduced distances became slope distances
        kReducedAtGround = 2,  ///< the same, with height differences between ground points
        kFromCoordinates = 3,  ///< coordinates became observations
        kFromZeroStations = 4, ///< the same, with every station taken to be at 0, 0, 0
    };

    /// Appends a job and makes it the current one, without a station.
    void AggiungeJob(std::string name, std::string operatorName, std::string instrument,
                     std::string date);
    /// Appends a job named after the file.
    void AggiungeJobDelFile() { AggiungeJobDelFile(*fileName_); }
    void AggiungeJobDelFile(const std::string& path);
    /// The bare name of a file, as the field book holds it.
    static std::string NomeDelFile(const std::string& path);
    /// Appends a station to the current job and makes it the current one.
    void AggiungeSta(std::string name, std::string code, double instrumentHeight,
                     double temperature, double pressure);
    /// Appends a point to the current station; an unnamed station first where there is none.
    void AggiungePun(std::string name, std::string code, std::string note, double targetHeight,
                     double slopeDistance, double verticalAngle, double horizontalAngle);

    /// Set a text of the current job, trimmed at both ends.
    void SetNomeAtJob(std::string name);
    void SetOperAtJob(std::string operatorName);
    void SetStrumAtJob(std::string instrument);
    void SetDataAtJob(std::string date);
    /// Sets the instrument height of the current station.
    void SetHStrumAtSta(double height);

    /// The polar reading for a horizontal distance and a height difference, rounded, and the
    /// warning that it was computed. Where either is absent so is the reading, and nothing is said.
    PolarReading ReducedReading(double horizontalDistance, double heightDifference);

    /// Name of the current job; empty where there is none.
    std::string GetNomeOfJob();
    /// The current station, or null.
    CSta* CurrentStation();
    /// The point of the current station that was added last, or null.
    CPun* LastPoint();

    std::string* fileName_;               ///< the file to convert, owned by the entry function
    std::shared_ptr<CConvCod> codeTable_; ///< converts codes read from the file
    std::string text_;                    ///< working text, free for the converters
    int jobIndex_;                        ///< job that receives stations; -1: none
    int staIndex_ = -1;                   ///< station that receives points; -1: none
    int warningKind_ = kNoWarning;
    CLibCmp& fieldBook_;

private:
    using JobSetter = void (CJob::*)(const std::string&);
    void SetAtJob(JobSetter set, std::string text);
    bool AddUnnamedJob();
    CSta* AddStation();
};
