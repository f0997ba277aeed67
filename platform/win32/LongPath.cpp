#include "platform/win32/LongPath.h"

#include "platform/win32/Win32.h"

namespace hivesweep {

std::u16string SystemPath(std::u16string_view Path, std::size_t Room) {
  std::u16string Short(Path);
  if (Short.size() < Room)
    return Short;
  // Behind "\\?\" the system takes every unit as it stands, so what it would do
  // with blanks, dots and slashes must be done before, by itself.
  const std::u16string Full = GrowingText([&](wchar_t *Units, DWORD Count) {
    return GetFullPathNameW(Wide(Short), Count, Units, nullptr);
  });
  if (Full.empty() || Full.starts_with(u"\\\\.\\") || Full.starts_with(u"\\\\?\\"))
    return Short;
  return Full.starts_with(u"\\\\") ? u"\\\\?\\UNC" + Full.substr(1) : u"\\\\?\\" + Full;
}

} // namespace hivesweep
