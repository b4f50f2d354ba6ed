#pragma once

#include "framework/ConvGen.h"
#include "framework/TextFile.h"

#include <array>
#include <string>
#include <string_view>

/// Reads MMT downloads: one tagged value a line.
class CONVFILE_API CConvFileMMT : public CConvGen {
public:
    CConvFileMMT(CLibCmp& fieldBook, std::string* fileName);

    /// False where the file cannot be opened. Jobs are added by the file's own job records.
    bool Esegui();

private:
    enum class RecordType { None, Job, Station, Point };

    bool OpenFile();
    bool LeggeUnaRigaMMT();
    void IniziaRiga(RecordType type);
    void ConvertiRiga();
    void ConversioneRigaL();
    void ConversioneRigaS();
    void ConversioneRigaP();

    struct Tag;
    static const Tag kTags[];

    double SlotDividedBy(std::size_t slot, double divisor) const;

    std::string_view tag_;               ///< of the current line; empty where it has none
    std::string_view value_;             ///< of the current line
    RecordType type_ = RecordType::None; ///< of the record in hand
    std::array<std::string, 6> slots_;   ///< of the record in hand
    TextFile file_;
};
