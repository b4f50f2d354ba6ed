#pragma once

#include <cstdint>
#include <memory>
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

/// How the text of a column's real numbers is made.
enum class RealText { Double, Single, Currency, Date };

struct SqlColumn {
    std::string name;
    RealText realText = RealText::Double;
    bool indexed = false;
};

/// A database in memory: filled table by table, then sealed. Sealed, it answers single SELECT
/// statements over its tables and nothing else: no statement can attach, load, write or call
/// anything, and one that works too long is ended.
class SqlDatabase {
public:
    SqlDatabase();
    SqlDatabase(const SqlDatabase&) = delete;
    SqlDatabase& operator=(const SqlDatabase&) = delete;
    ~SqlDatabase();

    /// Creates a table whose rows then follow. Rows come back in the order of their primary key (a
    /// column of whole numbers), or without one in the order of insertion. False where it cannot
    /// be.
    bool BeginTable(const std::string& name, const std::vector<SqlColumn>& columns, int primaryKey);
    bool InsertRow(const std::vector<SqlValue>& values);
    /// Finishes the table; where it is not `complete` it is gone again.
    void EndTable(bool complete);
    void Seal();

    sqlite3* Handle() { return database_; }
    /// Gives the statement that runs next a full measure of work.
    void RefillWork() { workLeft_ = workLimit_; }

private:
    bool Run(const std::string& sql);
    static int CountWork(void* self);

    sqlite3* database_ = nullptr;
    sqlite3_stmt* insert_ = nullptr;
    std::string table_;
    std::vector<SqlColumn> columns_;
    std::int64_t rows_ = 0;
    std::int64_t workLimit_ = 0;
    std::int64_t workLeft_ = 0;
};

/// Runs one SELECT after another on a sealed database and gives the texts of their fields.
class SqlQuery {
public:
    SqlQuery() = default;
    SqlQuery(const SqlQuery&) = delete;
    SqlQuery& operator=(const SqlQuery&) = delete;
    ~SqlQuery();

    /// Prepares a statement; false where it is none that may run.
    bool Open(const std::string& sql, const std::shared_ptr<SqlDatabase>& database);
    bool IsOpen() const { return current_ != nullptr; }
    void Close();

    enum class Step { Row, End, Failed };
    Step Next();
    /// Appends the text of a field of the row; false where it has none.
    bool AppendText(int field, std::size_t limit, std::string& line) const;
    int FieldCount() const;

private:
    sqlite3_stmt* Prepare(const std::string& sql);
    void Forget();

    std::shared_ptr<SqlDatabase> database_;
    /// Statements by their text without the number they end in, which is bound: an import asks the
    /// same few questions half a million times.
    std::unordered_map<std::string, sqlite3_stmt*> prepared_;
    std::string key_; ///< room for the text to look for
    sqlite3_stmt* current_ = nullptr;
    bool ended_ = false; ///< there is no row left
};

} // namespace convfile::database
