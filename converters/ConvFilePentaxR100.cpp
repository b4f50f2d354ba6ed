// A Pentax R100 file: one value a line, a three-letter tag, a ":" and the value, which a terminator
// follows.
//
//   STL:CANTIERE 7;        job name
//   STA:;                  belongs to a station
//   STS:100;               station name
//   STC:CHIODO;            station code
//   TMP:18.0;              temperature
//   PRS:1013;              pressure
//   INH:1.545;             instrument height, metres
//   PPT:;                  belongs to a point
//   PPD:101;               point name
//   PPC:SPIGOLO;           point code
//   PPH:1.600;             target height, metres
//   RTH:123.4567;          horizontal angle, gon
//   RTV:98.7654;           zenith angle, gon
//   RTD:25.417;            slope distance, metres
//
// What stands before the tag and every other tag is skipped. A record has no end of its own. A
// station or a point is written when a tag of another kind, or one whose value it has already,
// shows that it is complete; a job when a tag of a station does.

#include "converters/ConvFilePentaxR100.h"

#include "routines/Numbers.h"
#include "routines/Text.h"

#include <algorithm>

namespace {

constexpr std::size_t kTagLength = 3;

/// A tag of a record: the text or the number it fills, or neither where it only opens the record.
template <class Record>
struct Tag {
    std::string_view tag;
    std::string Record::*text;
    double Record::*number;
};

using Station = CConvFilePentaxR100::Station;
using Point = CConvFilePentaxR100::Point;

constexpr std::string_view kJobTag = "STL";

constexpr Tag<Station> kStationTags[] = {
    {"STA", nullptr, nullptr},
    {"STS", &Station::name, nullptr},
    {"STC", &Station::code, nullptr},
    {"TMP", nullptr, &Station::temperature},
    {"PRS", nullptr, &Station::pressure},
    {"INH", nullptr, &Station::instrumentHeight},
};

constexpr Tag<Point> kPointTags[] = {
    {"PPT", nullptr, nullptr},
    {"PPD", &Point::name, nullptr},
    {"PPC", &Point::code, nullptr},
    {"PPH", nullptr, &Point::targetHeight},
    {"RTH", nullptr, &Point::horizontalAngle},
    {"RTV", nullptr, &Point::zenithAngle},
    {"RTD", nullptr, &Point::slopeDistance},
};

template <class Table>
auto* FindTag(const Table& table, std::string_view tag) {
    const auto* const found =
        std::ranges::find_if(table, SameAs(tag), [](const auto& row) { return row.tag; });
    return found == std::end(table) ? nullptr : found;
}

/// True where the record has the value that the tag would fill.
template <class Record>
bool HasValue(const Record& record, const Tag<Record>& tag) {
    if (tag.text)
        return !(record.*tag.text).empty();
    return tag.number && IsPresent(record.*tag.number);
}

constexpr Cause kNoTag = {RemarkKind::Unknown, "a line without a tag is skipped"};
constexpr Cause kUnknownTag = {RemarkKind::Unknown,
                               "a line with another tag than those that are read is skipped"};
constexpr Cause kNoTerminator = {
    RemarkKind::Incomplete,
    "a value without its terminator: its last character is taken for one and is not read"};
constexpr Cause kJobUnused = {RemarkKind::NotRead,
                              "the name of a job (STL) that no station follows is not read"};

/// True where a value ends in what may belong to it, not in a terminator.
bool LacksTerminator(std::string_view value) {
    const char last = value.empty() ? ';' : value.back();
    const bool isLetter = UpperAscii(last) >= 'A' && UpperAscii(last) <= 'Z';
    return isLetter || (last >= '0' && last <= '9') || static_cast<unsigned char>(last) >= 0x80;
}

} // namespace

CConvFilePentaxR100::CConvFilePentaxR100(CLibCmp& fieldBook, std::string* fileName)
    : CConvFileBase(fieldBook, fileName) {}

// A job tag with nothing after it adds no job, on purpose: the instrument ends a download with the
// name of the job that it would write next.
CConvFilePentaxR100::~CConvFilePentaxR100() {
    Finish([this] {
        ConversioneSta();
        ConversionePun();
        NoteUnusedJob();
    });
}

void CConvFilePentaxR100::ProcessaRiga() {
    const std::size_t colon = line_.find(':');
    if (colon == std::string_view::npos || colon < kTagLength)
        return Skip(kNoTag);
    const std::string_view tag = line_.substr(colon - kTagLength, kTagLength);
    // The last character is the terminator, whatever it is.
    const std::string_view ended = line_.substr(colon + 1);
    const std::string_view value = TrimBoth(DropLast(ended));

    if (tag == kJobTag) {
        ConversionePun();
        ConversioneSta();
        NoteUnusedJob();
        jobName_ = value;
        jobPending_ = true;
        jobLine_ = LineNumber();
    } else if (const auto* const stationTag = FindTag(kStationTags, tag)) {
        ConversionePun();
        ConversioneLav();
        if (HasValue(station_, *stationTag))
            ConversioneSta();
        Fill(station_, *stationTag, value);
    } else if (const auto* const pointTag = FindTag(kPointTags, tag)) {
        ConversioneSta();
        if (HasValue(point_, *pointTag))
            ConversionePun();
        Fill(point_, *pointTag, value);
    } else {
        return Skip(kUnknownTag);
    }
    if (IsHeard() && LacksTerminator(ended))
        Note(kNoTerminator);
}

template <class Record, class Tag>
void CConvFilePentaxR100::Fill(Record& record, const Tag& tag, std::string_view value) {
    if (tag.text)
        record.*tag.text = value;
    if (tag.number)
        record.*tag.number = ReadNumber(value);
    if (!record.pending)
        record.line = LineNumber();
    record.pending = true;
}

/// Remarks on a job's name that came to nothing.
void CConvFilePentaxR100::NoteUnusedJob() {
    if (keeper_ && jobPending_)
        keeper_->NoteAt(kJobUnused, jobLine_);
}

void CConvFilePentaxR100::ConversioneLav() {
    if (!jobPending_)
        return;
    const AtLine atJob(*this, jobLine_);
    if (firstJob_) {
        SetNomeAtJob(jobName_);
        if (CJob* const job = CurrentJob())
            Tell(job);
    } else {
        AggiungeJob(jobName_, "", "", "");
    }
    firstJob_ = false;
    AzzeramentoLav();
}

void CConvFilePentaxR100::ConversioneSta() {
    if (!station_.pending)
        return;
    const AtLine atStation(*this, station_.line);
    AggiungeSta(station_.name, station_.code, station_.instrumentHeight, station_.temperature,
                station_.pressure);
    AzzeramentoSta();
}

void CConvFilePentaxR100::ConversionePun() {
    if (!point_.pending)
        return;
    const AtLine atPoint(*this, point_.line);
    AggiungePun(
        point_.name, point_.code, "", point_.targetHeight,
        WithoutZeroDistance({point_.slopeDistance, point_.zenithAngle, point_.horizontalAngle}));
    AzzeramentoPun();
}

void CConvFilePentaxR100::AzzeramentoLav() {
    jobName_.clear();
    jobPending_ = false;
}

void CConvFilePentaxR100::AzzeramentoSta() {
    station_ = {};
}

void CConvFilePentaxR100::AzzeramentoPun() {
    point_ = {};
}
