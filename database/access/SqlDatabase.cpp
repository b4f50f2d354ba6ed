#include "database/access/SqlDatabase.h"

#include "database/access/AccessText.h"

#include <sqlite3.h>

#include <cmath>

namespace convfile::database {

namespace {

// A declared type with "BLOB" in it leaves values as they are; what follows says how a real number
// of the column is written.
constexpr std::string_view kDeclared = "BLOB";

/// A query works this many steps for each row of the database, and as many more at least.
constexpr std::int64_t kWorkPerRow = 500;
constexpr std::int64_t kWorkAtLeast = 10'000'000;
constexpr int kWorkPiece = 10'000;

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

std::string DeclarationOf(RealText text) {
    return std::string(kDeclared) + std::to_string(static_cast<int>(text));
}

RealText RealTextOf(const char* declared) {
    const std::string_view type = declared ? declared : "";
    if (type.size() != kDeclared.size() + 1 || !type.starts_with(kDeclared))
        return RealText::Double;
    return static_cast<RealText>(type.back() - '0');
}

/// Lets a SELECT read and nothing else happen.
int AllowReading(void*, int action, const char*, const char*, const char*, const char*) {
    return action == SQLITE_SELECT || action == SQLITE_READ ? SQLITE_OK : SQLITE_DENY;
}

std::string TextOfRealAs(double value, RealText text) {
    constexpr int kDoubleDigits = 15;
    constexpr int kSingleDigits = 7;
    switch (text) {
    case RealText::Single:
        return TextOfReal(value, kSingleDigits);
    case RealText::Currency:
        return TextOfCurrency(std::llround(value * 10000));
    case RealText::Date:
        return TextOfDate(value);
    case RealText::Double:
        break;
    }
    return TextOfReal(value, kDoubleDigits);
}

} // namespace

SqlDatabase::SqlDatabase() {
    constexpr int kFlags =
        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_MEMORY | SQLITE_OPEN_NOMUTEX;
    sqlite3_open_v2(":memory:", &database_, kFlags, nullptr);
    Run("PRAGMA journal_mode=OFF");
    Run("PRAGMA synchronous=OFF");
}

SqlDatabase::~SqlDatabase() {
    sqlite3_finalize(insert_);
    sqlite3_close_v2(database_);
}

bool SqlDatabase::Run(const std::string& sql) {
    return sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

bool SqlDatabase::BeginTable(const std::string& name, const std::vector<SqlColumn>& columns,
                             int primaryKey) {
    table_ = Quoted(name);
    columns_ = columns;
    std::string definition;
    std::string places;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        definition += (i == 0 ? "" : ",") + Quoted(columns[i].name) + " ";
        definition += static_cast<int>(i) == primaryKey ? "INTEGER PRIMARY KEY"
                                                        : DeclarationOf(columns[i].realText);
        places += i == 0 ? "?" : ",?";
    }
    Run("BEGIN");
    if (!Run("CREATE TABLE " + table_ + "(" + definition + ")"))
        return false;
    const std::string insert = "INSERT INTO " + table_ + " VALUES(" + places + ")";
    return sqlite3_prepare_v2(database_, insert.c_str(), -1, &insert_, nullptr) == SQLITE_OK;
}

bool SqlDatabase::InsertRow(const std::vector<SqlValue>& values) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        const SqlValue& value = values[i];
        const int place = static_cast<int>(i) + 1;
        switch (value.kind) {
        case SqlValue::Kind::Null:
            sqlite3_bind_null(insert_, place);
            break;
        case SqlValue::Kind::Integer:
            sqlite3_bind_int64(insert_, place, value.integer);
            break;
        case SqlValue::Kind::Real:
            sqlite3_bind_double(insert_, place, value.real);
            break;
        case SqlValue::Kind::Text:
            sqlite3_bind_text(insert_, place, value.text.data(),
                              static_cast<int>(value.text.size()), SQLITE_STATIC);
            break;
        }
    }
    const bool inserted = sqlite3_step(insert_) == SQLITE_DONE;
    sqlite3_reset(insert_);
    ++rows_;
    return inserted;
}

void SqlDatabase::EndTable(bool complete) {
    sqlite3_finalize(insert_);
    insert_ = nullptr;
    Run("COMMIT");
    if (!complete) {
        Run("DROP TABLE " + table_);
        return;
    }
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        const std::string index = Quoted("index " + std::to_string(i) + " of " + table_);
        if (columns_[i].indexed)
            Run("CREATE INDEX " + index + " ON " + table_ + "(" + Quoted(columns_[i].name) + ")");
    }
}

void SqlDatabase::Seal() {
    Run("PRAGMA query_only=ON");
    sqlite3_limit(database_, SQLITE_LIMIT_ATTACHED, 0);
    sqlite3_limit(database_, SQLITE_LIMIT_SQL_LENGTH, kLongestSql);
    sqlite3_db_config(database_, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    // A word in quotation marks is a name, never a text.
    sqlite3_db_config(database_, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_set_authorizer(database_, AllowReading, nullptr);
    workLimit_ = kWorkAtLeast + rows_ * kWorkPerRow;
    sqlite3_progress_handler(database_, kWorkPiece, CountWork, this);
}

int SqlDatabase::CountWork(void* self) {
    auto& database = *static_cast<SqlDatabase*>(self);
    database.workLeft_ -= kWorkPiece;
    return database.workLeft_ < 0 ? 1 : 0;
}

SqlQuery::~SqlQuery() {
    Forget();
}

void SqlQuery::Forget() {
    for (const auto& [text, statement] : prepared_)
        sqlite3_finalize(statement);
    prepared_.clear();
    current_ = nullptr;
}

bool SqlQuery::Open(const std::string& sql, const std::shared_ptr<SqlDatabase>& database) {
    if (database != database_) {
        Forget();
        database_ = database;
    }
    // The number the statement ends in, as in "... WHERE keySoPoint=1234".
    constexpr std::size_t kMostDigits = 18;
    std::size_t digits = 0;
    while (digits < sql.size() && digits <= kMostDigits && sql[sql.size() - 1 - digits] >= '0' &&
           sql[sql.size() - 1 - digits] <= '9')
        ++digits;
    const std::size_t end = sql.size() - digits;
    const bool binds = digits > 0 && digits <= kMostDigits && end > 0 && sql[end - 1] == '=';
    key_.assign(sql, 0, binds ? end : sql.size());
    if (binds)
        key_ += '?';

    ended_ = false;
    current_ = Prepare(key_);
    if (!current_)
        return false;
    if (binds) {
        std::int64_t number = 0;
        for (std::size_t i = end; i < sql.size(); ++i)
            number = number * 10 + (sql[i] - '0');
        sqlite3_bind_int64(current_, 1, number);
    }
    database_->RefillWork();
    return true;
}

/// The statement of that text, from before or anew; null where it is no single SELECT.
sqlite3_stmt* SqlQuery::Prepare(const std::string& sql) {
    const auto found = prepared_.find(sql);
    if (found != prepared_.end())
        return found->second;
    sqlite3_stmt* statement = nullptr;
    const char* rest = nullptr;
    const int result =
        sqlite3_prepare_v3(database_->Handle(), sql.data(), static_cast<int>(sql.size()),
                           SQLITE_PREPARE_PERSISTENT, &statement, &rest);
    const bool single = rest == sql.data() + sql.size();
    if (result != SQLITE_OK || !statement || !single || sqlite3_column_count(statement) == 0) {
        sqlite3_finalize(statement);
        return nullptr;
    }
    constexpr std::size_t kMostPrepared = 64;
    if (prepared_.size() >= kMostPrepared)
        Forget();
    prepared_.emplace(sql, statement);
    return statement;
}

void SqlQuery::Close() {
    if (current_)
        sqlite3_reset(current_);
    current_ = nullptr;
}

SqlQuery::Step SqlQuery::Next() {
    if (ended_)
        return Step::End; // one more step would begin again
    const int result = current_ ? sqlite3_step(current_) : SQLITE_MISUSE;
    if (result == SQLITE_ROW)
        return Step::Row;
    ended_ = result == SQLITE_DONE;
    return ended_ ? Step::End : Step::Failed;
}

int SqlQuery::FieldCount() const {
    return current_ ? sqlite3_column_count(current_) : 0;
}

bool SqlQuery::AppendText(int field, std::size_t limit, std::string& line) const {
    switch (sqlite3_column_type(current_, field)) {
    case SQLITE_INTEGER:
        line += std::to_string(sqlite3_column_int64(current_, field));
        return true;
    case SQLITE_FLOAT:
        line += TextOfRealAs(sqlite3_column_double(current_, field),
                             RealTextOf(sqlite3_column_decltype(current_, field)));
        return true;
    case SQLITE_TEXT: {
        const auto* const bytes =
            reinterpret_cast<const char*>(sqlite3_column_text(current_, field));
        const auto size = static_cast<std::size_t>(sqlite3_column_bytes(current_, field));
        std::string_view text(bytes, size);
        text = text.substr(0, text.find('\0'));
        line += text.substr(0, limit);
        return true;
    }
    default:
        return false;
    }
}

} // namespace convfile::database
