// The text of a backup file, made and read.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Clock.h"

namespace hivesweep {

// The file's bytes: the header, an empty line, then the lines, each ended by CR LF, in
// the code page, without a mark. A line with a control character is left out, as the
// registry editor would read it as several lines; so are all lines of such a key. What
// they say is in the exact record.
std::string EncodeBackup(std::span<const std::u16string> Lines);

// "backup20090715143005.reg", by that local time.
std::u16string BackupNameOf(const TLocalTime &Time);

// "07/15/2009 14:30:05", whatever the locale.
std::u16string DateTimeText(const TLocalTime &Time);

// The lines of a backup file.
std::vector<std::u16string> DecodeBackup(std::string_view Bytes);

} // namespace hivesweep
