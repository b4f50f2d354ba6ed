#pragma once

#include "framework/ConvGen.h"
#include "framework/Export.h"
#include "host/NoValue.h"
#include "routines/TextFile.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

/// Reads GSI-8 and GSI-16 word files, code blocks of both dialects included.
class CConvFileGSI : public CConvGen {
public:
    CONVFILE_API CConvFileGSI(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFileGSI() override;

    /// Converts the whole file into one job named after it; false where it cannot be opened.
    CONVFILE_API bool Esegui();

private:
    bool OpenFile();
    bool LeggeUnaRigaGSI();
    bool SeparaCampi();
    bool TrattaRiga41();
    bool TrattaRiga41Stonex();
    bool TrattaRiga41PuntoStonex();
    double TrovaDoubleInCmpConCod(std::string_view key) const;
    std::string TrovaStrInCmpConCod(std::string_view key) const;
    static void EliminaZeriIniz(std::string_view& digits);
    void ConvertiRiga();
    void ConversioneRigaS();
    void ConversioneRigaP();

    void FindWords();
    static std::size_t WordIndex(std::string_view word);
    std::size_t FindKey(std::string_view key) const;
    std::size_t BlankFrom(std::size_t position, std::size_t word = 0) const;
    std::string_view NameInFirstWord() const;
    void StationLine();
    void PointLine();
    bool StationBlock(std::string name, std::string code, double instrumentHeight);

    std::string_view line_; ///< current line, without its line end
    /// Where its blanks are; each but the ones in a row has a word behind it.
    std::array<std::uint8_t, TextFile::kLongestLine> blanks_{};
    std::size_t blankCount_ = 0;
    /// For each word index the first word that has it, as its place in blanks_; kNoWord: none.
    std::array<std::uint8_t, 100> firstWords_{};

    std::string name_; ///< of the point or station of the current line, as is the code
    std::string code_;
    double instrumentHeight_ = kNoValue;
    double targetHeight_ = kNoValue;
    double slopeDistance_ = kNoValue;
    double verticalAngle_ = kNoValue;
    double horizontalAngle_ = kNoValue;

    std::string defaultCode_; ///< for points without one, from the last code block that gave one
    double defaultTargetHeight_ = kNoValue; ///< the same
    bool stationLine_ = false;              ///< the current line is a station line
    bool skipBS1_ = false;                  ///< backsights named BS1 are left out
    TextFile file_;
};
