#include "database/access/SqlDatabase.h"

#include "database/DateText.h"
#include "database/Engine.h"
#include "database/access/AccessText.h"
#include "database/access/Comparisons.h"

#include <sqlite3.h>

#include <cmath>
#include <limits>
#include <new>
#include <utility>

namespace convfile::database {

namespace {

// A declared type with "BLOB" in it leaves values as they are; what follows is the column's
// ColumnText.
constexpr std::string_view kDeclared = "BLOB";

/// A query works this many steps for each row of the database, and as many more at least.
constexpr std::int64_t kWorkPerRow = 500;
constexpr std::int64_t kWorkAtLeast = 10'000'000;
constexpr int kWorkPiece = 10'000;

/// Queries that share one measure are given as many rows for each row of the database, and as many
/// more. Each shot asks for four others at most, so an import whose keys name one row each stays
/// below.
constexpr std::int64_t kRowsPerRow = 8;
constexpr std::int64_t kRowsAtLeast = 10'000;

constexpr int kLongestSql = 64 * 1024;

std::string Quoted(const std::string& name) {
    std::string quoted = "\"";
    for (const char c : name) {
        if (c == '"')
            quoted += '"';
        quoted += c;
    }
    return quoted + "\"";
}

/// What the declared type of a column says: that of a primary key, that it holds whole numbers.
ColumnText DeclaredText(std::string_view type) {
    return type.starts_with(kDeclared) ? static_cast<ColumnText>(type.back()) : ColumnText::Double;
}

/// Lets a SELECT read and nothing else happen.
int AllowReading(void*, int action, const char*, const char*, const char*, const char*) {
    return action == SQLITE_SELECT || action == SQLITE_READ ? SQLITE_OK : SQLITE_DENY;
}

/// True where a result says that the statement is at fault, not what runs it.
bool IsFaultOfStatement(int result) {
    return result == SQLITE_ERROR || result == SQLITE_AUTH || result == SQLITE_MISMATCH ||
           result == SQLITE_RANGE;
}

std::string TextOfRealAs(double value, ColumnText text) {
    constexpr int kDoubleDigits = 15;
    constexpr int kSingleDigits = 7;
    switch (text) {
    case ColumnText::Single:
        return TextOfReal(value, kSingleDigits);
    case ColumnText::Currency:
        return TextOfCurrency(std::llround(value * 10000));
    case ColumnText::Date:
        return TextOfDate(value);
    default:
        return TextOfReal(value, kDoubleDigits);
    }
}

/// Where the whole number begins that a statement ends in after a "=", as in "... WHERE
/// keySoPoint=-12"; the statement's size where it ends in none that surely fits.
std::size_t LastNumber(std::string_view sql) {
    constexpr std::size_t kMostDigits = 18;
    std::size_t begin = sql.size();
    while (begin > 0 && sql[begin - 1] >= '0' && sql[begin - 1] <= '9')
        --begin;
    const std::size_t digits = sql.size() - begin;
    if (begin > 0 && sql[begin - 1] == '-')
        --begin;
    const bool number = digits > 0 && digits <= kMostDigits && begin > 0 && sql[begin - 1] == '=';
    return number ? begin : sql.size();
}

} // namespace

void CloseSqlite::operator()(sqlite3* database) const {
    sqlite3_close_v2(database);
}

void CloseSqlite::operator()(sqlite3_stmt* statement) const {
    sqlite3_finalize(statement);
}

SqlDatabase::SqlDatabase() {
    constexpr int kOpenFlags =
        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_MEMORY | SQLITE_OPEN_NOMUTEX;
    sqlite3* opened = nullptr;
    const int result = sqlite3_open_v2(":memory:", &opened, kOpenFlags, nullptr);
    database_.reset(opened);
    if (result != SQLITE_OK)
        throw std::bad_alloc(); // nothing else can be missing for a database in memory
    Run("PRAGMA journal_mode=OFF");
    Run("PRAGMA synchronous=OFF");
}

void SqlDatabase::Raise(int result) const {
    if (result == SQLITE_NOMEM || result == SQLITE_IOERR_NOMEM)
        throw std::bad_alloc();
    if (result == SQLITE_INTERRUPT)
        throw EngineError("its keys ask for more work than its size explains");
    throw EngineError(std::string("the database in memory fails: ") + sqlite3_errmsg(Handle()));
}

void SqlDatabase::Check(int result) const {
    if (result != SQLITE_OK)
        Raise(result);
}

void SqlDatabase::Run(const std::string& sql) {
    Check(sqlite3_exec(Handle(), sql.c_str(), nullptr, nullptr, nullptr));
}

void SqlDatabase::BeginTable(const std::string& name, const std::vector<SqlColumn>& columns,
                             int primaryKey) {
    created_ = false;
    table_ = Quoted(name);
    columns_ = columns;
    std::string definition;
    std::string places;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        definition += (i == 0 ? "" : ",") + Quoted(columns[i].name) + " ";
        if (static_cast<int>(i) == primaryKey)
            definition += "INTEGER PRIMARY KEY";
        else
            definition.append(kDeclared).append(1, static_cast<char>(columns[i].text));
        places += i == 0 ? "?" : ",?";
    }
    Run("BEGIN");
    Run("CREATE TABLE " + table_ + "(" + definition + ")");
    created_ = true;
    const std::string insert = "INSERT INTO " + table_ + " VALUES(" + places + ")";
    sqlite3_stmt* statement = nullptr;
    Check(sqlite3_prepare_v2(Handle(), insert.c_str(), -1, &statement, nullptr));
    insert_.reset(statement);
}

void SqlDatabase::InsertRow(const std::vector<SqlValue>& values) {
    sqlite3_stmt* const insert = insert_.get();
    for (std::size_t i = 0; i < values.size(); ++i) {
        const SqlValue& value = values[i];
        const int place = static_cast<int>(i) + 1;
        switch (value.kind) {
        case SqlValue::Kind::Null:
            Check(sqlite3_bind_null(insert, place));
            break;
        case SqlValue::Kind::Integer:
            Check(sqlite3_bind_int64(insert, place, value.integer));
            break;
        case SqlValue::Kind::Real:
            Check(sqlite3_bind_double(insert, place, value.real));
            break;
        case SqlValue::Kind::Text:
            Check(sqlite3_bind_text(insert, place, value.text.data(),
                                    static_cast<int>(value.text.size()), SQLITE_STATIC));
            break;
        }
    }
    sqlite3_step(insert);
    const int result = sqlite3_reset(insert); // that of the step
    if (result == SQLITE_CONSTRAINT)
        throw EngineError("two rows have the same key");
    Check(result);
    ++rows_;
}

void SqlDatabase::EndTable() {
    insert_.reset();
    Run("COMMIT");
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        const std::string index = Quoted("index " + std::to_string(i) + " of " + table_);
        if (columns_[i].indexed)
            Run("CREATE INDEX " + index + " ON " + table_ + "(" + Quoted(columns_[i].name) + ")");
    }
}

void SqlDatabase::DropTable() {
    insert_.reset();
    if (sqlite3_get_autocommit(Handle()) == 0)
        Run("COMMIT");
    if (std::exchange(created_, false))
        Run("DROP TABLE " + table_);
}

void SqlDatabase::Seal() {
    Run("PRAGMA query_only=ON");
    sqlite3_limit(Handle(), SQLITE_LIMIT_ATTACHED, 0);
    sqlite3_limit(Handle(), SQLITE_LIMIT_SQL_LENGTH, kLongestSql);
    sqlite3_db_config(Handle(), SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    // A word in quotation marks is a name, never a text.
    sqlite3_db_config(Handle(), SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_set_authorizer(Handle(), AllowReading, nullptr);
    workLimit_ = kWorkAtLeast + rows_ * kWorkPerRow;
    workLeft_ = workLimit_;
    rowsLeft_ = kRowsAtLeast + rows_ * kRowsPerRow;
    sqlite3_progress_handler(Handle(), kWorkPiece, CountWork, this);
}

void SqlDatabase::RefillWork() {
    workLeft_ = workLimit_;
    rowsLeft_ = std::numeric_limits<std::int64_t>::max();
}

void SqlDatabase::CountRow() {
    if (--rowsLeft_ < 0)
        throw EngineError("too many of its rows share their keys");
}

int SqlDatabase::CountWork(void* self) {
    auto& database = *static_cast<SqlDatabase*>(self);
    database.workLeft_ -= kWorkPiece;
    return database.workLeft_ < 0 ? 1 : 0;
}

SqlStatement SqlDatabase::Prepare(std::string_view sql, int numbers) {
    sqlite3_stmt* prepared = nullptr;
    const char* rest = nullptr;
    const int result = sqlite3_prepare_v3(Handle(), sql.data(), static_cast<int>(sql.size()),
                                          SQLITE_PREPARE_PERSISTENT, &prepared, &rest);
    SqlStatement statement(prepared);
    if (result != SQLITE_OK && !IsFaultOfStatement(result))
        Raise(result);
    const bool single = result == SQLITE_OK && rest == sql.data() + sql.size();
    if (!statement || !single || sqlite3_column_count(prepared) == 0 ||
        sqlite3_bind_parameter_count(prepared) != numbers)
        statement.reset();
    return statement;
}

std::optional<ColumnText> SqlDatabase::ColumnOf(std::string_view tables, std::string_view column) {
    std::string sql = "SELECT ";
    sql.append(column).append(" FROM ").append(tables);
    const SqlStatement statement = Prepare(sql, 0);
    const char* const type = statement ? sqlite3_column_decltype(statement.get(), 0) : nullptr;
    return type ? std::optional(DeclaredText(type)) : std::nullopt;
}

SqlQuery::~SqlQuery() {
    Forget();
}

/// Before the database is let go: it must outlive them.
void SqlQuery::Forget() {
    prepared_.clear();
    current_ = nullptr;
}

bool SqlQuery::Open(const std::string& sql, const std::shared_ptr<SqlDatabase>& database) {
    if (database != database_) {
        Forget();
        database_ = database;
    }
    const std::size_t number = LastNumber(sql);
    const bool binds = number < sql.size();
    key_.assign(sql, 0, number);
    if (binds)
        key_ += '?';

    ended_ = false;
    anyRow_ = false;
    current_ = Prepare(key_, binds ? 1 : 0);
    if (!current_)
        return false;
    if (binds) {
        const int result = sqlite3_bind_int64(current_->statement.get(), 1,
                                              std::strtoll(sql.c_str() + number, nullptr, 10));
        if (result != SQLITE_OK)
            database_->Raise(result);
    }
    return true;
}

/// The statement of that text, from before or anew; null where it is at fault.
SqlQuery::Prepared* SqlQuery::Prepare(const std::string& sql, int numbers) {
    if (const auto found = prepared_.find(sql); found != prepared_.end())
        return found->second.numbers == numbers ? &found->second : nullptr;
    Prepared prepared{database_->Prepare(sql, numbers), numbers, {}};
    sqlite3_stmt* const statement = prepared.statement.get();
    if (!statement)
        return nullptr;
    const bool mixed =
        ComparesTextWithNumber(sql, [&](std::string_view tables, std::string_view column) {
            const std::optional<ColumnText> text = database_->ColumnOf(tables, column);
            if (!text)
                return Operand::Unknown;
            return *text == ColumnText::Text ? Operand::Text : Operand::Number;
        });
    if (mixed)
        return nullptr;
    for (int i = 0; i < sqlite3_column_count(statement); ++i) {
        const char* const type = sqlite3_column_decltype(statement, i);
        prepared.fields.push_back(DeclaredText(type ? type : "")); // none: an expression
    }
    constexpr std::size_t kMostPrepared = 64;
    if (prepared_.size() >= kMostPrepared)
        Forget();
    return &prepared_.emplace(sql, std::move(prepared)).first->second;
}

void SqlQuery::Close() {
    if (current_)
        sqlite3_reset(current_->statement.get());
    current_ = nullptr;
}

bool SqlQuery::NextRow() {
    if (ended_ || !current_)
        return false; // one more step would begin again
    const int result = sqlite3_step(current_->statement.get());
    if (result == SQLITE_ROW) {
        database_->CountRow();
        anyRow_ = true;
        return true;
    }
    ended_ = true;
    if (result != SQLITE_DONE && (anyRow_ || !IsFaultOfStatement(result)))
        database_->Raise(result);
    return false;
}

int SqlQuery::FieldCount() const {
    return current_ ? sqlite3_column_count(current_->statement.get()) : 0;
}

bool SqlQuery::AppendText(int field, std::size_t limit, std::string& line) const {
    sqlite3_stmt* const row = current_->statement.get();
    switch (sqlite3_column_type(row, field)) {
    case SQLITE_INTEGER:
        line += std::to_string(sqlite3_column_int64(row, field));
        return true;
    case SQLITE_FLOAT:
        line += TextOfRealAs(sqlite3_column_double(row, field),
                             current_->fields[static_cast<std::size_t>(field)]);
        return true;
    case SQLITE_TEXT: {
        const auto* const bytes = reinterpret_cast<const char*>(sqlite3_column_text(row, field));
        if (!bytes)
            throw std::bad_alloc(); // it ends in a NUL, for which there was no room
        std::string_view text(bytes, static_cast<std::size_t>(sqlite3_column_bytes(row, field)));
        text = text.substr(0, text.find('\0'));
        line += text.substr(0, limit);
        return true;
    }
    default:
        return false;
    }
}

} // namespace convfile::database
