#include "scanners/FileTypeScanners.h"

#include <optional>
#include <utility>

#include "engine/ExportLines.h"
#include "scanners/CommandRules.h"
#include "scanners/KeyRules.h"
#include "scanners/ScannerRun.h"

namespace hivesweep {

namespace {

constexpr TClassesHome ClassRoot[] = {{TRegRoot::ClassesRoot, u""}};

// One verb of a file type or application, which has a command.
struct TVerb {
  std::u16string KeyPath;
  std::u16string CommandPath; // the key of the command
  std::u16string Stored;      // as the registry has it
  TCommandText Command;
};

// Tells of each verb below the key's "shell". False when not all could be read.
template <typename TTake>
bool ForEachVerb(TScannerRun &Run, TRegKey &Key, std::u16string_view KeyPath, TTake Take) {
  const TRegOpened Shell = Key.Open(u"shell");
  if (!Shell.Key)
    return Shell.Status == TRegStatus::NotFound;
  const std::u16string ShellPath = Below(KeyPath, u"shell");
  std::vector<std::u16string> Names;
  bool Whole = Shell.Key->SubkeyNames(Names) == TRegStatus::Ok;
  TRegValue Stored;
  for (const std::u16string &Name : Names) {
    const TRegOpened Opened = Shell.Key->Open(Below(Name, u"command"));
    const TRegStatus Status = Opened.Key ? Opened.Key->Read(u"", Stored) : Opened.Status;
    if (Status == TRegStatus::Ok) {
      const std::u16string VerbPath = Below(ShellPath, Name);
      Take(TVerb{VerbPath, Below(VerbPath, u"command"), std::u16string(Stored.Data().Text()),
                 JudgeCommand(Run.Engine, Stored.Data())});
    } else if (Status != TRegStatus::NotFound) {
      Run.Engine.NoteUnreadable(Below(Below(ShellPath, Name), u"command"), Status);
      Whole = false;
    }
  }
  return Whole;
}

// Reports a key on account of the command below it: the lines name the key that is
// reported and then, for the command to come back where it was, the command's own.
void ReportCommand(TScannerRun &Run, std::u16string_view KeyPath, std::int32_t ItemKind,
                   const TVerb &Verb) {
  Run.Report({.Label = TLabel::MissingPath,
              .KeyPath = std::u16string(KeyPath),
              .ValueName = std::u16string(WholeKey),
              .Data = Verb.Command.Expanded,
              .ItemKind = ItemKind,
              .BackupLines = {KeyLine(KeyPath), KeyLine(Verb.CommandPath),
                              StringLine(u"", Escaped(Verb.Stored))}});
}

void CheckIcon(TScannerRun &Run, TRegKey &Type, std::u16string_view TypePath) {
  const auto Key = Run.Open(Type, TypePath, u"DefaultIcon");
  TRegValue Stored;
  if (!Key || Key->Read(u"", Stored) != TRegStatus::Ok)
    return;
  const TCommandText Icon = JudgeCommand(Run.Engine, Stored.Data());
  if (Icon.Fate != TFate::Dead)
    return;
  const std::u16string KeyPath = Below(TypePath, u"DefaultIcon");
  Run.Report({.Label = TLabel::ApplicationIcon,
              .KeyPath = KeyPath,
              .ValueName = std::u16string(WholeKey),
              .Data = Icon.Expanded,
              .ItemKind = Run.Engine.KindValue,
              .BackupLines = {KeyLine(KeyPath), StringLine(u"", Escaped(Stored.Data().Text()))}});
}

// The key is reported when it holds nothing. True when it does.
bool CheckContent(TScannerRun &Run, TRegKey &Key, std::u16string_view KeyPath, TLabel Label) {
  const TContent Content = ContentOf(Key);
  if (Content == TContent::Filled)
    return false;
  Run.ReportKey(Label, KeyPath, u"", Content == TContent::BlankDefault);
  return true;
}

// The default value of an extension's key is reported when the type that it names is
// gone and nothing else keeps the extension alive.
void CheckDefaultType(TScannerRun &Run, TRegKey &Extension, std::u16string_view KeyPath,
                      TLabel Label, std::span<const TClassesHome> Homes) {
  const std::u16string Type = DefaultText(Extension);
  if (IsNoClass(Run, Type, Homes) && !IsKeptAlive(Run, Extension, Homes))
    Run.ReportValue(Label, KeyPath, u"", Type, Type);
}

void CheckApplication(TScannerRun &Run, TRegKey &Key, std::u16string_view KeyPath) {
  std::optional<TVerb> FirstDead;
  bool AnyAlive = false;
  const bool Whole = ForEachVerb(Run, Key, KeyPath, [&](TVerb Verb) {
    AnyAlive |= Verb.Command.Fate == TFate::Alive;
    if (Verb.Command.Fate == TFate::Dead && !FirstDead)
      FirstDead = std::move(Verb);
  });
  // A command that can't be read may be the one that lives.
  if (FirstDead && !AnyAlive && Whole)
    ReportCommand(Run, KeyPath, Run.Engine.KindKey, *FirstDead);
}

void CheckFileType(TScannerRun &Run, TRegKey &Type, std::u16string_view TypePath) {
  if (CheckContent(Run, Type, TypePath, TLabel::EmptyKey))
    return;
  CheckIcon(Run, Type, TypePath);
  ForEachVerb(Run, Type, TypePath, [&](const TVerb &Verb) {
    if (Verb.Command.Fate == TFate::Dead)
      ReportCommand(Run, Verb.KeyPath, Run.Engine.KindValue, Verb);
  });
}

} // namespace

std::int32_t ScanApplications(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                              TProgressBar &ProgressBar, TGroupItems &Group) {
  TScannerRun Run(Engine, StatusLabel, ProgressBar, Group, 2, TLabel::ApplicationIcon);
  constexpr std::u16string_view Path = u"HKEY_CLASSES_ROOT\\Applications";
  if (const auto Key = Engine.OpenKey(TRegRoot::ClassesRoot, u"\\Applications"))
    Run.ForEachKey(*Key, Path, Run.SubkeyNames(*Key, Path),
                   [&](TRegKey &Application, std::u16string_view KeyPath) {
                     CheckApplication(Run, Application, KeyPath);
                   });
  return Run.Found;
}

std::int32_t ScanFileTypes(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                           TProgressBar &ProgressBar, TGroupItems &Group) {
  TScannerRun Run(Engine, StatusLabel, ProgressBar, Group, 3, TLabel::InvalidExtensions);
  Run.MovesPerKey = true;
  if (const auto Classes = Engine.OpenKey(TRegRoot::ClassesRoot, u"\\"))
    Run.ForEachKey(
        *Classes, RegRootName(TRegRoot::ClassesRoot), Engine.FileTypeNames,
        [&](TRegKey &Type, std::u16string_view KeyPath) { CheckFileType(Run, Type, KeyPath); });
  return Run.Found;
}

std::int32_t ScanExtensions(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                            TProgressBar &ProgressBar, TGroupItems &Group) {
  TScannerRun Run(Engine, StatusLabel, ProgressBar, Group, 3, TLabel::UnusedExtensions);
  Run.MovesPerKey = true;
  if (const auto Classes = Engine.OpenKey(TRegRoot::ClassesRoot, u"\\"))
    Run.ForEachKey(*Classes, RegRootName(TRegRoot::ClassesRoot), Engine.ExtensionNames,
                   [&](TRegKey &Extension, std::u16string_view KeyPath) {
                     if (!CheckContent(Run, Extension, KeyPath, TLabel::UnusedExtensions))
                       CheckDefaultType(Run, Extension, KeyPath, TLabel::InvalidExtensions,
                                        ClassRoot);
                   });
  return Run.Found;
}

std::int32_t ScanMachineClasses(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                                TProgressBar &ProgressBar, TGroupItems &Group) {
  TScannerRun Run(Engine, StatusLabel, ProgressBar, Group, 15, TLabel::ActiveX);
  Run.MovesPerKey = true;
  constexpr std::u16string_view Path = u"HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes";
  constexpr TClassesHome Homes[] = {{TRegRoot::LocalMachine, u"SOFTWARE\\Classes\\"},
                                    {TRegRoot::ClassesRoot, u""}};
  if (const auto Classes = Engine.OpenKey(TRegRoot::LocalMachine, u"\\SOFTWARE\\Classes"))
    Run.ForEachKey(*Classes, Path, Run.SubkeyNames(*Classes, Path),
                   [&](TRegKey &Key, std::u16string_view KeyPath) {
                     const bool IsExtension = KeyPath[Path.size() + 1] == u'.';
                     if (!CheckContent(Run, Key, KeyPath, TLabel::EmptyKey) && IsExtension)
                       CheckDefaultType(Run, Key, KeyPath, TLabel::UnusedExtensions, Homes);
                   });
  return Run.Found;
}

} // namespace hivesweep
