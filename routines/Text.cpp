#include "routines/Text.h"

#include <algorithm>

void StringTrimLeft(std::string& text) {
    text.erase(0, text.size() - TrimLeft(text).size());
}

void StringTrimRight(std::string& text) {
    text.erase(TrimRight(text).size());
}

void StringTrimBoth(std::string& text) {
    StringTrimRight(text);
    StringTrimLeft(text);
}

void StringToUpper(std::string& text) {
    std::ranges::transform(text, text.begin(), UpperAscii);
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, {}, UpperAscii, UpperAscii);
}
