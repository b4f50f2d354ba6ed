#pragma once

#include "host/Cts.h"
#include "host/CtsRigArray.h"

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

namespace convfile::memory {

/// The cadastral survey document in memory.
class CadastralDocument final : public CCts {
public:
    void SetGior(const std::string& text) override { day = text; }
    void SetMese(const std::string& text) override { month = text; }
    void SetAnno(const std::string& text) override { year = text; }
    void SetProt(const std::string& text) override { protocol = text; }
    void SetCdCm(const std::string& text) override { municipalityCode = text; }
    void SetFogl(const std::string& text) override { sheet = text; }
    void SetMapp(const std::string& text) override { parcel = text; }
    void SetTcnC(const std::string& text) override { surveyorSurname = text; }
    void SetTcnN(const std::string& text) override { surveyorFirstName = text; }
    void SetQual(const std::string& text) override { qualification = text; }
    void SetProv(const std::string& text) override { province = text; }

    /// Knows the Italian provinces by name, whatever the letter case; "" for any other name.
    std::string GetNomeProvSigla(const std::string& provinceName) override;

    CRig& GetRigValori() override { return values; }
    /// Takes the records over; the array is empty afterwards.
    void DividiRighe(CCtsRigArray* collected) override;

    std::string day;
    std::string month;
    std::string year;
    std::string protocol;
    std::string municipalityCode;
    std::string sheet;
    std::string parcel;
    std::string surveyorSurname;
    std::string surveyorFirstName;
    std::string qualification;
    std::string province;
    CRig values;
    std::deque<CRig> lines;
    /// The file's lines that those begin on, from 1, as far as somebody told.
    std::vector<std::uint64_t> lineNumbers;
};

} // namespace convfile::memory
