// Code as it was written for older class interfaces, moved here with the names of RkUtilities/compat/TypeNames.h; what
// had to change and why stands in docs/migrating.md. Checks what the functions give:
//     port FOLDER        writes a file and its preferences there
#include <RkUtilities/RkUtilities.h>
#include <RkUtilities/compat/TypeNames.h>

#include <cstdlib>
#include <iostream>
#include <string>

namespace {

// NOLINTBEGIN: older code as it was, C casts and all
BOOL IsBlank(LPCTSTR text) {
    CString copy(text);
    copy.Trim();
    return copy.IsEmpty();
}

CString QuoteForCsv(const CString& value) {
    CString result(value);
    if (result.FindOneOf(_T(",\"\n")) == -1)
        return result;
    result.Replace(_T("\""), _T("\"\""));
    return _T("\"") + result + _T("\"");
}

void SplitLine(const CString& line, CStringArray& fields) {
    int position = 0;
    CString token = line.Tokenize(_T(";"), position);
    while (!token.IsEmpty()) {
        token.Trim();
        fields.Add(token);
        token = line.Tokenize(_T(";"), position);
    }
}

CString JoinFields(const CStringArray& fields, LPCTSTR separator) {
    CString result;
    for (UINT i = 0; i < fields.GetCount(); i++) {
        if (i > 0)
            result += separator;
        result += fields[i];
    }
    return result;
}

CString FormatSize(DWORD size) {
    CString text;
    if (size < 1024)
        text.Format(_T("%u bytes"), size);
    else
        text.Format(_T("%.1f KB"), size / 1024.0);
    return text;
}

int CountChar(const CString& text, TCHAR character) {
    int count = 0;
    for (int i = 0; i < text.GetLength(); i++) {
        if (text[i] == character)
            count++;
    }
    return count;
}

CString CapitalizeWords(CString text) {
    BOOL start = TRUE;
    text.MakeLower();
    for (int i = 0; i < text.GetLength(); i++) {
        TCHAR c = text[i];
        if (start)
            text.SetAt(i, CString(c).MakeUpper()[0]);
        start = c == _T(' ');
    }
    return text;
}

CString FileTitle(const CString& path) {
    int slash = path.ReverseFind(_T('/'));
    CString name = path.Mid(slash + 1);
    int dot = name.ReverseFind(_T('.'));
    if (dot != -1)
        name = name.Left(dot);
    return name;
}

BOOL WriteReport(LPCTSTR path, const CString& body) {
    CFile file;
    CFileException error;
    if (!file.Open(path, CFile::modeCreate | CFile::modeTruncate | CFile::modeReadWrite, &error))
        return FALSE;
    try {
        StUTF8Buffer bytes(body);
        LPCSTR start = bytes;
        file.Write(start, (UINT)std::char_traits<char>::length(start));
        file.Close();
    } catch (CFileException* e) {
        e->Delete();
        return FALSE;
    }
    return TRUE;
}

DWORD ReadBytes(LPCTSTR path, BYTE* buffer, DWORD size) {
    CFile file;
    if (!file.Open(path, CFile::modeRead | CFile::shareDenyNone))
        return 0;
    ULONGLONG length = file.GetLength();
    if (length > size)
        length = size;
    return file.Read(buffer, (UINT)length);
}

BOOL FileExists(LPCTSTR path) {
    CFileStatus status;
    return CFile::GetStatus(path, status);
}

void CountWords(const CString& text, CAtlMap<CString, int>& counts) {
    int position = 0;
    CString word = text.Tokenize(_T(" ,."), position);
    while (position != -1) {
        int count = 0;
        counts.Lookup(word, count);
        counts.SetAt(word, count + 1);
        word = text.Tokenize(_T(" ,."), position);
    }
}

CString MostFrequent(const CAtlMap<CString, int>& counts) {
    CString best;
    int bestCount = 0;
    POSITION pos = counts.GetStartPosition();
    while (pos != NULL) {
        CString word;
        int count;
        counts.GetNextAssoc(pos, word, count);
        if (count > bestCount) {
            best = word;
            bestCount = count;
        }
    }
    return best;
}

CString ExpandVariables(CString text, const CMapStringToString& values) {
    POSITION pos = values.GetStartPosition();
    while (pos) {
        CString key, value;
        values.GetNextAssoc(pos, key, value);
        text.Replace(_T("$(") + key + _T(")"), value);
    }
    return text;
}

int FindInList(const CStringList& list, LPCTSTR name) {
    int index = 0;
    POSITION pos = list.GetHeadPosition();
    while (pos != NULL) {
        const CString& item = list.GetNext(pos);
        if (item.CompareNoCase(name) == 0)
            return index;
        index++;
    }
    return -1;
}

void RemoveEmpty(CStringList& list) {
    POSITION pos = list.GetHeadPosition();
    while (pos) {
        POSITION current = pos;
        if (list.GetNext(pos).IsEmpty())
            list.RemoveAt(current);
    }
}

int DaysBetween(const COleDateTime& from, const COleDateTime& to) {
    COleDateTimeSpan span = to - from;
    return (int)span.GetDays();
}

CString IsoDate(const COleDateTime& date) { return date.Format(_T("%Y-%m-%d")); }

COleDateTime NextWorkday(COleDateTime date) {
    do
        date = date + COleDateTimeSpan(1, 0, 0, 0);
    while (date.GetDayOfWeek() == 1 || date.GetDayOfWeek() == 7);
    return date;
}

BOOL ParseKeyValue(const CString& line, CString& key, CString& value) {
    int equals = line.Find(_T('='));
    if (equals <= 0)
        return FALSE;
    key = line.Left(equals).Trim();
    value = line.Mid(equals + 1).Trim();
    return TRUE;
}

DWORD Checksum(LPCTSTR text) {
    DWORD sum = 5381;
    while (*text != _T('\0'))
        sum = sum * 33 + *text++;
    return sum;
}

CString ElapsedText(const CTimeSpan& span) {
    CString text;
    text.Format(_T("%d:%02d:%02d"), 24 * span.GetDays() + span.GetHours(), span.GetMinutes(), span.GetSeconds());
    return text;
}

CString Ellipsis(const CString& text, int most) {
    if (text.GetLength() <= most)
        return text;
    CString cut = text.Left(most - 3);
    cut.TrimRight();
    cut += _T("...");
    return cut;
}

void SavePosition(LPCTSTR key, DWORD x, DWORD y) {
    SECRegistry registry;
    registry.Connect(1, nullptr, FALSE);
    registry.SetValue(key, (DWORD)(y << 16 | x));
    registry.Close();
}

// NOLINTEND

int failures = 0;

void Check(const char* name, bool holds) {
    if (!holds) {
        std::cerr << name << " gives another result\n";
        ++failures;
    }
}

void CheckTexts() {
    Check("IsBlank", IsBlank(_T(" \t")) && !IsBlank(_T(" a ")));
    Check("QuoteForCsv",
          QuoteForCsv(_T("plain")) == _T("plain") && QuoteForCsv(_T("a \"b\"")) == _T("\"a \"\"b\"\"\""));
    CStringArray fields;
    SplitLine(_T("red; green ;;blue"), fields);
    Check("SplitLine, JoinFields", JoinFields(fields, _T("+")) == _T("red+green+blue"));
    Check("FormatSize", FormatSize(1023) == _T("1023 bytes") && FormatSize(1536) == _T("1.5 KB"));
    Check("CountChar", CountChar(_T("banana"), _T('a')) == 3);
    Check("CapitalizeWords", CapitalizeWords(_T("ÜBER den fluss")) == _T("Über Den Fluss"));
    Check("FileTitle", FileTitle(_T("/maps.v2/plan.old.map")) == _T("plan.old"));
    CString key, value;
    Check("ParseKeyValue", ParseKeyValue(_T(" width = 40"), key, value) && key == _T("width") && value == _T("40") &&
                               !ParseKeyValue(_T("=40"), key, value));
    Check("Checksum", Checksum(_T("ab")) == (5381u * 33 + 'a') * 33 + 'b');
    Check("Ellipsis", Ellipsis(_T("one two three"), 7) == _T("one...") && Ellipsis(_T("one"), 3) == _T("one"));
}

void CheckCollections() {
    CAtlMap<CString, int> counts;
    CountWords(_T("to be, or not to be. to"), counts);
    Check("CountWords, MostFrequent", MostFrequent(counts) == _T("to") && counts.GetCount() == 4);
    CMapStringToString values;
    values.SetAt(_T("name"), _T("Lea"));
    Check("ExpandVariables", ExpandVariables(_T("$(name) and $(name)"), values) == _T("Lea and Lea"));
    CStringList list = {_T("a"), CString(), _T("b"), CString()};
    RemoveEmpty(list);
    Check("RemoveEmpty, FindInList",
          list.GetCount() == 2 && FindInList(list, _T("B")) == 1 && FindInList(list, _T("c")) == -1);
}

void CheckDates() {
    const COleDateTime friday(2028, 2, 25, 0, 0, 0);
    Check("NextWorkday, IsoDate", IsoDate(NextWorkday(friday)) == _T("2028-02-28"));
    Check("DaysBetween", DaysBetween(friday, COleDateTime(2028, 3, 1, 0, 0, 0)) == 5);
    Check("ElapsedText", ElapsedText(CTimeSpan(1, 2, 3, 4)) == _T("26:03:04"));
}

void CheckFiles(const CString& folder) {
    const CString name = folder + _T("/report.txt");
    const CString longer = _T("a long report"), shorter = _T("short");
    BYTE bytes[20] = {};
    Check("WriteReport", WriteReport(name.data(), longer) && WriteReport(name.data(), shorter));
    Check("ReadBytes", ReadBytes(name.data(), bytes, sizeof bytes) == 5 && bytes[4] == 't');
    Check("FileExists", FileExists(name.data()) && !FileExists(_T("/missing/file")));
    SavePosition(_T("position"), 3, 4);
    DWORD position = 0;
    Check("SavePosition", SECRegistry().GetValue(_T("position"), position) && position == (4u << 16 | 3u));
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::cerr << "port FOLDER\n";
        return 2;
    }
    setenv("XDG_CONFIG_HOME", arguments[1], 1);
    CheckTexts();
    CheckCollections();
    CheckDates();
    CheckFiles(CString(arguments[1]));
    if (failures == 0)
        std::cout << "24 functions give what they gave\n";
    return failures == 0 ? 0 : 1;
}
