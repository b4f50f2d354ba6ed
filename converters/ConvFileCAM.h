#pragma once

#include "framework/ConvGen.h"
#include "framework/Export.h"
#include "host/NoValue.h"
#include "routines/Fields.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

/// Reads comma-separated files of one observation a line, in two layouts.
class CConvFileCAM : public CConvGen {
public:
    CONVFILE_API CConvFileCAM(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFileCAM() override;

    /// Converts the file into one job named after it; false where it cannot be opened.
    CONVFILE_API bool Esegui();

private:
    /// One line, cut into its fields.
    struct Record {
        std::string_view station;
        double instrumentHeight = kNoValue;
        std::string_view point;
        std::string_view code;
        double targetHeight = kNoValue;
        Reading reading;
    };

    // Operations in the library's own vocabulary.
    bool LeggeUnaRigaCAM();
    static std::string_view SeparaCampo(FieldCutter& line);
    void ConvertiRigaCAM();
    void ConvertiRigaTXT();
    void ConversioneS(const Record& record);
    void ConversioneP(const Record& record);

    using Fields = std::array<std::string_view, 8>;
    Fields SeparaCampi(const std::array<std::size_t, 5>& numbers);
    void WriteRecord(const Record& record, std::string_view instrumentHeight);

    std::string previousStation_; ///< of the record before
};
