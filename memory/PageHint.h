#pragma once

#include <cstddef>

namespace convfile::memory {

/// Tells the system that all of this memory will be written to soon, so that it provides the pages in
/// one go and not each at its first touch. Changes nothing else; where the system cannot be told,
/// nothing at all.
void WillBeWritten(void* memory, std::size_t size);

} // namespace convfile::memory
