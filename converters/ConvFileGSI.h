#pragma once

#include "framework/ConvGen.h"
#include "framework/Export.h"
#include "host/NoValue.h"
#include "routines/Text.h"

#include <array>
#include <cstddef>
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

    /// Word index of a word, given from its blank on: two digits and a point. kNoIndex for others.
    static constexpr std::size_t WordIndex(std::string_view word) {
        if (word.size() < 4 || word[3] != '.')
            return kNoIndex;
        const auto tens = static_cast<unsigned char>(word[1] - '0');
        const auto ones = static_cast<unsigned char>(word[2] - '0');
        return tens < 10 && ones < 10 ? tens * 10U + ones : kNoIndex;
    }
    static constexpr std::size_t kNoIndex = 100;

    /// A set of word indexes.
    struct IndexSet {
        std::array<std::uint64_t, 2> bits{};

        constexpr bool Holds(std::size_t index) const {
            return (bits[index / 64] >> index % 64 & 1) != 0;
        }
        constexpr void Add(std::size_t index) {
            bits[index / 64] |= std::uint64_t{1} << index % 64;
        }
        constexpr void Remove(std::size_t index) {
            bits[index / 64] &= ~(std::uint64_t{1} << index % 64);
        }
    };

    /// True for a blank without a word behind it.
    static constexpr bool IsMereBlank(std::string_view word) {
        return word.size() < 2 || IsBlank(word[1]) || word[1] == '\r';
    }

    /// What a word that is looked for begins with, its blank included: its index and a point, and
    /// further points where it has some.
    struct Key {
        std::string_view text;
        std::size_t index;
        bool goesOn; ///< behind the point

        template <std::size_t Size>
        consteval Key(const char (&key)[Size]) // NOLINT: written as the texts that they are
            : text(key, Size - 1), index(WordIndex(text)), goesOn(Size - 1 > kPlainKey) {}

        constexpr bool IsOfAngle() const { return text[1] == '2'; }
    };
    static constexpr std::size_t kPlainKey = 4;

    // Operations in the library's own vocabulary.
    bool LeggeUnaRigaGSI();
    bool SeparaCampi(Record& record);
    bool TrattaRiga41(Record& station);
    bool TrattaRiga41Stonex(Record& station);
    bool TrattaRiga41PuntoStonex(Record& station);
    double TrovaDoubleInCmpConCod(const Key& key);
    std::string TrovaStrInCmpConCod(const Key& key);
    static void EliminaZeriIniz(std::string_view& digits);
    void ConvertiRiga(Record& record);
    void ConversioneRigaS(Record& station);
    void ConversioneRigaP(Record& point);

    void FindWords();
    std::size_t FindKey(const Key& key) const;
    std::size_t SearchKey(std::string_view key, std::size_t word) const;
    std::size_t BlankFrom(std::size_t position, std::size_t first = 0) const;
    std::string_view NameInFirstWord() const;
    void ConvertLine();
    void StationLine(Record& station);
    void PointLine(Record& point);
    void ReduceWhereNeeded(Record& point);
    double AbsentDistance(double distance);
    bool HoldsStation() const;
    Place PlaceIn(const Key& east, const Key& north, const Key& height);
    static bool IsPlaced(const Place& place);
    bool OpensSetUp(Record& station);
    bool OpensStation(std::string_view number, Record& station);

    struct Unit;
    using Units = std::array<Unit, 11>;
    static const Units kClassicUnits;
    static const Units kCompleteUnits;
    const Unit& UnitOf(char digit) const;
    double Converted(double data, const Unit& unit);

    std::string_view FirstWord() const;
    bool BeginsWithWord() const;
    bool BeginsWithPointNumber() const;
    void JudgeLine(bool isStation);
    struct WordRules;
    static const WordRules kPointWords;
    static const WordRules kPointWordsWithPlace;
    static const WordRules kStationWords;
    static const WordRules kStationWordsWithPlace;
    static const WordRules kBlockWords;
    bool JudgeWords(const WordRules& rules);
    void NoteNotRead(const WordRules& rules);
    void JudgeBlock(const Record& station);
    void JudgeOtherBlock(const Cause& cause);
    void JudgeValue(const Key& key, std::string_view data, std::size_t numberEnd, const Unit& unit);

    /// Where the blanks of the current line are; each but the ones in a row has a word behind it.
    std::vector<std::uint32_t> blanks_ = std::vector<std::uint32_t>(TextFile::kLongestLine);
    std::size_t blankCount_ = 0;
    IndexSet indexes_; ///< of the words of the current line
    /// For each of them the first word that has it, as its place in blanks_.
    std::array<std::uint8_t, kNoIndex> firstWords_{};
    bool holdsOtherWords_ = false; ///< the line has words without an index

    const Unit* units_ = nullptr; ///< by which the file is read
    std::string defaultCode_; ///< for points without one, from the last code block that gave one
    double defaultTargetHeight_ = kNoValue; ///< the same
    std::optional<SetUp> lastSetUp_;        ///< where the record before opened it
    bool skipBS1_ = false;                  ///< backsights named BS1 are left out
};
