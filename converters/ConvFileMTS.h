#pragma once

#include "framework/ConvGen.h"
#include "framework/Export.h"
#include "routines/InputFile.h"

#include <array>
#include <cstdint>
#include <string>

/// Reads MTS binary downloads.
class CConvFileMTS : public CConvGen {
public:
    CONVFILE_API CConvFileMTS(CLibCmp& fieldBook, std::string* fileName);
    CONVFILE_API ~CConvFileMTS() override;

    /// False where the file cannot be opened. Jobs are added by the file's own job records.
    CONVFILE_API bool Esegui();

private:
    static constexpr std::size_t kRecordSize = 43;

    // Operations in the library's own vocabulary.
    bool OpenFile();
    bool LeggeUnaRigaMTS();
    static void ChangeEndian(char* bytes, int size);
    void LeggeIntestazione();
    void LeggeJobName();
    void LeggeStazione();
    void LeggePunto();

    bool TellRecord(std::size_t size);
    void NoteUnusedHeader();
    std::string Text(std::size_t offset, std::size_t width) const;
    template <class Number>
    Number BigEndian(std::size_t offset) const;

    double Length(std::size_t offset);

    std::array<char, kRecordSize> record_{};
    std::string header_;           ///< the instrument of the jobs that follow
    std::uint64_t headerLine_ = 0; ///< of a header that no job has had yet
    InputFile records_;            ///< the file, which is no text
};
