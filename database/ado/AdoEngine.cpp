// The engine on Windows: ActiveX Data Objects over OLE DB, with the provider of the Microsoft
// Access Database Engine. Its errors are _com_error.

#include "database/Engine.h"
#include "database/ado/AdoInterfaces.h"
#include "routines/CodePage.h"

#include <comdef.h>

#include <algorithm>
#include <array>
#include <cwchar>
#include <utility>

namespace convfile::database {

namespace {

using ConnectionPointer = _com_ptr_t<_com_IIID<ado::IConnection, &ado::kConnectionInterface>>;
using RecordsetPointer = _com_ptr_t<_com_IIID<ado::IRecordset, &ado::kRecordsetInterface>>;

/// One that writes numbers with a decimal point.
constexpr LCID kPointLocale = MAKELCID(MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), SORT_DEFAULT);

void RaiseFailure(HRESULT status) {
    if (FAILED(status))
        _com_issue_error(status);
}

/// Appends a text in the system's code page, "?" for what that lacks, as far as a field's text
/// goes. Units beyond that length cannot count: none gives less than a byte.
void AppendBytes(BSTR text, std::string& line) {
    constexpr std::size_t kMostBytesOfUnit = 4;
    std::array<char, kLongestField * kMostBytesOfUnit> bytes;
    const auto units = static_cast<int>(wcsnlen(text, kLongestField));
    const DWORD flags = GetACP() == CP_UTF8 ? 0 : WC_NO_BEST_FIT_CHARS;
    const int length = WideCharToMultiByte(CP_ACP, flags, text, units, bytes.data(),
                                           static_cast<int>(bytes.size()), nullptr, nullptr);
    line.append(bytes.data(), std::min(kLongestField, static_cast<std::size_t>(length)));
}

/// An argument that is left out.
_variant_t Missing() {
    return {DISP_E_PARAMNOTFOUND, VT_ERROR};
}

/// The path stands in the text as it is: the provider reads it up to the ";".
_bstr_t ConnectionText(const std::string& path) {
    return WideFromSystem("Provider=Microsoft.ACE.OLEDB.12.0; Data Source=" + path + ";").c_str();
}

template <typename Pointer>
Pointer Create(const CLSID& classIdentifier, const IID& interfaceIdentifier) {
    typename Pointer::Interface* object = nullptr;
    const HRESULT status = CoCreateInstance(classIdentifier, nullptr, CLSCTX_ALL,
                                            interfaceIdentifier, reinterpret_cast<void**>(&object));
    return SUCCEEDED(status) ? Pointer(object, false) : Pointer();
}

class AdoConnection final : public Connection {
public:
    explicit AdoConnection(ConnectionPointer connection) : connection_(std::move(connection)) {}

    Status Probe(const std::string& path) override { return Open(path, ado::kNoOptions); }
    Status Close() override { return connection_->Close(); }
    void Open(const std::string& path) override {
        RaiseFailure(Open(path, ado::kUnspecifiedOptions));
    }

    IDispatch* Object() const { return connection_.GetInterfacePtr(); }

private:
    HRESULT Open(const std::string& path, long options) {
        const _bstr_t nobody(L"");
        return connection_->Open(ConnectionText(path), nobody, nobody, options);
    }

    ConnectionPointer connection_;
};

class AdoRecordset final : public Recordset {
public:
    explicit AdoRecordset(RecordsetPointer recordset) : recordset_(std::move(recordset)) {}

    void Close() override {
        EndFetch();
        RaiseFailure(recordset_->Close());
    }

    bool Open(const std::string& sql, Connection& connection) override {
        return Open(WideFromSystem(sql).c_str(), connection);
    }
    bool Open(const wchar_t* sql, Connection& connection) override {
        EndFetch();
        IDispatch* const object = static_cast<AdoConnection&>(connection).Object();
        return SUCCEEDED(recordset_->SetSource(_bstr_t(sql))) &&
               SUCCEEDED(recordset_->SetActiveConnection(object)) &&
               SUCCEEDED(recordset_->Open(Missing(), Missing(), ado::kKeysetCursor,
                                          ado::kOptimisticLock, ado::kUnknownCommand));
    }

    /// The first call fetches all rows that are left.
    bool NextRow() override {
        if ((rows_.vt & VT_ARRAY) == 0)
            Fetch();
        else
            ++row_;
        if (row_ <= lastRow_)
            return true;
        EndFetch();
        return false;
    }

    /// A field that is not there is an empty variant, whose text is empty. Numbers have a decimal
    /// point, whatever the user's settings say.
    Status AppendField(std::int32_t field, std::string& line) override {
        std::array<LONG, 2> position = {field, row_};
        _variant_t value;
        SafeArrayGetElement(rows_.parray, position.data(), &value);
        _variant_t text;
        const HRESULT status =
            VariantChangeTypeEx(&text, &value, kPointLocale, VARIANT_NOUSEROVERRIDE, VT_BSTR);
        if (SUCCEEDED(status) && text.bstrVal)
            AppendBytes(text.bstrVal, line);
        return status;
    }

private:
    void Fetch() {
        RaiseFailure(recordset_->GetRows(ado::kAllRowsLeft, Missing(), Missing(), &rows_));
        VARTYPE type = VT_EMPTY;
        LONG last = -1;
        const bool fields = (rows_.vt & VT_ARRAY) != 0 &&
                            SUCCEEDED(SafeArrayGetVartype(rows_.parray, &type)) &&
                            type == VT_VARIANT && SafeArrayGetDim(rows_.parray) == 2;
        RaiseFailure(fields ? SafeArrayGetUBound(rows_.parray, 2, &last) : E_UNEXPECTED);
        row_ = 0;
        lastRow_ = last;
    }
    void EndFetch() { rows_.Clear(); }

    RecordsetPointer recordset_;
    _variant_t rows_; ///< indexed by field and row
    LONG row_ = 0;
    LONG lastRow_ = -1;
};

} // namespace

Status StartEngine() {
    return CoInitialize(nullptr);
}

void StopEngine() {
    CoUninitialize();
}

std::shared_ptr<Connection> NewConnection() {
    auto object = Create<ConnectionPointer>(ado::kConnectionClass, ado::kConnectionInterface);
    return object ? std::make_shared<AdoConnection>(std::move(object)) : nullptr;
}

std::shared_ptr<Recordset> NewRecordset() {
    auto object = Create<RecordsetPointer>(ado::kRecordsetClass, ado::kRecordsetInterface);
    return object ? std::make_shared<AdoRecordset>(std::move(object)) : nullptr;
}

} // namespace convfile::database
