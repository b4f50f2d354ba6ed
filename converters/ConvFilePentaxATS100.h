#pragma once

#include "framework/ConvGen.h"
#include "framework/Export.h"
#include "host/NoValue.h"

#include <array>
#include <string>
#include <string_view>

/// Reads Pentax ATS100 tab-separated exports.
class CConvFilePentaxATS100 : public CConvGen {
public:
    CONVFILE_API CConvFilePentaxATS100(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFilePentaxATS100() override;

    /// Converts the file into one job named after it; false where it cannot be opened.
    CONVFILE_API bool Esegui();

private:
    static constexpr std::size_t kColumns = 9;
    struct ColumnName;
    static const ColumnName kColumnNames[];
    /// What each column holds; null: nothing that is read.
    using ColumnMap = std::array<const ColumnName*, kColumns>;

    /// The values of one data line.
    struct Values {
        std::string_view name;
        std::string_view code;
        double targetHeight = kNoValue;
        double instrumentHeight = kNoValue;
        double horizontalAngle = kNoValue;
        double zenithAngle = kNoValue;
        double horizontalDistance = kNoValue;
        double slopeDistance = kNoValue;
        double heightDifference = kNoValue;
    };

    // Operations in the library's own vocabulary.
    bool LeggeUnaRigaDAT();
    void IndividuaCampi();
    void LeggeCampi(ColumnMap& map);
    void LeggeDati(const ColumnMap& map, bool isStation);
    void Inizializza();

    void ConvertLine();
    void CheckLastValue(std::string_view text);
    void CheckColumns(const ColumnMap& map, std::size_t columns);
    void Store(const ColumnName& column, std::string_view text);
    void UseReducedValues();

    ColumnMap stationMap_{};
    ColumnMap pointMap_{};
    bool stationTitle_ = false;     ///< the line before was the title of a station section
    bool pointTitle_ = false;       ///< the same of a point section
    bool hasSlopeDistance_ = false; ///< a slope distance column was seen
    Values values_;
    double lastInstrumentHeight_ = kNoValue;
};
