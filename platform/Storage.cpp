#include "platform/Storage.h"

#include "platform/Text.h"

namespace hivesweep {

std::string HolderText(std::uint32_t Process, std::u16string_view Program) {
  return std::to_string(Process) + " " + ToUtf8(Program);
}

void ReadHolder(std::string_view Text, THolding &Out) {
  const std::size_t End = Text.find(' ');
  if (End == std::string_view::npos || End > 9)
    return;
  std::uint32_t Process = 0;
  for (const char Digit : Text.substr(0, End)) {
    if (Digit < '0' || Digit > '9')
      return;
    Process = Process * 10 + static_cast<std::uint32_t>(Digit - '0');
  }
  Out.HolderProcess = Process;
  Out.Holder = FromUtf8(Text.substr(End + 1));
}

} // namespace hivesweep
