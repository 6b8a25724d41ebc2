#pragma once

/// How much a date or time text tells, after CLDR. The texts are those of "en_US" (from CLDR 42 on U+202F before "PM").
enum CFDateFormatterStyle : long {
    kCFDateFormatterNoStyle = 0,      ///< leaves the date or the time out
    kCFDateFormatterShortStyle = 1,   ///< "11/16/26", "9:52 PM"
    kCFDateFormatterMediumStyle = 2,  ///< "Nov 16, 2026", "9:52:05 PM"
    kCFDateFormatterLongStyle = 3,    ///< "November 16, 2026", "9:52:05 PM GMT+1"
    kCFDateFormatterFullStyle = 4,    ///< "Monday, November 16, 2026", "9:52:05 PM Central European Standard Time"
};
