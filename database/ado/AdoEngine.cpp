// The engine on Windows: ActiveX Data Objects over OLE DB, with the provider of the Microsoft
// Access Database Engine. Its errors are _com_error.

#include "database/DateText.h"
#include "database/Engine.h"
#include "database/ado/AdoInterfaces.h"
#include "routines/CodePage.h"

#include <comdef.h>

#include <algorithm>
#include <array>
#include <cstdio>
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
        throw _com_error(status);
}

/// What the provider says of a statement that is at fault.
constexpr std::array kFaultsOfStatement = {
    static_cast<HRESULT>(0x80040E14), // an error in the statement
    static_cast<HRESULT>(0x80040E37), // there is no such table
    static_cast<HRESULT>(
        0x80040E10), // there is no such column: it takes the name for a parameter's
    static_cast<HRESULT>(0x80040E07), // a text is compared with a number
    static_cast<HRESULT>(0x80020005), // the same
    static_cast<HRESULT>(0x80040E57), // a number that is too large
    static_cast<HRESULT>(0x80040E0C), // there is no statement
    static_cast<HRESULT>(0x800A0BB9), // the same
};

/// What ADO says where there is no row (any more).
constexpr auto kNoRow = static_cast<HRESULT>(0x800A0BCD);

bool IsFaultOfStatement(HRESULT status) {
    return std::ranges::find(kFaultsOfStatement, status) != kFaultsOfStatement.end();
}

std::string StatusText(HRESULT status) {
    std::array<char, 16> number{};
    std::snprintf(number.data(), number.size(), "0x%08lX", static_cast<unsigned long>(status));
    return number.data();
}

/// Appends a text in the system's code page, "?" for what that lacks, as far as a field's text
/// goes. Units beyond that length cannot count: none gives less than a byte. Nor does half a unit,
/// which the text of an odd number of bytes ends in.
void AppendBytes(BSTR text, std::string& line) {
    constexpr std::size_t kMostBytesOfUnit = 4;
    std::array<char, kLongestField * kMostBytesOfUnit> bytes;
    const std::size_t most = std::min<std::size_t>(kLongestField, SysStringLen(text));
    const auto units = static_cast<int>(wcsnlen(text, most));
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

    Status Probe(const std::string& path) override {
        const HRESULT status = Open(path, ado::kNoOptions);
        if (FAILED(status))
            problem_ = "the Access Database Engine cannot open it (" + StatusText(status) + ")";
        return status;
    }
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
        RaiseFailure(recordset_->SetSource(_bstr_t(sql)));
        RaiseFailure(
            recordset_->SetActiveConnection(static_cast<AdoConnection&>(connection).Object()));
        return Found(recordset_->Open(Missing(), Missing(), ado::kKeysetCursor,
                                      ado::kOptimisticLock, ado::kUnknownCommand));
    }

    /// The first call fetches the rows that are wanted.
    bool NextRow(Wanted wanted) override {
        if ((rows_.vt & VT_ARRAY) != 0)
            ++row_;
        else if (!Fetch(wanted))
            return false;
        if (row_ <= lastRow_)
            return true;
        EndFetch();
        return false;
    }
    void RaiseNoRow() override { throw _com_error(FAILED(status_) ? status_ : kNoRow); }

    /// A field that is not there is an empty variant, whose text is empty. Numbers have a decimal
    /// point, and dates one form, whatever the user's settings say.
    Status AppendField(std::int32_t field, std::string& line) override {
        std::array<LONG, 2> position = {field, row_};
        _variant_t value;
        // Outside the answer is an empty field; a copy for which memory is short is a failure.
        if (SafeArrayGetElement(rows_.parray, position.data(), &value) == E_OUTOFMEMORY)
            throw _com_error(E_OUTOFMEMORY);
        if (value.vt == VT_DATE) {
            line += TextOfDate(value.date);
            return kOk;
        }
        _variant_t text;
        const HRESULT status =
            VariantChangeTypeEx(&text, &value, kPointLocale, VARIANT_NOUSEROVERRIDE, VT_BSTR);
        if (status == E_OUTOFMEMORY)
            throw _com_error(status);
        if (SUCCEEDED(status) && text.bstrVal)
            AppendBytes(text.bstrVal, line);
        return status;
    }

private:
    /// True where an operation gave what was asked of it, false where the statement is at fault or
    /// there is no row.
    bool Found(HRESULT status) {
        status_ = status;
        atFault_ = IsFaultOfStatement(status);
        if (status != kNoRow && !atFault_)
            RaiseFailure(status);
        return SUCCEEDED(status);
    }

    bool Fetch(Wanted wanted) {
        if (!Found(recordset_->GetRows(static_cast<long>(wanted), Missing(), Missing(), &rows_)))
            return false;
        VARTYPE type = VT_EMPTY;
        LONG last = -1;
        const bool fields = (rows_.vt & VT_ARRAY) != 0 &&
                            SUCCEEDED(SafeArrayGetVartype(rows_.parray, &type)) &&
                            type == VT_VARIANT && SafeArrayGetDim(rows_.parray) == 2;
        RaiseFailure(fields ? SafeArrayGetUBound(rows_.parray, 2, &last) : E_UNEXPECTED);
        row_ = 0;
        lastRow_ = last;
        return true;
    }
    void EndFetch() { rows_.Clear(); }

    RecordsetPointer recordset_;
    _variant_t rows_; ///< indexed by field and row
    LONG row_ = 0;
    LONG lastRow_ = -1;
    HRESULT status_ = S_OK; ///< of the last operation that asked for rows
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

std::string PlatformErrorText() {
    try {
        throw;
    } catch (const _com_error& error) {
        return error.Error() == E_OUTOFMEMORY
                   ? "not enough memory"
                   : "the Access Database Engine fails (" + StatusText(error.Error()) + ")";
    } catch (...) {
        return {};
    }
}

std::shared_ptr<Recordset> NewRecordset() {
    auto object = Create<RecordsetPointer>(ado::kRecordsetClass, ado::kRecordsetInterface);
    return object ? std::make_shared<AdoRecordset>(std::move(object)) : nullptr;
}

} // namespace convfile::database
