#include "entry/FormatTable.h"

#include "cadastral/ConvFilePCP.h"
#include "converters/ConvFileCAM.h"
#include "converters/ConvFileDAT.h"
#include "converters/ConvFileDTM.h"
#include "converters/ConvFileDTM2.h"
#include "converters/ConvFileELT.h"
#include "converters/ConvFileFLD.h"
#include "converters/ConvFileFOIF.h"
#include "converters/ConvFileGEO.h"
#include "converters/ConvFileGSI.h"
#include "converters/ConvFileGT7.h"
#include "converters/ConvFileLGU.h"
#include "converters/ConvFileMM2.h"
#include "converters/ConvFileMMT.h"
#include "converters/ConvFileMTS.h"
#include "converters/ConvFileMWG.h"
#include "converters/ConvFileODB.h"
#include "converters/ConvFileOVD.h"
#include "converters/ConvFilePentaxATS100.h"
#include "converters/ConvFilePentaxR100.h"
#include "converters/ConvFilePhenix.h"
#include "converters/ConvFileRAW.h"
#include "converters/ConvFileSDR2.h"
#include "converters/ConvFileSDR33.h"
#include "database/ConvFileTLSV.h"
#include "routines/Text.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

/// Runs a converter made of these arguments.
template <class Converter, class... Arguments>
bool Run(const Preparation& preparation, Arguments&&... arguments) {
    Problem unheard;
    Preparation prepared;
    std::memcpy(&prepared, &preparation, std::min(preparation.size, sizeof prepared));
    if (!prepared.problem)
        prepared.problem = &unheard;
    *prepared.problem = {};
    bool converted = false;
    Guarded(prepared.problem, [&] {
        Converter converter(std::forward<Arguments>(arguments)...);
        converter.Prepare(prepared);
        converted = converter.Esegui();
    });
    return converted && !prepared.problem->failed;
}

template <class Converter>
bool Convert(const ConversionTarget& target, std::string* fileName) {
    return Run<Converter>(target.preparation, target.fieldBook, fileName);
}

/// The one converter that fills the cadastral document; without one it has nothing to fill.
bool ConvertCadastral(const ConversionTarget& target, std::string* fileName) {
    return target.cadastralDocument && Run<CConvFilePCP>(target.preparation, target.fieldBook,
                                                         *target.cadastralDocument, fileName);
}

/// The one import that fills the point library and tells the drawing.
bool ConvertDatabase(const ConversionTarget& target, std::string* fileName) {
    return target.pointLibrary && target.drawing &&
           Run<CConvFileTLSV>(target.preparation, target.fieldBook, *target.pointLibrary,
                              *target.drawing, fileName);
}

using enum FormatKind;

// clang-format off
constexpr Format kFormats[] = {
    // code, kind, name, usual extensions, download extensions, title, converter
    {1, Instrument, "gsi", "GSI", "", "GSI-8 and GSI-16 word files, with code blocks", Convert<CConvFileGSI>},
    {3, Instrument, "mwg", "MWG", "", "MWG fixed-column words", Convert<CConvFileMWG>},
    {4, Instrument, "fld", "FLD", "", "FLD coded lines", Convert<CConvFileFLD>},
    {5, Instrument, "lgu", "LGU", "", "LGU fixed columns", Convert<CConvFileLGU>},
    {6, Instrument, "geo", "GEO", "", "GEO coded lines", Convert<CConvFileGEO>},
    {8, Instrument, "dat", "DAT", "", "DAT records separated by spaces", Convert<CConvFileDAT>},
    {9, Instrument, "sdr2", "SDR", "", "Sokkia SDR2 field files", Convert<CConvFileSDR2>},
    {13, Instrument, "cam", "CAM", "", "CAM comma-separated observations, two layouts", Convert<CConvFileCAM>, "CAM"},
    {14, Instrument, "elt", "ELT", "", "ELT report files", Convert<CConvFileELT>},
    {15, Instrument, "ovd", "OVD", "", "OVD comma-separated observations", Convert<CConvFileOVD>},
    {16, Instrument, "odb", "ODB", "", "ODB observations separated by blanks", Convert<CConvFileODB>},
    {18, Instrument, "dtm", "DTM", "", "DTM blocks of value lines", Convert<CConvFileDTM>},
    {19, Instrument, "raw", "RAW", "", "Comma-separated raw observations", Convert<CConvFileRAW>},
    {20, Cadastral, "pcp", "PCP", "", "Cadastral survey exchange files", ConvertCadastral},
    {21, Instrument, "pentax-r100", "", "", "Pentax R100 tagged lines", Convert<CConvFilePentaxR100>},
    {22, Instrument, "pentax-ats100", "", "", "Pentax ATS100 tab-separated exports", Convert<CConvFilePentaxATS100>},
    {23, Instrument, "foif", "", "", "FOIF keyword records", Convert<CConvFileFOIF>},
    {24, Instrument, "dtm2", "", "", "DTM2 comma-separated typed records", Convert<CConvFileDTM2>},
    {26, Instrument, "mts", "MTS", "", "MTS binary downloads", Convert<CConvFileMTS>},
    {29, Instrument, "phenix", "", "", "Phenix keyword records", Convert<CConvFilePhenix>},
    {0, Instrument, "sdr33", "SDR", "", "Sokkia SDR33 field files", Convert<CConvFileSDR33>},
    {0, Instrument, "gt7", "", "GT7 GTS7 DAT", "Keyword records as downloaded", Convert<CConvFileGT7>},
    {0, Instrument, "mm2", "", "MM2", "MM2 downloads", Convert<CConvFileMM2>},
    {0, Instrument, "mmt", "", "MMT", "MMT downloads", Convert<CConvFileMMT>},
    {0, Database, "tlsv", "", "TLSV", "Job databases of field controllers (Access files)", ConvertDatabase},
};
// clang-format on

bool ListHolds(std::string_view list, std::string_view word) {
    std::string_view field;
    while (CutAt(list, ' ', field)) {
        if (field == word)
            return true;
    }
    return !word.empty() && list == word;
}

template <class Predicate>
const Format* FindFormat(Predicate matches) {
    const auto* const found = std::ranges::find_if(kFormats, matches);
    return found == std::end(kFormats) ? nullptr : found;
}

} // namespace

std::span<const Format> Formats() {
    return kFormats;
}

const Format* FormatByCode(int code) {
    return FindFormat([&](const Format& f) { return f.code != 0 && f.code == code; });
}

const Format* FormatByDownloadExtension(std::string_view extension) {
    return FindFormat([&](const Format& f) { return ListHolds(f.downloadExtensions, extension); });
}

const Format* FormatByExtension(std::string_view extension) {
    return FindFormat([&](const Format& f) { return ListHolds(f.extensions, extension); });
}

std::vector<const Format*> FormatsByExtension(std::string_view extension) {
    std::vector<const Format*> formats;
    for (const Format& format : kFormats) {
        if (ListHolds(format.extensions, extension) ||
            ListHolds(format.downloadExtensions, extension))
            formats.push_back(&format);
    }
    return formats;
}

const Format* FormatByName(std::string_view name) {
    return FindFormat([&](const Format& f) { return f.name == name; });
}
