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

} // namespace hivesweep
