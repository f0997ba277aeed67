#include "cli/Input.h"

#include "cli/Failure.h"
#include "platform/DiskFile.h"
#include "platform/Text.h"
#include "repair/Readable.h"

namespace hivesweep {

std::string ReadInput(const std::string &Name) {
  std::string Bytes;
  if (const TError Error = ReadWholeFile(PathFromBytes(Name), Bytes))
    throw TFailure(TExitCode::Failed, Name + ": could not be read: " + WordsOf(Error));
  return Bytes;
}

void RequireReadable(TSession &Session, std::u16string_view Path) {
  if (const TError Error = WhyUnreadable(*Session.Platform.Storage, Path))
    throw TFailure(TExitCode::Failed, WordsOf(Error));
}

} // namespace hivesweep
