#include "ui/RegistryEditor.h"

namespace hivesweep {

bool OpenInRegistryEditor(TPlatform &Platform, std::u16string_view KeyPath) {
  static_cast<void>(KeyPath);
  return Platform.Shell->Open(u"regedit.exe", u"");
}

} // namespace hivesweep
