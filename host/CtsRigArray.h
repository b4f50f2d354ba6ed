#pragma once

#include "host/Rig.h"

#include <deque>

/// The line records that a conversion collects for the cadastral document, in file order.
class CCtsRigArray {
public:
    /// Appends a new empty line record; the pointer stays valid while the array lives.
    CRig* AddRig() { return &lines_.emplace_back(); }

    std::deque<CRig>& GetRigAr() { return lines_; }

private:
    std::deque<CRig> lines_;
};
