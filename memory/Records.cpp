#include "memory/Records.h"

#include "memory/Calculator.h"

#include <cstddef>
#include <new>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace convfile::memory {

namespace {

constexpr std::size_t kSmallPieces = 8;
constexpr std::size_t kPointsInSmall = 1024;
constexpr std::size_t kLarge = std::size_t{1} << 21; // bytes, as a large page has

// A large page begins at a multiple of its size; elsewhere that would only cost as much again.
#if defined(__linux__)
constexpr std::align_val_t kLargeAlignment{kLarge};
#else
constexpr std::align_val_t kLargeAlignment{alignof(std::max_align_t)};
#endif

} // namespace

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
    if (used_ == room_) {
        const bool isLarge = pieces_.size() >= kSmallPieces;
        pieces_.push_back(NewPiece(isLarge));
        room_ = isLarge ? kLarge / sizeof(Point) : kPointsInSmall;
        used_ = 0;
    }
    void* const place = pieces_.back().get() + used_++ * sizeof(Point);
    return PointOwner(::new (place) Point(station));
}

PointStorage::Piece PointStorage::NewPiece(bool isLarge) {
    if (!isLarge)
        return Piece(static_cast<std::byte*>(::operator new(kPointsInSmall * sizeof(Point))));
    void* const piece = ::operator new(kLarge, kLargeAlignment);
#if defined(__linux__)
    madvise(piece, kLarge, MADV_HUGEPAGE); // in vain where there are none
#endif
    return Piece(static_cast<std::byte*>(piece), {true});
}

void PointStorage::EndPiece::operator()(std::byte* piece) const {
    if (isLarge)
        ::operator delete(piece, kLargeAlignment);
    else
        ::operator delete(piece);
}

void Job::SetLabels(const std::string& name, const std::string& operatorName,
                    const std::string& instrument, const std::string& date) {
    SetNome(name);
    SetOper(operatorName);
    SetStrum(instrument);
    SetData(date);
}

} // namespace convfile::memory
