#pragma once

#include "database/access/AccessPages.h"
#include "database/access/AccessTable.h"

#include <functional>
#include <string>
#include <vector>

namespace convfile::database {

/// The tables of a Microsoft Access file (Jet 3, Jet 4, ACE 12 and later), read-only. Each
/// definition, row and long value is handed out once. What is damaged raises an EngineError that
/// says which table it is about (in Windows-1252) and what is wrong.
class AccessFile {
public:
    /// A table that the file lists: its name and where its definition begins.
    struct Listed {
        std::string name;
        std::uint32_t page;
    };
    /// Takes a row: the values of its columns in their displayed order, valid during the call.
    using TakeRow = std::function<void(const std::vector<AccessValue>& values)>;

    /// Raises an error where there is no such file, or where it is no such database, or where that
    /// asks for a password.
    void Open(const std::string& path) { pages_.Open(path); }
    bool IsJet3() const { return pages_.IsJet3(); }

    /// Appends the user's tables.
    void ListTables(std::vector<Listed>& tables);
    void Define(const Listed& listed, AccessTable& table);
    /// Hands over every row that is not deleted, as they are stored. Raises an error where one
    /// cannot be read, or where there are fewer than the definition says and some may well be
    /// missing.
    void ReadRows(const AccessTable& table, const TakeRow& take);
    /// The content of a Memo, which its row only points to: at least `wanted` bytes where it has as
    /// many.
    void ReadLong(std::string_view field, std::size_t wanted, std::string& content);

private:
    AccessPages pages_;
};

} // namespace convfile::database
