#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace convfile::database {

/// A value on its way into the database.
struct SqlValue {
    enum class Kind { Null, Integer, Real, Text };
    Kind kind = Kind::Null;
    std::int64_t integer = 0;
    double real = 0;
    std::string_view text; ///< copied when it is inserted
};

/// What a column holds: texts, or numbers whose text is made in one of these ways.
enum class ColumnText : char { Double = 'D', Single = 'S', Currency = 'C', Date = 'T', Text = 'X' };

struct SqlColumn {
    std::string name;
    ColumnText text = ColumnText::Double;
    bool indexed = false;
};

struct CloseSqlite {
    void operator()(sqlite3* database) const;
    void operator()(sqlite3_stmt* statement) const;
};
using SqlStatement = std::unique_ptr<sqlite3_stmt, CloseSqlite>;

/// A database in memory: filled table by table, then sealed. Sealed, it answers single SELECT
/// statements over its tables and nothing else: no statement can attach, load, write or call
/// anything, and one that works too long is ended. What fails raises an EngineError, or
/// std::bad_alloc.
class SqlDatabase {
public:
    SqlDatabase();
    SqlDatabase(const SqlDatabase&) = delete;
    SqlDatabase& operator=(const SqlDatabase&) = delete;
    ~SqlDatabase() = default;

    /// Creates a table whose rows then follow. Rows come back in the order of their primary key (a
    /// column of whole numbers), or without one in the order of insertion.
    void BeginTable(const std::string& name, const std::vector<SqlColumn>& columns, int primaryKey);
    void InsertRow(const std::vector<SqlValue>& values);
    void EndTable();
    /// Instead of ending it: what there is of the table is gone again.
    void DropTable();
    void Seal();

    /// The statement, with as many places for numbers; null where it is at fault (it is no single
    /// SELECT, names what is not there, has other places).
    SqlStatement Prepare(std::string_view sql, int numbers);
    /// What a column of such a list of tables holds; nothing where it is no column.
    std::optional<ColumnText> ColumnOf(std::string_view tables, std::string_view column);
    /// Raises the error of an operation that gave this result.
    [[noreturn]] void Raise(int result) const;

    /// Gives the statement that runs next the full measure of work, and any number of rows. All
    /// that run without it share one measure of either.
    void RefillWork();
    /// A row was found. Raises an error where the measure of rows is used up.
    void CountRow();

private:
    void Check(int result) const;
    void Run(const std::string& sql);
    static int CountWork(void* self);

    sqlite3* Handle() const { return database_.get(); }

    std::unique_ptr<sqlite3, CloseSqlite> database_;
    SqlStatement insert_;
    std::string table_;
    std::vector<SqlColumn> columns_;
    bool created_ = false; ///< the table that is being filled is there
    std::int64_t rows_ = 0;
    std::int64_t workLimit_ = 0;
    std::int64_t workLeft_ = 0;
    std::int64_t rowsLeft_ = 0;
};

/// Runs one SELECT after another on a sealed database and gives the texts of their fields.
class SqlQuery {
public:
    SqlQuery() = default;
    SqlQuery(const SqlQuery&) = delete;
    SqlQuery& operator=(const SqlQuery&) = delete;
    ~SqlQuery();

    /// Prepares a statement; false where it is at fault.
    bool Open(const std::string& sql, const std::shared_ptr<SqlDatabase>& database);
    void Close();

    /// Goes to the next row; false where there is none (any more), or none is open.
    bool NextRow();
    /// Appends the text of a field of the row; false where it has none.
    bool AppendText(int field, std::size_t limit, std::string& line) const;
    int FieldCount() const;

private:
    /// A statement that was prepared, and how the texts of its fields are made.
    struct Prepared {
        SqlStatement statement;
        int numbers; ///< that are bound
        std::vector<ColumnText> fields;
    };
    Prepared* Prepare(const std::string& sql, int numbers);
    void Forget();

    std::shared_ptr<SqlDatabase> database_;
    /// Statements by their text without the number they end in, which is bound: an import asks the
    /// same few questions half a million times.
    std::unordered_map<std::string, Prepared> prepared_;
    std::string key_; ///< room for the text to look for
    Prepared* current_ = nullptr;
    bool anyRow_ = false; ///< a row of the answer was given
    bool ended_ = false;  ///< there is no row left
};

} // namespace convfile::database
