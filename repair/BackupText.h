// The text of a backup file, made and read.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Clock.h"
#include "repair/Snapshot.h"

namespace hivesweep {

// The file's bytes: the header, an empty line, then the lines, each ended by CR LF, in
// the code page, without a mark.
std::string EncodeBackup(std::span<const std::u16string> Lines);

// "backup20090715143005.reg", by that local time.
std::u16string BackupNameOf(const TLocalTime &Time);

// "07/15/2009 14:30:05", whatever the locale.
std::u16string DateTimeText(const TLocalTime &Time);

// The key that a line "[HKEY_…]" names, where HKEY_CLASSES_ROOT is a root like the
// others. Nothing for other lines.
std::optional<TKeyPlace> KeyOfLine(std::u16string_view Line);

// The name in a value's line. A name is not escaped there and may itself hold the text
// that ends it, so the key is asked: the first candidate that Exists is taken.
std::optional<std::u16string_view>
NameOfLine(std::u16string_view Line, const std::function<bool(std::u16string_view Name)> &Exists);

// All keys that importing the lines touches.
TScope ScopeOfBackup(std::span<const std::u16string> Lines);

// The lines of a backup file.
std::vector<std::u16string> DecodeBackup(std::string_view Bytes);

} // namespace hivesweep
