#pragma once

#include "host/CalcDsOr.h"
#include "host/Egn.h"

/// An observed point. Angles are gon (zenith angle: 100 is horizontal), lengths metres; a
/// measurement that was not made is the no-value marker and must be kept as it is.
class CPun : public CEgn {
public:
    virtual void SetCode(const std::string& code) = 0;
    virtual const std::string& GetCode() = 0;

    /// Target (prism) height.
    virtual void SetAltPri(double height) = 0;

    /// Horizontal angle.
    virtual void SetAngO(double angle) = 0;
    virtual double GetAngO() = 0;

    /// Vertical angle, as zenith angle.
    virtual void SetAngV(double angle) = 0;
    virtual double GetAngV() = 0;

    /// Slope distance.
    virtual void SetDiIn(double distance) = 0;
    virtual double GetDiIn() = 0;

    /// Sets the three observation values at once.
    virtual void SetDtIntAng(double slopeDistance, double verticalAngle,
                             double horizontalAngle) = 0;

    /// Stores coordinates for the point and derives its observation from them, relative to its
    /// station; one that lacks coordinates leaves the observation absent. `setting` and
    /// `calculator` are always the field book's own (CLibCmp::GetCalcolaMisure,
    /// CLibCmp::GetCalcDsOr); the last two are always the no-value marker.
    virtual void SetCoordEtCalcMisure(bool setting, double x, double y, double z,
                                      CCalcDsOr& calculator, double, double) = 0;
};
