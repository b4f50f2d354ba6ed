#include "export/SvgText.h"

#include "routines/CodePage.h"

namespace convfile::exports {

namespace {

/// U+FFFE and U+FFFF are no characters of XML.
bool IsNoncharacter(std::string_view three) {
    return three == "\xEF\xBF\xBE" || three == "\xEF\xBF\xBF";
}

} // namespace

std::string XmlText(std::string_view windows1252) {
    return XmlTextOfUtf8(Utf8FromWindows1252(windows1252));
}

std::string XmlTextOfUtf8(std::string_view utf8) {
    std::string text;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const char c = utf8[i];
        if (c == '&') {
            text += "&amp;";
        } else if (c == '<') {
            text += "&lt;";
        } else if (c == '>') {
            text += "&gt;";
        } else if (static_cast<unsigned char>(c) < ' ' && c != '\t' && c != '\n') {
            text += c == '\r' ? "&#13;" : " "; // as it stands, a reader would make it a line feed
        } else if (IsNoncharacter(utf8.substr(i, 3))) {
            text += ' ';
            i += 2;
        } else {
            text += c;
        }
    }
    return text;
}

double TextWidth(std::string_view windows1252) {
    double width = 0;
    for (const char c : windows1252) {
        if (c == 'M' || c == 'W' || c == '@' || c == '%')
            width += 0.95;
        else if ((c >= 'A' && c <= 'Z') || static_cast<unsigned char>(c) >= 0x80)
            width += 0.75;
        else if (c == ' ' || c == '.' || c == ',' || c == '-' || c == '/' || c == 'i' || c == 'l')
            width += 0.36;
        else
            width += 0.62;
    }
    return width;
}

} // namespace convfile::exports
