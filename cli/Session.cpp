#include "cli/Session.h"

#include <memory>
#include <utility>
#include <variant>

#include "cli/Input.h"
#include "cli/Output.h"
#include "platform/DiskFile.h"
#include "platform/Text.h"
#include "platform/memory/Machine.h"
#include "platform/memory/MemoryRegistry.h"

namespace hivesweep {

namespace {

[[noreturn]] void RefuseText(const std::string &Name, const TTextError &Error) {
  throw TFailure(TExitCode::Failed, NameOfInput(Name) + ":" + std::to_string(Error.Line) + ": " +
                                        ToUtf8(Error.Message));
}

std::unique_ptr<TMemoryRegistry> LoadRegistry(TCliConsole &Console,
                                              const std::vector<std::string> &Names) {
  auto Registry = std::make_unique<TMemoryRegistry>();
  for (const std::string &Name : Names)
    if (const auto Error = Registry->LoadText(ReadInput(Console, Name)))
      RefuseText(Name, *Error);
  return Registry;
}

// Always UTF-8: a machine file is written for this program alone, and a wrong guess
// would make files of it that are not there.
std::u16string DecodeMachine(const std::string &Name, std::string_view Bytes) {
  constexpr std::string_view Mark = "\xEF\xBB\xBF";
  if (Bytes.starts_with(Mark))
    Bytes.remove_prefix(Mark.size());
  if (auto Text = FromStrictUtf8(Bytes))
    return *std::move(Text);
  std::size_t Number = 1;
  for (std::size_t End = Bytes.find('\n');
       End != std::string_view::npos && FromStrictUtf8(Bytes.substr(0, End));
       End = Bytes.find('\n')) {
    Bytes.remove_prefix(End + 1);
    ++Number;
  }
  RefuseText(Name, {Number, u"the text is not UTF-8"});
}

TMachine LoadMachine(TCliConsole &Console, const std::optional<std::string> &Name) {
  if (!Name)
    return {};
  auto Parsed = ParseMachine(DecodeMachine(*Name, ReadInput(Console, *Name, LargestSettingsFile)));
  if (const auto *const Error = std::get_if<TTextError>(&Parsed))
    RefuseText(*Name, *Error);
  return std::get<TMachine>(std::move(Parsed));
}

// A command that only reads leaves no folders behind, so they are named here and not
// created.
TDataPaths DataPaths(const std::optional<std::string> &DataFolder,
                     const std::optional<TPlatform> &Live) {
  if (DataFolder) {
    const std::u16string Folder = AbsolutePath(PathFromBytes(*DataFolder));
    if (const TError Error = CheckFolder(Folder))
      throw TFailure(TExitCode::Failed,
                     *DataFolder + ": is no folder to read from: " + WordsOf(Error));
    return DataPathsIn(Folder);
  }
  if (!Live)
    return {};
  const TAppFrame Frame(*Live->Folders);
  return Frame.UserAppDataFolder.empty() ? TDataPaths() : DataPathsOf(Frame);
}

} // namespace

TSession OpenSession(const TCliHost &Host, const TOptions &Options, bool NeedsRegistry) {
  std::optional<TPlatform> Live = Host.MakeLive();
  if (!Live && NeedsRegistry && Options.RegistryFiles.empty())
    throw TWrongUse("this system has no registry of its own; --registry FILE is expected");
  TSession Session;
  Session.Paths = DataPaths(Options.DataFolder, Live);
  Session.IsOwnFolder = !Options.DataFolder;
  if (!Options.RegistryFiles.empty())
    Session.Platform = MakeMemoryPlatform(LoadRegistry(Host.Console, Options.RegistryFiles),
                                          LoadMachine(Host.Console, Options.MachineFile));
  else
    Session.Platform = Live ? *std::move(Live) : MakeLocalServices();
  return Session;
}

std::unique_ptr<TRegistryClean> OpenData(TCliConsole &Console, TSession &Session, TFolderUse Use) {
  if (Session.Paths.MainIniPath.empty())
    throw TWrongUse("this system names no folder for the program's data; --data-folder DIR is "
                    "expected");
  // The one that chooses its folder itself also makes it.
  auto Data = Session.IsOwnFolder && Use == TFolderUse::Writes
                  ? std::make_unique<TRegistryClean>(Session.Platform)
                  : std::make_unique<TRegistryClean>(Session.Platform, Session.Paths);
  for (const TError &Interrupted : Data->InterruptedRestores())
    Complain(Console, WordsOf(Interrupted));
  return Data;
}

} // namespace hivesweep
