#pragma once

#include <cstddef>

/// Where things stand in the pages of an Access file: offsets, and sizes in bytes. Jet 4 and ACE,
/// which has its layout, differ from Jet 3 by larger pages, by counts of two bytes where one was
/// enough, and by four unknown bytes that came before many a field.
namespace convfile::database {

struct ByVersion {
    std::size_t jet3;
    std::size_t jet4;
};

inline constexpr ByVersion kPageSize = {2048, 4096};
inline constexpr ByVersion kPassword = {20, 40}; ///< its length in the header
inline constexpr ByVersion kWidth = {1, 2}; ///< of counts and offsets in a row, and a name's length

// Data page: its type, what is free in it, its owner; then the slots.
inline constexpr ByVersion kSlotCount = {8, 12};

// Definition of a table: page header, next page, length, number of rows; then, behind autonumbers
// and the numbers of columns there ever were and of variable length, these, one behind the other.
inline constexpr ByVersion kRowCount = {12, 16};
inline constexpr ByVersion kColumnCount = {25, 45}; ///< two bytes; of those that are left
inline constexpr ByVersion kUseCount = {27, 47};    ///< four bytes; of what indexes are used for
inline constexpr ByVersion kIndexCount = {31, 51};  ///< four bytes
inline constexpr ByVersion kPageMap = {35, 55};     ///< where the map of its pages lies; then its
inline constexpr ByVersion kCounters = {43, 63};    ///< free ones'; then a counter for each index
inline constexpr ByVersion kCounterSize = {8, 12};

// Column, behind the counters one after the other; their names follow. It begins with its type.
inline constexpr ByVersion kColumnSize = {18, 25};
inline constexpr ByVersion kNumber = {1, 5};        ///< behind the type
inline constexpr ByVersion kVariableIndex = {3, 7}; ///< behind the number
inline constexpr ByVersion kDisplayOrder = {5, 9};  ///< behind that
inline constexpr ByVersion kScale = {10, 12};       ///< behind the precision, which follows
inline constexpr ByVersion kFlags = {13, 15};
inline constexpr ByVersion kFixedOffset = {14, 21}; ///< last but one
inline constexpr ByVersion kLength = {16, 23};      ///< last

// Index, behind the names one after the other: ten columns with their order, maps, flags.
inline constexpr ByVersion kIndexSize = {39, 52};
inline constexpr ByVersion kIndexColumns = {0, 4};

// What indexes are used for, behind them: a number, then that of the index.
inline constexpr ByVersion kUseSize = {20, 28};
inline constexpr ByVersion kUseIndex = {4, 8};
inline constexpr ByVersion kUseKind = {19, 23}; ///< last

} // namespace convfile::database
