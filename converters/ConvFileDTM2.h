#pragma once

#include "framework/ConvGen.h"
#include "framework/Export.h"

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
    // Operations in the library's own vocabulary.
    bool LeggeUnaRigaDTM2();
    int SeparaTipoDato();
    bool SeparaCampi(int type);
    void LeggiPntStaz();
    void LeggiXYZStaz();
    void LeggiPunto();
    void LeggiCoordPnt();

    void ConvertLine();
    bool CurrentStationIs(std::string_view name);
    void NeedStation();
    double Length(std::string_view field);
    double Angle(std::string_view field);
    double Coordinate(std::string_view field);
    void CheckFields(int type, std::size_t closed);

    bool stationPresent_ = false;
    std::array<std::string_view, 9> fields_;
};
