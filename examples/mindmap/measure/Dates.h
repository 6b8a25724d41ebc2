#pragma once

#include <RkUtilities/foundation/CString.h>

namespace mindmap {

/// The dates of a topic, in the user's locale.
///
/// A date in an outline is written as ISO 8601 has it, "2027-06-01", alone or in a text ("apply by 2027-01-15"), in the
/// years 1000 to 9998. Texts around the dates stay; "to", "until", "/", "-" and dashes between two dates become "–".
/// What is no date of the calendar ("2027-02-30") stays as it is written.
///
/// A week begins on the user's first day of the week. Weeks that begin on a Monday are counted as ISO 8601 counts them
/// (the first week has the 4th of January), others from the week that has the 1st of January.

/// With short dates: "6/1/27 – 7/20/27".
CString ShownDate(const CString& written);

/// The weeks of the first and the last date: "W23–W30", or "W23" for a single week; "" when there is no date.
CString ShownWeeks(const CString& written);

/// With long dates, and below them a line for each of these weeks: "W23: May 30, 2027 – June 5, 2027".
CString DateTooltip(const CString& written);

}  // namespace mindmap
