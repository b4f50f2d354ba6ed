#include "memory/Records.h"

#include "memory/Calculator.h"

namespace convfile::memory {

void Point::SetCode(const std::string& code) {
    code_ = &station_->Codes().Keep(code);
}

void Point::SetDtIntAng(double slopeDistance, double verticalAngle, double horizontalAngle) {
    slopeDistance_ = slopeDistance;
    zenithAngle_ = verticalAngle;
    horizontalAngle_ = horizontalAngle;
}

void Point::SetCoordEtCalcMisure(bool setting, double x, double y, double z, CCalcDsOr& calculator,
                                 double, double) {
    SetCoord(x, y, z);
    const auto* const own = dynamic_cast<const Calculator*>(&calculator);
    if (!setting || !own)
        return;
    const std::optional<Reading> seen = own->Observe(
        station_->GetExtras().coordinates, station_->InstrumentHeight(), {x, y, z}, targetHeight_);
    if (seen)
        SetDtIntAng(seen->slopeDistance, seen->zenithAngle, seen->horizontalAngle);
}

PointOwner PointStorage::NewPoint(const Station& station) {
    if (used_ == kPointsInPiece) {
        pieces_.push_back(
            std::make_unique_for_overwrite<std::byte[]>(kPointsInPiece * sizeof(Point)));
        used_ = 0;
    }
    void* const place = pieces_.back().get() + used_++ * sizeof(Point);
    return PointOwner(::new (place) Point(station));
}

void Job::SetLabels(const std::string& name, const std::string& operatorName,
                    const std::string& instrument, const std::string& date) {
    SetNome(name);
    SetOper(operatorName);
    SetStrum(instrument);
    SetData(date);
}

} // namespace convfile::memory
