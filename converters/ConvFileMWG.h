#pragma once

#include "framework/ConvGen.h"
#include "framework/Export.h"
#include "host/NoValue.h"

#include <cstdint>
#include <string>
#include <string_view>

/// Reads MWG fixed-column files.
class CConvFileMWG : public CConvGen {
public:
    CONVFILE_API CConvFileMWG(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFileMWG() override;

    /// Converts the file into one job named after it; false where it cannot be opened.
    CONVFILE_API bool Esegui();

private:
    // Operations in the library's own vocabulary.
    bool LeggeUnaRigaMWG();
    void AnalizzaRigaMWG();
    void SalvaRigaMWG();
    void AggiungiStazioneMWG();
    void AggiungiPuntoMWG();

    void ConvertLine();
    void Observation();
    bool Information();
    void Repetition();
    std::string NameOfNumber(std::string_view digits);

    // Lines write what is ready again, so it lasts.
    bool stationReady_ = false;
    bool pointReady_ = false;
    std::uint64_t recordLine_ = 0; ///< that said so
    std::string stationName_;
    double instrumentHeight_ = kNoValue;
    std::string pointName_;
    Reading reading_;                ///< of the point
    double targetHeight_ = kNoValue; ///< kept until a line changes it
};
