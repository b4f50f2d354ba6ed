#include "tests/support/AdoStandIn.h"

#include <utility>

namespace convfile::test {

namespace {

constexpr GUID Identifier(unsigned long first) {
    return {first, 0, 0x10, {0x80, 0, 0, 0xAA, 0, 0x6D, 0x2E, 0xA4}};
}

std::string Narrow(const wchar_t* text) {
    if (!text)
        return "null";
    std::string utf8(3 * std::wcslen(text) + 1, '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8.data(), static_cast<int>(utf8.size()), nullptr,
                        nullptr);
    return utf8.c_str();
}

std::string Narrow(const VARIANT& value) {
    const bool missing = value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND;
    return missing ? "missing" : "type " + std::to_string(value.vt);
}

/// The object's table of functions.
constexpr std::size_t kPlaces = 64;
using Functions = std::array<void*, kPlaces>;

} // namespace

/// As COM sees it: a pointer to a table of functions.
struct AdoStandIn::Object {
    const void* const* functions;
    AdoStandIn* owner;
    const char* name;
    IID interfaceIdentifier;
    ULONG references = 1;
    bool open = false;
    bool atEnd = false; ///< all rows of the answer were fetched
    std::string source{};

    HRESULT Called(const std::string& call) const {
        return owner->Called(std::string(name) + call);
    }

    static HRESULT STDMETHODCALLTYPE QueryInterface(Object* self, const IID* identifier,
                                                    void** object) {
        const bool has = *identifier == IID_IUnknown || *identifier == IID_IDispatch ||
                         *identifier == self->interfaceIdentifier;
        *object = has ? self : nullptr;
        self->references += has ? 1 : 0;
        return has ? S_OK : E_NOINTERFACE;
    }
    static ULONG STDMETHODCALLTYPE AddRef(Object* self) { return ++self->references; }
    static ULONG STDMETHODCALLTYPE Release(Object* self) {
        const ULONG left = --self->references;
        if (left == 0) {
            APTTYPE type{};
            APTTYPEQUALIFIER qualifier{};
            const bool ended = CoGetApartmentType(&type, &qualifier) == CO_E_NOTINITIALIZED;
            self->Called(ended ? " released after the end of COM" : " released");
            --self->owner->objects_;
            delete self;
        }
        return left;
    }
    static HRESULT STDMETHODCALLTYPE Unexpected(Object* self) {
        self->Called(" in a place that nobody uses");
        return E_NOTIMPL;
    }

    static HRESULT STDMETHODCALLTYPE Close(Object* self) {
        const HRESULT status = self->Called(" close");
        const bool wasOpen = std::exchange(self->open, false);
        return wasOpen ? status : static_cast<HRESULT>(0x800A0E78); // the object is closed
    }

    static HRESULT STDMETHODCALLTYPE OpenConnection(Object* self, BSTR text, BSTR user,
                                                    BSTR password, long options) {
        const HRESULT status =
            self->Called(" open " + std::to_string(options) + " [" + Narrow(text) + "] [" +
                         Narrow(user) + "] [" + Narrow(password) + "]");
        self->open = SUCCEEDED(status);
        return status;
    }

    static HRESULT STDMETHODCALLTYPE SetSource(Object* self, BSTR source) {
        self->source = Narrow(source);
        return self->Called(" source " + self->source);
    }
    static HRESULT STDMETHODCALLTYPE SetActiveConnection(Object* self, Object* connection) {
        return self->Called(std::string(" over ") + (connection ? connection->name : "null"));
    }
    static HRESULT STDMETHODCALLTYPE OpenRecordset(Object* self, VARIANT source, VARIANT connection,
                                                   long cursor, long lock, long options) {
        HRESULT status = self->Called(" open " + Narrow(source) + " " + Narrow(connection) + " " +
                                      std::to_string(cursor) + " " + std::to_string(lock) + " " +
                                      std::to_string(options));
        if (SUCCEEDED(status))
            status = self->owner->answer(self->source).status;
        self->open = SUCCEEDED(status);
        self->atEnd = false;
        return status;
    }
    static HRESULT STDMETHODCALLTYPE GetRows(Object* self, long rows, VARIANT start, VARIANT fields,
                                             VARIANT* result) {
        const HRESULT status = self->Called(" rows " + std::to_string(rows) + " " + Narrow(start) +
                                            " " + Narrow(fields));
        if (FAILED(status))
            return status;
        Answer answer = self->owner->answer(self->source);
        if (std::exchange(self->atEnd, true) || answer.rows.empty())
            return static_cast<HRESULT>(0x800A0BCD); // no current record
        SAFEARRAYBOUND bounds[] = {{answer.fields, 0}, {static_cast<ULONG>(answer.rows.size()), 0}};
        result->vt = VT_ARRAY | VT_VARIANT;
        result->parray = SafeArrayCreate(VT_VARIANT, 2, bounds);
        LONG position[] = {0, 0}; // field, row
        for (auto& row : answer.rows) {
            for (position[0] = 0; position[0] < static_cast<LONG>(answer.fields); ++position[0])
                SafeArrayPutElement(result->parray, position,
                                    &row[static_cast<std::size_t>(position[0])]);
            ++position[1];
        }
        return S_OK;
    }

    template <class... Own>
    static Functions Table(const std::array<std::size_t, sizeof...(Own)>& places, Own*... own) {
        Functions functions;
        functions.fill(reinterpret_cast<void*>(&Unexpected));
        functions[0] = reinterpret_cast<void*>(&QueryInterface);
        functions[1] = reinterpret_cast<void*>(&AddRef);
        functions[2] = reinterpret_cast<void*>(&Release);
        const std::size_t* place = places.data();
        ((functions.at(*place++) = reinterpret_cast<void*>(own)), ...);
        return functions;
    }
    static Functions ConnectionTable() { return Table({15, 20}, &Close, &OpenConnection); }
    static Functions RecordsetTable() {
        return Table({10, 28, 32, 34, 40}, &SetActiveConnection, &SetSource, &Close, &GetRows,
                     &OpenRecordset);
    }
};

/// Makes the objects of one class; lives as long as the stand-in, whoever counts references to it.
class AdoStandIn::Factory final : public IClassFactory {
public:
    Factory(AdoStandIn& owner, const char* name, unsigned long classNumber,
            unsigned long interfaceNumber, Functions functions)
        : owner_(owner),
          name_(name),
          interface_(Identifier(interfaceNumber)),
          functions_(functions) {
        const CLSID identifier = Identifier(classNumber);
        CoRegisterClassObject(identifier, this, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie_);
    }
    virtual ~Factory() { CoRevokeClassObject(cookie_); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID identifier, void** object) override {
        const bool has = identifier == IID_IUnknown || identifier == IID_IClassFactory;
        *object = has ? this : nullptr;
        return has ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID identifier, void** object) override {
        *object = nullptr;
        const HRESULT status = owner_.Called(std::string("create ") + name_);
        if (FAILED(status))
            return status;
        ++owner_.objects_;
        auto* const made = new Object{functions_.data(), &owner_, name_, interface_};
        const HRESULT found = Object::QueryInterface(made, &identifier, object);
        Object::Release(made);
        return found;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

private:
    AdoStandIn& owner_;
    const char* name_;
    IID interface_;
    Functions functions_;
    DWORD cookie_ = 0;
};

AdoStandIn::AdoStandIn() {
    for (int i = 0; i < 3; ++i)
        CoInitialize(nullptr);
    factories_ = {
        std::make_unique<Factory>(*this, "connection", 0x514, 0x550, Object::ConnectionTable()),
        std::make_unique<Factory>(*this, "recordset", 0x535, 0x556, Object::RecordsetTable())};
}

// What is left of COM on this thread ends with the thread.
AdoStandIn::~AdoStandIn() = default;

HRESULT AdoStandIn::Called(const std::string& call) {
    calls_.push_back(call);
    for (const auto& [beginning, status] : failures) {
        if (call.starts_with(beginning))
            return status;
    }
    return S_OK;
}

std::vector<std::string> AdoStandIn::TakeCalls() {
    return std::exchange(calls_, {});
}

namespace {

_variant_t VariantOf(access::Type type, const access::Value& value) {
    if (const auto* const whole = std::get_if<std::int64_t>(&value)) {
        if (type == access::Type::Boolean)
            return *whole != 0;
        return static_cast<long>(*whole);
    }
    if (const auto* const real = std::get_if<double>(&value))
        return *real;
    if (const auto* const text = std::get_if<std::string>(&value)) {
        const auto size = static_cast<int>(text->size());
        std::wstring wide(text->size(), L'\0');
        const int length = MultiByteToWideChar(CP_UTF8, 0, text->data(), size, wide.data(), size);
        wide.resize(static_cast<std::size_t>(length));
        return wide.c_str();
    }
    _variant_t null;
    null.vt = VT_NULL;
    return null;
}

} // namespace

std::function<AdoStandIn::Answer(const std::string&)>
AnswerFrom(std::vector<access::Table> tables) {
    return [tables = std::move(tables)](const std::string& sql) {
        AdoStandIn::Answer answer;
        TableAnswer found;
        if (!RunSelect(tables, sql, found)) {
            answer.status = static_cast<HRESULT>(0x80040E14); // an error in the statement
            return answer;
        }
        answer.fields = static_cast<ULONG>(found.types.size());
        for (const auto& row : found.rows) {
            auto& variants = answer.rows.emplace_back();
            for (std::size_t i = 0; i < row.size(); ++i)
                variants.push_back(VariantOf(found.types[i], row[i]));
        }
        return answer;
    };
}

} // namespace convfile::test
