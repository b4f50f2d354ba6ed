#pragma once

#include <windows.h>

#include <oaidl.h>

/// The two objects of ActiveX Data Objects that are used, as far as they are: what stands between
/// the operations below keeps its place in the object's table of functions. Numbers are those
/// places, counted from 0; IDispatch has the first seven.
namespace convfile::database::ado {

// {00000514-0000-0010-8000-00AA006D2EA4} and so on: the identifiers that the platform publishes.
constexpr GUID AdoIdentifier(unsigned long first) {
    return {first, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x6D, 0x2E, 0xA4}};
}

inline constexpr CLSID kConnectionClass = AdoIdentifier(0x00000514);
inline constexpr CLSID kRecordsetClass = AdoIdentifier(0x00000535);
inline constexpr IID kConnectionInterface = AdoIdentifier(0x00000550);
inline constexpr IID kRecordsetInterface = AdoIdentifier(0x00000556);

// What Open is told.
inline constexpr long kNoOptions = 0;
inline constexpr long kUnspecifiedOptions = -1;
inline constexpr long kKeysetCursor = 1;
inline constexpr long kOptimisticLock = 3;
inline constexpr long kUnknownCommand = 8;

struct IConnection : public IDispatch {
    virtual void STDMETHODCALLTYPE Slot7() = 0;
    virtual void STDMETHODCALLTYPE Slot8() = 0;
    virtual void STDMETHODCALLTYPE Slot9() = 0;
    virtual void STDMETHODCALLTYPE Slot10() = 0;
    virtual void STDMETHODCALLTYPE Slot11() = 0;
    virtual void STDMETHODCALLTYPE Slot12() = 0;
    virtual void STDMETHODCALLTYPE Slot13() = 0;
    virtual void STDMETHODCALLTYPE Slot14() = 0;
    virtual HRESULT STDMETHODCALLTYPE Close() = 0; // 15
    virtual void STDMETHODCALLTYPE Slot16() = 0;
    virtual void STDMETHODCALLTYPE Slot17() = 0;
    virtual void STDMETHODCALLTYPE Slot18() = 0;
    virtual void STDMETHODCALLTYPE Slot19() = 0;
    virtual HRESULT STDMETHODCALLTYPE Open(BSTR connectionString, BSTR user, BSTR password,
                                           long options) = 0; // 20
};

struct IRecordset : public IDispatch {
    virtual void STDMETHODCALLTYPE Slot7() = 0;
    virtual void STDMETHODCALLTYPE Slot8() = 0;
    virtual void STDMETHODCALLTYPE Slot9() = 0;
    virtual HRESULT STDMETHODCALLTYPE SetActiveConnection(IDispatch* connection) = 0; // 10
    virtual void STDMETHODCALLTYPE Slot11() = 0;
    virtual void STDMETHODCALLTYPE Slot12() = 0;
    virtual void STDMETHODCALLTYPE Slot13() = 0;
    virtual void STDMETHODCALLTYPE Slot14() = 0;
    virtual void STDMETHODCALLTYPE Slot15() = 0;
    virtual void STDMETHODCALLTYPE Slot16() = 0;
    virtual void STDMETHODCALLTYPE Slot17() = 0;
    virtual void STDMETHODCALLTYPE Slot18() = 0;
    virtual void STDMETHODCALLTYPE Slot19() = 0;
    virtual void STDMETHODCALLTYPE Slot20() = 0;
    virtual void STDMETHODCALLTYPE Slot21() = 0;
    virtual void STDMETHODCALLTYPE Slot22() = 0;
    virtual void STDMETHODCALLTYPE Slot23() = 0;
    virtual void STDMETHODCALLTYPE Slot24() = 0;
    virtual void STDMETHODCALLTYPE Slot25() = 0;
    virtual void STDMETHODCALLTYPE Slot26() = 0;
    virtual void STDMETHODCALLTYPE Slot27() = 0;
    virtual HRESULT STDMETHODCALLTYPE SetSource(BSTR source) = 0; // 28
    virtual void STDMETHODCALLTYPE Slot29() = 0;
    virtual void STDMETHODCALLTYPE Slot30() = 0;
    virtual void STDMETHODCALLTYPE Slot31() = 0;
    virtual HRESULT STDMETHODCALLTYPE Close() = 0; // 32
    virtual void STDMETHODCALLTYPE Slot33() = 0;
    virtual HRESULT STDMETHODCALLTYPE GetRows(long rows, VARIANT start, VARIANT fields,
                                              VARIANT* result) = 0; // 34
    virtual void STDMETHODCALLTYPE Slot35() = 0;
    virtual void STDMETHODCALLTYPE Slot36() = 0;
    virtual void STDMETHODCALLTYPE Slot37() = 0;
    virtual void STDMETHODCALLTYPE Slot38() = 0;
    virtual void STDMETHODCALLTYPE Slot39() = 0;
    virtual HRESULT STDMETHODCALLTYPE Open(VARIANT source, VARIANT connection, long cursor,
                                           long lock, long options) = 0; // 40
};

} // namespace convfile::database::ado
