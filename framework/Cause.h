#pragma once

#include "framework/Account.h"

#include <string_view>

/// What a converter remarks on: each lies in a constant of its own, by which the account knows it
/// again. The text says what was met and what became of it; of the file it quotes nothing.
struct Cause {
    RemarkKind kind;
    std::string_view text;
};

// What several formats meet.
inline constexpr Cause kNoRecord = {RemarkKind::Unknown,
                                    "a line that is no record of the format is skipped"};
inline constexpr Cause kNoNumberIsZero = {RemarkKind::NoNumber,
                                          "a text where a number belongs is read as 0"};
inline constexpr Cause kNoNumberIsAbsent = {RemarkKind::NoNumber,
                                            "a text where a number belongs is absent"};
inline constexpr Cause kMoreThanNumber = {
    RemarkKind::NoNumber,
    "more than a number in a number's place: the number at its beginning is taken"};
inline constexpr Cause kFieldsMissing = {
    RemarkKind::Incomplete,
    "a record with fewer fields than it needs: those missing are empty or 0"};
inline constexpr Cause kNoNumbers = {
    RemarkKind::Unknown, "a line without a single number where numbers belong is no record, but is "
                         "taken for one all the same"};
inline constexpr Cause kRecordCutShort = {
    RemarkKind::Incomplete,
    "a record cut short by the end of the file is written with what it has"};
