// A host program: converts one file into its own field book and prints that.
//
//   example_host FILE CODE            the format of that code
//   example_host --download FILE      the format by the file's extension
//
// Prints one record a line, its values separated by tabs, "-" for one that is absent; lengths in
// metres, angles in gon, texts in UTF-8:
//
//   job          name, operator, instrument, date
//   station      name, identifier, instrument height, x, y, z
//   point        name, code, target height, slope distance, zenith angle, horizontal angle, note
//   orientation  name, x, y, z
//
// Exit status: 0 converted, 1 not converted, 2 wrong usage.

#include "dialogs.h"
#include "field_book.h"
#include "other_documents.h"
#include "printable.h"

#include "entry/ConvEntry.h"

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN // else AddJob is a macro
#include <windows.h>

#include <objbase.h>
#endif

#include <array>
#include <charconv>
#include <iostream>
#include <string>
#include <string_view>

namespace {

constexpr int kConverted = 0;
constexpr int kNotConverted = 1;
constexpr int kWrongUsage = 2;

constexpr int kLengthDecimals = 4;
constexpr int kAngleDecimals = 5;

std::string Text(const std::string& windows1252) {
    return windows1252.empty() ? "-" : example::Printable(windows1252);
}

/// Always with a decimal point, whatever the locale.
std::string Number(double value, int decimals) {
    if (!IsPresent(value))
        return "-";
    std::array<char, 400> digits; // room for the largest number there is
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                   std::chars_format::fixed, decimals);
    return {digits.data(), end.ptr};
}

std::string Length(double metres) {
    return Number(metres, kLengthDecimals);
}
std::string Angle(double gon) {
    return Number(gon, kAngleDecimals);
}

template <class Entity>
std::string Place(const Entity& entity) {
    return Length(entity.x) + '\t' + Length(entity.y) + '\t' + Length(entity.z);
}

void Print(const example::Station& station) {
    std::cout << "station\t" << Text(station.name) << '\t' << Text(station.identifier) << '\t'
              << Length(station.instrumentHeight) << '\t' << Place(station) << '\n';
    for (const auto& point : station.points) {
        std::cout << "point\t" << Text(point->name) << '\t' << Text(point->code) << '\t'
                  << Length(point->targetHeight) << '\t' << Length(point->slopeDistance) << '\t'
                  << Angle(point->zenithAngle) << '\t' << Angle(point->horizontalAngle) << '\t'
                  << Text(point->note) << '\n';
    }
}

void Print(const example::FieldBook& book) {
    for (const example::Job& job : book.jobs) {
        std::cout << "job\t" << Text(job.name) << '\t' << Text(job.operatorName) << '\t'
                  << Text(job.instrument) << '\t' << Text(job.date) << '\n';
        for (const example::Station& station : job.stations)
            Print(station);
    }
    for (const example::OrientationPoint& point : book.orientationPoints)
        std::cout << "orientation\t" << Text(point.name) << '\t' << Place(point) << '\n';
}

/// The program has no dialog: it tells the dialogs of its convfile_host what they will answer. The
/// two parameters that are only passed through to the dialogs are of no use to this host.
bool Convert(example::FieldBook& book, const std::string& file, int formatCode) {
    example::PickFile(file, formatCode);
    example::NoCadastralDocument document;
    return FConvFileNoTopcon(book, document, false);
}

/// The import of a job database ends its use of COM before it lets go of the database driver's
/// objects: the host keeps COM alive on this thread.
void KeepDatabaseDriver() {
#if defined(_WIN32)
    CoInitialize(nullptr);
#endif
}

bool ConvertDownload(example::FieldBook& book, const std::string& file) {
    example::PickFile(file, 0);
    KeepDatabaseDriver();
    example::NoPointLibrary pointLibrary;
    example::NoDrawing drawing;
    return FConvFileDaStrum(book, 0, pointLibrary, drawing);
}

bool ReadCode(std::string_view text, int& code) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), code);
    return error == std::errc() && end == text.data() + text.size();
}

} // namespace

int main(int argc, char** argv) {
    const bool download = argc == 3 && std::string_view(argv[1]) == "--download";
    int formatCode = 0;
    if (argc != 3 || (!download && !ReadCode(argv[2], formatCode))) {
        std::cerr << "Usage: example_host FILE CODE\n"
                     "       example_host --download FILE\n";
        return kWrongUsage;
    }
    const std::string file = download ? argv[2] : argv[1];

    example::FieldBook book;
    const bool converted = download ? ConvertDownload(book, file) : Convert(book, file, formatCode);
    if (!converted) {
        std::cerr << "example_host: " << file << " cannot be opened, or no format is for it\n";
        return kNotConverted;
    }
    Print(book);
    std::cout.flush();
    return std::cout ? kConverted : kNotConverted;
}
