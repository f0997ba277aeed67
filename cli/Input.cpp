#include "cli/Input.h"

#include "cli/Failure.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

constexpr std::string_view StandardInput = "-";

TError ReadStandardInput(TCliConsole &Console, std::string &Out, std::size_t Limit) {
  std::optional<std::string> Bytes = Console.ReadAll(Limit + 1);
  if (!Bytes && Console.WasInterrupted())
    throw TFailure(TExitCode::Interrupted, "stopped; nothing was changed");
  if (!Bytes)
    return {TErrorCode::NoAnswer, {}};
  Out = *std::move(Bytes);
  return Out.size() > Limit ? FileTooLarge(Limit) : TError();
}

} // namespace

std::string ReadInput(TCliConsole &Console, const std::string &Name, std::size_t Limit) {
  std::string Bytes;
  const TError Error = Name == StandardInput ? ReadStandardInput(Console, Bytes, Limit)
                                             : ReadWholeFile(PathFromBytes(Name), Bytes, Limit);
  if (Error)
    throw TFailure(TExitCode::Failed, NameOfInput(Name) + ": could not be read: " + WordsOf(Error));
  return Bytes;
}

std::string NameOfInput(const std::string &Name) {
  return Name == StandardInput ? "standard input" : Name;
}

void RequireReadable(TSession &Session, std::u16string_view Path) {
  TIniSection Unused;
  const TError Error =
      Path.empty() ? TError() : Session.Platform.Profiles->ReadSection(Path, u"", Unused);
  if (Error)
    throw TFailure(TExitCode::Failed, WordsOf(Error));
}

} // namespace hivesweep
