#pragma once

/// The host's calculator of distances and directions. The library only carries it from the field
/// book to the point that derives its observation from coordinates; what it can do is the host's.
class CCalcDsOr {
public:
    CCalcDsOr() = default;
    CCalcDsOr(const CCalcDsOr&) = delete;
    CCalcDsOr& operator=(const CCalcDsOr&) = delete;
    virtual ~CCalcDsOr() = default;
};
