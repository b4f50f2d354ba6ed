#pragma once

#include "routines/Reading.h"

#include <string_view>

class AccountKeeper;

/// True for what a download has around its records: a line of STX (02 hex), and one of ETX (03 hex)
/// with a checksum.
bool IsSdrFrame(std::string_view line);

/// What the header and the instrument record of an SDR file say of its values. Without them: gon,
/// metres, coordinates north east, angles clockwise and from the zenith.
class SdrUnits {
public:
    /// Takes the unit codes of a header ("00NM"), its last six digits; nothing where it has none.
    void ReadHeader(std::string_view record);
    /// Takes from an instrument record ("01") how vertical angles are counted.
    void ReadInstrument(std::string_view record);

    /// Angles in gon, the slope distance in metres.
    Reading Applied(const Reading& reading) const;
    double Gon(double angle) const;
    /// A horizontal angle, clockwise.
    double HorizontalAngle(double angle) const;
    double Metres(double length) const;
    bool IsEastFirst() const { return coordinates_ == '2'; }

    /// Remarks on what a header or an instrument record says: on all that is not gon, metres,
    /// clockwise or from the zenith where it is not applied, otherwise on codes that are not known.
    void TellHeader(AccountKeeper& keeper, bool isApplied) const;
    void TellInstrument(AccountKeeper& keeper, bool isApplied) const;

private:
    char angles_ = '2';
    char lengths_ = '1';
    char coordinates_ = '1';
    char direction_ = '1';
    bool fromHorizon_ = false;
};
