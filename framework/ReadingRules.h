#pragma once

#include "routines/TextFile.h"

/// What of a file is read. As it is, the classic reading: what the formats' readers have always
/// made of their files. The complete one reads what instruments of today write besides.
struct ReadingRules {
    LineRules lines = LineRules::Classic;
    bool appliesUnits = false;     ///< values come out in gon and metres whatever the file's units
    bool readsCoordinates = false; ///< coordinates of stations and points reach the field book
    bool opensSetUps = false; ///< set-ups and sights that the classic reading leaves out are read

    static constexpr ReadingRules Complete() {
        return {.lines = LineRules::Complete,
                .appliesUnits = true,
                .readsCoordinates = true,
                .opensSetUps = true};
    }
};
