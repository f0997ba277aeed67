#include "cli/Input.h"

#include "cli/Failure.h"
#include "platform/DiskFile.h"
#include "platform/Text.h"
#include "repair/Readable.h"

namespace hivesweep {

std::string ReadInput(const std::string &Name) {
  std::string Bytes;
  if (const TDiskError Error = ReadWholeFile(FromUtf8(Name), Bytes); !Error.empty())
    throw TFailure(TExitCode::Failed, Name + ": could not be read: " + ToUtf8(Error));
  return Bytes;
}

void RequireReadable(TSession &Session, std::u16string_view Path) {
  if (const TDiskError Error = WhyUnreadable(*Session.Platform.Storage, Path); !Error.empty())
    throw TFailure(TExitCode::Failed, ToUtf8(Error));
}

} // namespace hivesweep
