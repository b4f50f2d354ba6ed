#pragma once

#include "database/access/AccessPages.h"

// The library's header includes glib inside a C block: glib has to come before it.
#include <glib.h>

#include <mdbtools.h>

namespace convfile::database {

/// The file as the library has it open. The library believes what it reads and prints what it does
/// not like: what is handed to it was checked before.
struct AccessPages::Library {
    explicit Library(MdbHandle* opened) : handle(opened) {}
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    ~Library() { mdb_close(handle); }

    MdbHandle* handle;
};

} // namespace convfile::database
