#pragma once

#include "converters/PendingRecords.h"
#include "routines/Offset.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// In what the two kinds of keyword file differ.
struct KeywordDialect {
    /// Everything up to and including the first line that begins with a letter is a header.
    bool hasHeader;
    /// PTL_OFF is read like OFFSET.
    bool hasPtlOff;
    /// A number without a point has its decimals implied: three for lengths, four for angles.
    bool impliedDecimals;
    /// Decimals with which a distance computed from an HD record is kept, by the classic rules.
    int reducedDistanceDecimals;
    /// An OFFSET renames the point it starts from; otherwise it names the new one differently.
    bool offsetRenamesOldPoint;
};

/// Reads keyword record files of either kind.
class CConvKeywordRecords : public CConvPendingRecords {
public:
    CConvKeywordRecords(CLibCmp& fieldBook, std::string* fileName, const KeywordDialect& dialect);
    /// Writes what is pending: job, station, point.
    ~CConvKeywordRecords() override;

protected:
    void ProcessaRiga() override;

private:
    struct Units {
        char length = 'M'; ///< "F": feet
        char angle = 'G';  ///< "D": degrees
    };

    /// A resection observation that waits for its station: its fields, and the line of the first.
    struct Resection {
        std::string fields;
        std::uint64_t line;
        Units units;
    };

    /// The point written last, for OFFSET; its distance as it was read.
    struct WrittenPoint {
        std::string name;
        std::string code;
        double targetHeight = 0;
        Reading reading{0, 0, 0};
    };

    // Operations in the library's own vocabulary.
    void AnalizzaRiga(std::string_view keyword);
    void CampoJOB();
    void CampoDATE();
    void CampoNAME();
    void CampoINST();
    void CampoATMOS();
    void CampoXYZ();
    void CampoSTN();
    void CampoBKB();
    void CampoBS();
    void CampoRES_OBS();
    void CampoFS();
    void CampoSS();
    void CampoCTL();
    void CampoHV();
    void CampoSD();
    void CampoHD();
    void CampoNOTE();
    void CampoUNITS();
    void CampoOFFSET();

    void SalvaRigaS();
    void SalvaRigaP();
    void SalvaRigaRES_OBS();

    /// What an XYZ record gives coordinates to.
    enum class PlaceOf { Nothing, RecordInHand, OffsetPoint };

    struct Keyword;
    static const Keyword kKeywords[];

    void ConvertHeaderLine();
    void NotRead(const Cause& cause);
    void NoteUnits() const;
    void TakeRecord();
    void NoteReduced();
    void NoteSexagesimal(std::string_view angle);
    double NextCoordinate();
    double Metres(double length, const Units& units) const;
    void JobText(std::size_t slot, std::string_view text);
    Reading ReadingOfSlots() const;
    double LengthOf(const std::string& text) const;
    double AngleOf(const std::string& text, const Units& units) const;
    double UncheckedLengthOf(std::string_view text) const;

    const KeywordDialect& dialect_;
    bool inHeader_;
    Units units_;              ///< announced last
    Units recordUnits_;        ///< of the record in hand
    bool zenithIsGon_ = false; ///< of the point in hand: it was computed
    PlaceOf placeOf_ = PlaceOf::Nothing;
    Place place_;                       ///< of the record in hand
    bool resection_ = false;            ///< from RES_OBS until the station is written
    std::vector<Resection> resections_; ///< observations of the station that is pending
    WrittenPoint last_;
};
