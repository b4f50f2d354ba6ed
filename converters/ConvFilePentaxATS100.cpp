// A Pentax ATS100 export: lines of columns separated by tabs, in station and point sections. Each
// section begins with a title and a line that names its columns. (⇥: a tab, ␠: a blank.)
//
//   Dati stazione
//   PN⇥H⇥Descrizione⇥
//   S⇥100⇥1.545⇥CHIODO␠
//   Dati punti
//   PN⇥HP⇥n⇥AV⇥DO⇥Desc⇥
//   M⇥101⇥1.600⇥123.4567⇥98.7654⇥25.417⇥SPIGOLO␠
//
// Columns: P name, HP target height, H instrument height, n horizontal angle, A zenith angle,
// DO slope distance, DR horizontal distance, Di height difference, De code; any other is skipped.
// Without a DO column slope distance and zenith angle are computed from DR and Di, which go from
// ground to ground. Metres and gon. A data line's first column ("S", "M") is its mark; column names
// count from there on.

#include "converters/ConvFilePentaxATS100.h"

#include "routines/Numbers.h"
#include "routines/Reduction.h"
#include "routines/Text.h"

#include <algorithm>
#include <functional>
#include <span>

/// What a column's name begins with, and the value that such a column holds: a text or a number.
struct CConvFilePentaxATS100::ColumnName {
    std::string_view begins;
    std::string_view Values::*text;
    double Values::*number;
};

// The first row that fits counts.
constexpr CConvFilePentaxATS100::ColumnName CConvFilePentaxATS100::kColumnNames[] = {
    {"P", &Values::name, nullptr},
    {"HP", nullptr, &Values::targetHeight},
    {"H", nullptr, &Values::instrumentHeight},
    {"n", nullptr, &Values::horizontalAngle},
    {"A", nullptr, &Values::zenithAngle},
    {"DR", nullptr, &Values::horizontalDistance},
    {"DO", nullptr, &Values::slopeDistance},
    {"Di", nullptr, &Values::heightDifference},
    {"De", &Values::code, nullptr},
};

namespace {

constexpr Cause kDataAllTheSame = {
    RemarkKind::Unknown,
    "a line that begins with S or M and has no tab is skipped, and yet gives a station or a point "
    "without values of its own"};
constexpr Cause kNamesAsData = {
    RemarkKind::Unknown,
    "column names that begin with S or M are read as data, too: they give a station or a point"};
constexpr Cause kNoColumnName = {
    RemarkKind::Incomplete,
    "the line behind a section's title names no column: the section's columns stay as they were"};
constexpr Cause kColumnsNotNamed = {
    RemarkKind::Incomplete,
    "a data line before the column names of its section: its values are not read"};
constexpr Cause kValuesMissing = {
    RemarkKind::Incomplete,
    "a data line with fewer values than its section has columns: those missing are absent"};
constexpr Cause kNoBlankAtEnd = {
    RemarkKind::Incomplete,
    "a line whose last value has no blank at its end: its last character is not read"};
constexpr Cause kNoLineEnd = {RemarkKind::LineEnd,
                              "a data line without line end: its last two characters are not read"};
constexpr Cause kOtherColumn = {
    RemarkKind::NotRead,
    "values in columns of other names than P, HP, H, n, A, DR, DO, Di and De, and beyond the "
    "ninth, are not read"};
constexpr Cause kZenithReplaced = {
    RemarkKind::NotRead,
    "without a slope distance column (DO) the zenith angle column (A) is not read: the angle "
    "comes from DR and Di"};
constexpr Cause kReducedNotRead = {
    RemarkKind::NotRead,
    "horizontal distance and height difference (DR, Di) are not read: there is a slope distance "
    "column (DO)"};

/// Calls `take` with each tab-separated piece and whether it is the last.
template <class Take>
void ForEachColumn(std::string_view line, Take take) {
    std::string_view column;
    while (CutAt(line, '\t', column))
        take(column, false);
    take(line, true);
}

} // namespace

CConvFilePentaxATS100::CConvFilePentaxATS100(CLibCmp& fieldBook, std::string* fileName)
    : CConvGen(fieldBook, fileName) {}

CConvFilePentaxATS100::~CConvFilePentaxATS100() = default;

bool CConvFilePentaxATS100::Esegui() {
    if (!OpenFile())
        return false;
    AddJobOfFile();
    return ForEachLine([this] { return LeggeUnaRigaDAT(); }, [this] { ConvertLine(); });
}

/// The line end stays: it is the first of the two characters that a line's last value loses.
bool CConvFilePentaxATS100::LeggeUnaRigaDAT() {
    if (!file_->ReadLine(line_))
        return false;
    if (line_.size() < 2)
        line_ = {};
    return true;
}

void CConvFilePentaxATS100::ConvertLine() {
    if (!line_.empty())
        IndividuaCampi();
}

/// A line that names columns and begins with "S" or "M" is also read as data, on purpose: the
/// program that exports these files leaves the names out where a section goes on, and has data
/// there.
void CConvFilePentaxATS100::IndividuaCampi() {
    const bool isNames = stationTitle_ || pointTitle_;
    if (stationTitle_)
        LeggeCampi(stationMap_);
    else if (pointTitle_)
        LeggeCampi(pointMap_);

    if (Contains(line_, "Dati stazione"))
        stationTitle_ = true;
    else if (Contains(line_, "Dati punti"))
        pointTitle_ = true;
    else if (line_.front() == 'S')
        LeggeDati(stationMap_, true);
    else if (line_.front() == 'M' && Piece(line_, 1, 1) != "E")
        LeggeDati(pointMap_, false);
    else if (!isNames)
        Skip();
}

/// A name that is not known leaves what an earlier section said of its column.
void CConvFilePentaxATS100::LeggeCampi(ColumnMap& map) {
    stationTitle_ = pointTitle_ = false;
    std::size_t column = 0;
    bool hasNames = false;
    ForEachColumn(line_, [&](std::string_view name, bool) {
        const auto* const known = std::ranges::find_if(
            kColumnNames, [&](const ColumnName& row) { return name.starts_with(row.begins); });
        if (column < map.size() && known != std::end(kColumnNames)) {
            map[column] = known;
            hasNames = true;
            hasSlopeDistance_ = hasSlopeDistance_ || known->number == &Values::slopeDistance;
        }
        ++column;
    });
    const bool isData = line_.front() == 'S' || line_.front() == 'M';
    if (!isData && !hasNames)
        Note(kNoColumnName);
    else if (isData && hasNames)
        Note(kNamesAsData);
}

void CConvFilePentaxATS100::LeggeDati(const ColumnMap& map, bool isStation) {
    std::string_view mark;
    std::string_view rest = line_;
    std::size_t column = 0;
    if (CutAt(rest, '\t', mark)) {
        ForEachColumn(rest, [&](std::string_view text, bool isLast) {
            // The last value loses the line end and one character more, on purpose: the instrument
            // writes a blank there.
            if (isLast) {
                if (IsHeard())
                    CheckLastValue(text);
                text = DropLast(DropLast(text));
            }
            if (column < map.size() && map[column])
                Store(*map[column], text);
            else if (IsHeard() && !TrimBoth(text).empty())
                Note(std::ranges::any_of(map, std::identity()) ? kOtherColumn : kColumnsNotNamed);
            ++column;
        });
    }
    if (IsHeard())
        CheckColumns(map, column);
    if (!hasSlopeDistance_)
        UseReducedValues();
    if (isStation) {
        lastInstrumentHeight_ = values_.instrumentHeight;
        AggiungeSta(std::string(values_.name), std::string(values_.code), values_.instrumentHeight,
                    kNoValue, kNoValue);
    } else {
        const double distance =
            hasSlopeDistance_ ? DistanceOrNoValue(values_.slopeDistance) : values_.slopeDistance;
        AggiungePun(std::string(values_.name), std::string(values_.code), "", values_.targetHeight,
                    {distance, values_.zenithAngle, values_.horizontalAngle});
    }
    Inizializza();
}

/// Remarks on what the last value of a line loses.
void CConvFilePentaxATS100::CheckLastValue(std::string_view text) {
    if (!text.ends_with('\n')) {
        Note(kNoLineEnd);
        return;
    }
    text.remove_suffix(1);
    if (!text.empty() && !IsBlank(text.back()))
        Note(kNoBlankAtEnd);
}

/// Remarks on a data line with so many columns, all told.
void CConvFilePentaxATS100::CheckColumns(const ColumnMap& map, std::size_t columns) {
    if (columns == 0)
        Skip(kDataAllTheSame);
    else if (std::ranges::any_of(std::span(map).subspan(std::min(columns, map.size())),
                                 std::identity()))
        Note(kValuesMissing);
    if (!hasSlopeDistance_ && IsPresent(values_.zenithAngle))
        Note(kZenithReplaced);
    if (hasSlopeDistance_ &&
        (IsPresent(values_.horizontalDistance) || IsPresent(values_.heightDifference)))
        Note(kReducedNotRead);
}

void CConvFilePentaxATS100::Store(const ColumnName& column, std::string_view text) {
    if (column.text)
        values_.*column.text = text;
    else
        values_.*column.number = ReadNumber(text);
}

/// Zenith angle and slope distance from horizontal distance and height difference, absent where
/// those are; what a zenith angle column gave is replaced by it. An absent target or instrument
/// height counts as 0.
void CConvFilePentaxATS100::UseReducedValues() {
    values_.zenithAngle = values_.slopeDistance = kNoValue;
    if (values_.horizontalDistance == kNoValue || values_.heightDifference == kNoValue)
        return;
    const double difference = values_.heightDifference + ValueOrZero(values_.targetHeight) -
                              ValueOrZero(lastInstrumentHeight_);
    const Reading reading = RoundedReadingFromReduced(values_.horizontalDistance, difference);
    values_.zenithAngle = reading.zenithAngle;
    values_.slopeDistance = reading.slopeDistance;
}

void CConvFilePentaxATS100::Inizializza() {
    values_ = {};
    stationTitle_ = pointTitle_ = false;
}
