#include "scanners/FileTypeScanners.h"

#include <optional>
#include <utility>

#include "engine/ExportLines.h"
#include "scanners/CommandRules.h"
#include "scanners/KeyRules.h"
#include "scanners/ScannerRun.h"

namespace hivesweep {

namespace {

// One verb of a file type or application, which has a command.
struct TVerb {
  std::u16string KeyPath;
  std::u16string CommandPath; // the key of the command
  std::u16string Stored;      // as the registry has it
  TCommandText Command;
};

// Tells of each verb below the key's "shell". False when not all could be read.
template <typename TTake> bool ForEachVerb(TScannerRun &Run, const TKeyAt &At, TTake Take) {
  const TRegOpened Shell = At.Key->Open(u"shell");
  if (!Shell.Key)
    return Shell.Status == TRegStatus::NotFound;
  const std::u16string ShellPath = Below(At.Path, u"shell");
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
  Run.Report({.Label = TProblemType::MissingPath,
              .Action = TFixAction::RemoveKey,
              .KeyPath = std::u16string(KeyPath),
              .ValueName = std::u16string(WholeKey),
              .Data = Verb.Command.Expanded,
              .ItemKind = ItemKind,
              .BackupLines = {KeyLine(KeyPath), KeyLine(Verb.CommandPath),
                              StringLine(u"", Escaped(Verb.Stored))}});
}

void CheckIcon(TScannerRun &Run, const TKeyAt &Type) {
  const TKeyAt Key = Run.Open(Type, u"DefaultIcon");
  TRegValue Stored;
  if (!Key || Key.Key->Read(u"", Stored) != TRegStatus::Ok)
    return;
  const TCommandText Icon = JudgeCommand(Run.Engine, Stored.Data());
  if (Icon.Fate == TFate::Dead)
    Run.ReportKey(TProblemType::ApplicationIcon, Key.Path, Icon.Expanded, Run.Engine.KindValue,
                  Stored.Data().Text());
}

// The default value of an extension's key is reported when the type that it names is
// gone and nothing else keeps the extension alive.
void CheckDefaultType(TScannerRun &Run, const TKeyAt &Extension, TProblemType Label,
                      std::span<const TClassesHome> Homes) {
  const std::u16string Type(Run.DefaultText(Extension).value_or(u""));
  if (IsNoClass(Run, Type, Homes) && !IsKeptAlive(Run, Extension, Homes))
    Run.ReportValue(Label, Extension.Path, u"", Type, Type);
}

void CheckApplication(TScannerRun &Run, const TKeyAt &Application) {
  std::optional<TVerb> FirstDead;
  bool AnyAlive = false;
  const bool Whole = ForEachVerb(Run, Application, [&](TVerb Verb) {
    AnyAlive |= Verb.Command.Fate == TFate::Alive;
    if (Verb.Command.Fate == TFate::Dead && !FirstDead)
      FirstDead = std::move(Verb);
  });
  // A command that can't be read may be the one that lives.
  if (FirstDead && !AnyAlive && Whole)
    ReportCommand(Run, Application.Path, Run.Engine.KindKey, *FirstDead);
}

void CheckFileType(TScannerRun &Run, const TKeyAt &Type) {
  if (ReportIfEmpty(Run, Type, TProblemType::EmptyKey))
    return;
  CheckIcon(Run, Type);
  ForEachVerb(Run, Type, [&](const TVerb &Verb) {
    if (Verb.Command.Fate == TFate::Dead)
      ReportCommand(Run, Verb.KeyPath, Run.Engine.KindValue, Verb);
  });
}

} // namespace

std::int32_t ScanApplications(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                              TProgressBar &ProgressBar, TGroupItems &Group) {
  TScannerRun Run(Engine, StatusLabel, ProgressBar, Group, 2);
  Run.Begin(TProblemType::ApplicationIcon);
  if (const TKeyAt Top = Run.Open(TRegRoot::ClassesRoot, u"Applications"))
    Run.ForEachKey(Top, Run.SubkeyNames(Top),
                   [&](const TKeyAt &Application) { CheckApplication(Run, Application); });
  return Run.Found;
}

std::int32_t ScanFileTypes(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                           TProgressBar &ProgressBar, TGroupItems &Group) {
  TScannerRun Run(Engine, StatusLabel, ProgressBar, Group, 3);
  Run.Begin(TProblemType::InvalidExtensions);
  Run.MovesPerName = true;
  if (const TKeyAt Classes = Run.Open(TRegRoot::ClassesRoot, u""))
    Run.ForEachKey(Classes, Engine.FileTypeNames,
                   [&](const TKeyAt &Type) { CheckFileType(Run, Type); });
  return Run.Found;
}

std::int32_t ScanExtensions(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                            TProgressBar &ProgressBar, TGroupItems &Group) {
  TScannerRun Run(Engine, StatusLabel, ProgressBar, Group, 3);
  Run.Begin(TProblemType::UnusedExtensions);
  Run.MovesPerName = true;
  if (const TKeyAt Classes = Run.Open(TRegRoot::ClassesRoot, u""))
    Run.ForEachKey(Classes, Engine.ExtensionNames, [&](const TKeyAt &Extension) {
      if (!ReportIfEmpty(Run, Extension, TProblemType::UnusedExtensions))
        CheckDefaultType(Run, Extension, TProblemType::InvalidExtensions, ClassRoot);
    });
  return Run.Found;
}

std::int32_t ScanMachineClasses(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                                TProgressBar &ProgressBar, TGroupItems &Group) {
  TScannerRun Run(Engine, StatusLabel, ProgressBar, Group, 15);
  Run.Begin(TProblemType::ActiveX);
  Run.MovesPerName = true;
  constexpr TClassesHome Homes[] = {{TRegRoot::LocalMachine, u"SOFTWARE\\Classes\\"},
                                    {TRegRoot::ClassesRoot, u""}};
  if (const TKeyAt Classes = Run.Open(TRegRoot::LocalMachine, u"SOFTWARE\\Classes"))
    Run.ForEachKey(Classes, Run.SubkeyNames(Classes), [&](const TKeyAt &Key) {
      const bool IsExtension = Key.Path[Classes.Path.size() + 1] == u'.';
      if (!ReportIfEmpty(Run, Key, TProblemType::EmptyKey) && IsExtension)
        CheckDefaultType(Run, Key, TProblemType::UnusedExtensions, Homes);
    });
  return Run.Found;
}

} // namespace hivesweep
