// Texts and identifiers as arguments of {fmt}.
#include "RkUtilities/interop/Fmt.h"

#include <cstdio>

int main() {
    const CrkGuid id(u"6F9619FF-8B86-D011-B42D-00C04FC964FF");
    const std::string text = fmt::format("{:>6}|{:.2}|{}", CString(u"Größe"), CString(u"\xD800z"), id);
    std::puts(text.c_str());
    return text == " Größe|\uFFFDz|6F9619FF-8B86-D011-B42D-00C04FC964FF" ? 0 : 1;
}
