// Values of every class that the debuggers' printers know, to stop at.
#include <RkUtilities/RkUtilities.h>

#include <cmath>
#include <cstring>
#include <string>

void Stop() {}

int main() {
    const CString none;
    const CString literal = CString::Literal(u"A text of many more than eleven units");
    const CString brief = u"Łódź\n";
    const CString damaged = std::u16string(u"a\xD800z");
    const CString shared = literal + u" 𝄞";
    const CString huge = std::u16string(100'000, u'x');

    alignas(CString) unsigned char memory[sizeof(CString)];
    std::memset(memory, 0xCD, sizeof memory);
    const CString& raw = reinterpret_cast<const CString&>(memory);

    CAtlArray<CString> array;
    array.Add(brief);
    array.Add(shared);
    const CAtlArray<int> empty;
    CAtlList<int> list;
    list.AddTail(7);
    list.AddHead(-8);
    CAtlMap<CString, CTimeSpan> map;
    map.SetAt(u"lunch", CTimeSpan(0, 0, 45, 0));
    map.SetAt(u"ferry", CTimeSpan(1, 2, 3, 4));

    const CTime summer(2027, 6, 1, 9, 30, 0);
    const CTime winter = CTime::FromCFAbsoluteTime(0.25);
    const CTime nullTime;
    const COleDateTime date(2028, 2, 29, 23, 59, 58);
    const COleDateTime early(-0.25);
    const COleDateTime noDate(HUGE_VAL);
    const COleDateTimeSpan days(-1, 0, 0, -30);
    const CrkGuid guid(CString(u"{00112233-4455-6677-8899-aabbccddeeff}"));

    const CrkFloatRect rect{0.1F, 2, 30, 40};
    const CrkFloatRect noRect = CrkFloatRect::Null();
    const CrkFloatPoint point{1, -2.5F};
    const CrkFloatVector2D vector(3, 4);
    const CGAffineTransform moved = CGAffineTransformMakeTranslation(5, 6.5);
    const CrkLogSettings settings(u"/nowhere");
    const CFileException failure(CFileException::fileNotFound, 2, CString(u"/nowhere"));

    Stop();
}
