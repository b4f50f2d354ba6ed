#pragma once

#include "framework/AccountKeeper.h"
#include "framework/Export.h"
#include "framework/Preparation.h"
#include "host/LibCmp.h"
#include "routines/Angles.h"
#include "routines/Numbers.h"
#include "routines/Reading.h"
#include "routines/TextFile.h"

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

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
    /// Copies share the code table and the open file; the last one deletes them.
    CConvGen(const CConvGen&) = default;
    CConvGen& operator=(const CConvGen&) = delete;
    virtual ~CConvGen();

    /// Makes the converter ready, before it is run.
    void Prepare(const Preparation& preparation);

protected:
    /// What the user is told at the end; a later one replaces an earlier.
    enum WarningKind : int {
        kNoWarning = 0,
        kReduced = 1,          ///< reduced distances became slope distances
        kReducedAtGround = 2,  ///< the same, with height differences between ground points
        kFromCoordinates = 3,  ///< coordinates became observations
        kFromZeroStations = 4, ///< the same, with every station taken to be at 0, 0, 0
    };

    /// Coordinates of a station or point, metres: east, north, height.
    struct Place {
        double x = kNoValue;
        double y = kNoValue;
        double z = kNoValue;
    };

    /// What a point should have: one that has coordinates instead does not lack a measurement.
    enum class Expected { Measurement, Coordinates };

    /// Appends a job and makes it the current one, without a station.
    void AggiungeJob(std::string name, std::string operatorName, std::string instrument,
                     std::string date);
    /// Appends a station to the current job and makes it the current one.
    void AggiungeSta(std::string name, std::string code, double instrumentHeight,
                     double temperature, double pressure);
    /// Appends a point to the current station; an unnamed station first where there is none.
    void AggiungePun(std::string name, std::string code, std::string note, double targetHeight,
                     double slopeDistance, double verticalAngle, double horizontalAngle);
    void AggiungePun(std::string name, std::string code, std::string note, double targetHeight,
                     const Reading& reading, Expected expected = Expected::Measurement);
    /// The same of a point that may have coordinates, too.
    void AggiungePun(std::string name, std::string code, std::string note, double targetHeight,
                     const Reading& reading, const Place& place);

    /// Set a text of the current job, trimmed at both ends.
    void SetNomeAtJob(std::string name);
    void SetOperAtJob(std::string operatorName);
    void SetStrumAtJob(std::string instrument);
    void SetDataAtJob(std::string date);
    /// Sets the instrument height of the current station.
    void SetHStrumAtSta(double height);

    /// The reading for a horizontal distance and a height difference, rounded, and the warning that
    /// it was computed. Where either is absent so are slope distance and zenith angle, and nothing
    /// is said.
    Reading ReducedReading(double horizontalDistance, double heightDifference,
                           double horizontalAngle = kNoValue);

    /// What of the file is read.
    const ReadingRules& Rules() const { return preparation_.rules; }
    /// True where coordinates are read and one of these is there.
    bool Has(const Place& place) const {
        return Rules().readsCoordinates &&
               (IsPresent(place.x) || IsPresent(place.y) || IsPresent(place.z));
    }
    /// Gives a station or point its coordinates, where it has some.
    void SetPlace(CEgn& record, const Place& place) const;

    /// Sets the four marks of a point that others are given from by offsets: it is no point of the
    /// plan itself.
    static void MarkAsOffsetReference(CEgn& point);

    /// Name of the current job; empty where there is none.
    std::string GetNomeOfJob();
    /// Appends a job named after the file; no line of it gives that.
    void AddJobOfFile() { AddJobOfFile(*fileName_); }
    void AddJobOfFile(const std::string& path);
    /// The bare name of a file, as the field book holds it.
    static std::string NameOfFile(const std::string& path);
    /// True where the file is to be read in the layout of that extension (upper case).
    bool HasLayout(std::string_view extension) const;
    /// The current job, or null.
    CJob* CurrentJob() { return fieldBook_.GetJobAt(jobIndex_); }
    /// The current station, or null.
    CSta* CurrentStation();
    /// The point of the current station that was added last, or null.
    CPun* LastPoint();

    /// Remark on the current line; the second one skips it, unless it is blank. Nothing where
    /// nobody listens.
    void Note(const Cause& cause) {
        if (keeper_) [[unlikely]]
            keeper_->Note(cause);
    }
    void Skip(const Cause& cause = kNoRecord) {
        if (keeper_) [[unlikely]]
            keeper_->Skip(cause);
    }
    /// The same on the record that is being written, at its line.
    void NoteAtRecord(const Cause& cause) {
        if (keeper_) [[unlikely]]
            keeper_->NoteAt(cause, keeper_->RecordLine());
    }
    /// True where somebody listens: for what would cost time otherwise.
    bool IsHeard() const { return keeper_ != nullptr; }
    /// The current line, from 1, for AtLine; 0 where nobody listens.
    std::uint64_t LineNumber() const { return keeper_ ? keeper_->Line() : 0; }

    /// Records that are written while it lives come from that line, not from the current one: for
    /// formats that write late.
    class AtLine {
    public:
        AtLine(const CConvGen& converter, std::uint64_t line) : keeper_(converter.keeper_.get()) {
            if (keeper_)
                before_ = keeper_->SetRecordLine(line);
        }
        AtLine(const AtLine&) = delete;
        AtLine& operator=(const AtLine&) = delete;
        ~AtLine() {
            if (keeper_)
                keeper_->SetRecordLine(before_);
        }

    private:
        AccountKeeper* keeper_;
        std::uint64_t before_ = 0;
    };

    /// As the routines of those names; a text that is no number, or more than one, is remarked on.
    /// An empty field is none.
    double ReadNumber(std::string_view text) {
        double number = 0;
        CheckEnd(text, NumberAtStart(text, number), kNoNumberIsZero);
        return number;
    }
    double ReadNumberOrNoValue(std::string_view text) {
        double number = kNoValue;
        CheckEnd(text, NumberAtStart(text, number), kNoNumberIsAbsent);
        return number;
    }
    double ReadDividedNumber(std::string_view text, double divisor) {
        const double number = ReadNumber(text);
        return IsPresent(number) ? number / divisor : number;
    }
    /// The same of degrees, minutes and seconds (DDD.MMSSss), in gon; one with minutes or seconds
    /// of
    /// 60 or more is absent.
    double ReadSexagesimal(std::string_view text) {
        double gon = 0;
        CheckEnd(text, SexagesimalAtStart(text, gon), kNoNumberIsZero);
        if (!IsPresent(gon))
            Note(kNoMinutes);
        return gon;
    }
    /// The remarks of these on a text whose number takes so many characters.
    void CheckEnd(std::string_view text, std::size_t numberEnd, const Cause& noNumber) {
        if (!keeper_) [[likely]]
            return;
        if (numberEnd != text.size())
            CheckRest(text, numberEnd, noNumber);
        else if (numberEnd > 0)
            keeper_->CountNumber(true);
    }
    /// The same for a text that is kept and read as a number later.
    void CheckNumber(std::string_view text, const Cause& noNumber = kNoNumberIsZero) {
        if (!keeper_)
            return;
        if (IsPlainNumber(text)) {
            keeper_->CountNumber(true);
            return;
        }
        double unused = 0;
        CheckEnd(text, NumberAtStart(text, unused), noNumber);
    }

    /// For formats that take any line for a record, where somebody listens: skips a line of which
    /// not one field that should be a number is one, while one is a text or some are missing.
    /// Remarks on missing fields otherwise.
    void JudgeFields(std::initializer_list<std::string_view> numbers, bool isWhole,
                     const Cause& fieldsMissing = kFieldsMissing);

    /// The same for formats whose lines name the instrument height again: remarks on one that the
    /// current station, which goes on, does not have.
    void JudgeHeight(std::string_view instrumentHeight);

    /// Tells of a record that was just asked of the field book; null: it declined.
    void Tell(CJob* job);
    void Tell(CSta* station);
    void Tell(CPun* point);
    void Tell(COri* point);

    /// Opens the file; false where that cannot be done.
    bool OpenFile();
    /// The same by that name.
    bool OpenFile(const std::string& path);
    /// The one loop over the lines of a file that OpenFile has opened: `read` takes the next line
    /// from `file_` as its format wants it and is false at the end, `convert` does what the line
    /// means. Closes the file, and is true, whatever the lines hold.
    template <class Read, class Convert>
    bool ForEachLine(Read read, Convert convert) {
        while (read())
            convert();
        file_->Close();
        line_ = {};
        return true;
    }

    /// Does what a destructor still has to do: an error raised there ends there, and is noted where
    /// the preparation says.
    template <class Work>
    void Finish(Work work) noexcept {
        Guarded(preparation_.problem, work);
    }

    std::string* fileName_;               ///< the file to convert, owned by the entry function
    std::shared_ptr<CConvCod> codeTable_; ///< converts codes read from the file
    std::string text_;                    ///< working text, free for the converters
    int jobIndex_;                        ///< job that receives stations; -1: none
    int staIndex_ = -1;                   ///< station that receives points; -1: none
    int warningKind_ = kNoWarning;
    CLibCmp& fieldBook_;

    std::shared_ptr<AccountKeeper> keeper_; ///< null: nobody listens
    std::shared_ptr<TextFile> file_;        ///< the file, for formats that are texts
    std::string_view line_;                 ///< the current line, or what is left of it
    Preparation preparation_;

private:
    /// What a line named last as the height that the current station has; empty: none did.
    std::string agreedHeight_;

    using JobSetter = void (CJob::*)(const std::string&);
    void SetAtJob(JobSetter set, std::string text);
    bool AddUnnamedJob();
    CSta* AddStation();
    void CheckRest(std::string_view text, std::size_t numberEnd, const Cause& noNumber);
};
