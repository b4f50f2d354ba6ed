#pragma once

#include "database/DBDataProviderLcm.h"
#include "framework/ConvGen.h"
#include "framework/Export.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

class CGcadEng;
class CLibPnt;

/// Imports a field controller's job database into the field book: a new job with a station for each
/// set-up, a point for each shot, and the control points as orientation points.
class CConvFileTLSV : public CConvGen {
public:
    CONVFILE_API CConvFileTLSV(CLibCmp& fieldBook, CLibPnt& pointLibrary, CGcadEng& drawing,
                               std::string* fileName);
    /// Disconnects from the database.
    CONVFILE_API ~CConvFileTLSV() override;

    /// False where the database cannot be opened (the new job is then there and empty), and where a
    /// query could not be carried out to its end: what was written until then stays. Raises
    /// nothing.
    CONVFILE_API bool Esegui();

private:
    /// What is known of the point that a shot was aimed at.
    struct Target {
        std::string key;
        std::string name;
        double c1;
        double c2;
        double c3;
        double stationType;
    };

    // Operations in the library's own vocabulary.
    void CreaStaz();
    void CreaPun();
    void CreaPunOri();
    void SetPunFoto(CPun& observation, std::string_view& line);
    void CalcOffSet(CPun* reference, const std::string& name, double along, double lateral,
                    double vertical, int station);

    /// As those of the query helper; what is not there is remarked on. `tables` names those that
    /// are asked.
    std::string ReadFirst(std::string_view tables, std::string_view head, std::string_view key,
                          int fields);
    bool ReadRows(std::string_view tables, std::string_view head, std::string_view key, int fields,
                  std::vector<std::string>& rows);
    void NoteFault(std::string_view tables, std::string_view head, std::string_view key);
    void TellRow();
    bool GoesOn();
    void NoteEmpty();
    double Number(std::string_view field);
    double TakeNumber(std::string_view& text);

    bool ImportJob();
    void SetJobTexts(CJob& job);
    void CreaPunDiSta(int station);
    bool CreaPunto(int station, std::string_view row, CPun*& reference, std::string& kind);
    Target ReadTarget(std::string_view targetKey);
    std::string ReadCode(std::string_view pointKey);
    std::string PhotoFolder() const;

    std::string databasePath_;
    int newJob_ = -1;
    CLibPnt& pointLibrary_;
    CGcadEng& drawing_;
    CDBDataProviderLcm database_;
    std::vector<std::string> rows_;
    std::vector<std::string> occupationKeys_; ///< of the stations, in their order

    // For who listens.
    std::uint64_t rowsRead_ = 0;
    bool hasShot_ = false;
    bool cancelled_ = false;
    std::vector<std::string_view> missingTables_; ///< that were remarked on
};
