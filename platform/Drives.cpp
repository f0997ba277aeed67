#include "platform/Drives.h"

#include "platform/Text.h"

namespace hivesweep {

bool IsDriveRoot(std::u16string_view Text) {
  return Text.size() == 3 && AsciiUpper(Text[0]) >= u'A' && AsciiUpper(Text[0]) <= u'Z' &&
         Text[1] == u':' && (Text[2] == u'\\' || Text[2] == u'/');
}

} // namespace hivesweep
