#include "platform/Text.h"

#include "platform/win32/Win32.h"

namespace hivesweep {

std::u16string FromAnsi(std::string_view Bytes) {
  // No code page makes more units of a text than it has bytes.
  std::u16string Out(Bytes.size(), u'\0');
  const int Length = MultiByteToWideChar(CP_ACP, 0, Bytes.data(), static_cast<int>(Bytes.size()),
                                         Wide(Out.data()), static_cast<int>(Out.size()));
  Out.resize(static_cast<std::size_t>(Length));
  return Out;
}

std::string ToAnsi(std::u16string_view Text) {
  const std::u16string Ended(Text);
  const auto Convert = [&](char *Bytes, int Room) {
    return WideCharToMultiByte(CP_ACP, 0, Wide(Ended), static_cast<int>(Ended.size()), Bytes, Room,
                               nullptr, nullptr);
  };
  std::string Out(static_cast<std::size_t>(Convert(nullptr, 0)), '\0');
  Convert(Out.data(), static_cast<int>(Out.size()));
  return Out;
}

} // namespace hivesweep
