#pragma once

#include "framework/ConvGen.h"
#include "framework/Export.h"

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
    bool ReadLine();
    void ConvertLine();
    void OneLinePoint(std::string_view fields);
    void PointWithCode(std::string_view fields, std::string_view code);
    void StationWithPoint(std::string_view name, std::string_view fields);
    void WritePoint(std::string_view name, std::string_view code, double targetHeight,
                    std::string_view reading);

    bool ended_ = false; ///< an "END" line was read
};
