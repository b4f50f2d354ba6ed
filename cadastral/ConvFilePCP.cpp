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
// reading. What lies behind the last field of a record belongs to none.

#include "cadastral/ConvFilePCP.h"

#include "host/Cts.h"
#include "host/NoValue.h"
#include "routines/Numbers.h"
#include "routines/Text.h"

#include <algorithm>
#include <utility>

namespace {

constexpr char kRecordStart = '\x14'; // DC4
constexpr char kFieldEnd = '|';

/// What may stand behind the end of a text without being one.
constexpr std::string_view kPadding("\0\r\n\x1A", 4);

/// Shorter records are skipped.
constexpr std::size_t kShortestRecord = 3;

/// A style stands at the end of a record: "|", colour, line type, "|", line end.
constexpr std::size_t kStyleLength = 5;

/// A date with a year of four digits.
constexpr std::size_t kLongDate = 8;

/// Three labels behind a style need as many field ends.
constexpr std::ptrdiff_t kLabelFieldEnds = 5;

constexpr Cause kFieldNotClosed = {
    RemarkKind::Incomplete,
    "a record with fewer closed fields than it needs: in place of each that is missing the field "
    "before it counts again"};
constexpr Cause kVerticesMissing = {
    RemarkKind::Incomplete,
    "a line (3, 7) with fewer vertices than it says: the last one is repeated for those missing"};
constexpr Cause kNoVertices = {
    RemarkKind::Incomplete,
    "a line (3, 7) without a number of vertices from 1 to 32767 is not read"};
constexpr Cause kNoStyle = {
    RemarkKind::Incomplete,
    "a line with a style (7) that does not end in one: its vertices have colour N and line type C"};
constexpr Cause kNoFirstName = {
    RemarkKind::Incomplete,
    "a surveyor whose surname and first name no blank parts: neither is read"};
constexpr Cause kLabels = {
    RemarkKind::NotRead,
    "the style and two of the three labels of a line (7) are not read: colour and line type are N "
    "and C, and the last label stands in all three places, twice with NUL for its second "
    "character"};
constexpr Cause kCentury = {
    RemarkKind::NotRead,
    "the last two digits of a date of eight are not read: the first two of its year are taken"};
constexpr Cause kProvince = {RemarkKind::NotRead,
                             "a province that is not known by its name is not read"};
constexpr Cause kTextBehind = {RemarkKind::NotRead,
                               "text behind the last field that is read of a record is not read"};
constexpr Cause kUnknownType = {RemarkKind::Unknown,
                                "a record of another type than 0 to 9 is skipped"};
constexpr Cause kNoRecordStart = {RemarkKind::Unknown,
                                  "text that is no record (DC4, a digit, fields) is skipped"};
constexpr Cause kNulInRecord = {
    RemarkKind::Nul, "a NUL byte ends the text of its record: what is behind it is not read"};
constexpr Cause kRecordTooLong = {
    RemarkKind::LongLine,
    "a record of more than 1022 characters ends the reading: it and all behind it is not read"};

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
        else
            Skip(kNoRecordStart);
    }
    file_->Close();
    document_.DividiRighe(&lines_);
    return true;
}

/// Reads up to the start of the next record. The last character read goes: the one that starts the
/// next record, but the last character of the file at its end. False where there is no record, and
/// where one is too long, which ends the reading for good.
bool CConvFilePCP::LeggeUnaRigaPCP() {
    if (keeper_)
        TellLinesBehindFirst();
    if (atEnd_)
        return false;
    std::size_t length = 0;
    for (;;) {
        length +=
            file_->ReadRun(buffer_.data() + length, kLongestRecord - 1 - length, kRecordStart);
        const int c = file_->ReadChar();
        if (c == TextFile::kEnd) {
            atEnd_ = true;
            break;
        }
        buffer_[length++] = static_cast<char>(c);
        if (length == kLongestRecord) {
            EndAtLongRecord();
            return false;
        }
        if (c == kRecordStart && length > 1) {
            file_->StepBack();
            break;
        }
    }
    const std::string_view text = DropLast({buffer_.data(), length});
    record_ = text.substr(0, text.find('\0')); // a NUL ends the text
    restBegin_ = 0;
    endIsRead_ = false;
    if (keeper_)
        TellFirstLine({buffer_.data(), atEnd_ ? length : text.size()});
    return true;
}

void CConvFilePCP::EndAtLongRecord() {
    file_->EndHere();
    if (keeper_) {
        untold_ = {buffer_.data(), buffer_.size()};
        while (!untold_.empty()) {
            TellLine();
            Note(kRecordTooLong);
        }
        file_->ReadChar(); // tells how much is left
    }
    atEnd_ = true;
}

/// Tells of the line that a record begins on. Where the one before it ended there, too, it is read
/// where either was.
void CConvFilePCP::TellFirstLine(std::string_view text) {
    untold_ = text;
    if (!text.empty())
        TellLine();
}

/// Tells of the lines that go on with the record, after it was converted. What lies behind its last
/// field is no part of it.
void CConvFilePCP::TellLinesBehindFirst() {
    const bool isKnown = restBegin_ > 0;
    const auto placeOfNext = [&] {
        return static_cast<std::size_t>(untold_.data() - buffer_.data());
    };
    const auto noteLeftOver = [&] {
        if (!isKnown || endIsRead_)
            return;
        const std::string_view told = std::string_view(record_).substr(0, placeOfNext());
        if (Piece(told, restBegin_).find_first_not_of(" \t\r\n") != std::string_view::npos)
            Note(kTextBehind);
    };
    noteLeftOver();
    while (!untold_.empty()) {
        const bool isRead = endIsRead_ || placeOfNext() < restBegin_;
        TellLine();
        if (isRead)
            noteLeftOver();
        else
            Skip(kNoRecordStart);
    }
}

/// Tells of the next line of the record.
void CConvFilePCP::TellLine() {
    const std::size_t lineEnd = untold_.find('\n');
    const bool isEnded = lineEnd != std::string_view::npos;
    const std::string_view line = untold_.substr(0, isEnded ? lineEnd + 1 : lineEnd);
    untold_.remove_prefix(line.size());
    std::string_view text = line.substr(0, lineEnd);
    const std::size_t run = isEnded ? text.size() - (text.find_last_not_of('\r') + 1) : 0;
    text.remove_suffix(run);
    const std::size_t nul = line.find('\0');
    keeper_->PieceBegins({.text = line.substr(0, nul),
                          .number = lineEnds_ + 1,
                          .continues = keeper_->Line() == lineEnds_ + 1,
                          .hasLoneCr = Contains(text, '\r'),
                          .hasCrRun = run > 0,
                          .losesLast = atEnd_ && untold_.empty() && !isEnded});
    lineEnds_ += isEnded ? 1 : 0;
    if (Piece(line, nul).find_first_not_of(kPadding) != std::string_view::npos)
        Note(kNulInRecord);
}

bool CConvFilePCP::TipoRiga() {
    if (record_.front() != kRecordStart) {
        Skip(kNoRecordStart);
        return true;
    }
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
        restBegin_ = 0;
        Skip(kUnknownType);
        break;
    }
    return true;
}

/// Cuts the next field off. Where nothing closes it the field before it stays, on purpose: every
/// field that is meant to be read is closed.
void CConvFilePCP::SeparaCampo() {
    std::string_view rest = Rest();
    std::string_view field;
    if (!CutAt(rest, kFieldEnd, field)) {
        Note(kFieldNotClosed);
        return;
    }
    field_ = TrimBoth(field);
    restBegin_ = record_.size() - rest.size();
    CleanData();
}

/// Takes line breaks out of the field, and blanks: from the first two in a row on, one of those and
/// every later one. Behind a character that is taken out the next one is not looked at, on purpose:
/// later files refer to points by the names that earlier documents hold, which were cleaned so.
void CConvFilePCP::CleanData() {
    const auto isUnclean = [this](std::size_t i) {
        return field_[i] == '\n' || field_[i] == '\r' || (field_[i] == ' ' && field_[i + 1] == ' ');
    };
    std::size_t clean = 0; // nearly always all of it
    while (clean < field_.size() && !isUnclean(clean))
        ++clean;
    if (field_.size() < 2 || clean == field_.size())
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

double CConvFilePCP::NextNumber() {
    return FiniteOrNoValue(ReadNumber(NextField()));
}

/// The current field as an integer.
short CConvFilePCP::Integer() {
    CheckNumber(field_);
    return IntDaStringNullZero(field_);
}

/// The next field as a real value of a line; 0 where it is more than half the no-value marker.
double CConvFilePCP::NextReal() {
    const double value = NextNumber();
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
    if (date.size() == kLongDate)
        Note(kCentury);
    document_.SetProt(NextField());
    document_.SetCdCm(NextField());
    document_.SetFogl(NextField());
    document_.SetMapp(NextField());

    std::string_view firstName = NextField();
    std::string_view surname;
    if (CutAt(firstName, ' ', surname)) {
        document_.SetTcnC(std::string(surname));
        document_.SetTcnN(std::string(firstName));
    } else if (!firstName.empty()) {
        Note(kNoFirstName);
    }
    document_.SetQual(NextField());
    std::string province = NextField();
    if (province.size() != 2) {
        province = document_.GetNomeProvSigla(province);
        if (province.empty() && !field_.empty())
            Note(kProvince);
    }
    document_.SetProv(province);
}

void CConvFilePCP::ConversioneRiga1() {
    if (jobIndex_ < 0)
        return Tell(static_cast<CSta*>(nullptr));
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
        return Tell(static_cast<CPun*>(nullptr));
    const std::string name = NextField();
    const std::string code = NextField();
    const double horizontalAngle = NextNumber();
    const double distance = DistanceOrNoValue(NextNumber());
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
    SeparaCampo();
    const int vertexCount = Integer();
    if (vertexCount < 1)
        return Note(kNoVertices);
    CRig& line = AddLine(type);
    if (type == '7') {
        if (SeparaCampiFinaliRiga7(vertexCount)) {
            line.SetLblNome1(labels_[2]);
            line.SetLblNome2(labels_[1]);
            line.SetLblMater(labels_[0]);
            endIsRead_ = true;
            Note(kLabels);
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
            if (i + 1 < vertexCount)
                Note(kVerticesMissing);
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
    const bool hasLabels = std::exchange(endIsRead_, true);
    const std::string_view rest = Rest();
    const std::string_view style = Piece(rest, rest.size() - kStyleLength);
    if (style.size() < kStyleLength || style[0] != kFieldEnd || !IsStyle(style[1], style[2])) {
        if (!hasLabels)
            Note(kNoStyle);
        return;
    }
    colour_ = UpperAscii(style[1]);
    lineType_ = UpperAscii(style[2]);
    RestAt(rest.size() - kStyleLength + 1) = '\0';
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
    const double y = NextNumber();
    const double x = NextNumber();
    const std::string reliability = NextField();
    CheckNumber(reliability);
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
    values.SetDatoRea1(NextNumber());
    if (!NextField().empty())
        values.SetDatoInt1(Integer());
    if (!NextField().empty())
        values.SetDatoInt2(Integer());
    values.SetLblNome1(NextField());
    values.SetLblMater(NextField());
}
