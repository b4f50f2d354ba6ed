#pragma once

#include <string>

class CCtsRigArray;
class CRig;

/// The host's cadastral survey document. Texts are bytes in Windows-1252.
class CCts {
public:
    CCts() = default;
    CCts(const CCts&) = delete;
    CCts& operator=(const CCts&) = delete;
    virtual ~CCts() = default;

    /// Day, month and year of the survey, two characters each at most.
    virtual void SetGior(const std::string& day) = 0;
    virtual void SetMese(const std::string& month) = 0;
    virtual void SetAnno(const std::string& year) = 0;

    virtual void SetProt(const std::string& protocol) = 0;
    virtual void SetCdCm(const std::string& municipalityCode) = 0;
    virtual void SetFogl(const std::string& sheet) = 0;
    virtual void SetMapp(const std::string& parcel) = 0;

    /// Surveyor: surname, first name, qualification, and the abbreviation of the province.
    virtual void SetTcnC(const std::string& surname) = 0;
    virtual void SetTcnN(const std::string& firstName) = 0;
    virtual void SetQual(const std::string& qualification) = 0;
    virtual void SetProv(const std::string& province) = 0;

    /// The two-letter abbreviation of the province of that name.
    virtual std::string GetNomeProvSigla(const std::string& provinceName) = 0;

    /// The document's own line record, filled by the record of values (type 9).
    virtual CRig& GetRigValori() = 0;
    /// Takes over the collected line records and files them in the document. The array itself stays
    /// the caller's and ends with it: what is to be kept is moved out of it. Never null.
    virtual void DividiRighe(CCtsRigArray* lines) = 0;
};
