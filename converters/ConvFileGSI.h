#pragma once

#include "framework/ConvGen.h"
#include "framework/Export.h"
#include "host/NoValue.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Reads GSI-8 and GSI-16 word files, code blocks of both dialects included.
class CConvFileGSI : public CConvGen {
public:
    CONVFILE_API CConvFileGSI(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFileGSI() override;

    /// Converts the whole file into one job named after it; false where it cannot be opened.
    CONVFILE_API bool Esegui();

private:
    /// What a line says: a station or a point.
    struct Record {
        bool isStation = false;
        std::string name;
        std::string code;
        double instrumentHeight = kNoValue; ///< of a station
        double targetHeight = kNoValue;     ///< of a point, as is its reading
        Reading reading;
        Place place;
    };

    /// What makes a set-up the same as another.
    struct SetUp {
        std::string name;
        Place place;
        double instrumentHeight = kNoValue;

        bool operator==(const SetUp& other) const {
            return name == other.name && place.x == other.place.x && place.y == other.place.y &&
                   place.z == other.place.z && instrumentHeight == other.instrumentHeight;
        }
    };

    // Operations in the library's own vocabulary.
    bool LeggeUnaRigaGSI();
    bool SeparaCampi(Record& record);
    bool TrattaRiga41(Record& station);
    bool TrattaRiga41Stonex(Record& station);
    bool TrattaRiga41PuntoStonex(Record& station);
    double TrovaDoubleInCmpConCod(std::string_view key);
    std::string TrovaStrInCmpConCod(std::string_view key);
    static void EliminaZeriIniz(std::string_view& digits);
    void ConvertiRiga(Record& record);
    void ConversioneRigaS(Record& station);
    void ConversioneRigaP(Record& point);

    void FindWords();
    static std::size_t WordIndex(std::string_view word);
    std::size_t FindKey(std::string_view key) const;
    std::size_t SearchKey(std::string_view key, std::size_t word) const;
    std::size_t BlankFrom(std::size_t position, std::size_t word = 0) const;
    std::string_view NameInFirstWord() const;
    void ConvertLine();
    void StationLine(Record& station);
    void PointLine(Record& point);
    void ReduceWhereNeeded(Record& point);
    double AbsentDistance(double distance);
    bool HoldsStation() const;
    Place PlaceIn(std::string_view east, std::string_view north, std::string_view height);
    static bool IsPlaced(const Place& place);
    bool OpensSetUp(Record& station);
    bool OpensStation(std::string_view number, Record& station);

    struct Unit;
    using Units = std::array<Unit, 11>;
    static const Units kClassicUnits;
    static const Units kCompleteUnits;
    const Unit& UnitOf(char digit) const;
    double Converted(double data, const Unit& unit);

    bool BeginsWithWord() const;
    void JudgeLine(bool isStation);
    struct WordRules;
    static const WordRules kPointWords;
    static const WordRules kPointWordsWithPlace;
    static const WordRules kStationWords;
    static const WordRules kStationWordsWithPlace;
    static const WordRules kBlockWords;
    bool JudgeWords(const WordRules& rules);
    bool HoldsOnlyRead(const WordRules& rules) const;
    void JudgeBlock(const Record& station);
    void JudgeOtherBlock(const Cause& cause);
    void JudgeValue(std::string_view key, std::string_view data, const Unit& unit);

    /// Where the blanks of the current line are; each but the ones in a row has a word behind it.
    std::vector<std::uint32_t> blanks_ = std::vector<std::uint32_t>(TextFile::kLongestLine);
    std::size_t blankCount_ = 0;
    /// For each word index the first word that has it, as its place in blanks_; kAbsent: none.
    std::array<std::uint8_t, 100> firstWords_{};

    const Unit* units_ = nullptr; ///< by which the file is read
    std::string defaultCode_; ///< for points without one, from the last code block that gave one
    double defaultTargetHeight_ = kNoValue; ///< the same
    std::optional<SetUp> lastSetUp_;        ///< where the record before opened it
    bool skipBS1_ = false;                  ///< backsights named BS1 are left out
};
