#pragma once

#include "framework/ConvGen.h"
#include "framework/Export.h"
#include "routines/TextFile.h"

#include <array>
#include <string>
#include <string_view>

/// Reads comma-separated files whose records carry a numeric type.
class CConvFileDTM2 : public CConvGen {
public:
    CONVFILE_API CConvFileDTM2(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFileDTM2() override;

    /// Converts the file into one job named after it; false where it cannot be opened.
    CONVFILE_API bool Esegui();

private:
    bool OpenFile();
    bool LeggeUnaRigaDTM2();
    int SeparaTipoDato();
    bool SeparaCampi(int type);
    void LeggiPntStaz();
    void LeggiXYZStaz();
    void LeggiPunto();
    void LeggiCoordPnt();

    bool CurrentStationIs(std::string_view name);
    void NeedStation();
    double Length(std::string_view field) const;
    double Angle(std::string_view field) const;

    bool stationPresent_ = false;
    std::string_view line_; ///< what is left of the current line
    std::array<std::string_view, 9> fields_;
    TextFile file_;
};
