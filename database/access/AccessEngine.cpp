// The engine off Windows: an Access file is read into a database in memory, and the SELECTs run
// there as they are written.

#include "database/Engine.h"
#include "database/JobTables.h"
#include "database/access/AccessFile.h"
#include "database/access/RowConverter.h"
#include "database/access/SqlDatabase.h"
#include "routines/CodePage.h"
#include "routines/Text.h"

#include <algorithm>

namespace convfile::database {

namespace {

/// What is wrong with a table, with its name where it lacks that.
std::string About(const std::string& table, const std::string& problem) {
    const bool named = problem.find(table) != std::string::npos;
    return named ? problem : "table " + table + ": " + problem;
}

/// Records are looked for by their keys alone.
bool IsKey(std::string_view column) {
    return EqualIgnoringCase(column.substr(0, 3), "key") ||
           EqualIgnoringCase(column.substr(0, 4), "fkey");
}

ColumnText ColumnTextOf(ColumnType type) {
    switch (type) {
    case ColumnType::Single:
        return ColumnText::Single;
    case ColumnType::Currency:
        return ColumnText::Currency;
    case ColumnType::Date:
        return ColumnText::Date;
    case ColumnType::Text:
    case ColumnType::Memo:
    case ColumnType::Guid:
    case ColumnType::Binary:
    case ColumnType::Ole:
        return ColumnText::Text;
    default:
        return ColumnText::Double;
    }
}

bool HasColumn(const AccessTable& table, std::string_view name) {
    return std::ranges::any_of(table.columns, [&](const AccessColumn& column) {
        return EqualIgnoringCase(column.name, name);
    });
}

/// A job's table must have what is always read of it: damage may hide a column behind another name.
void RequireColumns(const AccessTable& table) {
    const JobTable* const job = JobTableNamed(table.name);
    if (!job)
        return;
    if (table.columns.size() < job->leastColumns)
        throw EngineError("it has too few columns");
    for (const std::string_view column : job->columns) {
        if (!column.empty() && !HasColumn(table, column))
            throw EngineError("it has no column " + std::string(column));
    }
}

/// Copies a table. Raises an error where it is damaged.
void LoadTable(AccessFile& file, const AccessFile::Listed& listed, SqlDatabase& database,
               std::vector<std::string>& oddities) {
    AccessTable table;
    file.Define(listed, table);
    RequireColumns(table);
    std::vector<SqlColumn> columns;
    for (const AccessColumn& column : table.columns)
        columns.push_back({column.name, ColumnTextOf(column.type), IsKey(column.name)});
    if (table.primaryKey >= 0) {
        const auto key = static_cast<std::size_t>(table.primaryKey);
        if (table.columns[key].type == ColumnType::Long)
            columns[key].indexed = false; // it is the table's own order
        else
            table.primaryKey = -1;
    }
    database.BeginTable(table.name, columns, table.primaryKey);
    RowConverter converter(file, table);
    std::size_t rows = 0;
    file.ReadRows(table, [&](const std::vector<AccessValue>& row) {
        converter.Convert(row);
        database.InsertRow(converter.Values());
        ++rows;
    });
    database.EndTable();
    if (rows != table.rowCount && JobTableNamed(table.name))
        oddities.push_back("table " + table.name + " says that it has " +
                           std::to_string(table.rowCount) + " rows, and has " +
                           std::to_string(rows) + ": those are read");
}

/// Copies the tables of a file. Raises an error where it is no database, or one that must not be
/// used: with one of the job's own tables damaged the job would come in part and look whole.
/// Another table that is damaged is not there.
std::shared_ptr<SqlDatabase> LoadDatabase(const std::string& path,
                                          std::vector<std::string>& oddities) {
    AccessFile file;
    std::vector<AccessFile::Listed> tables;
    file.Open(path);
    file.ListTables(tables);
    auto database = std::make_shared<SqlDatabase>();
    for (const AccessFile::Listed& listed : tables) {
        try {
            LoadTable(file, listed, *database, oddities);
        } catch (const EngineError& error) {
            if (JobTableNamed(listed.name))
                throw EngineError(About(listed.name, error.what()));
            database->DropTable();
        }
    }
    database->Seal();
    return database;
}

/// What is read for the first try serves the use that follows.
class AccessConnection final : public Connection {
public:
    Status Probe(const std::string& path) override {
        database_.reset();
        oddities_.clear();
        try {
            database_ = LoadDatabase(path, oddities_);
            return kOk;
        } catch (const EngineError& error) {
            problem_ = error.what();
            return kFailed;
        }
    }
    Status Close() override { return kOk; }
    void Open(const std::string& path) override {
        if (!database_ && Probe(path) < 0)
            throw EngineError(problem_);
    }
    void RefillWork() override {
        if (database_)
            database_->RefillWork();
    }

    const std::shared_ptr<SqlDatabase>& Database() const { return database_; }

private:
    std::shared_ptr<SqlDatabase> database_;
};

class AccessRecordset final : public Recordset {
public:
    void Close() override { query_.Close(); }
    bool Open(const std::string& sql, Connection& connection) override {
        const auto& database = static_cast<AccessConnection&>(connection).Database();
        atFault_ = !database || !query_.Open(sql, database);
        return !atFault_;
    }
    bool Open(const wchar_t* sql, Connection& connection) override {
        std::string bytes;
        for (const wchar_t* c = sql; c && *c; ++c)
            bytes += Windows1252FromUnit(static_cast<char32_t>(*c));
        return Open(bytes, connection);
    }
    bool NextRow(Wanted) override { return query_.NextRow(); }
    void RaiseNoRow() override { throw EngineError("there is no row"); }
    Status AppendField(std::int32_t field, std::string& line) override {
        if (field < 0 || field >= query_.FieldCount())
            return kOk;
        return query_.AppendText(field, kLongestField, line) ? kOk : kTypeMismatch;
    }

private:
    SqlQuery query_;
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

std::string PlatformErrorText() {
    return {};
}

} // namespace convfile::database
