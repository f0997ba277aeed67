#include "platform/Text.h"
#include "platform/win32/Hosts.h"
#include "platform/win32/Win32.h"

namespace hivesweep {

namespace {

class TWin32Drives final : public TDrives {
public:
  TDriveType TypeOf(std::u16string_view Root) override {
    if (!IsDriveRoot(Root))
      return TDriveType::NoRoot;
    const std::u16string Name = {AsciiUpper(Root[0]), u':', u'\\'};
    return static_cast<TDriveType>(GetDriveTypeW(Wide(Name)));
  }
};

} // namespace

std::unique_ptr<TDrives> MakeWin32Drives() { return std::make_unique<TWin32Drives>(); }

} // namespace hivesweep
