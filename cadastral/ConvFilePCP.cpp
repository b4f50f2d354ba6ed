// A cadastral survey exchange file. Each record begins with the control character DC4 (shown as @
// here) and a digit, its type; fields are closed by "|". A record may run over several lines.
//
//   @0|150307|12345|F205|12|345|ROSSI MARIO|GEOMETRA|MILANO|   header: date (day, month, year),
//                              protocol, municipality code, sheet, parcel, surveyor, qualification,
//                              province
//   @1|100|CHIODO|             station: name, identifier
//   @2|101|SPIGOLO|123.4567|25.417|      observed point: name, code, horizontal angle, distance
//   @3|3|101|102|103|          line: number of vertices, their names
//   @7|2|101|102|RC|           the same with a style: colour and line type
//   @7|2|101|102|RC|Casa|Corte|Muro|     ... and three labels
//   @4|A|B|1.20|Muro|          labels 1 and 2, a real value, material
//   @5|A|1.20|3.40|Muro|       label 1, two real values, material
//   @6|Muro|                   material
//   @8|PF01|5000.00|1000.00|5|Spigolo|   orientation point: name, Y, X, reliability, comment
//   @9|10.50|3|1|A|Muro|       values of the document: real, two integers, label 1, material
//
// A list of vertices may go on in the next record: an empty field says so. Records of other types,
// and records that begin with "@" itself, are skipped. A record of 1023 characters ends the
// reading.

#include "cadastral/ConvFilePCP.h"

#include "host/Cts.h"
#include "host/NoValue.h"
#include "routines/Numbers.h"
#include "routines/Text.h"

#include <algorithm>

namespace {

constexpr char kRecordStart = '\x14'; // DC4
constexpr char kFieldEnd = '|';

/// Shorter records are skipped.
constexpr std::size_t kShortestRecord = 3;

/// A style stands at the end of a record: "|", colour, line type, "|", line end.
constexpr std::size_t kStyleLength = 5;

/// Three labels behind a style need as many field ends.
constexpr std::ptrdiff_t kLabelFieldEnds = 5;

bool IsOneOf(char c, std::string_view letters) {
    return letters.find(UpperAscii(c)) != std::string_view::npos;
}

/// The pairs of letters that are a style: a colour with a line type, or P with one of its own.
bool IsStyle(char colour, char lineType) {
    return (IsOneOf(colour, "VRN") && IsOneOf(lineType, "CTP")) ||
           (IsOneOf(colour, "P") && IsOneOf(lineType, "VD"));
}

} // namespace

CConvFilePCP::CConvFilePCP(CLibCmp& fieldBook, CCts& document, std::string* fileName)
    : CConvGen(fieldBook, fileName), document_(document) {
    // Points before any header or station go into the first station of the first job.
    jobIndex_ = 0;
    staIndex_ = 0;
}

CConvFilePCP::~CConvFilePCP() = default;

bool CConvFilePCP::Esegui() {
    if (!OpenFile())
        return false;
    while (LeggeUnaRigaPCP()) {
        if (record_.size() >= kShortestRecord && record_.front() != '@')
            TipoRiga();
    }
    file_->Close();
    document_.DividiRighe(&lines_);
    return true;
}

/// Reads up to the start of the next record. The last character read goes: the one that starts the
/// next record, but the last character of the file at its end. False where there is no record, and
/// where one is too long, which ends the reading for good.
bool CConvFilePCP::LeggeUnaRigaPCP() {
    if (atEnd_)
        return false;
    std::array<char, kLongestRecord> buffer;
    std::size_t length = 0;
    for (;;) {
        const int c = file_->ReadChar();
        if (c == TextFile::kEnd) {
            atEnd_ = true;
            break;
        }
        buffer[length++] = static_cast<char>(c);
        if (length == kLongestRecord) {
            atEnd_ = true;
            return false;
        }
        if (c == kRecordStart && length > 1) {
            file_->StepBack();
            break;
        }
    }
    const std::string_view text = DropLast({buffer.data(), length});
    record_ = text.substr(0, text.find('\0')); // a NUL ends the text
    restBegin_ = 0;
    return true;
}

bool CConvFilePCP::TipoRiga() {
    if (record_.front() != kRecordStart)
        return true;
    const char type = record_[1];
    restBegin_ = record_.find(kFieldEnd) + 1; // 0, the whole text, where there is none
    switch (type) {
    case '0':
        ConversioneRiga0();
        break;
    case '1':
        ConversioneRiga1();
        break;
    case '2':
        ConversioneRiga2();
        break;
    case '3':
    case '7':
        ConversioneRiga3o7(type);
        break;
    case '4':
        ConversioneRiga4();
        break;
    case '5':
        ConversioneRiga5();
        break;
    case '6':
        ConversioneRiga6();
        break;
    case '8':
        ConversioneRiga8();
        break;
    case '9':
        ConversioneRiga9();
        break;
    default:
        break;
    }
    return true;
}

/// Cuts the next field off. Where nothing closes it the field before it stays, on purpose: every
/// field that is meant to be read is closed.
void CConvFilePCP::SeparaCampo() {
    std::string_view rest = Rest();
    std::string_view field;
    if (!CutAt(rest, kFieldEnd, field))
        return;
    field_ = TrimBoth(field);
    restBegin_ = record_.size() - rest.size();
    CleanData();
}

/// Takes line breaks out of the field, and blanks: from the first two in a row on, one of those and
/// every later one. Behind a character that is taken out the next one is not looked at, on purpose:
/// later files refer to points by the names that earlier documents hold, which were cleaned so.
void CConvFilePCP::CleanData() {
    if (field_.size() < 2)
        return;
    bool doubleBlankMet = false;
    const auto isTakenOut = [&](char c, char next) {
        if (c == '\n' || c == '\r')
            return true;
        if (c != ' ')
            return false;
        const bool takenOut = doubleBlankMet || next == ' ';
        doubleBlankMet = takenOut;
        return takenOut;
    };
    const std::size_t last = field_.size() - 1;
    std::size_t kept = 0;
    std::size_t i = 0;
    while (i < last) {
        if (isTakenOut(field_[i], field_[i + 1]))
            ++i;
        field_[kept++] = field_[i++];
    }
    if (i == last)
        field_[kept++] = field_[i];
    field_.resize(kept);
    if (field_.ends_with('\n'))
        field_.pop_back();
}

const std::string& CConvFilePCP::NextField() {
    SeparaCampo();
    return field_;
}

/// The next field as a real value of a line; 0 where it is more than half the no-value marker.
double CConvFilePCP::NextReal() {
    const double value = NumberForBook(NextField());
    return value > kPresentBelow ? 0 : value;
}

CRig& CConvFilePCP::AddLine(char type) {
    CRig* const line = lines_.AddRig();
    line->SetTipoRiga(type);
    if (keeper_)
        keeper_->WrittenLine();
    return *line;
}

/// Header. A date of eight digits gives the first two digits of its year, on purpose: the
/// document's year has two characters, and what makes these files writes two.
void CConvFilePCP::ConversioneRiga0() {
    Tell(fieldBook_.AddJob(true));
    jobIndex_ = fieldBook_.GetJobArSize() - 1;

    const std::string date = NextField();
    document_.SetGior(std::string(Piece(date, 0, 2)));
    document_.SetMese(std::string(Piece(date, 2, 2)));
    document_.SetAnno(std::string(Piece(date, 4, 2)));
    document_.SetProt(NextField());
    document_.SetCdCm(NextField());
    document_.SetFogl(NextField());
    document_.SetMapp(NextField());

    std::string_view firstName = NextField();
    std::string_view surname;
    if (CutAt(firstName, ' ', surname)) {
        document_.SetTcnC(std::string(surname));
        document_.SetTcnN(std::string(firstName));
    }
    document_.SetQual(NextField());
    const std::string& province = NextField();
    document_.SetProv(province.size() == 2 ? province : document_.GetNomeProvSigla(province));
}

void CConvFilePCP::ConversioneRiga1() {
    if (jobIndex_ < 0)
        return;
    const std::string name = NextField();
    const std::string identifier = NextField();
    CSta* const station = fieldBook_.AddSta(jobIndex_, true);
    Tell(station);
    if (!station)
        return;
    station->SetNome(name);
    station->SetIden(identifier);
    station->SetAltStr(0.0);
    fieldBook_.GetIndiciDiSta(station, jobIndex_, staIndex_);
}

/// Observed points are reduced to the horizontal: their zenith angle is always 100.
void CConvFilePCP::ConversioneRiga2() {
    if (jobIndex_ < 0 || staIndex_ < 0)
        return;
    const std::string name = NextField();
    const std::string code = NextField();
    const double horizontalAngle = NumberForBook(NextField());
    const double distance = DistanceOrNoValue(NumberForBook(NextField()));
    CPun* const point = fieldBook_.AddPun(jobIndex_, staIndex_, true);
    Tell(point);
    if (!point)
        return;
    point->SetNome(name);
    point->SetCode(code);
    point->SetAltPri(0.0);
    point->SetDtIntAng(distance, 100.0, horizontalAngle);
    point->TrasfCodOldAlf(true, false);
}

/// A line: a number of vertices and their names. The number is believed, whatever the record holds:
/// where names run out, the last one stays.
void CConvFilePCP::ConversioneRiga3o7(char type) {
    const int vertexCount = IntDaStringNullZero(NextField());
    if (vertexCount < 1)
        return;
    CRig& line = AddLine(type);
    if (type == '7') {
        if (SeparaCampiFinaliRiga7(vertexCount)) {
            line.SetLblNome1(labels_[2]);
            line.SetLblNome2(labels_[1]);
            line.SetLblMater(labels_[0]);
        }
        SeparaColoreTpLinea();
    }
    line.VrtArReserve(vertexCount);
    for (int i = 0; i < vertexCount; ++i) {
        CCtsVrt* const vertex = line.GetVrtAt(line.AddVrt({}));
        ReadVertex(type);
        vertex->name = field_;
        vertex->colour = colour_;
        vertex->lineType = lineType_;
        if (i > 0) { // a segment has the style of the record that holds its end
            CCtsVrt* const previous = line.GetVrtAt(i - 1);
            previous->colour = colour_;
            previous->lineType = lineType_;
        }
        if (NamesRanOut()) {
            line.RepeatLastVrt(vertexCount - i - 1);
            return;
        }
    }
}

/// True where every vertex that is still asked for would be the one before it: no field is closed
/// any more, and no record can go on with the list.
bool CConvFilePCP::NamesRanOut() const {
    return !Contains(Rest(), {&kFieldEnd, 1}) && (!field_.empty() || atEnd_);
}

/// The next vertex, in the current field. An empty one says that the list goes on in the next
/// record, whatever its type: its first field is that, its second the vertex.
void CConvFilePCP::ReadVertex(char type) {
    SeparaCampo();
    if (!field_.empty() || !LeggeUnaRigaPCP())
        return;
    if (type == '7')
        SeparaColoreTpLinea();
    SeparaCampo();
    SeparaCampo();
}

/// Reads the style from the end of the record. Its colour letter becomes a NUL, and what is left of
/// the pair may still be read as a vertex where the list is too short, on purpose: the documents
/// made from such files hold that vertex, and a document that is made again must equal them.
void CConvFilePCP::SeparaColoreTpLinea() {
    colour_ = 'N';
    lineType_ = 'C';
    const std::string_view rest = Rest();
    if (rest.size() < kStyleLength)
        return;
    const std::size_t style = rest.size() - kStyleLength;
    const char colour = rest[style + 1];
    const char lineType = rest[style + 2];
    if (rest[style] != kFieldEnd || !IsStyle(colour, lineType))
        return;
    colour_ = UpperAscii(colour);
    lineType_ = UpperAscii(lineType);
    RestAt(style + 1) = '\0';
}

/// Reads three labels from the end of the record, where a style stands before them. All three walks
/// begin at the same place, and the first one leaves a NUL: so the second and third label are the
/// first one with a NUL for its second character, on purpose: hosts know such labels by that NUL.
bool CConvFilePCP::SeparaCampiFinaliRiga7(int) {
    const std::string_view rest = Rest();
    if (std::ranges::count(rest, kFieldEnd) < kLabelFieldEnds)
        return false;
    std::size_t styleEnd = rest.size();
    for (int fieldEnds = 0; fieldEnds < 4; ++fieldEnds)
        styleEnd = rest.rfind(kFieldEnd, styleEnd - 1);
    const bool hasStyle = styleEnd > 3 && rest[styleEnd - 3] == kFieldEnd &&
                          IsOneOf(rest[styleEnd - 2], "VRN") && IsOneOf(rest[styleEnd - 1], "CTP");
    if (!hasStyle)
        return false;
    const std::size_t labelEnd = rest.size() - 2;
    for (std::string& label : labels_) {
        const std::size_t fieldEnd = rest.rfind(kFieldEnd, labelEnd - 1);
        label = TrimBoth(rest.substr(fieldEnd + 1, labelEnd - fieldEnd - 1));
        RestAt(fieldEnd + 2) = '\0';
    }
    return true;
}

void CConvFilePCP::ConversioneRiga4() {
    CRig& line = AddLine('4');
    line.SetLblNome1(NextField());
    line.SetLblNome2(NextField());
    line.SetDatoRea2(NextReal());
    line.SetLblMater(NextField());
}

void CConvFilePCP::ConversioneRiga5() {
    CRig& line = AddLine('5');
    line.SetLblNome1(NextField());
    line.SetDatoRea1(NextReal());
    line.SetDatoRea2(NextReal());
    line.SetLblMater(NextField());
}

void CConvFilePCP::ConversioneRiga6() {
    AddLine('6').SetLblMater(NextField());
}

/// Orientation point. The file gives Y (north) before X (east).
void CConvFilePCP::ConversioneRiga8() {
    const std::string name = NextField();
    const double y = NumberForBook(NextField());
    const double x = NumberForBook(NextField());
    const std::string reliability = NextField();
    const std::string comment = NextField();
    COri* const point = fieldBook_.AddOri(true);
    Tell(point);
    if (!point)
        return;
    point->SetNome(name);
    point->SetCoordXY(x, y);
    if (!reliability.empty())
        point->SetAttendibO(IntDaStringNullZero(reliability));
    point->SetComm(comment);
    point->CalcolaValiditaXYZ();
}

void CConvFilePCP::ConversioneRiga9() {
    CRig& values = document_.GetRigValori();
    values.SetDatoRea1(NumberForBook(NextField()));
    if (!NextField().empty())
        values.SetDatoInt1(IntDaStringNullZero(field_));
    if (!NextField().empty())
        values.SetDatoInt2(IntDaStringNullZero(field_));
    values.SetLblNome1(NextField());
    values.SetLblMater(NextField());
}
