#include "memory/LinkTimeHost.h"

#include "host/ConvCod.h"
#include "host/Dialogs.h"
#include "host/Messages.h"
#include "routines/TskString.h"

#include <map>
#include <memory>
#include <new>
#include <string>
#include <utility>

#if defined(_WIN32)
#include <windows.h>
#endif

namespace convfile::memory {
namespace {

/// What this thread's conversions are answered, and what they showed.
struct ThreadState {
    DialogAnswer answer;
    DialogCall call;
    std::vector<Message> messages;
    CodeTable codes;
    int codeTables = 0;
};

#if defined(_WIN32)

/// What a thread_local would do. The destructor of one goes by a key of winpthreads, which loses
/// count of its readers where two threads end at once, and then waits for one of them for ever when
/// the process ends.
class ThreadStates {
public:
    ThreadStates() : index_(FlsAlloc(&End)) {}
    ThreadStates(const ThreadStates&) = delete;
    ThreadStates& operator=(const ThreadStates&) = delete;
    ~ThreadStates() { FlsFree(index_); }

    ThreadState& OfThisThread() {
        if (void* const state = FlsGetValue(index_))
            return *static_cast<ThreadState*>(state);
        auto state = std::make_unique<ThreadState>();
        if (FlsSetValue(index_, state.get()) == 0)
            throw std::bad_alloc();
        return *state.release();
    }

private:
    static void WINAPI End(void* state) { delete static_cast<ThreadState*>(state); }

    DWORD index_;
};

ThreadState& State() {
    static ThreadStates states;
    return states.OfThisThread();
}

#else

ThreadState& State() {
    thread_local ThreadState state;
    return state;
}

#endif

} // namespace

void AnswerDialogs(DialogAnswer answer) {
    State().answer = std::move(answer);
}

DialogCall TakeDialogCall() {
    return std::exchange(State().call, {});
}

std::vector<Message> TakeMessages() {
    return std::exchange(State().messages, {});
}

void UseCodeTable(CodeTable table) {
    State().codes = std::move(table);
}

int LiveCodeTables() {
    return State().codeTables;
}

} // namespace convfile::memory

using convfile::memory::State;

bool FInpNomeFileConvNoTopcon(std::string& fileName, int& formatCode, bool option) {
    auto& state = State();
    state.call.formatCodeBefore = formatCode;
    state.call.option = option;
    ++state.call.count;
    fileName = state.answer.fileName;
    formatCode = state.answer.formatCode;
    return state.answer.confirmed;
}

bool FInpNomeFileConvInCorv(std::string& fileName, int dialogMode) {
    auto& state = State();
    state.call.dialogMode = dialogMode;
    ++state.call.count;
    fileName = state.answer.fileName;
    return state.answer.confirmed;
}

void MessageBoxOkExclam(HWND, const std::string& text, const std::string& title) {
    State().messages.push_back({.title = title, .text = text});
}

void MessageBoxWithLink(HWND, const tsk::String& title, const tsk::String& message,
                        const tsk::String& linkLabel, const tsk::String& linkTarget) {
    State().messages.push_back({.title = title.CStr(),
                                .text = message.CStr(),
                                .linkLabel = linkLabel.CStr(),
                                .linkTarget = linkTarget.CStr(),
                                .hasLink = true});
}

struct CConvCod::Table : convfile::memory::CodeTable {
    Table() : CodeTable(State().codes) { ++State().codeTables; }
    Table(const Table&) = delete;
    Table& operator=(const Table&) = delete;
    ~Table() { --State().codeTables; }

    /// What is stored for the code; the code itself where there is nothing else.
    const std::string& Answer(const std::map<std::string, std::string>& texts,
                              const std::string& code) {
        if (texts.empty()) // nearly always
            return code;
        const auto found = texts.find(code);
        return found == texts.end() ? code : answer = found->second;
    }

    std::string answer; ///< of the last question only, as hosts may keep it
};

CConvCod::CConvCod() : table_(new Table) {}
CConvCod::~CConvCod() {
    delete table_;
}
const std::string& CConvCod::CodeConvertito(const std::string& code) {
    return table_->Answer(table_->pointCodes, code);
}
const std::string& CConvCod::IdenConvertito(const std::string& code) {
    return table_->Answer(table_->stationIdentifiers, code);
}
std::string CConvCod::ModalitaConver(const std::string& code) {
    table_->answer.clear();
    if (table_->drawingAttributes.empty()) // nearly always
        return {};
    const auto found = table_->drawingAttributes.find(code);
    return found == table_->drawingAttributes.end() ? std::string() : found->second;
}
bool CConvCod::GetModoConver() const {
    return table_->conversionMode;
}
