#pragma once

#include "framework/ConvFileBase.h"
#include "framework/Export.h"
#include "host/NoValue.h"

#include <cstdint>
#include <string>
#include <string_view>

/// Reads Pentax R100 files: one tagged value a line.
class CConvFilePentaxR100 : public CConvFileBase {
public:
    CONVFILE_API CConvFilePentaxR100(CLibCmp& fieldBook, std::string* fileName);
    /// Writes a pending station and then a pending point; a pending job is not written.
    CONVFILE_API ~CConvFilePentaxR100() override;

    /// The values of a station as far as they have come.
    struct Station {
        std::string name;
        std::string code;
        double instrumentHeight = kNoValue;
        double temperature = kNoValue;
        double pressure = kNoValue;
        std::uint64_t line = 0; ///< that it begins on
        bool pending = false;
    };

    /// The values of a point as far as they have come.
    struct Point {
        std::string name;
        std::string code;
        double targetHeight = kNoValue;
        double horizontalAngle = kNoValue;
        double zenithAngle = kNoValue;
        double slopeDistance = kNoValue;
        std::uint64_t line = 0; ///< that it begins on
        bool pending = false;
    };

protected:
    void ProcessaRiga() override;

private:
    // Operations in the library's own vocabulary.
    void ConversioneLav();
    void ConversioneSta();
    void ConversionePun();
    void AzzeramentoLav();
    void AzzeramentoSta();
    void AzzeramentoPun();

    template <class Record, class Tag>
    void Fill(Record& record, const Tag& tag, std::string_view value);
    void NoteUnusedJob();

    std::string jobName_;
    std::uint64_t jobLine_ = 0; ///< that named it
    bool jobPending_ = false;
    bool firstJob_ = true; ///< the first job names the one that is there
    Station station_;
    Point point_;
};
