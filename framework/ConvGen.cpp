#include "framework/ConvGen.h"

#include "host/ConvCod.h"
#include "host/Messages.h"
#include "resources/Texts.h"
#include "routines/FileName.h"
#include "routines/Numbers.h"
#include "routines/Text.h"

#include <array>
#include <utility>

CConvGen::CConvGen(CLibCmp& fieldBook, std::string* fileName)
    : fileName_(fileName),
      codeTable_(new CConvCod),
      jobIndex_(fieldBook.GetJobArSize() - 1),
      fieldBook_(fieldBook) {}

CConvGen::~CConvGen() {
    static constexpr std::array<TextId, 5> kTexts = {
        TextId::None, TextId::Reduced, TextId::ReducedAtGround, TextId::FromCoordinates,
        TextId::FromZeroStations};
    if (warningKind_ <= kNoWarning || warningKind_ > kFromZeroStations)
        return;
    const std::string title = LoadText(TextId::ImportFile);
    MessageBoxOkExclam(nullptr, LoadText(kTexts[static_cast<std::size_t>(warningKind_)]), title);
}

void CConvGen::AggiungeJob(std::string name, std::string operatorName, std::string instrument,
                           std::string date) {
    CJob* const job = fieldBook_.AddJob(true);
    if (job)
        job->SetLabels(name, operatorName, instrument, date);
    jobIndex_ = job ? jobIndex_ + 1 : -1;
    staIndex_ = -1;
}

void CConvGen::AggiungeJobDelFile(const std::string& path) {
    AggiungeJob(NomeDelFile(path), "", "", "");
}

std::string CConvGen::NomeDelFile(const std::string& path) {
    std::string name = path;
    EstraiIlNomeFile(name);
    return TextOfPath(name);
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
    if (staIndex_ < 0) {
        CSta* const station = AddStation();
        if (!station)
            return;
        fieldBook_.GetIndiciDiSta(station, jobIndex_, staIndex_);
    }
    CPun* const point = fieldBook_.AddPun(jobIndex_, staIndex_, true);
    if (!point)
        return;
    const std::string converted = codeTable_->CodeConvertito(code);
    const std::string mode = codeTable_->ModalitaConver(code);
    point->SetNome(name);
    point->SetCode(converted);
    point->SetNote(note);
    point->SetAttribDis(mode);
    point->SetAltPri(FiniteOrNoValue(targetHeight));
    point->SetDtIntAng(FiniteOrNoValue(slopeDistance), FiniteOrNoValue(verticalAngle),
                       FiniteOrNoValue(horizontalAngle));
    point->TrasfCodOldAlf(true, codeTable_->GetModoConver());
}

/// Appends a station to the current job, in a first, unnamed job where there is none. That job is
/// then taken to be job 0, on purpose, whatever position it was given.
CSta* CConvGen::AddStation() {
    CSta* station = nullptr;
    if (jobIndex_ >= 0 || AddUnnamedJob())
        station = fieldBook_.AddSta(jobIndex_, true);
    if (!station)
        staIndex_ = -1;
    return station;
}

bool CConvGen::AddUnnamedJob() {
    if (!fieldBook_.AddJob(true))
        return false;
    jobIndex_ = 0;
    return true;
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
    if (CJob* const job = fieldBook_.GetJobAt(jobIndex_))
        (job->*set)(text);
}

void CConvGen::SetHStrumAtSta(double height) {
    if (CSta* const station = CurrentStation())
        station->SetAltStr(FiniteOrNoValue(height));
}

PolarReading CConvGen::ReducedReading(double horizontalDistance, double heightDifference) {
    if (!IsPresent(horizontalDistance) || !IsPresent(heightDifference))
        return {.slopeDistance = kNoValue, .zenithAngle = kNoValue};
    warningKind_ = kReduced;
    return RoundedPolarFromReduced(horizontalDistance, heightDifference);
}

std::string CConvGen::GetNomeOfJob() {
    CJob* const job = fieldBook_.GetJobAt(jobIndex_);
    return job ? job->GetNome() : std::string();
}

CSta* CConvGen::CurrentStation() {
    return fieldBook_.GetStaAt(jobIndex_, staIndex_);
}

CPun* CConvGen::LastPoint() {
    const int count = fieldBook_.GetPunArSize(jobIndex_, staIndex_);
    return fieldBook_.GetPunAt(jobIndex_, staIndex_, count - 1);
}
