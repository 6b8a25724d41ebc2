#include <RkUtilities/RkUtilities.h>
#include <iostream>

void Show(const auto& result) { std::cout << result << '\n'; }

int main() {
    const CString topic = u"Überfahrt nach Łódź";
    Show(topic.Left(9).MakeUpper());                                                      // ÜBERFAHRT
    Show(CrkStringUtilities::EndsWith(topic, u"łódź", /*ignoreCase=*/true));              // 1
    Show(CrkPathUtilities::FileWithoutExtensionFromFilename(u"/maps.v2/plan.old.map"));   // plan.old
    Show(CrkPathUtilities::CalcRelativePathname(u"/maps/trips/a.map", u"/maps/plans/"));  // ../trips/a.map
    Show((COleDateTime(2028, 2, 27, 9, 30, 0) + COleDateTimeSpan(2, 0, 0, 0)).GetDay());  // 29
    Show(CrkMathUtilities::GetEllipseEdgePoint({0, 0, 100, 40}, {0, 1}, 0).y);            // 40
    Show(CString(CrkGuid(u"{00112233-4455-6677-8899-aabbccddeeff}")).Left(8));            // 00112233
}
