#pragma once

#include "framework/ConvGen.h"
#include "framework/Export.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

/// Reads MMT downloads: one tagged value a line.
class CConvFileMMT : public CConvGen {
public:
    CONVFILE_API CConvFileMMT(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFileMMT() override;

    /// False where the file cannot be opened. Jobs are added by the file's own job records.
    CONVFILE_API bool Esegui();

private:
    enum class RecordType { None, Job, Station, Point };

    // Operations in the library's own vocabulary.
    bool LeggeUnaRigaMMT();
    void IniziaRiga(RecordType type);
    void ConvertiRiga();
    void ConversioneRigaL();
    void ConversioneRigaS();
    void ConversioneRigaP();

    struct Tag;
    static const Tag kTags[];

    void ConvertLine();
    void Fill(const Tag& tag);
    double SlotDividedBy(std::size_t slot, double divisor) const;

    std::string_view tag_;               ///< of the current line; empty where it has none
    std::string_view value_;             ///< of the current line
    RecordType type_ = RecordType::None; ///< of the record in hand
    std::array<std::string, 6> slots_;   ///< of the record in hand
    std::uint64_t recordLine_ = 0;       ///< on which it begins
};
