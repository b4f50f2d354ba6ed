#pragma once

#include "converters/PendingRecords.h"
#include "framework/Export.h"
#include "host/NoValue.h"

#include <string>
#include <string_view>

/// Reads Phenix keyword files.
class CConvFilePhenix : public CConvPendingRecords {
public:
    CONVFILE_API CConvFilePhenix(CLibCmp& fieldBook, std::string* fileName);
    /// Writes what is pending: job, station, point.
    CONVFILE_API ~CConvFilePhenix() override;

protected:
    void ProcessaRiga() override;

private:
    // Operations in the library's own vocabulary.
    void AnalizzaRiga(std::string_view keyword);
    void CampoSTA();
    void CampoFS();
    void CampoSS();
    void CampoSx();
    void CampoHV();
    void CampoHVD();
    void CampoHD();
    void CampoNEZ();
    void CampoENZ();
    void CampoCoordinate(const std::string& east, const std::string& north,
                         const std::string& height);
    void SalvaRigaS();
    void SalvaRigaP();

    struct Keyword;
    static const Keyword kKeywords[];

    void StationCoordinates(const std::string& east, const std::string& north,
                            const std::string& height);
    void PointCoordinates(const std::string& east, const std::string& north,
                          const std::string& height);

    /// The current station; coordinates stay until the next ones come, on purpose: a set-up that
    /// goes on under a new height does not repeat them.
    double instrumentHeight_ = kNoValue;
    double x_ = kNoValue;
    double y_ = kNoValue;
    double z_ = kNoValue;
};
