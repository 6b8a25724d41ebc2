#include "rklog/VisibleText.h"

namespace rklog {

namespace {

void AppendCode(char32_t character, std::string& out) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    out += character > 0xFF ? "\\u" : "\\x";
    for (int shift = character > 0xFF ? 12 : 4; shift >= 0; shift -= 4)
        out += kDigits[character >> shift & 0xF];
}

/// Appends the code of a control character, or of a character that turns the direction of reading (U+202A to U+202E,
/// U+2066 to U+2069), at the text's start, and gives its length in bytes; 0 where no such character stands there.
std::size_t TakeHarmful(std::string_view text, std::string& out) {
    const auto byte = [&](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
    if ((byte(0) < 0x20 && text[0] != '\t') || byte(0) == 0x7F) {
        AppendCode(byte(0), out);
        return 1;
    }
    if (byte(0) == 0xC2 && byte(1) < 0xA0) {
        AppendCode(byte(1), out);
        return 2;
    }
    if (byte(0) == 0xE2 && ((byte(1) == 0x80 && byte(2) >= 0xAA && byte(2) <= 0xAE) ||
                            (byte(1) == 0x81 && byte(2) >= 0xA6 && byte(2) <= 0xA9))) {
        AppendCode(0x2000 | (byte(1) & 0x3FU) << 6 | (byte(2) & 0x3FU), out);
        return 3;
    }
    return 0;
}

}  // namespace

void AppendVisible(std::string_view text, std::string& out) {
    while (!text.empty() && text.back() == '\n')
        text.remove_suffix(1);
    while (!text.empty()) {
        std::size_t length = text[0] == '\n' ? 1 : TakeHarmful(text, out);
        if (text[0] == '\n')
            out += "\n    ";
        else if (length == 0)
            out += text[0];
        text.remove_prefix(length == 0 ? 1 : length);
    }
}

}  // namespace rklog
