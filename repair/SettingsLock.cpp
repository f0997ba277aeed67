#include "repair/SettingsLock.h"

namespace hivesweep {

TLock &SettingsLock() {
  static TLock Lock;
  return Lock;
}

} // namespace hivesweep
