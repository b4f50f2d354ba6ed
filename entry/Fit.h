#pragma once

#include "entry/CountingBook.h"
#include "framework/Account.h"

/// How well a format fits a file, told from how it was read.
namespace convfile {

/// From 0, not at all, to a little above 1, in every line. The same rule for all formats.
double ScoreOf(const FileAccount& account, const counting::Counts& counts);

/// A file is one of a format's from here on: of what it holds nearly half makes sense. Files of
/// ours that are full of what is not read stay above it; of 1,500 files of all kinds none comes
/// near.
inline constexpr double kFits = 0.4;

/// With an extension that says the same, a fifth will do: what else would it be?
inline constexpr double kFitsItsExtension = 0.2;

/// So much more, and another format fits far better than the one that was named: a file that its
/// own format reads badly is still its own, where no other reads nearly all of it.
inline constexpr double kFarBetter = 0.3;

} // namespace convfile
