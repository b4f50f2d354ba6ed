// Converts whatever bytes it is given in one format. A file that could be opened must be converted,
// whatever is in it (but for a damaged database, which is declined whole), also into a field book
// that declines records and from a stream that fails; what was converted must be shown as proper
// JSON, as a table that steers no terminal and as a picture of proper characters. The rest, of all
// views, is the sanitizers' to say. Only a job database is opened by its name; all others are read
// where their bytes are.
//
// The input chooses the way it is used: its first byte among the extensions that lead to the
// format, where there are several forms of it; its middle one what the book declines; its last one
// where streams fail.

#include "app/FileConversion.h"
#include "entry/FormatTable.h"
#include "views/Conversion.h"
#include "views/Output.h"

#include <rapidjson/reader.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <ostream>
#include <streambuf>
#include <string>
#include <vector>

#include <dlfcn.h>
#include <unistd.h>

extern const char* const fuzzedFormat; ///< its short name; each target has its own

namespace {

using namespace convfile::views;
using convfile::memory::Adder;

constexpr std::size_t kNever = std::numeric_limits<std::size_t>::max();

std::size_t bytesUntilReadFails = kNever;

} // namespace

/// Stands before the C library's own: gives up after as many bytes as it is told.
extern "C" __attribute__((visibility("default"))) std::size_t
fread(void* data, std::size_t size, std::size_t count, std::FILE* file) {
    using Fread = std::size_t(void*, std::size_t, std::size_t, std::FILE*);
    static auto* const real = reinterpret_cast<Fread*>(dlsym(RTLD_NEXT, "fread"));
    const std::size_t read = real(data, 1, std::min(size * count, bytesUntilReadFails), file);
    if (bytesUntilReadFails != kNever)
        bytesUntilReadFails -= read;
    return size > 0 ? read / size : 0;
}

namespace {

/// Keeps what is written, up to a number of bytes; the rest fails.
class ShortBuffer : public std::streambuf {
public:
    explicit ShortBuffer(std::size_t capacity) : capacity_(capacity) {}

    std::string text;

private:
    std::streamsize xsputn(const char* bytes, std::streamsize count) override {
        const std::size_t fits = std::min(capacity_ - text.size(), static_cast<std::size_t>(count));
        text.append(bytes, fits);
        return static_cast<std::streamsize>(fits);
    }
    int_type overflow(int_type c) override {
        if (text.size() == capacity_ || c == traits_type::eof())
            return traits_type::eof();
        text += traits_type::to_char_type(c);
        return c;
    }

    std::size_t capacity_;
};

void Require(bool condition) {
    if (!condition)
        std::abort();
}

std::vector<std::string> Extensions(const Format& format) {
    std::vector<std::string> extensions;
    if (format.code != 0) // otherwise only the extension leads to it
        extensions.emplace_back("txt");
    for (std::string_view list : {format.extensions, format.downloadExtensions}) {
        if (!list.empty())
            extensions.emplace_back(list.substr(0, list.find(' ')));
    }
    return extensions;
}

/// The file of this process, but for its extension. (A fuzz target ends without clean-up: the file
/// goes after each conversion, and stays where one crashed.)
const std::string& Input() {
    static const std::string input =
        std::string(std::filesystem::exists("/dev/shm") ? "/dev/shm" : "/tmp") + "/convfile-fuzz-" +
        std::to_string(getpid()) + ".";
    return input;
}

/// What one way of showing a conversion prints, into a stream that takes so many bytes; `failed`
/// says whether it was told that they were too few.
std::string Printed(std::string_view view, const Conversion& conversion, std::size_t capacity,
                    bool& failed) {
    ShortBuffer buffer(capacity);
    std::ostream stream(&buffer);
    Sink sink(stream);
    const auto output = MakeOutput(view, sink, 1);
    output->Add(conversion);
    output->End();
    sink.Flush();
    failed = sink.Failed();
    return std::move(buffer.text);
}

void Show(const Conversion& conversion, unsigned part) {
    constexpr std::size_t kLongestText = 16UL * 1024 * 1024; // a few bytes may ask for more
    bool failed = false;
    const std::string json = Printed(kJson, conversion, kLongestText, failed);
    if (failed)
        return;
    rapidjson::Reader reader;
    rapidjson::StringStream stream(json.c_str());
    rapidjson::BaseReaderHandler<> ignored;
    Require(reader.Parse<rapidjson::kParseValidateEncodingFlag>(stream, ignored));

    const std::string table = Printed(kTable, conversion, kLongestText, failed);
    if (failed)
        return;
    Require(std::ranges::none_of(
        table, [](char c) { return static_cast<unsigned char>(c) < 0x20 && c != '\n'; }));
    const std::size_t capacity = table.size() * part / 256;
    Require(Printed(kTable, conversion, capacity, failed) == table.substr(0, capacity));
    Require(failed == (capacity < table.size()));

    // One more for each input: all of them would take most of the time.
    const std::vector<std::string> views = Views();
    const std::string& view = views[part % views.size()];
    const std::string made = Printed(view, conversion, kLongestText, failed);
    const auto isForbidden = [](char c) { // in XML
        return static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\t';
    };
    Require(view != "svg" || std::ranges::none_of(made, isForbidden));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Format& format = *FormatByName(fuzzedFormat);
    static const std::vector<std::string> extensions = Extensions(format);
    const unsigned first = size > 0 ? data[0] : 0;
    const unsigned middle = size > 0 ? data[size / 2] : 0;
    const unsigned last = size > 0 ? data[size - 1] : 0;

    const bool isDatabase = format.kind == FormatKind::Database;
    const std::string path = Input() + extensions[first % extensions.size()];
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (isDatabase)
        std::ofstream(path, std::ios::binary).write(bytes.data(), std::ssize(bytes));
    const auto convert = [&](const ByteSource& source, Conversion& conversion) {
        const Route route{
            .format = fuzzedFormat, .complete = middle % 2 == 1, .trustsFormat = last % 2 == 0};
        convfile::app::Convert(route, path, conversion, isDatabase ? ByteSource{} : source);
        return conversion.converted;
    };
    const ByteSource memory = ByteSource::Memory(bytes);

    Conversion conversion;
    Require(convert(memory, conversion) || isDatabase);
    Show(conversion, last);

    Conversion declined;
    declined.fieldBook.DeclineFrom(
        static_cast<Adder>(middle % convfile::memory::kAdderCount),
        static_cast<std::size_t>(middle / convfile::memory::kAdderCount % 16));
    Require(convert(memory, declined) == conversion.converted);

    std::string copy(bytes); // a stream may not be opened on nothing
    std::FILE* const stream = fmemopen(copy.data(), copy.size() + 1, "rb");
    bytesUntilReadFails = size * last / 256;
    Conversion failed;
    Require(convert(ByteSource::Stream(stream), failed) || isDatabase);
    bytesUntilReadFails = kNever;
    std::fclose(stream);

    if (isDatabase)
        std::filesystem::remove(path);
    return 0;
}
