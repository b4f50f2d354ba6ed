#pragma once

namespace convfile::app {

/// Standard output carries bytes as they are (no CR added), and a console shows them as UTF-8.
void PrepareStandardStreams();

} // namespace convfile::app
