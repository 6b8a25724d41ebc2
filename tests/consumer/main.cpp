// What a first program with an installed copy looks like: one include, one library.
#include <RkUtilities/RkUtilities.h>

#include <iostream>

int main() {
    CString text;
    text.Format(u"%s has %d topics", "Łódź", 12);
    try {
        text.Format(u"%d");  // what the library throws is caught by its own name out here
        return 1;
    } catch (const rk::FormatError& error) {
        std::cout << text << "; " << error.what() << '\n';
    }
    CAtlMap<CString, CrkGuid> ids;
    ids.SetAt(text, CrkGuid());
    return CrkStringUtilities::EndsWith(text, u"12 TOPICS", /*ignoreCase=*/true) && ids.GetCount() == 1 ? 0 : 1;
}
