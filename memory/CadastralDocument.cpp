#include "memory/CadastralDocument.h"

#include "memory/Provinces.h"

#include <iterator>

namespace convfile::memory {

std::string CadastralDocument::GetNomeProvSigla(const std::string& provinceName) {
    return std::string(ProvinceAbbreviation(provinceName));
}

void CadastralDocument::DividiRighe(CCtsRigArray* collected) {
    if (!collected)
        return;
    auto& records = collected->GetRigAr();
    lines.insert(lines.end(), std::make_move_iterator(records.begin()),
                 std::make_move_iterator(records.end()));
    records.clear();
}

} // namespace convfile::memory
