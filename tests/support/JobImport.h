#pragma once

#include "tests/support/AccessWriter.h"
#include "views/Conversion.h"

#include <string>
#include <vector>

namespace convfile::test {

/// Imports a job from a database with these tables: a file that is written for it, or, where the
/// platform's own engine reads databases, a stand-in for that which answers from them.
void ImportJob(const std::vector<access::Table>& tables, views::Conversion& result);

/// The same under a name: that of a file with these tables.
void ImportJob(const std::vector<access::Table>& tables, const std::string& path,
               views::Conversion& result);

/// Expects the message that the database driver is missing, and nothing else.
void ExpectDriverMessage(const std::vector<memory::Message>& messages);

} // namespace convfile::test
