#include "database/DBDataProviderLcm.h"

#include "database/Engine.h"
#include "host/Messages.h"
#include "resources/Texts.h"
#include "routines/TskString.h"

using convfile::database::Status;
using convfile::database::Wanted;

namespace {

void ShowDriverMissing() {
    const auto text = [](TextId id) { return tsk::String(LoadText(id).c_str()); };
    MessageBoxWithLink(nullptr, text(TextId::Attention), text(TextId::DriverMissing),
                       text(TextId::DriverLinkLabel), text(TextId::DriverLinkTarget));
}

} // namespace

CDBDataProviderLcm::CDBDataProviderLcm() = default;
CDBDataProviderLcm::CDBDataProviderLcm(const CDBDataProviderLcm&) = default;
CDBDataProviderLcm& CDBDataProviderLcm::operator=(const CDBDataProviderLcm&) = default;

// A caller that disconnects before ends the thread's use twice, on purpose: hosts start COM once
// more for that.
CDBDataProviderLcm::~CDBDataProviderLcm() {
    Disconnect();
    recordset_.reset();
    connection_.reset();
}

bool CDBDataProviderLcm::Connect(const char* databasePath, bool) {
    if (convfile::database::StartEngine() < 0)
        return false;
    connection_ = convfile::database::NewConnection();
    if (!connection_ || !OpenConnection(databasePath))
        return false;
    recordset_ = convfile::database::NewRecordset();
    return recordset_ != nullptr;
}

/// Tries the connection first: only a failure there is told, and only then is it opened for use.
bool CDBDataProviderLcm::OpenConnection(const std::string& path) {
    if (connection_->Probe(path) < 0) {
        ShowDriverMissing();
        return false;
    }
    if (connection_->Close() < 0)
        return false;
    connection_->Open(path);
    return true;
}

void CDBDataProviderLcm::Disconnect() {
    convfile::database::StopEngine();
}

bool CDBDataProviderLcm::CreateQuery(const std::string& head, const std::string& tail) {
    try {
        RefillWork();
        return RunQuery(head, tail);
    } catch (...) {
        return false;
    }
}

bool CDBDataProviderLcm::GenerateQuery(const wchar_t* sql) {
    try {
        RefillWork();
        return recordset_ && connection_ && recordset_->Open(sql, *connection_);
    } catch (...) {
        return false;
    }
}

std::int32_t CDBDataProviderLcm::DoGetRows(std::int32_t fieldCount) {
    if (!recordset_)
        return convfile::database::kNoInterface;
    const std::size_t before = rows_.size();
    const Status status = FetchRows(fieldCount, rows_);
    if (rows_.size() == before)
        recordset_->RaiseNoRow();
    return status;
}

std::string CDBDataProviderLcm::ReadData(const std::string& head, const std::string& tail,
                                         std::int32_t fieldCount) {
    try {
        if (!CreateQuery(head, tail))
            return {};
        DoGetRows(fieldCount);
        return rows_.empty() ? std::string() : rows_.front();
    } catch (...) {
        return {};
    }
}

bool CDBDataProviderLcm::ReadData(const std::string& head, const std::string& tail,
                                  std::int32_t fieldCount, std::vector<std::string>* out) {
    try {
        if (!CreateQuery(head, tail))
            return false;
        DoGetRows(fieldCount);
        out->insert(out->end(), rows_.begin(), rows_.begin() + lastRow_ + 1);
        return true;
    } catch (...) {
        return false;
    }
}

std::string CDBDataProviderLcm::ReadFirst(std::string_view head, std::string_view tail,
                                          std::int32_t fieldCount) {
    std::string line;
    if (RunQuery(head, tail) && recordset_->NextRow(Wanted::One))
        AppendRow(fieldCount, line);
    return line;
}

bool CDBDataProviderLcm::ReadRows(std::string_view head, std::string_view tail,
                                  std::int32_t fieldCount, std::vector<std::string>& out) {
    const std::size_t before = out.size();
    if (RunQuery(head, tail))
        FetchRows(fieldCount, out);
    return out.size() > before;
}

/// The one recordset serves query after query: it is closed before each, which fails before the
/// first.
bool CDBDataProviderLcm::RunQuery(std::string_view head, std::string_view tail) {
    if (!recordset_ || !connection_)
        return false;
    std::string sql;
    sql.reserve(head.size() + tail.size());
    sql.append(head).append(tail);
    try {
        recordset_->Close();
    } catch (...) { // NOLINT(bugprone-empty-catch): it was not open
    }
    rows_.clear();
    return recordset_->Open(sql, *connection_);
}

Status CDBDataProviderLcm::FetchRows(std::int32_t fieldCount, std::vector<std::string>& rows) {
    Status status = convfile::database::kOk;
    lastRow_ = -1;
    while (recordset_->NextRow(Wanted::All)) {
        status = AppendRow(fieldCount, rows.emplace_back());
        ++lastRow_;
    }
    return status;
}

Status CDBDataProviderLcm::AppendRow(std::int32_t fieldCount, std::string& line) {
    Status status = convfile::database::kOk;
    for (std::int32_t field = 0; field < fieldCount; ++field) {
        status = recordset_->AppendField(field, line);
        line += '\t';
    }
    return status;
}

void CDBDataProviderLcm::RefillWork() {
    if (connection_)
        connection_->RefillWork();
}

bool CDBDataProviderLcm::WasAtFault() const {
    return recordset_ && recordset_->WasAtFault();
}

std::vector<std::string> CDBDataProviderLcm::Oddities() const {
    return connection_ ? connection_->Oddities() : std::vector<std::string>();
}

std::string CDBDataProviderLcm::Problem() const {
    const std::string problem = connection_ ? connection_->Problem() : std::string();
    return problem.empty() ? "databases cannot be read: their driver does not start" : problem;
}
