#pragma once

namespace rk::platform {
class AppendFile;
}

namespace rk {

/// Removes the beginning of an entry from the end of a log file, where a writer was killed in the middle of it.
/// What follows the last footer goes if it begins as an entry does; other content was put there by another program and
/// stays, and its last line is ended, since readers find an entry at the beginning of a line. A beginning of more than
/// 64 MiB stays too, and a file that cannot be read is left alone.
void MendTail(platform::AppendFile& file);

}  // namespace rk
