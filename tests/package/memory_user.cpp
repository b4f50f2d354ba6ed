// Converts a GSI file with a converter of the library and counts its points in the host in memory.

#include "converters/ConvFileGSI.h"
#include "memory/FieldBook.h"
#include "memory/LinkTimeHost.h"

#include <iostream>

int main(int argc, char** argv) {
    std::string file = argc > 1 ? argv[1] : "";
    convfile::memory::FieldBook book;
    const bool converted = CConvFileGSI(book, &file).Esegui();
    int points = 0;
    for (int station = 0; station < book.GetStaArSize(0); ++station)
        points += book.GetPunArSize(0, station);
    std::cout << points << " points, " << convfile::memory::TakeMessages().size() << " message\n";
    return converted ? 0 : 1;
}
