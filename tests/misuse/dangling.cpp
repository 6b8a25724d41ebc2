// Results that outlive the text that they look into: clang warns of each. Compiled with -Xclang -verify.

#include "RkUtilities/foundation/StUTF8Buffer.h"

#include <string_view>

void OutliveTheirTexts(const CString& text) {
    std::u16string_view view = text.Mid(3);                      // expected-warning {{destroyed at the end of}}
    std::u16string_view part = (text + u"!").View();             // expected-warning {{destroyed at the end of}}
    unsigned short const* pointer = text.Left(2).GetUTF16Ptr();  // expected-warning {{destroyed at the end of}}
    const char16_t* first = text.Right(2).begin();               // expected-warning {{destroyed at the end of}}
    char* bytes = StUTF8Buffer(text);                            // expected-warning {{destroyed at the end of}}
    const std::u16string_view alive = text;
    static_cast<void>(text.Mid(3).View().size() + alive.size());
}
