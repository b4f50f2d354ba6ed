#pragma once

#include "framework/ConvGen.h"
#include "framework/Export.h"
#include "host/NoValue.h"
#include "routines/TextFile.h"

#include <string>
#include <string_view>

/// Reads space-separated DAT files (not those that instruments download under that extension).
class CConvFileDAT : public CConvGen {
public:
    CONVFILE_API CConvFileDAT(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFileDAT() override;

    /// Converts the file into one job named after it; false where it cannot be opened.
    CONVFILE_API bool Esegui();

private:
    bool OpenFile();
    bool LeggeUnaRigaDAT();
    void ConvertiRiga();
    void ConversioneS();
    void ConversioneP();
    void ReadObservation(std::string_view& fields);

    bool ended_ = false; ///< an "END" line was read
    std::string pointName_;
    std::string pointCode_;
    std::string stationName_;
    double instrumentHeight_ = kNoValue;
    double targetHeight_ = kNoValue;
    double slopeDistance_ = kNoValue;
    double verticalAngle_ = kNoValue;
    double horizontalAngle_ = kNoValue;
    TextFile file_;
};
