#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

/// What differs by platform behind the query helper: how a database is opened, and how a SELECT is
/// run on it. One engine is linked in: ADO on Windows, elsewhere one that reads the file itself, or
/// one that has no driver at all.
///
/// A statement that is at fault (it is none, names what is not there, compares a text with a
/// number) and one that finds nothing are ordinary: they give false. Whatever else keeps a
/// statement from being carried out to its end raises an error.
namespace convfile::database {

/// An OLE status: negative where something failed.
using Status = std::int32_t;

inline constexpr Status kOk = 0;
inline constexpr Status kNoInterface = static_cast<Status>(0x80004002);
inline constexpr Status kFailed = static_cast<Status>(0x80004005);
inline constexpr Status kTypeMismatch = static_cast<Status>(0x80020005);

/// A field's text is cut at this many bytes.
inline constexpr std::size_t kLongestField = 1024;

/// What an engine raises; its text says for people what is wrong. (Short memory is std::bad_alloc,
/// and an engine over COM raises its platform's own error.)
class EngineError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A database.
class Connection {
public:
    Connection() = default;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    virtual ~Connection() = default;

    /// Opens the file for a first try; a negative status where that cannot be done.
    virtual Status Probe(const std::string& path) = 0;
    /// Why the first try failed, for people.
    const std::string& Problem() const { return problem_; }
    /// What is not as it should be, and yet does no harm, for people: where the engine knows it.
    const std::vector<std::string>& Oddities() const { return oddities_; }
    virtual Status Close() = 0;
    /// Opens the file for use. Raises an error where it fails.
    virtual void Open(const std::string& path) = 0;
    /// Lets the statements that follow work as long as one may, where the engine has such a limit.
    /// What is not refilled is shared by all of them.
    virtual void RefillWork() {}

protected:
    std::string problem_;
    std::vector<std::string> oddities_;
};

/// How many rows of an answer are wanted.
enum class Wanted : std::int32_t { All = -1, One = 1 };

/// The answer to one SELECT after another.
class Recordset {
public:
    Recordset() = default;
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;
    virtual ~Recordset() = default;

    /// May raise an error where nothing is open.
    virtual void Close() = 0;
    /// Opens the answer to a SELECT over a connection, one made by the same engine. False where the
    /// statement is at fault.
    virtual bool Open(const std::string& sql, Connection& connection) = 0;
    virtual bool Open(const wchar_t* sql, Connection& connection) = 0;
    /// Goes to the next row; false where there is none (any more), or the statement turns out to be
    /// at fault. Of the rows that are not wanted none is fetched.
    virtual bool NextRow(Wanted wanted) = 0;
    /// Raises the engine's error for an answer without a row.
    [[noreturn]] virtual void RaiseNoRow() = 0;
    /// Appends the text of a field of the row, at most kLongestField bytes of Windows-1252; nothing
    /// for a field that the answer does not have. A negative status, and nothing appended, where
    /// the field has no text: NULL, or a type that has none.
    virtual Status AppendField(std::int32_t field, std::string& line) = 0;

    /// True where the last statement was at fault, as far as it was carried out.
    bool WasAtFault() const { return atFault_; }

protected:
    bool atFault_ = false;
};

/// Prepares the calling thread; negative where that fails. Each call is paired with one of
/// StopEngine.
Status StartEngine();
void StopEngine();

/// Null where the engine cannot make one.
std::shared_ptr<Connection> NewConnection();
std::shared_ptr<Recordset> NewRecordset();

/// What the error says that is being handled, where it is one of the platform's own.
std::string PlatformErrorText();

} // namespace convfile::database
