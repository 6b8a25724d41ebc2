#pragma once

#include "RkUtilities/RkExport.h"

#include <string_view>

namespace rk {

/// Chooses the user's locale for the whole process, by name: "de_DE", "ja_JP", "sr_Latn_RS",
/// "th_TH@calendar=gregorian". "" takes the choice back.
/// Without a choice the process's locale categories decide, as `setlocale` has set them: LC_MONETARY for money,
/// LC_NUMERIC for numbers, LC_TIME for dates, LC_MESSAGES for texts and LC_COLLATE for the order of names. "C" and
/// "POSIX" read as "en_US_POSIX"; a codeset (".UTF-8") is not looked at. A change shows in the next call, except in
/// texts of `CrkDateUtilities`. A locale that ICU does not know falls back to its language, then to the environment's
/// locale. A text that is no name of a locale (longer than 100 bytes, say) reads as the root locale. Nothing throws but
/// `std::bad_alloc`. Safe from any thread; `setlocale` itself is not safe beside other threads, as C says.
RK_EXPORT void SetUserLocale(std::string_view name);

/// Makes the formats of the user's locale now: numbers, money, dates and times. To be called at the start, after
/// `SetUserLocale`: the formats, which need much memory, are there then when memory is short later. Otherwise the first
/// call that needs a format makes it. Takes a few milliseconds. Throws `std::bad_alloc`; another call makes the rest.
/// Safe from any thread.
RK_EXPORT void PrepareFormats();

}  // namespace rk

/// The names by which existing calling code knows them.
namespace rk::platform {
using rk::SetUserLocale;
}  // namespace rk::platform
