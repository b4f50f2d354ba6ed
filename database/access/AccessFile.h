#pragma once

#include "database/access/AccessPages.h"
#include "database/access/AccessTypes.h"

#include <functional>
#include <string>
#include <vector>

namespace convfile::database {

/// The tables of a Microsoft Access file (Jet 3, Jet 4, ACE 12 and later), read-only.
class AccessFile {
public:
    /// A table that the file lists: its name and where its definition begins.
    struct Listed {
        std::string name;
        std::uint32_t page;
    };
    /// Takes a row: the values of its columns in their displayed order, valid during the call.
    /// False ends the reading.
    using TakeRow = std::function<bool(const std::vector<AccessValue>& values)>;

    /// False where there is no such file, or where it is no such database.
    bool Open(const std::string& path) { return pages_.Open(path); }
    bool IsJet3() const { return pages_.IsJet3(); }

    /// Appends the user's tables; false where the list of objects is damaged.
    bool ListTables(std::vector<Listed>& tables);
    /// False where the table's definition is damaged.
    bool Define(const Listed& listed, AccessTable& table);
    /// Hands over every row that is not deleted, as they are stored. False where the table is
    /// damaged (a row cannot be read, or there are fewer than its definition says) and where a row
    /// was not taken.
    bool ReadRows(const AccessTable& table, const TakeRow& take);
    /// The content of a Memo, which its row only points to: at least `wanted` bytes where it has as
    /// many. False where it cannot be read.
    bool ReadLong(std::string_view field, std::size_t wanted, std::string& content);

private:
    bool CollectPages(const AccessTable& table, std::vector<std::uint32_t>& found);
    void AddMapped(std::string_view bits, std::uint64_t first,
                   std::vector<std::uint32_t>& found) const;

    AccessPages pages_;
};

} // namespace convfile::database
