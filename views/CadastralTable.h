#pragma once

#include "memory/CadastralDocument.h"
#include "views/Output.h"

namespace convfile::views {

/// The header block of a cadastral survey: date, protocol, place, surveyor, and the values record.
void PrintCadastralHeader(Sink& sink, const memory::CadastralDocument& document);

/// The line records with their vertices.
void PrintCadastralLines(Sink& sink, const memory::CadastralDocument& document);

} // namespace convfile::views
