#pragma once

#include "framework/ConvGen.h"
#include "framework/Export.h"
#include "host/NoValue.h"
#include "routines/TextFile.h"

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
    bool OpenFile();
    bool LeggeUnaRigaCAM();
    std::string_view SeparaCampo();
    void ConvertiRigaCAM();
    void ConvertiRigaTXT();
    void ConversioneS();
    void ConversioneP();

    double SeparaNumero();
    void ReduceAtGround(double reducedDistance, double groundDifference);
    void WriteRecord();

    std::string previousStation_; ///< of the record before
    std::string stationName_;
    std::string pointName_;
    std::string code_;
    double targetHeight_ = kNoValue;
    double instrumentHeight_ = kNoValue;
    double verticalAngle_ = kNoValue;
    double horizontalAngle_ = kNoValue;
    double slopeDistance_ = kNoValue;
    std::string_view line_; ///< what is left of the current line
    TextFile file_;
};
