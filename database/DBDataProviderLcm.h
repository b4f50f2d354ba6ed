#pragma once

#include "framework/Export.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace convfile::database {
class Connection;
class Recordset;
} // namespace convfile::database

/// Runs one SELECT at a time on a Microsoft Access file and hands every row back as one line of
/// text, each field followed by a tab. Texts are bytes in Windows-1252. All calls on one object
/// come from one thread. Copies share the connection and the recordset.
class CONVFILE_API CDBDataProviderLcm {
public:
    CDBDataProviderLcm();
    CDBDataProviderLcm(const CDBDataProviderLcm&);
    CDBDataProviderLcm& operator=(const CDBDataProviderLcm&);
    /// Disconnects first and releases recordset and connection afterwards.
    virtual ~CDBDataProviderLcm();

    /// Opens the database. Where it cannot be opened (no driver, no such file, no database) the
    /// user is shown where the driver can be had, and the result is false. May raise the engine's
    /// error where the database can be probed but not opened. The flag is never consulted.
    bool Connect(const char* databasePath, bool flag);
    /// Ends the thread's use of the engine, once for each call; closes nothing.
    void Disconnect();

    /// Runs the query `head` + `tail`; nothing stands between them. False where it cannot be run.
    bool CreateQuery(const std::string& head, const std::string& tail);
    /// Opens the recordset on a query. False where it cannot be run.
    bool GenerateQuery(const wchar_t* sql);
    /// Fetches all rows that are left, the first `fieldCount` fields of each, and appends them to
    /// the rows. Returns the status of the last field: 0, or negative where it has no text (it is
    /// then empty); E_NOINTERFACE without a connection. Raises the engine's error where there is no
    /// row.
    std::int32_t DoGetRows(std::int32_t fieldCount);

    /// The first row of the answer; empty where there is none or the query cannot be run.
    std::string ReadData(const std::string& head, const std::string& tail, std::int32_t fieldCount);
    /// Appends all rows of the answer to `out`. False where there is none or the query cannot be
    /// run.
    bool ReadData(const std::string& head, const std::string& tail, std::int32_t fieldCount,
                  std::vector<std::string>* out);

    /// The rows fetched since the last CreateQuery.
    const std::vector<std::string>& Rows() const { return rows_; }

    /// For an import, which must not take a query that failed for one without rows. Either is as
    /// ReadData of that form, but raises an error where the query was not carried out to its end,
    /// which is no fault of the statement: memory, damage, too much work. All such queries together
    /// may work as long as a single one of the others. The first row is all that ReadFirst fetches.
    std::string ReadFirst(std::string_view head, std::string_view tail, std::int32_t fieldCount);
    bool ReadRows(std::string_view head, std::string_view tail, std::int32_t fieldCount,
                  std::vector<std::string>& out);
    /// True where the last query was one that the database cannot answer: it is none, or asks for a
    /// table or column that is not there or of another type.
    bool WasAtFault() const;
    /// Why Connect gave false, for people.
    std::string Problem() const;
    /// What is not as it should be in the database, and yet does no harm, for people.
    std::vector<std::string> Oddities() const;

private:
    bool OpenConnection(const std::string& path);
    bool RunQuery(std::string_view head, std::string_view tail);
    std::int32_t AppendRow(std::int32_t fieldCount, std::string& line);
    std::int32_t FetchRows(std::int32_t fieldCount, std::vector<std::string>& rows);
    void RefillWork();

    std::shared_ptr<convfile::database::Connection> connection_;
    std::shared_ptr<convfile::database::Recordset> recordset_;
    std::vector<std::string> rows_;
    std::string text_;          ///< only carried along by copies
    std::int32_t lastRow_ = -1; ///< index of the last row of the last answer
};
