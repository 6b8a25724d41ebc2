#include "RkUtilities/foundation/StUTF8Buffer.h"

void GetStdStringFromCString(const CString& text, std::string& bytes) {
    bytes.clear();
    text.AppendUtf8To(bytes);
}
