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
    return OpenFile() &&
           ForEachLine([this] { return LeggeUnaRigaRAW(); }, [this] { ConvertLine(); });
}

bool CConvFileRAW::LeggeUnaRigaRAW() {
    if (!file_->ReadLineWithoutLast(line_))
        return false;
    line_ = TrimBoth(line_);
    recordType_ = line_.substr(0, 2);
    return true;
}

void CConvFileRAW::ConvertLine() {
    if (recordType_ == "ST")
        AggiungiSta();
    else if (recordType_ == "SS")
        AggiungiPun();
    else if (recordType_ == "F1")
        AggiungiPunF1();
}

std::string_view CConvFileRAW::SeparaCampo() {
    return TrimBoth(TakeField(line_, ','));
}

void CConvFileRAW::CutFields() {
    line_ = Piece(line_, kTypeAndComma);
    for (std::string_view& field : fields_)
        field = SeparaCampo();
}

void CConvFileRAW::AggiungiSta() {
    CutFields();
    backDirection_ = DoubleDaString(fields_[6]);
    AggiungeSta(std::string(fields_[0]), std::string(fields_[1]), DoubleDaString(fields_[4]),
                kNoValue, kNoValue);
}

void CConvFileRAW::AggiungiPun() {
    CutFields();
    WritePoint(DoubleDaString(fields_[3]));
}

/// A face-one reading takes its horizontal direction from the station record, on purpose: it is the
/// reading to the backsight, to which that record set the circle (to 0 where its field is empty).
void CConvFileRAW::AggiungiPunF1() {
    CutFields();
    WritePoint(IsPresent(backDirection_) ? backDirection_ : DoubleDaString(fields_[3]));
}

void CConvFileRAW::WritePoint(double horizontalAngle) {
    AggiungePun(std::string(fields_[0]), std::string(fields_[6]), "", DoubleDaString(fields_[1]),
                WithoutZeroDistance({.slopeDistance = DoubleDaString(fields_[2]),
                                     .zenithAngle = DoubleDaString(fields_[4]),
                                     .horizontalAngle = horizontalAngle}));
}
