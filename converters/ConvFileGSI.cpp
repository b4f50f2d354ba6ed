// A GSI file: one measurement block a line, a block a row of words separated by blanks. GSI-8 words
// have eight data digits, GSI-16 words sixteen, and GSI-16 lines begin with an asterisk.
//
//  410001+00000030 42....+0000S100 43....+000CHIOD 44....+00001545
//  110002+00000101 21.322+03496940 22.322+09364360 31..00+00030485 87..10+00001500
//  110003+00000102 21.322+12345670 32..00+00012300 33..00-00000450 71....+000SPIGO
//  110004+0000S200 84..10+00085412 85..10+00000000 88..10+00001498 71....+00000002
//  110005+00000103 21.322+23456780 22.322+09911110 31..06+00253418 87..10+00001600
//  *41....+0000000000OCUPAR 42....+000000000000S300 43....+0000000000MARMO1 44....+0000000000001550
//  *410007+000000000000PALO␠
//  *110008+0000000000000104 21.322+0000000012345678 22.322+0000000009876543 31..06+0000000000123450
//  !a comment
//
// A code block that opens a station (name, code, instrument height); two points, the second by
// horizontal distance and height difference; a line that word 84 makes a station; a point. Then the
// other dialect: a station, a code for the points that follow (a blank, here ␠, must end its word),
// a point in GSI-16.
//
// A word, counted from the blank before it: 1-2 word index, 3-6 information (6 is the unit), 7
// sign, from 8 the data. 11 point number, 21 horizontal angle, 22 zenith angle, 31 slope distance,
// 32 horizontal distance, 33 height difference, 71 point code, 84 station easting, 87 target
// height, 88 instrument height, 41 code block. The first word is never looked up by its index: name
// and block number are taken from it by position. The first word of a kind in the line counts.
//
// Lengths come out in metres, angles in gon. Coordinates (81-83 of the point, 84-86 of the station)
// are read by the complete rules alone, which also take a station that holds 25.342, and the code
// blocks 2 and 21, for what they are.

#include "converters/ConvFileGSI.h"

#include "routines/Angles.h"
#include "routines/Fields.h"
#include "routines/Numbers.h"
#include "routines/Text.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>

namespace {

/// How far the parts of a word lie behind the blank that precedes it.
constexpr std::size_t kTextSearch = 5; ///< the "+" of a text is looked for from here
constexpr std::size_t kUnit = 6;
constexpr std::size_t kSign = 7;
constexpr std::size_t kData = 8;
constexpr std::size_t kFirstSign = kSign - 1; ///< in the first word, which no blank precedes
constexpr std::size_t kFewestDigits = 8;

/// A slope distance up to this one, metres, was not measured.
constexpr double kLongestNoDistance = 0.001;

constexpr std::uint8_t kAbsent = 255; ///< no word of a line
/// The first words of a line are found by their indexes, those from here on one after the other.
constexpr std::size_t kLastFound = 254;

/// The blank that ends the first word is looked for from here.
constexpr std::size_t kFirstWordEnd = 3;

/// True where the line is marked as one to leave out, by "25.342" anywhere in it. Looked at on
/// every line, so by its rarest pair of characters.
bool HoldsIgnoredMark(std::string_view line) {
    return HoldsPair(line, '5', '.') && Contains(line, "25.342");
}

// What is remarked on.
constexpr Cause kNoWord = {
    RemarkKind::Unknown,
    "a line without a single word of GSI is no record, but becomes a point all the same"};
constexpr Cause kNoBlock = {RemarkKind::Unknown,
                            "a line that begins like a code block but is none is skipped"};
constexpr Cause kMarkedStation = {
    RemarkKind::NotRead, "a station line that holds 25.342 is left out: its set-up is missing, and "
                         "its points are with the set-up before"};
constexpr Cause kMarkedLine = {RemarkKind::NotRead, "a line that holds 25.342 is left out"};
constexpr Cause kOtherBlock = {
    RemarkKind::NotRead, "code blocks of other numbers or kinds than those that open a station, or "
                         "set a code or target height, are not read"};
constexpr Cause kBlockWithoutHeight = {
    RemarkKind::Incomplete,
    "a code block 1 without word 43 opens no station: its set-up is missing"};
constexpr Cause kOpenCode = {
    RemarkKind::Incomplete,
    "a code block with a code whose word no blank ends is not read: its code is missing"};
constexpr Cause kBacksight = {
    RemarkKind::NotRead,
    "points named BS1, readings to the backsight, are left out as the file says"};
constexpr Cause kNoPointNumber = {RemarkKind::Incomplete,
                                  "a line that does not begin with a point number (word 11): its "
                                  "name is what its first word holds, if anything"};
constexpr Cause kNoStationName = {RemarkKind::Incomplete,
                                  "a code block without a name of the station: it has none"};
constexpr Cause kShortWord = {
    RemarkKind::Incomplete,
    "a word with fewer than eight digits, cut short: its value is what is left of them"};
constexpr Cause kTextWithMinus = {RemarkKind::NotRead,
                                  "the text of a word without a plus sign is not read: empty"};
constexpr Cause kHalfReduced = {RemarkKind::NotRead,
                                "a horizontal distance (32) or height difference (33) without the "
                                "other, and without slope distance, is not read"};
constexpr Cause kNoDistance = {
    RemarkKind::NotRead,
    "a slope distance of a millimetre or less, or a negative one, is taken for none: absent"};

constexpr Cause kWholeDegrees = {RemarkKind::Unit,
                                 "an angle in decimal degrees is read without its decimals: it is "
                                 "100000 times too large"};
constexpr Cause kHorizontalSexagesimal = {
    RemarkKind::Unit, "horizontal angle in sexagesimal degrees is not read: absent"};
constexpr Cause kZenithSexagesimal = {RemarkKind::Unit,
                                      "zenith angle in sexagesimal degrees is not read: absent"};
constexpr Cause kHorizontalMils = {RemarkKind::Unit,
                                   "horizontal angle in mils is not read: absent"};
constexpr Cause kZenithMils = {RemarkKind::Unit, "zenith angle in mils is not read: absent"};
constexpr Cause kOtherUnit = {
    RemarkKind::Unit, "an angle in a unit of lengths, or a length in one of angles, is scaled as "
                      "that unit says"};
constexpr Cause kNoUnit = {RemarkKind::Unit,
                           "a value in a unit that is none of its kind is not read: absent"};

constexpr Cause kPointCoordinates = {RemarkKind::NotRead,
                                     "words 81 to 83 (coordinates of the point) are not read"};
constexpr Cause kStationCoordinates = {RemarkKind::NotRead,
                                       "words 84 to 86 (coordinates of the station) are not read"};
constexpr Cause kStationTarget = {RemarkKind::NotRead,
                                  "a target height (word 87) in a station line is not read"};
constexpr Cause kStationMeasurements = {
    RemarkKind::NotRead,
    "measurements (words 21 to 33) in a station line are not read: no point is made of them"};
constexpr Cause kConstants = {RemarkKind::NotRead,
                              "words 51 to 59 (prism constant, ppm) are not read"};
constexpr Cause kAttributes = {RemarkKind::NotRead,
                               "words 72 to 79 (attributes, remarks) are not read"};
constexpr Cause kLevel = {RemarkKind::NotRead,
                          "words of three digits (readings of a digital level) are not read"};
constexpr Cause kOtherWords = {RemarkKind::NotRead,
                               "other words (instrument, date, time, differences, further code "
                               "information, texts) are not read"};

constexpr bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

constexpr bool IsSign(char c) {
    return c == '+' || c == '-';
}

/// Decimal degrees, five decimals.
double GonFromDecimals(double data) {
    return GonFromDegrees(data / 100000);
}

/// Degrees, minutes, seconds and their tenths (DDDMMSSs); absent where the minutes or seconds are
/// none.
double GonFromSexagesimal(double data) {
    const double size = std::fabs(data);
    const double degrees = std::floor(size / 100000);
    const double minutes = std::fmod(std::floor(size / 1000), 100);
    const double seconds = std::fmod(size, 1000) / 10;
    if (!(minutes < 60 && seconds < 60))
        return kNoValue;
    const double gon = GonFromDegrees(degrees + minutes / 60 + seconds / 3600);
    return data < 0 ? -gon : gon;
}

/// Mils, four decimals: 6400 to the circle.
double GonFromMils(double data) {
    return data / 10000 * 400 / 6400;
}

} // namespace

/// What becomes of the words of a line, by their indexes.
struct CConvFileGSI::WordRules {
    std::array<const Cause*, kNoIndex> causes{}; ///< what is remarked on; null: it is read
    IndexSet notRead;                            ///< those with a cause

    constexpr WordRules(std::initializer_list<std::uint8_t> indexes) {
        Fill(0, kNoIndex - 1, kOtherWords);
        Fill(51, 59, kConstants);
        Fill(72, 79, kAttributes);
        Fill(81, 83, kPointCoordinates);
        Fill(84, 86, kStationCoordinates);
        for (const std::uint8_t index : indexes) {
            causes[index] = nullptr;
            notRead.Remove(index);
        }
    }

    constexpr WordRules OfStation() const {
        WordRules rules = *this;
        rules.Fill(21, 22, kStationMeasurements);
        rules.Fill(31, 33, kStationMeasurements);
        rules.Fill(87, 87, kStationTarget);
        return rules;
    }

private:
    constexpr void Fill(std::size_t first, std::size_t last, const Cause& cause) {
        for (std::size_t i = first; i <= last; ++i) {
            causes[i] = &cause;
            notRead.Add(i);
        }
    }
};

constexpr CConvFileGSI::WordRules CConvFileGSI::kPointWords = {21, 22, 31, 87, 71, 88, 32, 33};
constexpr CConvFileGSI::WordRules CConvFileGSI::kPointWordsWithPlace = {21, 22, 31, 87, 71, 88,
                                                                        81, 82, 83, 32, 33};
constexpr CConvFileGSI::WordRules CConvFileGSI::kStationWords = WordRules{71, 88}.OfStation();
constexpr CConvFileGSI::WordRules CConvFileGSI::kStationWordsWithPlace =
    WordRules{25, 71, 84, 85, 86, 88}.OfStation();
constexpr CConvFileGSI::WordRules CConvFileGSI::kBlockWords = {42, 43, 44};

/// A unit digit: how the data become metres or gon, and what is remarked on where an angle has it.
struct CConvFileGSI::Unit {
    double factor = 0;
    double divisor = 0; ///< 0: not read
    bool isOfAngles = false;
    const Cause* horizontal = nullptr; ///< null: nothing is
    const Cause* zenith = nullptr;
    std::string_view inBook = {};             ///< what angles of the book are then; empty: gon
    double (*convert)(double data) = nullptr; ///< in place of factor and divisor

    constexpr bool IsRead() const { return divisor != 0 || convert; }
};

/// The units by their digits; a point is metres, too. The last is that of all other characters.
constexpr CConvFileGSI::Units CConvFileGSI::kClassicUnits = {{
    {1, 1000},         // metre, last digit 1 mm
    {0.3048, 1000},    // foot, last digit 1/1000 ft
    {1, 100000, true}, // gon, five decimals
    // Decimal degrees; not scaled by any decimals, on purpose: jobs whose angles were scaled
    // afterwards are converted again, and must not be scaled twice.
    {400, 360, true, &kWholeDegrees, &kWholeDegrees, "1/100000 gon"},
    {0, 0, true, &kHorizontalSexagesimal, &kZenithSexagesimal},
    {0, 0, true, &kHorizontalMils, &kZenithMils},
    {1, 10000},      // metre, last digit 1/10 mm
    {0.3048, 10000}, // foot, last digit 1/10000 ft
    {1, 100000},     // metre, last digit 1/100 mm
    {0, 0, false, &kNoUnit, &kNoUnit},
    {0, 0, false, &kNoUnit, &kNoUnit},
}};

/// By the complete rules angles come out in gon, whatever they are in.
constexpr CConvFileGSI::Units CConvFileGSI::kCompleteUnits = [] {
    Units units = kClassicUnits;
    units[3] = {.isOfAngles = true, .convert = GonFromDecimals};
    units[4] = {.isOfAngles = true, .convert = GonFromSexagesimal};
    units[5] = {.isOfAngles = true, .convert = GonFromMils};
    return units;
}();

CConvFileGSI::CConvFileGSI(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

CConvFileGSI::~CConvFileGSI() = default;

bool CConvFileGSI::Esegui() {
    if (!OpenFile())
        return false;
    units_ = (Rules().appliesUnits ? kCompleteUnits : kClassicUnits).data();
    AddJobOfFile();
    return ForEachLine([this] { return LeggeUnaRigaGSI(); }, [this] { ConvertLine(); });
}

/// Comments ("!") and lines of nothing but their line end become empty. The last character goes as
/// the line end also where the last line of the file has none, on purpose: the instrument ends
/// every line, so that what is lost is the last digit of a transmission that was cut off.
bool CConvFileGSI::LeggeUnaRigaGSI() {
    if (!file_->ReadLine(line_))
        return false;
    line_ = line_.starts_with('!') ? std::string_view{} : DropLast(line_);
    return true;
}

void CConvFileGSI::ConvertLine() {
    Record record;
    if (!line_.empty() && SeparaCampi(record))
        ConvertiRiga(record);
}

/// True where the line is to be written, as a station or as a point.
bool CConvFileGSI::SeparaCampi(Record& record) {
    FindWords();
    const bool isStation = HoldsStation();
    if (HoldsIgnoredMark(line_) && !(isStation && Rules().opensSetUps)) {
        Note(isStation ? kMarkedStation : kMarkedLine);
        return false;
    }
    if (Begins(line_, "41"))
        return TrattaRiga41(record);
    if (Begins(line_, "*41.."))
        return TrattaRiga41Stonex(record);
    if (Begins(line_, "*41"))
        return TrattaRiga41PuntoStonex(record);

    record.isStation = isStation;
    record.name = NameInFirstWord();
    if (record.isStation)
        StationLine(record);
    else
        PointLine(record);
    if (IsHeard())
        JudgeLine(record.isStation);
    return true;
}

/// Only the presence of word 84 makes a station; by the complete rules that of word 85, too.
bool CConvFileGSI::HoldsStation() const {
    return FindKey(" 84.") != kAbsent || (Rules().opensSetUps && FindKey(" 85.") != kAbsent);
}

/// The classic rules do not read its coordinates, on purpose: the host computes a station's
/// coordinates from what was measured, and must not find others there.
void CConvFileGSI::StationLine(Record& station) {
    station.code = TrovaStrInCmpConCod(" 71.");
    station.instrumentHeight = TrovaDoubleInCmpConCod(" 88.");
    station.place = PlaceIn(" 84.", " 85.", " 86.");
}

CConvGen::Place CConvFileGSI::PlaceIn(const Key& east, const Key& north, const Key& height) {
    if (!Rules().readsCoordinates)
        return {};
    return {.x = TrovaDoubleInCmpConCod(east),
            .y = TrovaDoubleInCmpConCod(north),
            .z = TrovaDoubleInCmpConCod(height)};
}

void CConvFileGSI::PointLine(Record& point) {
    point.reading = {.slopeDistance = TrovaDoubleInCmpConCod(" 31."),
                     .zenithAngle = TrovaDoubleInCmpConCod(" 22."),
                     .horizontalAngle = TrovaDoubleInCmpConCod(" 21.")};
    point.targetHeight = TrovaDoubleInCmpConCod(" 87.");
    if (!IsPresent(point.targetHeight))
        point.targetHeight = defaultTargetHeight_;

    const double instrumentHeight = TrovaDoubleInCmpConCod(" 88.");
    if (IsPresent(instrumentHeight))
        SetHStrumAtSta(instrumentHeight);

    if (!IsPresent(point.reading.slopeDistance))
        ReduceWhereNeeded(point);
    if (!(point.reading.slopeDistance > kLongestNoDistance))
        point.reading.slopeDistance = AbsentDistance(point.reading.slopeDistance);

    point.code = TrovaStrInCmpConCod(" 71.");
    if (point.code.empty())
        point.code = defaultCode_;
    point.place = PlaceIn(" 81.", " 82.", " 83.");
}

/// Horizontal distance and height difference instead of a slope distance. A zenith angle that was
/// measured stays.
void CConvFileGSI::ReduceWhereNeeded(Record& point) {
    const double horizontalDistance = TrovaDoubleInCmpConCod(" 32.");
    const double heightDifference = TrovaDoubleInCmpConCod(" 33.");
    if (!IsPresent(horizontalDistance) || !IsPresent(heightDifference)) {
        if (IsPresent(horizontalDistance) || IsPresent(heightDifference))
            Note(kHalfReduced);
        return;
    }
    const Reading reduced = ReducedReading(horizontalDistance, heightDifference);
    point.reading.slopeDistance = reduced.slopeDistance;
    if (!IsPresent(point.reading.zenithAngle))
        point.reading.zenithAngle = reduced.zenithAngle;
    if (!IsPresent(point.targetHeight))
        point.targetHeight = 0;
}

/// A slope distance that is none; remarked on where it was measured all the same.
double CConvFileGSI::AbsentDistance(double distance) {
    if (IsPresent(distance) && distance != 0)
        Note(kNoDistance);
    return kNoValue;
}

/// A code block whose number stands in the last two of its eight digits.
bool CConvFileGSI::TrattaRiga41(Record& station) {
    const std::string_view number = Piece(line_, 13, 2);
    if (number == "09" || number == "03" || number == "51") {
        defaultCode_ = TrovaStrInCmpConCod(" 42....");
        defaultTargetHeight_ = TrovaDoubleInCmpConCod(" 43.");
    } else if (number == "04" || number == "50") {
        defaultTargetHeight_ = TrovaDoubleInCmpConCod(" 42.");
    } else if (!OpensStation(number, station) && !OpensSetUp(station)) {
        if (IsHeard())
            JudgeOtherBlock(number == "01" ? kBlockWithoutHeight : kOtherBlock);
        return false;
    }
    if (IsHeard())
        JudgeBlock(station);
    return station.isStation;
}

/// The code blocks that open a station.
bool CConvFileGSI::OpensStation(std::string_view number, Record& station) {
    if (number == "00") {
        station.name = TrovaStrInCmpConCod(" 43....");
        station.code = TrovaStrInCmpConCod(" 44....");
        station.instrumentHeight = TrovaDoubleInCmpConCod(" 42.");
    } else if (number == "01" && FindKey(" 43.") != kAbsent) {
        station.name = TrovaStrInCmpConCod(" 42....");
        station.code = TrovaStrInCmpConCod(" 44....");
        station.instrumentHeight = TrovaDoubleInCmpConCod(" 43.");
    } else if (number == "30") {
        // Without a height in word 44 it stands in word 43, which is then no code.
        station.name = TrovaStrInCmpConCod(" 42....");
        station.instrumentHeight = TrovaDoubleInCmpConCod(" 44.");
        if (IsPresent(station.instrumentHeight))
            station.code = TrovaStrInCmpConCod(" 43....");
        else
            station.instrumentHeight = TrovaDoubleInCmpConCod(" 43.");
    } else {
        return false;
    }
    station.isStation = true;
    return true;
}

/// The set-up blocks of instruments of today: their whole number is 2 or 21.
bool CConvFileGSI::OpensSetUp(Record& station) {
    if (!Rules().opensSetUps || FindKey(" 42.") == kAbsent)
        return false;
    const std::string_view number = NameInFirstWord();
    if (number != "2" && number != "21")
        return false;
    station.name = TrovaStrInCmpConCod(" 42.");
    station.instrumentHeight = TrovaDoubleInCmpConCod(" 43.");
    station.isStation = true;
    return true;
}

/// A code block of the other dialect, told by the last six of its sixteen digits.
bool CConvFileGSI::TrattaRiga41Stonex(Record& station) {
    const std::string_view kind = Piece(line_, 18, 6);
    if (kind == "OCUPAR") {
        defaultCode_.clear();
        station.isStation = true;
        station.name = TrovaStrInCmpConCod(" 42....");
        station.code = TrovaStrInCmpConCod(" 43....");
        station.instrumentHeight = TrovaDoubleInCmpConCod(" 44.");
    } else if (kind == "0000RE") {
        skipBS1_ = TrovaStrInCmpConCod(" 42....") == "BS1";
    } else if (IsHeard()) {
        JudgeOtherBlock(kOtherBlock);
        return false;
    }
    if (IsHeard())
        JudgeBlock(station);
    return station.isStation;
}

/// The point code of the other dialect, good for the points that follow.
bool CConvFileGSI::TrattaRiga41PuntoStonex(Record& station) {
    if (OpensSetUp(station)) {
        if (IsHeard())
            JudgeBlock(station);
        return true;
    }
    const std::size_t plus = line_.find('+');
    const std::size_t blank = BlankFrom(kFirstWordEnd);
    if (blank < line_.size() && plus < blank)
        defaultCode_ = NameInFirstWord();
    else if (IsHeard())
        JudgeOtherBlock(kOpenCode);
    return false;
}

/// The line without what tells that its words are longer.
std::string_view CConvFileGSI::FirstWord() const {
    std::string_view word = line_;
    word.remove_prefix(word.starts_with('*') ? 1 : 0);
    return word;
}

/// True where the first word of the line has the form of one.
bool CConvFileGSI::BeginsWithWord() const {
    const std::string_view word = FirstWord();
    return word.size() > kFirstSign && IsDigit(word[0]) && IsDigit(word[1]) &&
           IsSign(word[kFirstSign]);
}

/// True where it is a point number, also where the rest of it is none.
bool CConvFileGSI::BeginsWithPointNumber() const {
    return Begins(FirstWord(), "11");
}

/// Remarks on a line of measurements: a station or a point.
void CConvFileGSI::JudgeLine(bool isStation) {
    const bool withPlace = Rules().readsCoordinates;
    const WordRules& ofStation = withPlace ? kStationWordsWithPlace : kStationWords;
    const WordRules& ofPoint = withPlace ? kPointWordsWithPlace : kPointWords;
    const WordRules& rules = isStation ? ofStation : ofPoint;
    const bool begins = BeginsWithWord();
    if (begins && BeginsWithPointNumber() && !holdsOtherWords_) [[likely]] {
        NoteNotRead(rules);
        return;
    }
    if (!JudgeWords(rules) && !begins)
        Skip(kNoWord);
    else if (!begins || !BeginsWithPointNumber())
        Note(kNoPointNumber);
}

/// Remarks on a code block that is read.
void CConvFileGSI::JudgeBlock(const Record& station) {
    if (holdsOtherWords_)
        JudgeWords(kBlockWords);
    else
        NoteNotRead(kBlockWords);
    if (station.isStation && station.name.empty())
        Note(kNoStationName);
}

/// Remarks on the words of the current line that have an index and are not read.
void CConvFileGSI::NoteNotRead(const WordRules& rules) {
    for (std::size_t half = 0; half < indexes_.bits.size(); ++half) {
        std::uint64_t left = indexes_.bits[half] & rules.notRead.bits[half];
        for (; left != 0; left &= left - 1)
            Note(*rules.causes[64 * half + static_cast<std::size_t>(std::countr_zero(left))]);
    }
}

/// Remarks on the words of the current line that are not read, by their indexes. True where one but
/// the first has the form of a word.
bool CConvFileGSI::JudgeWords(const WordRules& rules) {
    bool holdsWord = false;
    for (std::size_t i = 0; i < blankCount_; ++i) {
        const std::string_view word = line_.substr(blanks_[i]);
        if (IsMereBlank(word))
            continue;
        const std::size_t index = WordIndex(word);
        holdsWord = holdsWord || (word.size() > kSign && IsSign(word[kSign]) && IsDigit(word[1]));
        if (index == kNoIndex)
            Note(word.size() > 4 && word[4] == '.' && IsDigit(word[3]) ? kLevel : kOtherWords);
        else if (rules.causes[index])
            Note(*rules.causes[index]);
    }
    return holdsWord;
}

/// Remarks on one that is not.
void CConvFileGSI::JudgeOtherBlock(const Cause& cause) {
    if (BeginsWithWord())
        Note(cause);
    else
        Skip(kNoBlock);
}

/// One pass over the blanks of the line, so that each of the ten words a line is asked for is found
/// at once.
void CConvFileGSI::FindWords() {
    if (line_.size() > blanks_.size())
        blanks_.resize(line_.size());
    blankCount_ = 0;
    indexes_ = {};
    holdsOtherWords_ = false;
    Positions blanks(line_, ' ');
    for (std::size_t blank = blanks.Next(); blank != Positions::kNone; blank = blanks.Next()) {
        const std::string_view word(line_.data() + blank, line_.size() - blank);
        const std::size_t index = WordIndex(word);
        if (index == kNoIndex) {
            holdsOtherWords_ = holdsOtherWords_ || !IsMereBlank(word);
        } else if (!indexes_.Holds(index)) {
            indexes_.Add(index);
            firstWords_[index] = static_cast<std::uint8_t>(std::min(blankCount_, kLastFound));
        }
        blanks_[blankCount_++] = static_cast<std::uint32_t>(blank);
    }
}

/// The first word that begins with the key (its blank included), as its place in blanks_; kAbsent
/// where there is none.
std::size_t CConvFileGSI::FindKey(const Key& key) const {
    if (!indexes_.Holds(key.index))
        return kAbsent;
    const std::size_t first = firstWords_[key.index];
    const bool isFound = !key.goesOn && first < kLastFound;
    return isFound ? first : SearchKey(key.text, first);
}

std::size_t CConvFileGSI::SearchKey(std::string_view key, std::size_t word) const {
    for (; word < blankCount_; ++word) {
        if (line_.substr(blanks_[word]).starts_with(key))
            return word;
    }
    return kAbsent;
}

/// The first blank at or after that position, which lies behind all blanks before the `first`; the
/// line's length where there is none.
std::size_t CConvFileGSI::BlankFrom(std::size_t position, std::size_t first) const {
    for (std::size_t i = first; i < blankCount_; ++i) {
        if (blanks_[i] >= position)
            return blanks_[i];
    }
    return line_.size();
}

/// Name of the station or point: the data of the first word, without leading zeros. Empty where
/// the word has no "+".
std::string_view CConvFileGSI::NameInFirstWord() const {
    const std::size_t plus = line_.find('+');
    const std::size_t blank = BlankFrom(kFirstWordEnd);
    if (plus == std::string_view::npos || plus >= blank)
        return {};
    std::string_view name = TrimBoth(line_.substr(plus + 1, blank - plus - 1));
    EliminaZeriIniz(name);
    return name;
}

/// Text of a word, without leading zeros and without its "-" characters. A word signed "-" gives no
/// text.
std::string CConvFileGSI::TrovaStrInCmpConCod(const Key& key) {
    const std::size_t word = FindKey(key);
    if (word == kAbsent)
        return {};
    const std::size_t search = blanks_[word] + kTextSearch;
    const std::size_t plus = line_.find('+', search);
    const std::size_t blank = BlankFrom(search, word + 1);
    if (plus == std::string_view::npos || plus >= blank) {
        Note(kTextWithMinus);
        return {};
    }
    std::string_view digits = TrimBoth(line_.substr(plus + 1, blank - plus - 1));
    EliminaZeriIniz(digits);
    std::string text(digits);
    std::erase(text, '-');
    return text;
}

/// Value of a word; the no-value marker where the word is absent, its unit not read or its data no
/// number. Data too large for a double are absent before any scaling.
double CConvFileGSI::TrovaDoubleInCmpConCod(const Key& key) {
    const std::size_t word = FindKey(key);
    if (word == kAbsent)
        return kNoValue;
    const std::size_t position = blanks_[word];
    if (position + kData >= line_.size()) {
        Note(kShortWord);
        return kNoValue;
    }
    const std::size_t end = BlankFrom(position + kData, word + 1);
    const std::string_view data(line_.data() + position + kData, end - position - kData);
    if (Rules().appliesUnits && Contains(data, "-"))
        return kNoValue; // dashes: not measured
    double value = kNoValue;
    const std::size_t numberEnd = NumberAtStart(data, value);
    const Unit& unit = UnitOf(line_[position + kUnit]);
    if (IsHeard()) {
        const bool isOrdinary = numberEnd == data.size() && numberEnd >= kFewestDigits &&
                                !unit.horizontal && key.IsOfAngle() == unit.isOfAngles;
        if (isOrdinary) [[likely]]
            keeper_->CountNumber(true);
        else
            JudgeValue(key, data, numberEnd, unit);
    }
    if (value == kNoValue)
        return kNoValue;
    if (line_[position + kSign] == '-')
        value = -value;
    if (unit.divisor != 0) [[likely]]
        return value * unit.factor / unit.divisor;
    return unit.convert ? Converted(value, unit) : kNoValue;
}

/// The value where a factor alone does not give it.
double CConvFileGSI::Converted(double data, const Unit& unit) {
    const double value = unit.convert(data);
    if (value == kNoValue)
        Note(kNoMinutes);
    return value;
}

/// By the unit digit alone: an angle word and a distance word with the same digit are scaled alike.
const CConvFileGSI::Unit& CConvFileGSI::UnitOf(char digit) const {
    const std::size_t unit = digit == '.' ? 0 : static_cast<unsigned char>(digit - '0');
    return units_[std::min(unit, kClassicUnits.size() - 1)];
}

/// Remarks on the data of a word and their unit, where one of them is out of the ordinary.
void CConvFileGSI::JudgeValue(const Key& key, std::string_view data, std::size_t numberEnd,
                              const Unit& unit) {
    CheckEnd(data, numberEnd, kNoNumberIsAbsent);
    const bool isAngle = key.IsOfAngle();
    if (data.size() < kFewestDigits)
        Note(kShortWord);
    const Cause* const cause = key.text[2] == '1' ? unit.horizontal : unit.zenith;
    if (isAngle && unit.isOfAngles && cause)
        Note(*cause);
    else if (!unit.IsRead())
        Note(kNoUnit);
    else if (isAngle != unit.isOfAngles)
        Note(kOtherUnit);
    if (isAngle && !unit.inBook.empty())
        keeper_->AnglesAre(unit.inBook);
}

void CConvFileGSI::EliminaZeriIniz(std::string_view& digits) {
    while (digits.starts_with('0'))
        digits.remove_prefix(1);
}

void CConvFileGSI::ConvertiRiga(Record& record) {
    if (record.isStation)
        ConversioneRigaS(record);
    else
        ConversioneRigaP(record);
}

/// By the complete rules the set-up of the record before, named once more, is written once.
void CConvFileGSI::ConversioneRigaS(Record& station) {
    if (Rules().opensSetUps) {
        const SetUp setUp = {station.name, station.place, station.instrumentHeight};
        if (lastSetUp_ == setUp)
            return;
        lastSetUp_ = setUp;
    }
    AggiungeSta(std::move(station.name), std::move(station.code), station.instrumentHeight,
                kNoValue, kNoValue);
    if (CSta* const written = CurrentStation())
        SetPlace(*written, station.place);
}

void CConvFileGSI::ConversioneRigaP(Record& point) {
    lastSetUp_.reset();
    if (skipBS1_ && point.name == "BS1") {
        Note(kBacksight);
        return;
    }
    Reading reading = WithoutZeroDistance(point.reading);
    reading.slopeDistance = RoundedByLong(reading.slopeDistance, 10000);
    point.code.erase(std::min(point.code.size(), point.code.find('\r')));
    const double targetHeight = RoundedByLong(point.targetHeight, 1000);
    if (!IsPlaced(point.place)) {
        AggiungePun(std::move(point.name), std::move(point.code), "", targetHeight, reading);
        return;
    }
    const CPun* const before = LastPoint();
    AggiungePun(std::move(point.name), std::move(point.code), "", targetHeight, reading,
                Expected::Coordinates);
    if (CPun* const written = LastPoint(); written && written != before)
        SetPlace(*written, point.place);
}

bool CConvFileGSI::IsPlaced(const Place& place) {
    return IsPresent(place.x) || IsPresent(place.y) || IsPresent(place.z);
}
