#pragma once

#include "host/HostExport.h"

#include <string>

/// The host's code-conversion table. The library creates one for each conversion and deletes it
/// afterwards; the host supplies the class in `convfile_host` and keeps its table behind Table.
class CONVFILE_HOST_API CConvCod {
public:
    struct Table;

    CConvCod();
    CConvCod(const CConvCod&) = delete;
    CConvCod& operator=(const CConvCod&) = delete;
    ~CConvCod();

    /// The point code to store for a code read from a file. The reference need be valid no longer
    /// than `code` is, nor beyond the next call: a host may answer in a buffer that it uses again.
    const std::string& CodeConvertito(const std::string& code);
    /// The station identifier to store for a code read from a file; valid like the above.
    const std::string& IdenConvertito(const std::string& code);
    /// The drawing attribute that goes with that code.
    std::string ModalitaConver(const std::string& code);
    /// The flag that goes with every CEgn::TrasfCodOldAlf of this conversion.
    bool GetModoConver() const;

private:
    Table* table_;
};
