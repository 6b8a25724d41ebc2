#include "RkUtilities/foundation/StUTF8Buffer.h"

#include "RkUtilities/foundation/detail/Utf8.h"

StUTF8Buffer::StUTF8Buffer(const CString& text)
    : m_bytes(std::make_unique_for_overwrite<char[]>(rk::CountEncodedBytes(text.View()) + 1))
{
    *rk::EncodeUtf8(text.View(), m_bytes.get()) = '\0';
}

void GetStdStringFromCString(const CString& text, std::string& bytes)
{
    bytes.clear();
    text.AppendUtf8To(bytes);
}
