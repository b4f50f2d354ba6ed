// convfile: files of total stations and field controllers in, a field book out.

#include "app/Choice.h"
#include "app/Options.h"
#include "app/Platform.h"
#include "app/Run.h"

#include <cstdio>
#include <iostream>
#include <new>

namespace {

using namespace convfile::app;

int ListFormats() {
    std::cout << FormatList() << std::flush;
    if (std::cout)
        return kAllConverted;
    Tell("the list could not be written");
    return kNotAllConverted;
}

int Main(int argc, char** argv) {
    PrepareStandardStreams();
    Options options;
    switch (ReadOptions(Arguments(argc, argv), options, std::cout, std::cerr)) {
    case Request::Convert:
        return Run(options);
    case Request::ListFormats:
        return ListFormats();
    case Request::Nothing:
        return kAllConverted;
    case Request::WrongUsage:
        break;
    }
    return kWrongUsage;
}

} // namespace

int main(int argc, char** argv) {
    try {
        return Main(argc, argv);
    } catch (const std::bad_alloc&) {
        std::fputs("convfile: not enough memory\n", stderr);
        return kNotAllConverted;
    }
}
