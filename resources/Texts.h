#pragma once

#include <string>

/// The texts shown to the user, by their number in the library's string table.
enum class TextId : unsigned {
    None = 0,
    ImportFile = 20001,
    Reduced = 20003,
    ReducedAtGround = 20004,
    FromCoordinates = 20005,
    ConvertedFromCoordinates = 20006,
    Attention = 20007,
    DriverMissing = 20008,
    DriverLinkLabel = 20009,
    DriverLinkTarget = 20010,
    FromZeroStations = 20011,
};

/// The text of that number in Windows-1252, at most 1023 bytes; empty where the table has none.
std::string LoadText(TextId id);
