// The engine off Windows: an Access file is read into a database in memory, and the SELECTs run
// there as they are written.

#include "database/Engine.h"
#include "database/access/AccessFile.h"
#include "database/access/RowConverter.h"
#include "database/access/SqlDatabase.h"
#include "routines/CodePage.h"
#include "routines/Text.h"

#include <algorithm>
#include <array>

namespace convfile::database {

namespace {

/// The tables that a job is imported from. Where one of them is damaged the database does not open:
/// the job would come in part and look whole.
constexpr std::array<std::string_view, 10> kJobTables = {
    "tblCrdObsSession", "tblObsEquipment", "tblTsOccups",   "tblCodeDefs", "tblCodesToPts",
    "tblSoPoints",      "tblTsShots",      "tblCrdRawMeas", "tblStations", "tblCrdImageData"};

bool IsJobTable(std::string_view name) {
    return std::ranges::any_of(
        kJobTables, [&](std::string_view table) { return EqualIgnoringCase(table, name); });
}

/// Records are looked for by their keys alone.
bool IsKey(std::string_view column) {
    return EqualIgnoringCase(column.substr(0, 3), "key") ||
           EqualIgnoringCase(column.substr(0, 4), "fkey");
}

RealText RealTextOf(ColumnType type) {
    switch (type) {
    case ColumnType::Single:
        return RealText::Single;
    case ColumnType::Currency:
        return RealText::Currency;
    case ColumnType::Date:
        return RealText::Date;
    default:
        return RealText::Double;
    }
}

/// Copies a table; false where it is damaged. It is then not there.
bool LoadTable(AccessFile& file, const AccessFile::Listed& listed, SqlDatabase& database) {
    AccessTable table;
    if (!file.Define(listed, table))
        return false;
    std::vector<SqlColumn> columns;
    for (const AccessColumn& column : table.columns)
        columns.push_back({column.name, RealTextOf(column.type), IsKey(column.name)});
    if (table.primaryKey >= 0) {
        const auto key = static_cast<std::size_t>(table.primaryKey);
        if (table.columns[key].type == ColumnType::Long)
            columns[key].indexed = false; // it is the table's own order
        else
            table.primaryKey = -1;
    }
    if (!database.BeginTable(table.name, columns, table.primaryKey)) {
        database.EndTable(false);
        return false;
    }
    RowConverter converter(file, table);
    const bool complete = file.ReadRows(table, [&](const std::vector<AccessValue>& row) {
        return converter.Convert(row) && database.InsertRow(converter.Values());
    });
    database.EndTable(complete);
    return complete;
}

/// Copies the tables of a file; null where it is no database, or one that must not be used.
std::shared_ptr<SqlDatabase> LoadDatabase(const std::string& path) {
    AccessFile file;
    std::vector<AccessFile::Listed> tables;
    if (!file.Open(path) || !file.ListTables(tables))
        return nullptr;
    auto database = std::make_shared<SqlDatabase>();
    for (const AccessFile::Listed& listed : tables) {
        if (!LoadTable(file, listed, *database) && IsJobTable(listed.name))
            return nullptr;
    }
    database->Seal();
    return database;
}

/// What is read for the first try serves the use that follows.
class AccessConnection final : public Connection {
public:
    Status Probe(const std::string& path) override {
        database_ = LoadDatabase(path);
        return database_ ? kOk : kFailed;
    }
    Status Close() override { return kOk; }
    void Open(const std::string& path) override {
        if (!database_ && Probe(path) < 0)
            throw EngineError("cannot be opened");
    }

    const std::shared_ptr<SqlDatabase>& Database() const { return database_; }

private:
    std::shared_ptr<SqlDatabase> database_;
};

class AccessRecordset final : public Recordset {
public:
    void Close() override {
        if (!query_.IsOpen())
            throw EngineError("is not open");
        query_.Close();
    }
    bool Open(const std::string& sql, Connection& connection) override {
        const auto& database = static_cast<AccessConnection&>(connection).Database();
        fetching_ = false;
        return database && query_.Open(sql, database);
    }
    bool Open(const wchar_t* sql, Connection& connection) override {
        std::string bytes;
        for (const wchar_t* c = sql; c && *c; ++c)
            bytes += Windows1252FromUnit(static_cast<char32_t>(*c));
        return Open(bytes, connection);
    }
    bool NextRow() override {
        const SqlQuery::Step step = query_.Next();
        if (step == SqlQuery::Step::Failed || (step == SqlQuery::Step::End && !fetching_))
            throw EngineError("cannot be fetched");
        fetching_ = step == SqlQuery::Step::Row;
        return fetching_;
    }
    Status AppendField(std::int32_t field, std::string& line) override {
        if (field < 0 || field >= query_.FieldCount())
            return kOk;
        return query_.AppendText(field, kLongestField, line) ? kOk : kTypeMismatch;
    }

private:
    SqlQuery query_;
    bool fetching_ = false; ///< between the first row of a fetch and its end
};

} // namespace

Status StartEngine() {
    return kOk;
}

void StopEngine() {}

std::shared_ptr<Connection> NewConnection() {
    return std::make_shared<AccessConnection>();
}

std::shared_ptr<Recordset> NewRecordset() {
    return std::make_shared<AccessRecordset>();
}

} // namespace convfile::database
