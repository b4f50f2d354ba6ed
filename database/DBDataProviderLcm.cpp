#include "database/DBDataProviderLcm.h"

#include "database/Engine.h"
#include "host/Messages.h"
#include "resources/Texts.h"
#include "routines/TskString.h"

using convfile::database::Status;

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

// A caller that disconnects before ends the thread's use twice, as it always did.
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

/// The one recordset serves query after query: it is closed before each, which fails before the
/// first.
bool CDBDataProviderLcm::CreateQuery(const std::string& head, const std::string& tail) {
    const std::string sql = head + tail;
    try {
        if (recordset_)
            recordset_->Close();
    } catch (...) { // NOLINT(bugprone-empty-catch): it was not open
    }
    rows_.clear();
    return OpenQuery(sql);
}

bool CDBDataProviderLcm::GenerateQuery(const wchar_t* sql) {
    return OpenQuery(sql);
}

template <typename Sql>
bool CDBDataProviderLcm::OpenQuery(const Sql& sql) {
    if (!recordset_ || !connection_)
        return false;
    try {
        return recordset_->Open(sql, *connection_);
    } catch (...) {
        return false;
    }
}

std::int32_t CDBDataProviderLcm::DoGetRows(std::int32_t fieldCount) {
    if (!recordset_)
        return convfile::database::kNoInterface;
    Status status = convfile::database::kOk;
    lastRow_ = -1;
    while (recordset_->NextRow()) {
        std::string& line = rows_.emplace_back();
        for (std::int32_t field = 0; field < fieldCount; ++field) {
            status = recordset_->AppendField(field, line);
            line += '\t';
        }
        ++lastRow_;
    }
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
