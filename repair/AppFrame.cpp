#include "repair/AppFrame.h"

#include "platform/DiskFile.h"

namespace hivesweep {

TDataPaths DataPathsOf(const TAppFrame &Frame) {
  const std::u16string Suite = Frame.UserAppDataFolder + u"\\Orvane\\Tallowmere V4\\";
  return {Suite + u"Hivesweep\\Ignore.ini", Suite + u"Hivesweep\\backup\\",
          Suite + u"Hivesweep\\undo\\", Suite + u"Hivesweep\\Main.ini", Suite + u"Hivesweep\\lock"};
}

TDataPaths DataPathsIn(std::u16string_view Folder) {
  return {JoinPath(Folder, u"Ignore.ini"), JoinPath(JoinPath(Folder, u"backup"), u""),
          JoinPath(JoinPath(Folder, u"undo"), u""), JoinPath(Folder, u"Main.ini"),
          JoinPath(Folder, u"lock")};
}

} // namespace hivesweep
