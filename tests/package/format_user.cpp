// Reads a format of its own, one that is not in the library, with the library's line reader and
// routines; and says which of the library's formats a file's extension stands for.

#include "entry/FormatTable.h"
#include "framework/ConvFileBase.h"
#include "memory/FieldBook.h"
#include "routines/FileName.h"
#include "routines/Numbers.h"
#include "routines/Text.h"

#include <iostream>

namespace {

/// Lines of a name and a slope distance, separated by a semicolon; all else on a line is left out.
class NamesAndDistances final : public CConvFileBase {
public:
    using CConvFileBase::CConvFileBase;

private:
    void ProcessaRiga() override {
        std::string name;
        std::string_view rest = line_;
        std::string_view field;
        if (!CutAt(rest, ';', field))
            return;
        name = field;
        StringTrimBoth(name);
        AggiungePun(name, "", "", kNoValue, DoubleDaString(rest), 100, 0);
    }
};

} // namespace

int main(int argc, char** argv) {
    std::string file = argc > 1 ? argv[1] : "";
    convfile::memory::FieldBook book;
    if (!NamesAndDistances(book, &file).Esegui())
        return 1;
    for (int point = 0; point < book.GetPunArSize(0, 0); ++point)
        std::cout << book.GetPunAt(0, 0, point)->GetNome() << ' '
                  << StringDaDouble(book.GetPunAt(0, 0, point)->GetDiIn(), 0, 3) << '\n';

    EstraiEstensFile(file);
    StringToUpper(file);
    const Format* const format = FormatByExtension(file);
    std::cout << (format ? format->name : "none") << " of " << Formats().size() << " formats\n";
}
