#include "memory/Provinces.h"

#include "routines/Text.h"

#include <algorithm>

namespace convfile::memory {

namespace {

struct Province {
    std::string_view name;
    std::string_view abbreviation;
};

constexpr Province kProvinces[] = {
    {"Agrigento", "AG"},
    {"Alessandria", "AL"},
    {"Ancona", "AN"},
    {"Aosta", "AO"},
    {"Valle d'Aosta", "AO"},
    {"Arezzo", "AR"},
    {"Ascoli Piceno", "AP"},
    {"Asti", "AT"},
    {"Avellino", "AV"},
    {"Bari", "BA"},
    {"Barletta-Andria-Trani", "BT"},
    {"Belluno", "BL"},
    {"Benevento", "BN"},
    {"Bergamo", "BG"},
    {"Biella", "BI"},
    {"Bologna", "BO"},
    {"Bolzano", "BZ"},
    {"Brescia", "BS"},
    {"Brindisi", "BR"},
    {"Cagliari", "CA"},
    {"Caltanissetta", "CL"},
    {"Campobasso", "CB"},
    {"Carbonia-Iglesias", "CI"},
    {"Caserta", "CE"},
    {"Catania", "CT"},
    {"Catanzaro", "CZ"},
    {"Chieti", "CH"},
    {"Como", "CO"},
    {"Cosenza", "CS"},
    {"Cremona", "CR"},
    {"Crotone", "KR"},
    {"Cuneo", "CN"},
    {"Enna", "EN"},
    {"Fermo", "FM"},
    {"Ferrara", "FE"},
    {"Firenze", "FI"},
    {"Foggia", "FG"},
    {"Forl\xEC", "FC"},
    {"Forl\xEC-Cesena", "FC"},
    {"Frosinone", "FR"},
    {"Genova", "GE"},
    {"Gorizia", "GO"},
    {"Grosseto", "GR"},
    {"Imperia", "IM"},
    {"Isernia", "IS"},
    {"L'Aquila", "AQ"},
    {"La Spezia", "SP"},
    {"Latina", "LT"},
    {"Lecce", "LE"},
    {"Lecco", "LC"},
    {"Livorno", "LI"},
    {"Lodi", "LO"},
    {"Lucca", "LU"},
    {"Macerata", "MC"},
    {"Mantova", "MN"},
    {"Massa-Carrara", "MS"},
    {"Matera", "MT"},
    {"Medio Campidano", "VS"},
    {"Messina", "ME"},
    {"Milano", "MI"},
    {"Modena", "MO"},
    {"Monza e Brianza", "MB"},
    {"Monza e della Brianza", "MB"},
    {"Napoli", "NA"},
    {"Novara", "NO"},
    {"Nuoro", "NU"},
    {"Ogliastra", "OG"},
    {"Olbia-Tempio", "OT"},
    {"Oristano", "OR"},
    {"Padova", "PD"},
    {"Palermo", "PA"},
    {"Parma", "PR"},
    {"Pavia", "PV"},
    {"Perugia", "PG"},
    {"Pesaro e Urbino", "PU"},
    {"Pesaro-Urbino", "PU"},
    {"Pescara", "PE"},
    {"Piacenza", "PC"},
    {"Pisa", "PI"},
    {"Pistoia", "PT"},
    {"Pordenone", "PN"},
    {"Potenza", "PZ"},
    {"Prato", "PO"},
    {"Ragusa", "RG"},
    {"Ravenna", "RA"},
    {"Reggio Calabria", "RC"},
    {"Reggio di Calabria", "RC"},
    {"Reggio Emilia", "RE"},
    {"Reggio nell'Emilia", "RE"},
    {"Rieti", "RI"},
    {"Rimini", "RN"},
    {"Roma", "RM"},
    {"Rovigo", "RO"},
    {"Salerno", "SA"},
    {"Sassari", "SS"},
    {"Savona", "SV"},
    {"Siena", "SI"},
    {"Siracusa", "SR"},
    {"Sondrio", "SO"},
    {"Sud Sardegna", "SU"},
    {"Taranto", "TA"},
    {"Teramo", "TE"},
    {"Terni", "TR"},
    {"Torino", "TO"},
    {"Trapani", "TP"},
    {"Trento", "TN"},
    {"Treviso", "TV"},
    {"Trieste", "TS"},
    {"Udine", "UD"},
    {"Varese", "VA"},
    {"Venezia", "VE"},
    {"Verbano-Cusio-Ossola", "VB"},
    {"Vercelli", "VC"},
    {"Verona", "VR"},
    {"Vibo Valentia", "VV"},
    {"Vicenza", "VI"},
    {"Viterbo", "VT"},
};

/// Hyphens and spaces are written either way, and upper case keeps its accent (CC and EC are the
/// capital and the small i with grave accent).
constexpr char Folded(char c) {
    if (c == '-')
        return ' ';
    return c == '\xEC' ? '\xCC' : UpperAscii(c);
}

} // namespace

std::string_view ProvinceAbbreviation(std::string_view name) {
    const auto* const found = std::ranges::find_if(kProvinces, [&](const Province& province) {
        return std::ranges::equal(province.name, name, {}, Folded, Folded);
    });
    return found == std::end(kProvinces) ? std::string_view{} : found->abbreviation;
}

} // namespace convfile::memory
