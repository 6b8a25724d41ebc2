#pragma once

#include <string>
#include <system_error>

/// Where the user's temporary files go, and making them. The folder is $TMPDIR when that is an absolute path to a
/// folder that belongs to the user and that no other user may write. Else it is a private folder, mode 0700:
/// "RkUtilities-<user id>" in $TMPDIR or /tmp, if that is a real folder of the user, else "RkUtilities/temporary" in
/// the user's caches. Safe from any thread as long as no other thread changes the environment meanwhile.
namespace rk::platform {

/// The folder, if it is there already; else "". Without trailing "/".
std::string FindTemporaryFolder();
/// The folder, made when it is missing; "/tmp" when no such folder can be made.
std::string MakeTemporaryFolder();

/// Makes a new, empty file that only its owner may read and write (mode 0600): `path` with eight letters and digits
/// after it. Nothing that exists is opened or followed.
/// @return the file's path; "" with `error` set when no file could be made.
std::string MakeTemporaryFile(const std::string& path, std::error_code& error);

}  // namespace rk::platform
