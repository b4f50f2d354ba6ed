#pragma once

#include "framework/ConvGen.h"
#include "framework/Export.h"
#include "host/NoValue.h"
#include "routines/TextFile.h"

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
    bool OpenFile();
    bool LeggeUnaRigaMWG();
    void AnalizzaRigaMWG();
    void SalvaRigaMWG();
    void AggiungiStazioneMWG();
    void AggiungiPuntoMWG();

    void Observation();
    void Information();

    std::string_view line_;
    bool stationReady_ = false;
    bool pointReady_ = false;
    std::string stationName_;
    double instrumentHeight_ = kNoValue;
    std::string pointName_;
    double horizontalAngle_ = kNoValue;
    double verticalAngle_ = kNoValue;
    double slopeDistance_ = kNoValue;
    double targetHeight_ = kNoValue; ///< kept until a line changes it
    TextFile file_;
};
