#pragma once

#include <string>

/// An entity of the field book: what stations, points and orientation points have in common.
/// Texts are bytes in Windows-1252; coordinates are metres (x east, y north, z height).
class CEgn {
public:
    CEgn() = default;
    CEgn(const CEgn&) = delete;
    CEgn& operator=(const CEgn&) = delete;
    virtual ~CEgn() = default;

    virtual void SetNome(const std::string& name) = 0;
    virtual const std::string& GetNome() const = 0;

    virtual void SetNote(const std::string& note) = 0;
    /// The drawing attribute that goes with the entity's code.
    virtual void SetAttribDis(const std::string& attribute) = 0;
    /// The written terrain note.
    virtual void SetTerScri(const std::string& text) = 0;
    /// Adds one photo: its path and its kind (1 or 2).
    virtual void SetNomeFoto(const std::string& path, int kind) = 0;

    virtual void SetCoord(double x, double y, double z) = 0;
    /// Sets the plane coordinates and leaves z alone.
    virtual void SetCoordXY(double x, double y) = 0;
    /// Recomputes which of the coordinates are valid after they were set.
    virtual void CalcolaValiditaXYZ() = 0;

    /// The marks of an entity; what each means is the host's. NC, NV, NP and NT are set together on
    /// an observation that an offset point was measured from, OR and QU together on an observation
    /// of a control point.
    virtual void SetCodeNT(bool on) = 0;
    virtual void SetCodeNP(bool on) = 0;
    virtual void SetCodeNV(bool on) = 0;
    virtual void SetCodeNC(bool on) = 0;
    virtual void SetCodeOR(bool on) = 0;
    virtual void SetCodeQU(bool on) = 0;
    virtual void SetCodePO(bool on) = 0;

    /// Brings the entity's code from the old alphabetic form into the host's current one.
    virtual void TrasfCodOldAlf(bool apply, bool conversionMode) = 0;
};
