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
// Lengths come out in metres, angles in gon. Coordinates (81-86) are not read.

#include "converters/ConvFileGSI.h"

#include "routines/Numbers.h"
#include "routines/Text.h"

#include <algorithm>
#include <utility>

namespace {

/// How far the parts of a word lie behind the blank that precedes it.
constexpr std::size_t kTextSearch = 5; ///< the "+" of a text is looked for from here
constexpr std::size_t kUnit = 6;
constexpr std::size_t kSign = 7;
constexpr std::size_t kData = 8;

/// A slope distance up to this one, metres, was not measured.
constexpr double kLongestNoDistance = 0.001;

/// A key of blank, word index and point; longer ones go on with literal points.
constexpr std::size_t kPlainKey = 4;
constexpr std::size_t kNoIndex = 100;
constexpr std::uint8_t kNoWord = 255; ///< a line has 254 characters, and fewer words

/// The blank that ends the first word is looked for from here.
constexpr std::size_t kFirstWordEnd = 3;

/// True where the line is marked as one to leave out, by "25.342" anywhere in it. Looked at on
/// every line, so by its rarest character.
bool HoldsIgnoredMark(std::string_view line) {
    constexpr std::string_view kMark = "25.342";
    constexpr std::size_t kPoint = 2;
    bool holds = false;
    ForEachPosition(line, '.', [&](std::size_t point) {
        holds = holds || (point >= kPoint && line[point - 1] == kMark[1] &&
                          line.substr(point - kPoint).starts_with(kMark));
    });
    return holds;
}

/// The data of a word in metres or gon, by the unit digit alone: an angle word and a distance word
/// with the same digit are scaled alike.
double ScaledByUnit(double data, char unit) {
    switch (unit) {
    case '.':
    case '0': // metre, last digit 1 mm
        return data / 1000;
    case '1': // foot, last digit 1/1000 ft
        return data * 0.3048 / 1000;
    case '2': // gon, five decimals
        return data / 100000;
    case '3':
        // Decimal degrees; not scaled by any decimals, on purpose: jobs whose angles were scaled
        // afterwards are converted again, and must not be scaled twice.
        return data * 400 / 360;
    case '6': // metre, last digit 1/10 mm
        return data / 10000;
    case '7': // foot, last digit 1/10000 ft
        return data * 0.3048 / 10000;
    case '8': // metre, last digit 1/100 mm
        return data / 100000;
    default: // 4 and 5 (sexagesimal degrees, mils) are not supported
        return kNoValue;
    }
}

} // namespace

CConvFileGSI::CConvFileGSI(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

CConvFileGSI::~CConvFileGSI() = default;

bool CConvFileGSI::Esegui() {
    if (!OpenFile())
        return false;
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
    if (HoldsIgnoredMark(line_))
        return false;
    FindWords();
    if (Begins(line_, "41"))
        return TrattaRiga41(record);
    if (Begins(line_, "*41.."))
        return TrattaRiga41Stonex(record);
    if (Begins(line_, "*41"))
        return TrattaRiga41PuntoStonex();

    record.isStation = FindKey(" 84.") != kNoWord;
    record.name = NameInFirstWord();
    if (record.isStation)
        StationLine(record);
    else
        PointLine(record);
    return true;
}

/// Only the presence of word 84 makes a station. Its coordinates are not read, on purpose: the host
/// computes a station's coordinates from what was measured, and must not find others there.
void CConvFileGSI::StationLine(Record& station) const {
    station.code = TrovaStrInCmpConCod(" 71.");
    station.instrumentHeight = TrovaDoubleInCmpConCod(" 88.");
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
        point.reading.slopeDistance = kNoValue;

    point.code = TrovaStrInCmpConCod(" 71.");
    if (point.code.empty())
        point.code = defaultCode_;
}

/// Horizontal distance and height difference instead of a slope distance. A zenith angle that was
/// measured stays.
void CConvFileGSI::ReduceWhereNeeded(Record& point) {
    const double horizontalDistance = TrovaDoubleInCmpConCod(" 32.");
    const double heightDifference = TrovaDoubleInCmpConCod(" 33.");
    if (!IsPresent(horizontalDistance) || !IsPresent(heightDifference))
        return;
    const Reading reduced = ReducedReading(horizontalDistance, heightDifference);
    point.reading.slopeDistance = reduced.slopeDistance;
    if (!IsPresent(point.reading.zenithAngle))
        point.reading.zenithAngle = reduced.zenithAngle;
    if (!IsPresent(point.targetHeight))
        point.targetHeight = 0;
}

/// A code block whose number stands in the last two of its eight digits.
bool CConvFileGSI::TrattaRiga41(Record& station) {
    const std::string_view number = Piece(line_, 13, 2);
    station.isStation = true;
    if (number == "00") {
        station.name = TrovaStrInCmpConCod(" 43....");
        station.code = TrovaStrInCmpConCod(" 44....");
        station.instrumentHeight = TrovaDoubleInCmpConCod(" 42.");
        return true;
    }
    if (number == "01") {
        station.name = TrovaStrInCmpConCod(" 42....");
        station.code = TrovaStrInCmpConCod(" 44....");
        station.instrumentHeight = TrovaDoubleInCmpConCod(" 43.");
        return FindKey(" 43.") != kNoWord;
    }
    if (number == "30") {
        // Without a height in word 44 it stands in word 43, which is then no code.
        station.name = TrovaStrInCmpConCod(" 42....");
        station.instrumentHeight = TrovaDoubleInCmpConCod(" 44.");
        if (IsPresent(station.instrumentHeight))
            station.code = TrovaStrInCmpConCod(" 43....");
        else
            station.instrumentHeight = TrovaDoubleInCmpConCod(" 43.");
        return true;
    }
    if (number == "09" || number == "03" || number == "51") {
        defaultCode_ = TrovaStrInCmpConCod(" 42....");
        defaultTargetHeight_ = TrovaDoubleInCmpConCod(" 43.");
    } else if (number == "04" || number == "50") {
        defaultTargetHeight_ = TrovaDoubleInCmpConCod(" 42.");
    }
    return false;
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
        return true;
    }
    if (kind == "0000RE")
        skipBS1_ = TrovaStrInCmpConCod(" 42....") == "BS1";
    return false;
}

/// The point code of the other dialect, good for the points that follow.
bool CConvFileGSI::TrattaRiga41PuntoStonex() {
    const std::size_t plus = line_.find('+');
    const std::size_t blank = BlankFrom(kFirstWordEnd);
    if (blank < line_.size() && plus < blank)
        defaultCode_ = NameInFirstWord();
    return false;
}

/// Word index of a word, given from its blank on: two digits and a point. kNoIndex for others.
std::size_t CConvFileGSI::WordIndex(std::string_view word) {
    if (word.size() < 4 || word[3] != '.')
        return kNoIndex;
    const auto tens = static_cast<unsigned char>(word[1] - '0');
    const auto ones = static_cast<unsigned char>(word[2] - '0');
    return tens < 10 && ones < 10 ? tens * 10U + ones : kNoIndex;
}

/// One pass over the blanks of the line, so that each of the ten words a line is asked for is found
/// at once.
void CConvFileGSI::FindWords() {
    blankCount_ = 0;
    firstWords_.fill(kNoWord);
    ForEachPosition(line_, ' ', [&](std::size_t blank) {
        const std::size_t index = WordIndex(line_.substr(blank));
        if (index != kNoIndex && firstWords_[index] == kNoWord)
            firstWords_[index] = static_cast<std::uint8_t>(blankCount_);
        blanks_[blankCount_++] = static_cast<std::uint8_t>(blank);
    });
}

/// The first word that begins with the key (its blank included), as its place in blanks_; kNoWord
/// where there is none.
std::size_t CConvFileGSI::FindKey(std::string_view key) const {
    const std::size_t first = firstWords_[WordIndex(key)];
    if (first == kNoWord || key.size() == kPlainKey)
        return first;
    for (std::size_t word = first; word < blankCount_; ++word) {
        if (line_.substr(blanks_[word]).starts_with(key))
            return word;
    }
    return kNoWord;
}

/// The first blank at or after that position, which lies behind `word`; the line's length where
/// there is none.
std::size_t CConvFileGSI::BlankFrom(std::size_t position, std::size_t word) const {
    for (std::size_t i = word; i < blankCount_; ++i) {
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
std::string CConvFileGSI::TrovaStrInCmpConCod(std::string_view key) const {
    const std::size_t word = FindKey(key);
    if (word == kNoWord)
        return {};
    const std::size_t search = blanks_[word] + kTextSearch;
    const std::size_t plus = line_.find('+', search);
    const std::size_t blank = BlankFrom(search, word);
    if (plus == std::string_view::npos || plus >= blank)
        return {};
    std::string_view digits = TrimBoth(line_.substr(plus + 1, blank - plus - 1));
    EliminaZeriIniz(digits);
    std::string text(digits);
    std::erase(text, '-');
    return text;
}

/// Value of a word; the no-value marker where the word is absent, its unit unknown or its data no
/// number. Data too large for a double are absent before any scaling.
double CConvFileGSI::TrovaDoubleInCmpConCod(std::string_view key) const {
    const std::size_t word = FindKey(key);
    if (word == kNoWord || blanks_[word] + kData >= line_.size())
        return kNoValue;
    const std::size_t position = blanks_[word];
    const std::size_t end = BlankFrom(position + kData, word);
    const std::string_view data = line_.substr(position + kData, end - position - kData);
    double value = NumberOrNoValue(data);
    if (value == kNoValue)
        return kNoValue;
    if (line_[position + kSign] == '-')
        value = -value;
    return ScaledByUnit(value, line_[position + kUnit]);
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

void CConvFileGSI::ConversioneRigaS(Record& station) {
    AggiungeSta(std::move(station.name), std::move(station.code), station.instrumentHeight,
                kNoValue, kNoValue);
}

void CConvFileGSI::ConversioneRigaP(Record& point) {
    if (skipBS1_ && point.name == "BS1")
        return;
    Reading reading = WithoutZeroDistance(point.reading);
    reading.slopeDistance = RoundedByLong(reading.slopeDistance, 10000);
    point.code.erase(std::min(point.code.size(), point.code.find('\r')));
    AggiungePun(std::move(point.name), std::move(point.code), "",
                RoundedByLong(point.targetHeight, 1000), reading);
}
