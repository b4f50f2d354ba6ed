#pragma once

#include "host/Egn.h"

/// An orientation point: a point of known coordinates that set-ups are oriented by.
class COri : public CEgn {
public:
    /// Reliability of the coordinates, as the surveyor graded it.
    virtual void SetAttendibO(short reliability) = 0;
    virtual void SetComm(const std::string& comment) = 0;
};
