// A field controller's job database: a Microsoft Access file with the tables of JobTables.h.
//
// Every answer is a line of fields, each followed by a tab. The photos lie in a folder named like
// the database, beside it.

#include "database/ConvFileTLSV.h"

#include "database/Engine.h"
#include "host/GcadEng.h"
#include "host/LibPnt.h"
#include "routines/Angles.h"
#include "routines/FileName.h"
#include "routines/Numbers.h"
#include "routines/Offset.h"
#include "routines/Text.h"
#include "routines/TskFormat.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <utility>

namespace {

constexpr char kFieldEnd = '\t';

// Kinds of a raw measurement.
constexpr std::string_view kNotAnObservation = "20";
constexpr std::string_view kHidesTheNext = "21";

// Flags of a shot.
constexpr int kReferenceMask = 0x1053;
constexpr int kReference = 0x13;
constexpr int kOffsetMask = 0x1043;

// Types of station that are control points.
constexpr double kControlPoint = 1;
constexpr double kCheckedControlPoint = 16;

constexpr short kProcessingCode = 3;
constexpr std::string_view kPhotoOfFirstKind = "0";

std::string_view WithoutLeadingSpaces(std::string_view text) {
    text.remove_prefix(std::min(text.size(), text.find_first_not_of(' ')));
    return text;
}

/// Takes the first field off a text.
std::string_view TakeField(std::string_view& text) {
    std::string_view field = text;
    if (!CutAt(text, kFieldEnd, field))
        text = {};
    text = WithoutLeadingSpaces(text);
    return WithoutLeadingSpaces(field);
}

/// Takes the last field off a text.
std::string_view TakeLastField(std::string_view& text) {
    const std::size_t end = text.rfind(kFieldEnd);
    const std::string_view field = text.substr(end + 1); // the whole text where there is no tab
    text = text.substr(0, end == std::string_view::npos ? 0 : end);
    return field;
}

int Integer(std::string_view field) {
    return static_cast<int>(LongDaStringNullZero(field));
}

constexpr Cause kNoObservation = {
    RemarkKind::NotRead,
    "a shot whose raw measurement is of kind 20 is no observation: it is not in the book"};
constexpr Cause kHidden = {RemarkKind::NotRead,
                           "a shot behind one of kind 21 is hidden by that: it is not in the book"};
constexpr Cause kNoOffset = {
    RemarkKind::NoMeasurement,
    "an offset shot without a reference, or whose reference has no distance, is a point without "
    "distance and angles"};
constexpr Cause kNoStationPoint = {
    RemarkKind::Incomplete,
    "a set-up whose point is not found: its name is empty, its coordinates are 0"};
constexpr Cause kNoTarget = {
    RemarkKind::Incomplete,
    "a shot whose target is not found: its name is empty, its coordinates are 0"};
constexpr Cause kKeyNoNumber = {RemarkKind::Database,
                                "a key that is no whole number: what it leads to is not found"};

/// A code without its fillers: "~" goes, "&" is a space.
std::string CleanCode(std::string code) {
    std::erase(code, '~');
    std::ranges::replace(code, '&', ' ');
    return code;
}

void SetReading(CPun& observation, const Reading& reading) {
    const double horizontal = FiniteOrNoValue(reading.horizontalAngle);
    const double zenith = FiniteOrNoValue(reading.zenithAngle);
    const double distance = FiniteOrNoValue(DistanceOrNoValue(reading.slopeDistance));
    observation.SetAngO(horizontal);
    observation.SetAngV(zenith);
    observation.SetDiIn(distance);
    observation.SetDtIntAng(distance, zenith, horizontal);
}

} // namespace

CConvFileTLSV::CConvFileTLSV(CLibCmp& fieldBook, CLibPnt& pointLibrary, CGcadEng& drawing,
                             std::string* fileName)
    : CConvGen(fieldBook, fileName),
      databasePath_(*fileName),
      pointLibrary_(pointLibrary),
      drawing_(drawing) {}

CConvFileTLSV::~CConvFileTLSV() = default;

bool CConvFileTLSV::Esegui() {
    bool imported = false;
    Guarded(preparation_.problem, [&] {
        try {
            imported = ImportJob();
        } catch (const std::exception&) {
            throw;
        } catch (...) {
            throw convfile::database::EngineError(convfile::database::PlatformErrorText());
        }
    });
    return imported;
}

/// The job is added before the database is opened, and stays where that fails.
bool CConvFileTLSV::ImportJob() {
    newJob_ = fieldBook_.GetJobArSize();
    std::string name = NameOfFile(databasePath_);
    name.erase(std::min(name.size(), name.rfind('.')));
    CJob* const job = fieldBook_.AddJob(true);
    const AtLine none(*this, 0);
    Tell(job);
    if (job)
        job->SetNome(name);
    if (!database_.Connect(databasePath_.c_str(), false)) {
        if (preparation_.problem)
            preparation_.problem->Note(database_.Problem().c_str());
        return false;
    }
    if (job)
        SetJobTexts(*job);
    CreaStaz();
    CreaPun();
    if (cancelled_)
        return false;
    CreaPunOri();
    drawing_.Notify(1, 1, nullptr);
    if (keeper_)
        NoteEmpty();
    return true;
}

/// A number. A decimal comma counts, too: some columns are texts, and engines may write numbers as
/// their users do.
double CConvFileTLSV::Number(std::string_view field) {
    if (field.find(',') == std::string_view::npos)
        return FiniteOrNoValue(ReadNumber(field));
    std::string pointed(field);
    std::ranges::replace(pointed, ',', '.');
    return FiniteOrNoValue(ReadNumber(pointed));
}

double CConvFileTLSV::TakeNumber(std::string_view& text) {
    return Number(TakeField(text));
}

std::string CConvFileTLSV::ReadFirst(std::string_view tables, std::string_view head,
                                     std::string_view key, int fields) {
    std::string row = database_.ReadFirst(head, key, fields);
    if (keeper_ && database_.WasAtFault())
        NoteFault(tables, head, key);
    return row;
}

bool CConvFileTLSV::ReadRows(std::string_view tables, std::string_view head, std::string_view key,
                             int fields, std::vector<std::string>& rows) {
    const bool any = database_.ReadRows(head, key, fields, rows);
    if (keeper_ && database_.WasAtFault())
        NoteFault(tables, head, key);
    return any;
}

/// A query that the database cannot answer: it lacks what is asked of it, unless the key is at
/// fault. An empty one leads nowhere, as it should. Each table is remarked on once.
void CConvFileTLSV::NoteFault(std::string_view tables, std::string_view head,
                              std::string_view key) {
    if (head.ends_with('=') && key.empty())
        return;
    if (key.find_first_not_of("-0123456789") != std::string_view::npos)
        return keeper_->NoteAt(kKeyNoNumber, 0);
    if (std::ranges::find(missingTables_, tables) != missingTables_.end())
        return;
    missingTables_.push_back(tables);
    keeper_->NoteText(RemarkKind::Database,
                      "table " + std::string(tables) +
                          " is missing, or a column that is read of it, or one is of another type: "
                          "it counts as empty",
                      0);
}

void CConvFileTLSV::TellRow() {
    ++rowsRead_;
    if (keeper_)
        keeper_->RowBegins();
}

/// False where the import is cancelled.
bool CConvFileTLSV::GoesOn() {
    cancelled_ = cancelled_ || (keeper_ && !keeper_->GoesOn(rowsRead_));
    return !cancelled_;
}

/// An import without a shot is none.
void CConvFileTLSV::NoteEmpty() {
    for (std::string& oddity : database_.Oddities())
        keeper_->NoteText(RemarkKind::Database, std::move(oddity), 0);
    if (hasShot_)
        return;
    const std::size_t setUps = occupationKeys_.size();
    keeper_->NoteText(RemarkKind::Empty,
                      "there is no shot in the database: it has " + std::to_string(setUps) +
                          (setUps == 1 ? " set-up" : " set-ups"),
                      0);
}

void CConvFileTLSV::SetJobTexts(CJob& job) {
    using namespace std::chrono;
    const int start = Integer(
        ReadFirst("tblCrdObsSession", "SELECT StartSecondsFrom1970 FROM tblCrdObsSession", "", 1));
    const year_month_day date(floor<days>(sys_seconds(seconds(start))));
    char text[32];
    tsk_sprintf(text, "%u/%u/%d", static_cast<unsigned>(date.day()),
                static_cast<unsigned>(date.month()), static_cast<int>(date.year()));
    job.SetData(text);

    const std::string instrument =
        ReadFirst("tblObsEquipment", "SELECT TextId FROM tblObsEquipment", "", 1);
    job.SetStrum(instrument.substr(0, instrument.find(kFieldEnd)));
}

std::string CConvFileTLSV::ReadCode(std::string_view pointKey) {
    const std::string answer =
        ReadFirst("tblCodeDefs or tblCodesToPts",
                  "SELECT tblCodeDefs.nameCode FROM tblCodeDefs, tblCodesToPts WHERE "
                  "tblCodeDefs.keyCodeDef=tblCodesToPts.fkeyCodeDef AND tblCodesToPts.fkeyPoint=",
                  pointKey, 1);
    std::string_view rest = answer;
    return std::string(TakeField(rest));
}

/// A station for each set-up. One that the field book declines has no key, so that keys and
/// stations go on belonging together.
void CConvFileTLSV::CreaStaz() {
    rows_.clear();
    if (!ReadRows("tblTsOccups", "SELECT * FROM tblTsOccups", "", 3, rows_))
        return;
    for (const std::string& row : rows_) {
        if (!GoesOn())
            return;
        TellRow();
        CSta* const station = fieldBook_.AddSta(newJob_, true);
        Tell(station);
        if (!station)
            continue;
        std::string_view rest = row;
        occupationKeys_.emplace_back(TakeField(rest));
        const std::string_view pointKey = TakeField(rest);
        const double instrumentHeight = TakeNumber(rest);
        const std::string code = ReadCode(pointKey);
        const std::string point =
            ReadFirst("tblSoPoints",
                      "SELECT Name, C1, C2, C3 FROM tblSoPoints WHERE keySoPoint=", pointKey, 4);
        if (point.empty())
            Note(kNoStationPoint);
        std::string_view pointRest = point;
        station->SetNome(std::string(TakeField(pointRest)));
        station->SetIden(code);
        const double c1 = TakeNumber(pointRest);
        const double c2 = TakeNumber(pointRest);
        const double c3 = TakeNumber(pointRest);
        station->SetCoord(c2, c1, c3); // C1 is north, C2 east
        station->CalcolaValiditaXYZ();
        station->SetAltStr(instrumentHeight);
        if (CJob* const job = fieldBook_.GetJobAt(newJob_))
            job->SetCodeElab(kProcessingCode);
    }
}

void CConvFileTLSV::CreaPun() {
    for (int station = 0; station < fieldBook_.GetStaArSize(newJob_) && GoesOn(); ++station)
        CreaPunDiSta(station);
}

/// The shots of one set-up. An offset shot refers to the last offset reference before it.
void CConvFileTLSV::CreaPunDiSta(int station) {
    const auto index = static_cast<std::size_t>(station);
    rows_.clear();
    if (index >= occupationKeys_.size() ||
        !ReadRows("tblTsShots",
                  "SELECT keyTsShot, fkeyTargetStation, HAngle, VAngle, SDistance, "
                  "TargetAntHeight, aFlag, fkeyCrdRawMeas FROM tblTsShots WHERE "
                  "fkeyTsOccupations=",
                  occupationKeys_[index], 8, rows_))
        return;
    CPun* reference = nullptr;
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        std::string kind;
        if (!CreaPunto(station, rows_[i], reference, kind) || kind != kHidesTheNext)
            continue;
        if (++i < rows_.size()) {
            TellRow();
            Skip(kHidden);
        }
    }
}

/// One shot; false where it leaves no observation.
bool CConvFileTLSV::CreaPunto(int station, std::string_view row, CPun*& reference,
                              std::string& kind) {
    CPun* const observation = fieldBook_.AddPun(newJob_, station, true);
    if (!observation) {
        TellRow();
        Tell(observation);
        return false;
    }
    std::string_view line = DropLast(row);
    SetPunFoto(*observation, line);
    TellRow();
    const std::string measurement = ReadFirst(
        "tblCrdRawMeas",
        "SELECT MeasExtraType FROM tblCrdRawMeas WHERE keyCrdRawMeas=", TakeLastField(line), 1);
    std::string_view measurementRest = measurement;
    kind = TakeField(measurementRest);
    if (kind == kNotAnObservation) {
        fieldBook_.DelPunAt(observation);
        Skip(kNoObservation);
        return false;
    }
    Tell(observation);
    hasShot_ = true;
    const int flags = Integer(TakeLastField(line));
    const bool isOffset = (flags & kOffsetMask) == kOffsetMask;
    if ((flags & kReferenceMask) == kReference)
        reference = observation;

    const Target target = ReadTarget(TakeField(line));
    const double horizontal = TakeNumber(line);
    const double vertical = TakeNumber(line);
    const double distance = TakeNumber(line);
    const double targetHeight = TakeNumber(line);

    const std::string notes =
        ReadFirst("tblStations", "SELECT Notes FROM tblStations WHERE fkeySoPoint=", target.key, 1);
    std::string_view notesRest = notes;
    observation->SetNome(target.name);
    observation->SetCode(CleanCode(ReadCode(target.key)));
    observation->SetNote(std::string(TakeField(notesRest)));

    // An offset's fields are metres: along where the zenith angle is otherwise, lateral in that of
    // the distance, vertical in that of the horizontal angle.
    if (isOffset)
        CalcOffSet( // NOLINT(readability-suspicious-call-argument)
            reference, target.name, vertical, distance, horizontal, station);
    else
        SetReading(*observation, {.slopeDistance = distance,
                                  .zenithAngle = GonFromDegrees(vertical),
                                  .horizontalAngle = GonFromDegrees(horizontal)});
    observation->SetAltPri(targetHeight);
    observation->SetCoord(target.c2, target.c1, target.c3);
    observation->CalcolaValiditaXYZ();
    if (target.stationType == kControlPoint || target.stationType == kCheckedControlPoint) {
        observation->SetCodeOR(true);
        observation->SetCodeQU(true);
    }
    return true;
}

/// The point that a shot was aimed at: among the job's points, or only among its stations.
CConvFileTLSV::Target CConvFileTLSV::ReadTarget(std::string_view targetKey) {
    std::string answer =
        ReadFirst("tblSoPoints",
                  "SELECT keySoPoint, Name, C1, C2, C3, StationType FROM tblSoPoints WHERE "
                  "fkeyStationDef=",
                  targetKey, 6);
    if (answer.empty()) {
        answer = ReadFirst("tblStations",
                           "SELECT fkeySoPoint, Name, C1, C2, C3, StationType FROM tblStations "
                           "WHERE keyStation=",
                           targetKey, 6);
    }
    if (answer.empty())
        Note(kNoTarget);
    std::string_view rest = answer;
    Target target;
    target.key = TakeField(rest);
    target.name = TakeField(rest);
    target.c1 = TakeNumber(rest);
    target.c2 = TakeNumber(rest);
    target.c3 = TakeNumber(rest);
    target.stationType = TakeNumber(rest);
    return target;
}

/// Attaches the photos of a shot and takes the shot's key off its line.
void CConvFileTLSV::SetPunFoto(CPun& observation, std::string_view& line) {
    const std::string_view shotKey = TakeField(line);
    std::vector<std::string> images;
    if (!ReadRows("tblCrdImageData",
                  "SELECT ImageFileName, ImageType FROM tblCrdImageData WHERE fkeyShot=", shotKey,
                  2, images))
        return;
    const std::string folder = PhotoFolder();
    for (const std::string& image : images) {
        TellRow();
        std::string_view rest = image;
        const std::string path = folder + std::string(TakeField(rest));
        observation.SetNomeFoto(path, TakeField(rest) == kPhotoOfFirstKind ? 1 : 2);
    }
}

/// The folder of the photos with the separator that ends it: the database's path without its
/// extension, joined as that path is.
std::string CConvFileTLSV::PhotoFolder() const {
    std::string folder = TextOfPath(databasePath_);
    const std::size_t separator = folder.find_last_of("\\/");
    const std::size_t name = separator + 1; // 0 where there is no folder
    const std::size_t dot = folder.rfind('.');
    if (dot != std::string::npos && dot >= name)
        folder.erase(dot);
    const bool slash = separator != std::string::npos && folder[separator] == '/';
    return folder + (slash ? '/' : '\\');
}

/// Gives the observation added last the reading that its offsets from the reference say. Without a
/// reference, or one that has no distance, it keeps its name alone.
void CConvFileTLSV::CalcOffSet(CPun* reference, const std::string& name, double along,
                               double lateral, double vertical, int station) {
    CPun* const target =
        fieldBook_.GetPunAt(newJob_, station, fieldBook_.GetPunArSize(newJob_, station) - 1);
    if (target)
        target->SetNome(name);
    if (!reference || !IsPresent(reference->GetDiIn()))
        Note(kNoOffset);
    if (!reference)
        return;
    if (target && IsPresent(reference->GetDiIn())) {
        SetReading(*target, ReadingAtOffset({.slopeDistance = reference->GetDiIn(),
                                             .zenithAngle = reference->GetAngV(),
                                             .horizontalAngle = reference->GetAngO()},
                                            {along, lateral, vertical}));
    }
    MarkAsOffsetReference(*reference);
}

void CConvFileTLSV::CreaPunOri() {
    rows_.clear();
    if (!ReadRows("tblSoPoints",
                  "SELECT Name, C1, C2, C3 FROM tblSoPoints WHERE StationType=1 OR "
                  "StationType=16",
                  "", 4, rows_))
        return;
    for (const std::string& row : rows_) {
        TellRow();
        COri* const point = fieldBook_.AddOri(true);
        Tell(point);
        if (!point)
            continue;
        std::string_view rest = row;
        point->SetNome(std::string(TakeField(rest)));
        const double c1 = TakeNumber(rest);
        const double c2 = TakeNumber(rest);
        const double c3 = TakeNumber(rest);
        point->SetCoord(c2, c1, c3);
    }
    TSKNotifyTarget* const listener = pointLibrary_.GetNotifyTarget();
    if (TSKNotifyTarget* const parent = listener ? listener->GetParent() : nullptr)
        parent->Notify(1, 3, nullptr);
    TSKNotifySource* const points = pointLibrary_.GetOriData();
    if (TSKNotifyTarget* const target = points ? points->GetNotifyTarget() : nullptr)
        target->Notify(1, 1, nullptr);
}
