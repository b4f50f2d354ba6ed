#pragma once

#include <string>

/// Reduces a path to the bare file name: what follows the last "\" or "/". The extension stays.
void EstraiIlNomeFile(std::string& path);

/// Reduces a path to its extension: what follows the last "." of the bare file name, without the
/// dot; empty where there is none.
void EstraiEstensFile(std::string& path);

/// A path or a part of one as the field book holds it (Windows-1252). Off Windows they are UTF-8
/// and are converted, "?" for what the code page lacks; a text that is no UTF-8 stays as it is.
std::string TextOfPath(const std::string& path);

/// A name of a file in UTF-8: one that is no UTF-8 is taken for Windows-1252.
std::string Utf8OfName(const std::string& name);
