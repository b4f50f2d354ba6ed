// A raw observation file: comma-separated records behind a type of two letters.
//
//   CO,Raw data format V2.00
//   ST,1000,,1001,,1.545,0.0000,123.4567           station: name, code, -, -, instrument height, -,
//                                                  direction of the backsight
//   F1,1001,1.600,85.412,0.0000,99.8123,11:24:32,  face one: name, target height, slope distance,
//                                                  horizontal angle, zenith angle, time, code
//   SS,101,1.600,25.417,69.3716,102.9320,11:25:34,SPIGOLO    side shot: the same
//
// Values are taken as they are: metres and gon. Other records (CO, MP, F2 ...) are skipped.

#include "converters/ConvFileRAW.h"

#include "routines/Numbers.h"
#include "routines/Text.h"

namespace {

/// The type and its comma.
constexpr std::size_t kTypeAndComma = 3;

} // namespace

CConvFileRAW::CConvFileRAW(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

CConvFileRAW::~CConvFileRAW() = default;

bool CConvFileRAW::Esegui() {
    if (!OpenFile())
        return false;
    while (LeggeUnaRigaRAW()) {
        if (recordType_ == "ST")
            AggiungiSta();
        else if (recordType_ == "SS")
            AggiungiPun();
        else if (recordType_ == "F1")
            AggiungiPunF1();
    }
    file_.Close();
    return true;
}

bool CConvFileRAW::OpenFile() {
    return file_.Open(*fileName_);
}

bool CConvFileRAW::LeggeUnaRigaRAW() {
    if (!file_.ReadLineWithoutLast(line_))
        return false;
    line_ = TrimBoth(line_);
    recordType_ = line_.substr(0, 2);
    return true;
}

std::string_view CConvFileRAW::SeparaCampo() {
    return TrimBoth(TakeField(line_, ','));
}

void CConvFileRAW::SeparaCampi() {
    line_ = Piece(line_, kTypeAndComma);
    for (std::string_view& field : fields_)
        field = SeparaCampo();
}

void CConvFileRAW::AggiungiSta() {
    SeparaCampi();
    backDirection_ = DoubleDaString(fields_[6]);
    AggiungeSta(std::string(fields_[0]), std::string(fields_[1]), DoubleDaString(fields_[4]),
                kNoValue, kNoValue);
}

void CConvFileRAW::AggiungiPun() {
    SeparaCampi();
    AddPoint(DoubleDaString(fields_[3]));
}

/// A face-one reading takes its horizontal direction from the station record, on purpose, whatever
/// that record's field gave (0 where it was empty).
void CConvFileRAW::AggiungiPunF1() {
    SeparaCampi();
    AddPoint(IsPresent(backDirection_) ? backDirection_ : DoubleDaString(fields_[3]));
}

void CConvFileRAW::AddPoint(double horizontalAngle) {
    AggiungePun(std::string(fields_[0]), std::string(fields_[6]), "", DoubleDaString(fields_[1]),
                DistanceOrNoValue(DoubleDaString(fields_[2])), DoubleDaString(fields_[4]),
                horizontalAngle);
}
