#pragma once

#include "host/Egn.h"

/// An instrument station.
class CSta : public CEgn {
public:
    /// The station's identifier: its code, converted by the host's code table.
    virtual void SetIden(const std::string& identifier) = 0;
    virtual const std::string& GetIden() = 0;

    /// Instrument height, metres; the no-value marker where there is none.
    virtual void SetAltStr(double height) = 0;
    virtual double GetAltStr() = 0;

    /// Temperature and pressure as the file gives them; the no-value marker where it has none.
    virtual void SetTemper(double temperature) = 0;
    virtual void SetPressi(double pressure) = 0;

    /// Azimuth orientation of the horizontal circle, gon.
    virtual void SetAnCoAz(double angle) = 0;
};
