#pragma once

#include "framework/ConvGen.h"
#include "framework/InputFile.h"

#include <array>
#include <cstdint>
#include <string>

/// Reads MTS binary downloads.
class CONVFILE_API CConvFileMTS : public CConvGen {
public:
    CConvFileMTS(CLibCmp& fieldBook, std::string* fileName);

    /// False where the file cannot be opened. Jobs are added by the file's own job records.
    bool Esegui();

private:
    static constexpr std::size_t kRecordSize = 43;

    bool OpenFile();
    bool LeggeUnaRigaMTS();
    static void ChangeEndian(char* bytes, int size);
    void LeggeIntestazione();
    void LeggeJobName();
    void LeggeStazione();
    void LeggePunto();

    std::string Text(std::size_t offset, std::size_t width) const;
    template <class Number>
    Number BigEndian(std::size_t offset) const;

    std::array<char, kRecordSize> record_{};
    std::string header_; ///< the instrument of the jobs that follow
    InputFile file_;
};
