#include "framework/ConvGen.h"

#include "host/ConvCod.h"
#include "host/Messages.h"
#include "resources/Texts.h"
#include "routines/FileName.h"
#include "routines/Numbers.h"
#include "routines/Reduction.h"
#include "routines/Text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace {

constexpr Cause kJobDeclined = {RemarkKind::Declined,
                                "a job that the field book declined: it is not in it"};
constexpr Cause kStationDeclined = {RemarkKind::Declined,
                                    "a station that the field book declined: it is not in it"};
constexpr Cause kPointDeclined = {RemarkKind::Declined,
                                  "a point that the field book declined: it is not in it"};
constexpr Cause kOrientationPointDeclined = {
    RemarkKind::Declined, "an orientation point that the field book declined: it is not in it"};
constexpr Cause kNoMeasurement = {
    RemarkKind::NoMeasurement,
    "a point without distance and angles: of its line the name and other texts are kept"};
constexpr Cause kHeightStays = {RemarkKind::NotRead,
                                "an instrument height other than that of the set-up that goes on "
                                "is not read: the set-up keeps its own"};

/// True where nothing else is in the text.
bool IsBlankOrCr(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return IsBlank(c) || c == '\r'; });
}

template <class Record>
void TellKeeper(AccountKeeper* keeper, Record* record, const Cause& declined) {
    if (!keeper) [[likely]]
        return;
    if (record)
        keeper->Written(*record);
    else
        keeper->NoteAt(declined, keeper->RecordLine());
}

} // namespace

CConvGen::CConvGen(CLibCmp& fieldBook, std::string* fileName)
    : fileName_(fileName),
      codeTable_(new CConvCod),
      jobIndex_(fieldBook.GetJobArSize() - 1),
      fieldBook_(fieldBook),
      file_(std::make_shared<TextFile>()) {}

CConvGen::~CConvGen() {
    static constexpr std::array<TextId, 5> kTexts = {
        TextId::None, TextId::Reduced, TextId::ReducedAtGround, TextId::FromCoordinates,
        TextId::FromZeroStations};
    if (warningKind_ <= kNoWarning || warningKind_ > kFromZeroStations || preparation_.isTrial)
        return;
    Finish([this] {
        const std::string title = LoadText(TextId::ImportFile);
        const TextId text = kTexts[static_cast<std::size_t>(warningKind_)];
        MessageBoxOkExclam(nullptr, LoadText(text), title);
    });
}

void CConvGen::Prepare(const Preparation& preparation) {
    preparation_ = {};
    std::memcpy(&preparation_, &preparation, std::min(preparation.size, sizeof preparation_));
    if (preparation_.account || preparation_.listener)
        keeper_ = std::make_shared<AccountKeeper>(preparation_.account, preparation_.listener,
                                                  preparation_.problem);
}

bool CConvGen::OpenFile() {
    return OpenFile(*fileName_);
}

bool CConvGen::OpenFile(const std::string& path) {
    if (!file_->Open(path, preparation_.source, preparation_.rules.lines))
        return false;
    file_->TellTo(keeper_.get());
    if (keeper_)
        keeper_->Opened();
    return true;
}

void CConvGen::AggiungeJob(std::string name, std::string operatorName, std::string instrument,
                           std::string date) {
    CJob* const job = fieldBook_.AddJob(true);
    Tell(job);
    if (job)
        job->SetLabels(name, operatorName, instrument, date);
    jobIndex_ = job ? jobIndex_ + 1 : -1;
    staIndex_ = -1;
}

void CConvGen::AggiungeSta(std::string name, std::string code, double instrumentHeight,
                           double temperature, double pressure) {
    CSta* const station = AddStation();
    if (!station)
        return;
    station->SetNome(name);
    station->SetIden(codeTable_->IdenConvertito(code));
    station->SetAltStr(FiniteOrNoValue(instrumentHeight));
    station->SetTemper(FiniteOrNoValue(temperature));
    station->SetPressi(FiniteOrNoValue(pressure));
    station->TrasfCodOldAlf(true, codeTable_->GetModoConver());
    fieldBook_.GetIndiciDiSta(station, jobIndex_, staIndex_);
}

void CConvGen::AggiungePun(std::string name, std::string code, std::string note,
                           double targetHeight, double slopeDistance, double verticalAngle,
                           double horizontalAngle) {
    AggiungePun(std::move(name), std::move(code), std::move(note), targetHeight,
                {slopeDistance, verticalAngle, horizontalAngle});
}

void CConvGen::AggiungePun(std::string name, std::string code, std::string note,
                           double targetHeight, const Reading& reading, Expected expected) {
    if (staIndex_ < 0) {
        CSta* const station = AddStation();
        if (!station)
            return;
        fieldBook_.GetIndiciDiSta(station, jobIndex_, staIndex_);
    }
    CPun* const point = fieldBook_.AddPun(jobIndex_, staIndex_, true);
    Tell(point);
    if (!point)
        return;
    if (keeper_ && expected == Expected::Measurement && !IsPresent(reading.slopeDistance) &&
        !IsPresent(reading.zenithAngle) && !IsPresent(reading.horizontalAngle))
        keeper_->NoteAt(kNoMeasurement, keeper_->RecordLine());
    // A host may answer in a buffer that it uses again for the next question.
    std::string buffer;
    const std::string* converted = &codeTable_->CodeConvertito(code);
    if (converted != &code)
        converted = &(buffer = *converted);
    const std::string mode = codeTable_->ModalitaConver(code);
    point->SetNome(name);
    point->SetCode(*converted);
    point->SetNote(note);
    point->SetAttribDis(mode);
    point->SetAltPri(FiniteOrNoValue(targetHeight));
    point->SetDtIntAng(FiniteOrNoValue(reading.slopeDistance), FiniteOrNoValue(reading.zenithAngle),
                       FiniteOrNoValue(reading.horizontalAngle));
    point->TrasfCodOldAlf(true, codeTable_->GetModoConver());
}

void CConvGen::AggiungePun(std::string name, std::string code, std::string note,
                           double targetHeight, const Reading& reading, const Place& place) {
    if (!Has(place)) {
        AggiungePun(std::move(name), std::move(code), std::move(note), targetHeight, reading);
        return;
    }
    const CPun* const before = LastPoint();
    AggiungePun(std::move(name), std::move(code), std::move(note), targetHeight, reading,
                Expected::Coordinates);
    CPun* const added = LastPoint();
    if (added != before) // the field book took it
        SetPlace(*added, place);
}

/// Appends a station to the current job, in a first, unnamed job where there is none. That job is
/// then taken to be job 0, whatever position it was given, on purpose: it is only made in an empty
/// book, or in one that declined a job, whose stations then stay together.
CSta* CConvGen::AddStation() {
    agreedHeight_.clear();
    CSta* station = nullptr;
    if (jobIndex_ >= 0 || AddUnnamedJob())
        station = fieldBook_.AddSta(jobIndex_, true);
    Tell(station);
    if (!station)
        staIndex_ = -1;
    return station;
}

bool CConvGen::AddUnnamedJob() {
    CJob* const job = fieldBook_.AddJob(true);
    Tell(job);
    if (!job)
        return false;
    jobIndex_ = 0;
    return true;
}

void CConvGen::Tell(CJob* job) {
    TellKeeper(keeper_.get(), job, kJobDeclined);
}
void CConvGen::Tell(CSta* station) {
    TellKeeper(keeper_.get(), station, kStationDeclined);
}
void CConvGen::Tell(CPun* point) {
    TellKeeper(keeper_.get(), point, kPointDeclined);
}
void CConvGen::Tell(COri* point) {
    TellKeeper(keeper_.get(), point, kOrientationPointDeclined);
}

/// A CR that the line kept is no part of the number.
void CConvGen::CheckRest(std::string_view text, std::size_t numberEnd, const Cause& noNumber) {
    const bool isBlank = IsBlankOrCr(text.substr(numberEnd));
    if (numberEnd == 0 && isBlank)
        return;
    const bool isNumber = numberEnd > 0 && isBlank;
    keeper_->CountNumber(isNumber);
    if (!isNumber)
        Note(numberEnd == 0 ? noNumber : kMoreThanNumber);
}

void CConvGen::JudgeFields(std::initializer_list<std::string_view> numbers, bool isWhole,
                           const Cause& fieldsMissing) {
    const auto isNumber = [](std::string_view text) {
        double unused = 0;
        return IsPlainNumber(text) || NumberAtStart(text, unused) > 0;
    };
    const auto isText = [](std::string_view text) { return !IsBlankOrCr(text); };
    if (std::ranges::any_of(numbers, isNumber)) {
        if (!isWhole)
            Note(fieldsMissing);
    } else if (!isWhole || std::ranges::any_of(numbers, isText)) {
        Skip(kNoNumbers);
    }
}

void CConvGen::JudgeHeight(std::string_view instrumentHeight) {
    if (!agreedHeight_.empty() && Same(instrumentHeight, agreedHeight_)) { // nearly always
        keeper_->CountNumber(true);
        return;
    }
    CSta* const station = CurrentStation();
    const double height = ReadNumber(instrumentHeight);
    if (!station || TrimBoth(instrumentHeight).empty())
        return;
    if (station->GetAltStr() != FiniteOrNoValue(height))
        Note(kHeightStays);
    else if (IsPlainNumber(instrumentHeight))
        agreedHeight_ = instrumentHeight;
}

void CConvGen::SetNomeAtJob(std::string name) {
    SetAtJob(&CJob::SetNome, std::move(name));
}
void CConvGen::SetOperAtJob(std::string operatorName) {
    SetAtJob(&CJob::SetOper, std::move(operatorName));
}
void CConvGen::SetStrumAtJob(std::string instrument) {
    SetAtJob(&CJob::SetStrum, std::move(instrument));
}
void CConvGen::SetDataAtJob(std::string date) {
    SetAtJob(&CJob::SetData, std::move(date));
}

void CConvGen::SetAtJob(JobSetter set, std::string text) {
    StringTrimBoth(text);
    if (CJob* const job = CurrentJob())
        (job->*set)(text);
}

void CConvGen::SetHStrumAtSta(double height) {
    agreedHeight_.clear();
    if (CSta* const station = CurrentStation())
        station->SetAltStr(FiniteOrNoValue(height));
}

Reading CConvGen::ReducedReading(double horizontalDistance, double heightDifference,
                                 double horizontalAngle) {
    if (!IsPresent(horizontalDistance) || !IsPresent(heightDifference))
        return {.horizontalAngle = horizontalAngle};
    warningKind_ = kReduced;
    return RoundedReadingFromReduced(horizontalDistance, heightDifference, horizontalAngle);
}

void CConvGen::SetPlace(CEgn& record, const Place& place) const {
    if (!Has(place))
        return;
    record.SetCoord(FiniteOrNoValue(place.x), FiniteOrNoValue(place.y), FiniteOrNoValue(place.z));
    record.CalcolaValiditaXYZ();
}

void CConvGen::MarkAsOffsetReference(CEgn& point) {
    point.SetCodeNC(true);
    point.SetCodeNV(true);
    point.SetCodeNP(true);
    point.SetCodeNT(true);
}

void CConvGen::AddJobOfFile(const std::string& path) {
    const AtLine none(*this, 0);
    AggiungeJob(NameOfFile(path), "", "", "");
}

std::string CConvGen::NameOfFile(const std::string& path) {
    std::string name = path;
    EstraiIlNomeFile(name);
    return TextOfPath(name);
}

bool CConvGen::HasLayout(std::string_view extension) const {
    if (*preparation_.layout)
        return preparation_.layout == extension;
    const std::size_t dot = fileName_->rfind('.');
    return dot != std::string::npos &&
           EqualIgnoringCase(std::string_view(*fileName_).substr(dot + 1), extension);
}

std::string CConvGen::GetNomeOfJob() {
    CJob* const job = CurrentJob();
    return job ? job->GetNome() : std::string();
}

CSta* CConvGen::CurrentStation() {
    return fieldBook_.GetStaAt(jobIndex_, staIndex_);
}

CPun* CConvGen::LastPoint() {
    const int count = fieldBook_.GetPunArSize(jobIndex_, staIndex_);
    return fieldBook_.GetPunAt(jobIndex_, staIndex_, count - 1);
}
