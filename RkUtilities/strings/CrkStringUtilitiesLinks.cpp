#include "RkUtilities/strings/CrkStringUtilities.h"

#include <algorithm>
#include <string>

void CrkStringUtilities::ExtractUrlParameters(const CString& link, ParameterMap& parameters) {
    int mark = link.Find(u"#");
    if (mark < 0)
        mark = link.Find(u"&");
    const CString part = link.Mid(mark + 1);
    const CString delimiters = u"&=";
    int position = 0;
    for (;;) {
        const CString name = part.Tokenize(delimiters, position);
        const CString value = part.Tokenize(delimiters, position);
        if (value.IsEmpty())
            return;
        parameters.SetAt(name, value);
    }
}

CString CrkStringUtilities::ExtractUrlValue(const CString& link, const CString& name) {
    ParameterMap parameters;
    ExtractUrlParameters(link, parameters);
    CString value;
    parameters.Lookup(name, value);
    return value;
}

CString CrkStringUtilities::GetUrlString(CString link, CString format) {
    if (link.View().starts_with(u"http"))
        return link;
    return Format(format, link.ToUtf8());
}

bool CrkStringUtilities::IsValidEmail(const CString& address) {
    const int at = address.Find(u"@");
    const int dot = address.ReverseFind(u".");
    return at > 0 && dot > at + 1 && dot < address.GetLength() - 1;
}
