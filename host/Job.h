#pragma once

#include <string>

/// A job of the field book: one survey, as the instrument keeps it.
class CJob {
public:
    CJob() = default;
    CJob(const CJob&) = delete;
    CJob& operator=(const CJob&) = delete;
    virtual ~CJob() = default;

    virtual void SetNome(const std::string& name) = 0;
    virtual void SetOper(const std::string& operatorName) = 0;
    virtual void SetStrum(const std::string& instrument) = 0;
    virtual void SetData(const std::string& date) = 0;
    /// The four labels of a job: name, operator, instrument and date.
    virtual void SetLabels(const std::string& name, const std::string& operatorName,
                           const std::string& instrument, const std::string& date) = 0;
    /// The processing code; what it means is the host's.
    virtual void SetCodeElab(short code) = 0;
    virtual const std::string& GetNome() = 0;
};
