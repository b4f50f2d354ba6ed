// An ELT file: the printed report of the instrument. Each value stands behind a tag that begins
// with a bar; titles come in German, Italian and English, in an 8-bit character set.
//
//   |TI  Lavoro    VIA ROMA 12|
//   |TI  Operatore ROSSI|
//   |TI  Strum.N°  362245|
//   INPUT VALORI       |hp 1.600   |hs 1.545
//   MISURE
//   |PI 100    |CHIODO  |O                                      station
//   |PI 101    |SPIGOLO |SD 25.417 |Hz 123.4567 |V1 98.7654     slope distance, angles
//   |PI 102    |PALO    |HD 12.300 |Hz 130.0000 |h -0.450       horizontal distance, difference
//   |PI        |Tr 0.350                                        lateral offset of the next point
//
// Lengths are metres, angles gon. Files without station lines name the station before the point in
// each measurement line ("|PI 100   101   SPIGOLO |SD ...").

#include "converters/ConvFileELT.h"

#include "routines/Angles.h"
#include "routines/Fields.h"
#include "routines/Numbers.h"
#include "routines/Reduction.h"
#include "routines/Text.h"
#include "routines/Trigonometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace {

constexpr std::size_t kShortestLine = 4;

/// Where names begin in a measurement line, counted from "|PI".
constexpr std::size_t kFirstName = 4;
constexpr std::size_t kSecondName = 10;
constexpr std::size_t kCodeAfterOneName = 12;
constexpr std::size_t kCodeAfterTwoNames = 16;

/// A value begins this far from its tag's bar; what of the tag that leaves is trimmed.
constexpr std::size_t kValue = 3;

/// A shorter slope distance is none.
constexpr double kShortestDistance = 0.001;

// What is remarked on.
constexpr Cause kTooShort = {RemarkKind::Unknown,
                             "a line of three characters or fewer is no record: it is skipped"};
constexpr Cause kOtherTitle = {RemarkKind::NotRead,
                               "titles (TI) of other kinds than job, operator, instrument and date "
                               "are not read"};
constexpr Cause kOtherInput = {RemarkKind::NotRead,
                               "input values other than target and instrument height, temperature "
                               "and pressure are not read"};
constexpr Cause kHalfPair = {
    RemarkKind::Incomplete, "input values of which one of a pair is missing (target and instrument "
                            "height, temperature and pressure): it is absent from then on"};
constexpr Cause kTitleIsLate = {RemarkKind::NotRead,
                                "titles behind the last start of measurements are not read"};
constexpr Cause kDlLine = {RemarkKind::NotRead, "lines with the tag dl are not read"};
constexpr Cause kNoPoint = {RemarkKind::Incomplete,
                            "a station line without a point behind it that is written: the station "
                            "is not written"};
constexpr Cause kNoPointName = {RemarkKind::Incomplete,
                                "a measurement line without a point name is left out"};
constexpr Cause kNoAngles = {RemarkKind::Incomplete,
                             "a reading without horizontal or zenith angle is left out"};
constexpr Cause kHalfReduced = {RemarkKind::Incomplete,
                                "a horizontal distance without height difference, or the other way "
                                "round, is not read"};
constexpr Cause kRepeats = {
    RemarkKind::NotRead,
    "a line with reduced values of the reading before it, which it repeats, is left out"};
constexpr Cause kReducedWins = {
    RemarkKind::NotRead, "slope distance and zenith angle of a line that also has horizontal "
                         "distance and height difference are not read: they are computed"};
constexpr Cause kCircleIsSet = {
    RemarkKind::NotRead, "a reading without distance while the circle is being set is left out"};
constexpr Cause kNoDistance = {RemarkKind::NotRead,
                               "a slope distance below a millimetre is taken for none: absent"};
constexpr Cause kOtherTag = {RemarkKind::NotRead,
                             "values of a measurement line behind other tags than SD, D, HD, h, Hz "
                             "and V1 are not read"};

/// What the tags of a measurement line that are read begin with, behind their bars.
constexpr std::string_view kTagsRead[] = {"SD ", "D ", "HD ", "h ", "Hz ", "V1 ", "PI "};

bool ContainsAny(std::string_view line, std::initializer_list<std::string_view> words) {
    return std::ranges::any_of(words, [&](std::string_view word) { return Contains(line, word); });
}

/// The offset to the other side; an absent one stays absent.
double Opposite(double offset) {
    return IsPresent(offset) ? -offset : offset;
}

constexpr std::uint64_t BitOf(char c) {
    return std::uint64_t{1} << (static_cast<unsigned char>(c) % 64);
}

void AppendWithBlank(std::string& text, const std::string& part) {
    if (!part.empty())
        text.append(part).append(" ");
}

} // namespace

constexpr CConvFileELT::Tag CConvFileELT::kPoint = "|PI";

// Titles, in the order in which a later one overrides an earlier.
constexpr CConvFileELT::Tag CConvFileELT::kJobTitles[] = {"|TI  Lavoro", "|TI  Projekt"};
constexpr CConvFileELT::Tag CConvFileELT::kOperatorTitles[] = {"|TI  Descriz.",   "|TI  Operatore",
                                                               "|TI  Cannegg.",   "|TI  Auftrgeber",
                                                               "|TI  Beobachter", "|TI  Reflektor"};
constexpr CConvFileELT::Tag CConvFileELT::kInstrumentTitles[] = {"|TI  Strum.tipo",
                                                                 "|TI  Instr.typ"};
constexpr CConvFileELT::Tag CConvFileELT::kSerialTitles[] = {"|TI  Instr.Nr.", "|TI  Strum.N\xB0"};
constexpr CConvFileELT::Tag CConvFileELT::kDateTitles[] = {"|TI  Data", "|TI  Datum"};

CConvFileELT::CConvFileELT(CLibCmp& fieldBook, std::string* fileName)
    : CConvFileBase(fieldBook, fileName) {}

CConvFileELT::~CConvFileELT() = default;

bool CConvFileELT::Esegui() {
    const bool converted = CConvFileBase::Esegui();
    WriteJobTexts();
    job_ = {};
    return converted;
}

void CConvFileELT::ProcessaRiga() {
    if (line_.size() < kShortestLine) {
        Skip(kTooShort);
        return;
    }
    FindBars();
    if (HasTag(kPoint))
        ConvertiRigaPI();
    else
        ConvertiAltraRiga();
}

void CConvFileELT::ConvertiAltraRiga() {
    if (ContainsAny(line_, {"EINGABEWERTE", "INPUT VALORI"}))
        InputValues();
    else if (ContainsAny(line_, {"MISURE", "MESSUNG", "MEASURE"}))
        StartOfMeasurements();
    else if (ContainsAny(line_, {"Setta Hz", "Set Hz"}))
        setsHz_ = true;
    else if (ContainsAny(line_, {"Orientamento Locale", "Local orientation"}))
        setsHz_ = false;
    else
        TitleLine();
}

/// Values go in pairs: one that its line does not have becomes absent with the other.
void CConvFileELT::InputValues() {
    const auto readPair = [this](const Tag& firstTag, double& first, const Tag& secondTag,
                                 double& second) {
        const bool hasFirst = HasTag(firstTag);
        const bool hasSecond = HasTag(secondTag);
        if (!hasFirst && !hasSecond)
            return false;
        first = SeparaCampoDouble(firstTag);
        second = SeparaCampoDouble(secondTag);
        if (!hasFirst || !hasSecond)
            Note(kHalfPair);
        return true;
    };
    if (!readPair("|hp ", targetHeight_, "|hs ", instrumentHeight_) &&
        !readPair("|th ", targetHeight_, "|ih ", instrumentHeight_) &&
        !readPair("|T_ ", temperature_, "|P  ", pressure_))
        Note(kOtherInput);
}

void CConvFileELT::StartOfMeasurements() {
    setsHz_ = false;
    if (!CurrentJob())
        return;
    if (!job_.title.empty()) {
        if (job_.titleIsName)
            job_.name.clear();
        else if (!job_.named)
            job_.name = GetNomeOfJob();
        job_.name.append(" ").append(job_.title);
        job_.title.clear();
        job_.named = true;
        job_.line = job_.titleLine;
    }
    job_.operatorsTaken = job_.operators.size();
    job_.instrumentsTaken = job_.instruments.size();
    if (!job_.date.empty())
        job_.dateTaken = job_.date;
}

void CConvFileELT::WriteJobTexts() {
    const bool hasRest = !job_.title.empty() || job_.operators.size() > job_.operatorsTaken ||
                         job_.instruments.size() > job_.instrumentsTaken ||
                         job_.date != job_.dateTaken;
    if (keeper_ && hasRest)
        keeper_->NoteAt(kTitleIsLate, job_.lastLine);
    NoteStationWithoutPoint();
    if (job_.named) {
        const AtLine line(*this, job_.line);
        SetNomeAtJob(job_.name);
        if (CJob* const job = CurrentJob())
            Tell(job);
    }
    if (job_.operatorsTaken > 0)
        SetOperAtJob(job_.operators.substr(0, job_.operatorsTaken));
    if (job_.instrumentsTaken > 0)
        SetStrumAtJob(job_.instruments.substr(0, job_.instrumentsTaken));
    if (!job_.dateTaken.empty())
        SetDataAtJob(job_.dateTaken);
}

/// Operator and instrument gather over the title lines, each part followed by a blank. The job's
/// title is added to the name that the job has by now; the date is replaced.
void CConvFileELT::TitleLine() {
    const auto findAll = [this](std::span<const Tag> tags, std::string& text) {
        for (const Tag& tag : tags)
            FindTag(tag, text);
    };
    std::string job;
    std::string operatorName;
    std::string instrument;
    findAll(kJobTitles, job);
    findAll(kOperatorTitles, operatorName);
    findAll(kInstrumentTitles, instrument);
    for (const Tag& tag : kSerialTitles) {
        if (FindTag(tag, instrument))
            instrument.insert(0, "s.n.");
    }
    findAll(kDateTitles, job_.date);

    if (!job.empty()) {
        job_.title = job;
        job_.titleLine = LineNumber();
        job_.titleIsName = !CurrentJob();
    }
    AppendWithBlank(job_.operators, operatorName);
    AppendWithBlank(job_.instruments, instrument);

    const auto hasAny = [this](std::span<const Tag> tags) {
        return std::ranges::any_of(tags, [this](const Tag& tag) { return HasTag(tag); });
    };
    if (!IsHeard() || hasAny(kJobTitles) || hasAny(kOperatorTitles) || hasAny(kInstrumentTitles) ||
        hasAny(kSerialTitles) || hasAny(kDateTitles)) {
        job_.lastLine = LineNumber();
        return;
    }
    if (HasTag("|TI"))
        Note(kOtherTitle);
    else
        Skip();
}

void CConvFileELT::ConvertiRigaPI() {
    if (HasTag("|dl ")) {
        Note(kDlLine);
        return;
    }
    if (OffsetLine())
        return;
    if (line_.back() == 'O') {
        NoteStationWithoutPoint();
        hasStationLines_ = true;
        stationName_ = SeparaCampoNome(kPoint, kFirstName, ' ');
        stationCode_ = SeparaCampoNome(kPoint, kCodeAfterOneName, '|');
        stationLine_ = LineNumber();
        return;
    }
    if (NamesOfLine())
        MeasurementLine();
    else
        Note(kNoPointName);
    alongOffset_ = lateralOffset_ = verticalOffset_ = kNoValue;
}

/// An offset of the next measurement; one a line.
bool CConvFileELT::OffsetLine() {
    if (HasTag("|Tv "))
        alongOffset_ = SeparaCampoDouble("|Tv ");
    else if (HasTag("|Th "))
        alongOffset_ = Opposite(SeparaCampoDouble("|Th "));
    else if (HasTag("|Tr "))
        lateralOffset_ = SeparaCampoDouble("|Tr ");
    else if (HasTag("|Tl "))
        lateralOffset_ = Opposite(SeparaCampoDouble("|Tl "));
    else if (HasTag("|Ts "))
        verticalOffset_ = SeparaCampoDouble("|Ts ");
    else
        return false;
    return true;
}

/// Reads the names of a measurement line; false where it names no point.
bool CConvFileELT::NamesOfLine() {
    if (hasStationLines_) {
        pointName_ = SeparaCampoNome(kPoint, kFirstName, ' ');
        pointCode_ = SeparaCampoNome(kPoint, kCodeAfterOneName, '|');
    } else {
        stationName_ = SeparaCampoNome(kPoint, kFirstName, ' ');
        stationLine_ = LineNumber();
        pointName_ = SeparaCampoNome(kPoint, kSecondName, ' ');
        pointCode_ = SeparaCampoNome(kPoint, kCodeAfterTwoNames, '|');
    }
    return !pointName_.empty() && pointName_.front() != '|';
}

void CConvFileELT::MeasurementLine() {
    Reading reading{.slopeDistance = SeparaCampoDouble("|SD "),
                    .zenithAngle = SeparaCampoDouble("|V1 "),
                    .horizontalAngle = SeparaCampoDouble("|Hz ")};
    const double horizontalDistance = SeparaCampoDouble("|HD ");
    const double heightDifference = SeparaCampoDouble("|h ");
    if (!IsPresent(reading.slopeDistance))
        reading.slopeDistance = SeparaCampoDouble("|D ");

    if (IsPresent(horizontalDistance) && IsPresent(heightDifference)) {
        const bool repeats = !IsPresent(reading.slopeDistance) && pointName_ == lastPoint_ &&
                             reading.horizontalAngle == lastHorizontalAngle_;
        // Also where slope distance and zenith angle were read, on purpose: the point then agrees
        // with the reduced line of the same point that follows, which is taken for a repetition.
        if (repeats) {
            Note(kRepeats);
            return;
        }
        if (IsPresent(reading.slopeDistance) || IsPresent(reading.zenithAngle))
            Note(kReducedWins);
        reading = ReducedReading(horizontalDistance, heightDifference, reading.horizontalAngle);
    } else if (IsPresent(horizontalDistance) || IsPresent(heightDifference)) {
        Note(kHalfReduced);
    }
    if (reading.slopeDistance < kShortestDistance) {
        if (reading.slopeDistance != 0)
            Note(kNoDistance);
        reading.slopeDistance = kNoValue;
    }
    if (IsHeard())
        NoteOtherTags();

    if (HasAngles(reading) && IsPresent(reading.slopeDistance))
        ApplyOffsets(reading);
    if (!HasAngles(reading)) {
        Note(kNoAngles);
        return;
    }
    if (setsHz_ && !IsPresent(reading.slopeDistance)) {
        Note(kCircleIsSet);
        return;
    }
    AggiungiPunto(reading);
    if (!IsPresent(horizontalDistance) && !IsPresent(heightDifference)) {
        lastPoint_ = pointName_;
        lastHorizontalAngle_ = reading.horizontalAngle;
    }
}

bool CConvFileELT::HasAngles(const Reading& reading) {
    return IsPresent(reading.horizontalAngle) && IsPresent(reading.zenithAngle);
}

void CConvFileELT::ApplyOffsets(Reading& reading) const {
    double& distance = reading.slopeDistance;
    if (IsPresent(alongOffset_))
        distance += alongOffset_ / Sin(reading.zenithAngle * kRadiansPerGon);
    if (IsPresent(lateralOffset_)) {
        reading.horizontalAngle += ArcTan(lateralOffset_ / distance) * kGonPerRadian;
        distance = std::sqrt(distance * distance + lateralOffset_ * lateralOffset_);
    }
    if (IsPresent(verticalOffset_)) {
        const double zenith = reading.zenithAngle * kRadiansPerGon;
        reading = RoundedReadingFromReduced(distance * Sin(zenith),
                                            distance * Cos(zenith) + verticalOffset_,
                                            reading.horizontalAngle);
    }
}

/// A station is written with its first point, not before.
void CConvFileELT::AggiungiPunto(const Reading& reading) {
    if (stationName_ != previousStation_) {
        const AtLine line(*this, stationLine_);
        AggiungeSta(stationName_, stationCode_, instrumentHeight_, temperature_, pressure_);
    }
    AggiungePun(pointName_, pointCode_, {}, targetHeight_, reading);
    previousStation_ = stationName_;
}

/// Remarks on the station of the line before, of which a station line now takes the place.
void CConvFileELT::NoteStationWithoutPoint() {
    if (keeper_ && hasStationLines_ && stationName_ != previousStation_)
        keeper_->NoteAt(kNoPoint, stationLine_);
}

/// Remarks on values behind tags that a measurement line has and that are not read.
void CConvFileELT::NoteOtherTags() {
    for (std::size_t i = 0; i < barCount_; ++i) {
        const std::string_view tag = line_.substr(bars_[i].position + 1);
        const bool isRead = std::ranges::any_of(
            kTagsRead, [tag](std::string_view read) { return tag.starts_with(read); });
        double unused = 0;
        if (!isRead && tag.find(' ') < kValue && NumberAtStart(Piece(tag, kValue - 1), unused) > 0)
            Note(kOtherTag);
    }
}

void CConvFileELT::FindBars() {
    if (line_.size() > bars_.size())
        bars_.resize(line_.size());
    barCount_ = 0;
    tagsSeen_ = 0;
    ForEachPosition(line_, '|', [this](std::size_t bar) {
        const std::uint32_t start = StartOf({line_.data() + bar, line_.size() - bar});
        bars_[barCount_++] = {static_cast<std::uint32_t>(bar), start};
        tagsSeen_ |= bar + 1 < line_.size() ? BitOf(line_[bar + 1]) : 0;
    });
}

/// The first bar that begins the tag; barCount_ where none does.
std::size_t CConvFileELT::BarOf(const Tag& tag) const {
    if ((tagsSeen_ & BitOf(tag.text[1])) == 0)
        return barCount_; // nearly always
    std::size_t i = 0;
    for (; i < barCount_; ++i) {
        const Bar& bar = bars_[i];
        if ((bar.start & tag.mask) == tag.start &&
            (tag.text.size() <= kStart + 1 || line_.substr(bar.position).starts_with(tag.text)))
            break;
    }
    return i;
}

/// Where a tag stands first; npos: nowhere.
std::size_t CConvFileELT::PositionOf(const Tag& tag) const {
    const std::size_t bar = BarOf(tag);
    return bar < barCount_ ? bars_[bar].position : std::string_view::npos;
}

/// The text between a tag and the next bar (or the line's end); true where it is not empty. `text`
/// is left alone where the tag is absent, and emptied where the tag has nothing behind it.
bool CConvFileELT::FindTag(const Tag& tag, std::string& text) const {
    const std::size_t position = PositionOf(tag);
    if (position == std::string_view::npos)
        return false;
    const std::string_view rest = line_.substr(position + tag.text.size());
    text = TrimBoth(rest.substr(0, rest.find('|')));
    return !text.empty();
}

/// The text that begins `skip` characters after a tag's position, up to the first `stop` behind its
/// leading blanks; empty where the tag is absent.
std::string_view CConvFileELT::SeparaCampoNome(const Tag& tag, std::size_t skip, char stop) const {
    const std::size_t position = PositionOf(tag);
    if (position == std::string_view::npos)
        return {};
    const std::string_view rest = TrimBoth(Piece(line_, position + skip));
    return TrimBoth(rest.substr(0, rest.find(stop)));
}

/// A value is what stands up to the next bar, or to a blank in it.
double CConvFileELT::SeparaCampoDouble(const Tag& tag) {
    const std::size_t bar = BarOf(tag);
    if (bar == barCount_)
        return kNoValue;
    const std::size_t begin = std::min(bars_[bar].position + kValue, line_.size());
    const std::size_t end = bar + 1 < barCount_ ? bars_[bar + 1].position : line_.size();
    const std::string_view text = TrimBoth({line_.data() + begin, end - begin});
    return ReadNumberOrNoValue(text.substr(0, text.find(' ')));
}
