#include "export/Output.h"

#include "export/CsvTable.h"
#include "export/DxfDrawing.h"
#include "export/PointsTable.h"
#include "export/SvgDrawing.h"

#include <algorithm>

namespace convfile::exports {

namespace {

template <class Kind>
std::unique_ptr<Output> Make(OutputBuffer& out) {
    return std::make_unique<Kind>(out);
}

constexpr OutputKind kKinds[] = {
    {"csv", false, Make<CsvTable>},
    {"points", false, Make<PointsTable>},
    {"dxf", true, Make<DxfDrawing>},
    {"svg", true, Make<SvgDrawing>},
};

} // namespace

std::span<const OutputKind> OutputKinds() {
    return kKinds;
}

const OutputKind* FindOutputKind(std::string_view name) {
    const auto* const found = std::ranges::find(kKinds, name, &OutputKind::name);
    return found == std::end(kKinds) ? nullptr : found;
}

} // namespace convfile::exports
