#pragma once

#include "framework/ConvGen.h"
#include "framework/Export.h"
#include "host/CtsRigArray.h"

#include <array>
#include <string>
#include <string_view>

class CCts;

/// Reads a cadastral survey exchange file into the cadastral document (header, line records,
/// values) and into the field book (stations, observed points, orientation points).
class CConvFilePCP : public CConvGen {
public:
    CONVFILE_API CConvFilePCP(CLibCmp& fieldBook, CCts& document, std::string* fileName);
    CONVFILE_API ~CConvFilePCP() override;

    /// False where the file cannot be opened. The line records are handed over at the end.
    CONVFILE_API bool Esegui();

private:
    /// The longest record: one that fills it ends the reading.
    static constexpr std::size_t kLongestRecord = 1023;

    // Operations in the library's own vocabulary.
    bool LeggeUnaRigaPCP();
    bool TipoRiga();
    void SeparaCampo();
    void CleanData();
    void ConversioneRiga0();
    void ConversioneRiga1();
    void ConversioneRiga2();
    void ConversioneRiga3o7(char type);
    void ConversioneRiga4();
    void ConversioneRiga5();
    void ConversioneRiga6();
    void ConversioneRiga8();
    void ConversioneRiga9();
    void SeparaColoreTpLinea();
    bool SeparaCampiFinaliRiga7(int vertexCount);

    void EndAtLongRecord();
    void TellFirstLine(std::string_view text);
    void TellLinesBehindFirst();
    void TellLine();

    const std::string& NextField();
    double NextNumber();
    double NextReal();
    short Integer();
    void ReadVertex(char type);
    bool NamesRanOut() const;
    CRig& AddLine(char type);
    std::string_view Rest() const { return std::string_view(record_).substr(restBegin_); }
    char& RestAt(std::size_t position) { return record_[restBegin_ + position]; }

    CCts& document_;
    bool atEnd_ = false;                        ///< the last record was read
    std::array<char, kLongestRecord> buffer_{}; ///< the current record as it lies in the file
    std::string record_;                        ///< its text
    std::size_t restBegin_ = 0;                 ///< where what is left of it begins
    bool endIsRead_ = false;                    ///< its end was read, too: a style or labels
    std::string field_;                         ///< the current field
    char colour_ = 'N'; ///< style of the vertices being read; lasts across records
    char lineType_ = 'C';
    std::array<std::string, 3> labels_; ///< behind the vertices of a labelled line
    CCtsRigArray lines_;

    // For who listens.
    std::string_view untold_;    ///< the lines of the record that were not told yet
    std::uint64_t lineEnds_ = 0; ///< of the file, as far as it was told
};
