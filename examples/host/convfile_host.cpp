// The library convfile_host of this host: all that convfile calls by name, the dialogs, the message
// boxes and the code table. It takes the place of the one that convfile was linked against, so it
// has everything that host/Dialogs.h, host/Messages.h and host/ConvCod.h declare, and needs nothing
// from convfile: tsk::String is a header alone.

#include "dialogs.h"
#include "printable.h"

#include "host/ConvCod.h"
#include "host/Dialogs.h"
#include "host/Messages.h"
#include "routines/TskString.h"

#include <iostream>
#include <map>
#include <utility>

namespace {

/// What the user picked: one for each thread, because each may run a conversion of its own.
struct Picked {
    std::string file;
    int formatCode = 0;
};
thread_local Picked picked;

} // namespace

void example::PickFile(std::string name, int formatCode) {
    picked = {std::move(name), formatCode};
}

// A host with windows opens its file dialog in these two. False: the user cancelled.

bool FInpNomeFileConvNoTopcon(std::string& fileName, int& formatCode, bool) {
    fileName = picked.file;
    formatCode = picked.formatCode;
    return !fileName.empty();
}

/// Files as downloaded: the extension says the format, nobody asks for a code.
bool FInpNomeFileConvInCorv(std::string& fileName, int) {
    fileName = picked.file;
    return !fileName.empty();
}

// Messages come in the thread that converts; a host that may open windows in one thread only has to
// hand them over to that one.

void MessageBoxOkExclam(HWND, const std::string& text, const std::string& title) {
    std::cerr << example::Printable(title) << ": " << example::Printable(text) << '\n';
}

void MessageBoxWithLink(HWND, const tsk::String& title, const tsk::String& message,
                        const tsk::String& linkLabel, const tsk::String& linkTarget) {
    std::cerr << example::Printable(title.CStr()) << ": " << example::Printable(message.CStr())
              << ' ' << example::Printable(linkLabel.CStr()) << " <"
              << example::Printable(linkTarget.CStr()) << ">\n";
}

/// The code table. A host reads it from its settings; this one translates the codes of two features
/// and of one kind of station, and keeps every other code as the surveyor keyed it in.
struct CConvCod::Table {
    struct Feature {
        std::string pointCode;
        std::string drawingAttribute;
    };
    std::map<std::string, Feature> features = {{"KERB", {"210", "ROAD"}},
                                               {"HEDGE", {"310", "VEGETATION"}}};
    std::map<std::string, std::string> stationIdentifiers = {{"PILLAR", "1"}};
};

CConvCod::CConvCod() : table_(new Table) {}
CConvCod::~CConvCod() {
    delete table_;
}

const std::string& CConvCod::CodeConvertito(const std::string& code) {
    const auto found = table_->features.find(code);
    return found == table_->features.end() ? code : found->second.pointCode;
}
const std::string& CConvCod::IdenConvertito(const std::string& code) {
    const auto found = table_->stationIdentifiers.find(code);
    return found == table_->stationIdentifiers.end() ? code : found->second;
}
std::string CConvCod::ModalitaConver(const std::string& code) {
    const auto found = table_->features.find(code);
    return found == table_->features.end() ? std::string() : found->second.drawingAttribute;
}

/// Handed to every TrasfCodOldAlf, which does nothing in this host.
bool CConvCod::GetModoConver() const {
    return false;
}
