#include "engine/ScanRegistry.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

#include "engine/PathRules.h"
#include "engine/SafeLists.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

// Of the estimated work, so many steps more are kept for the end, where the bar
// runs out while the user reads the result.
std::int32_t RunOut(std::int32_t Work) { return (Work + 10) / 20; }

// Why a record of the finding would name something else than what was found; empty when
// it would not.
std::u16string_view WhyUnfixable(const TFinding &Finding) {
  if (Finding.Action == TFixAction::RemoveFile)
    return {};
  if (Finding.Action == TFixAction::RemoveValue && Trim(Finding.ValueName) == WholeKey)
    return u"its name is the mark of a whole key";
  const std::u16string_view KeyPath = Finding.KeyPath;
  const std::size_t Break = std::min(KeyPath.find(u'\\'), KeyPath.size());
  if (!RegRootByName(KeyPath.substr(0, Break)) ||
      KeyPath.find_first_not_of(u'\\', Break) == std::u16string_view::npos)
    return u"its key is no key below a root";
  return {};
}

// Scanners differ in whether a path has a backslash at its end.
std::u16string_view BareKeyPath(std::u16string_view KeyPath) {
  while (KeyPath.ends_with(u'\\'))
    KeyPath.remove_suffix(1);
  return KeyPath;
}

// Sets a flag back at the end of a scope, whichever way it is left.
class TBusy {
public:
  explicit TBusy(bool &Ready) : Ready_(Ready) { Ready_ = false; }
  TBusy(const TBusy &) = delete;
  TBusy &operator=(const TBusy &) = delete;
  ~TBusy() { Ready_ = true; }

private:
  bool &Ready_;
};

} // namespace

TScanRegistry::TScanRegistry(TPlatform &Platform, TListViewManage &Problems,
                             TSettingsPaths Settings, std::span<const TScannerRow> Scanners,
                             std::vector<std::u16string> Captions)
    : Labels(std::move(Captions)),
      ScannedAreaKeys(BuiltInScannedAreaKeys().begin(), BuiltInScannedAreaKeys().end()),
      Platform_(Platform), Problems_(Problems), Settings_(std::move(Settings)), Scanners_(Scanners),
      Disk_(*Platform.Files, *Platform.Drives),
      IgnoreFile_(*Platform.Profiles, Settings_.IgnoreIni) {}

std::int32_t TScanRegistry::StartScan(TWindowHandle Window, std::u16string_view AreaFlags,
                                      TStatusLabel &StatusLabel, std::u16string_view Prefix,
                                      TProgressBar &ProgressBar) {
  if (!Ready)
    return 0;
  ScanPrefix = Prefix;
  KindKey = 1;
  KindValue = 2;
  IsWow64 = QueryIsWow64(*Platform_.System);
  return RunScan(Window, AreaFlags, ProgressBar, StatusLabel);
}

void TScanRegistry::ScanAndReport(TWindowHandle Window, std::u16string_view AreaFlags,
                                  std::u16string_view Prefix, TProgressBar &ProgressBar,
                                  TStatusLabel &StatusLabel, TStatusLabel &ResultLabel) {
  const std::int32_t Count = StartScan(Window, AreaFlags, StatusLabel, Prefix, ProgressBar);
  ResultLabel.SetText(ToDecimal(static_cast<std::uint64_t>(Count)) + u"  problem[s] found");
}

std::int32_t TScanRegistry::RunScan(TWindowHandle Window, std::u16string_view AreaFlags,
                                    TProgressBar &ProgressBar, TStatusLabel &StatusLabel) {
  // Scanners pump messages, so a second start can arrive in the middle of a scan.
  if (!Ready)
    return 0;
  const TBusy Busy(Ready);
  NotifyWindow = Window;
  Stopped = false;
  HandlerError_ = nullptr;
  BackupText.clear();
  AreaResults_.fill({});
  ProtectedItems_.clear();
  UnreadableKeys_.clear();
  UnreadablePaths_.clear();
  // A name of an earlier scan would vouch for a program that is gone by now.
  UninstallNames.clear();
  if (MakesFolders)
    MakeBackupFolders();
  WinDir = Platform_.Folders->Windows();
  Disk_.Forget();
  UnreadSettings_.clear();
  Filter_ = std::make_unique<TExclusionFilter>(ReadSettings(u"Registry"), IgnoreFile_, IsWow64);
  IsIgnored(u""); // a list that can't be read is told of even when nothing is found
  const std::array<bool, AreaCount> Enabled = ReadAreaFlags(AreaFlags);

  ProgressBar.SetPosition(0);
  ProgressBar.SetMin(0);
  const std::int32_t Work = EstimateWork();
  Problems_.Clear();
  ProgressBar.SetMax(Work + RunOut(Work));

  std::int32_t Total = 0;
  for (const TArea &Area : Areas) {
    std::int32_t Count = 0;
    if (Enabled[AreaIndex(Area.Number)]) {
      Count = RunArea(Area, StatusLabel, ProgressBar);
      const TAreaResult &Result = AreaResults_[AreaIndex(Area.Number)];
      if (Result.Failure.empty())
        Total += Count;
    }
    Platform_.Messages->Post(NotifyWindow, WM_AREA_SCANNED,
                             static_cast<std::uintptr_t>(Area.Number), Count);
  }

  for (std::int32_t Step = 0; Step <= RunOut(Work); ++Step)
    ProgressBar.Advance();
  ProgressBar.SetMax(100);
  Filter_.reset();
  ExtensionNames.clear();
  FileTypeNames.clear();
  ThrowHandlerError();
  return Total;
}

void TScanRegistry::ThrowHandlerError() {
  if (HandlerError_)
    std::rethrow_exception(std::exchange(HandlerError_, nullptr));
}

void TScanRegistry::Pump() {
  try {
    Platform_.Messages->Pump();
  } catch (...) {
    if (!HandlerError_)
      HandlerError_ = std::current_exception();
    Stop();
  }
}

void TScanRegistry::MakeBackupFolders() {
  const std::u16string Folder = Platform_.Folders->Program();
  for (const std::u16string_view Name : {u"\\Backup\\", u"\\Backup\\Registry\\"}) {
    const std::u16string Path = Folder + std::u16string(Name);
    if (NoSuchFolder(*Platform_.Files, Path))
      Platform_.Files->CreateFolder(Path);
  }
}

TIniSection TScanRegistry::ReadSettings(std::u16string_view Section) {
  TIniSection Out;
  if (!Settings_.MainIni.empty())
    NoteUnread(Platform_.Profiles->ReadSection(Settings_.MainIni, Section, Out));
  return Out;
}

void TScanRegistry::NoteUnread(const TError &Failure) {
  if (Failure && std::ranges::find(UnreadSettings_, Failure) == UnreadSettings_.end())
    UnreadSettings_.push_back(Failure);
}

std::array<bool, AreaCount> TScanRegistry::ReadAreaFlags(std::u16string_view AreaFlags) {
  const TIniSection Options = ReadSettings(u"RegistryOpt");
  const auto Read = [&](std::u16string_view Key) { return Options.TextOr(Key, u"1"); };
  std::array<bool, AreaCount> Enabled{};
  for (const TArea &Area : Areas) {
    const std::size_t Index = AreaIndex(Area.Number);
    // Text that ends too early leaves the areas behind it off.
    Enabled[Index] = AreaFlags.empty()
                         ? Trim(Read(Area.Switch)) == u"1"
                         : AreaFlags.substr(std::min(Index, AreaFlags.size()), 1) == u"1";
  }
  LastFixFlag = Trim(Read(u"LastFix"));
  return Enabled;
}

TRegCounts TScanRegistry::CountEntries(TRegRoot Root, std::u16string_view Path) {
  TRegCounts Counts;
  if (const TRegOpened Opened = Platform_.Registry->Open(Root, Path); Opened.Key)
    Opened.Key->Counts(Counts);
  return Counts;
}

std::int32_t TScanRegistry::CountSubkeys(TRegRoot Root, std::u16string_view Path) {
  return static_cast<std::int32_t>(CountEntries(Root, Path).Subkeys);
}

std::int32_t TScanRegistry::CountComKeys() {
  return CountSubkeys(TRegRoot::ClassesRoot, u"CLSID") +
         CountSubkeys(TRegRoot::ClassesRoot, u"TypeLib");
}

std::int32_t TScanRegistry::CountSharedDlls() {
  return static_cast<std::int32_t>(
      CountEntries(TRegRoot::LocalMachine,
                   u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\SharedDlls")
          .Values);
}

std::int32_t TScanRegistry::CountFileTypes() {
  // What is no type of file but a table that the system keeps there.
  constexpr std::u16string_view Tables[] = {u"*",         u"CLSID", u"TypeLib",
                                            u"Interface", u"AppID", u"Applications"};
  ExtensionNames.clear();
  FileTypeNames.clear();
  std::vector<std::u16string> Names;
  if (const auto Key = OpenKey(TRegRoot::ClassesRoot, u"\\"))
    NoteUnreadable(RegRootName(TRegRoot::ClassesRoot), Key->SubkeyNames(Names));
  for (std::u16string &Name : Names) {
    if (Name.starts_with(u'.'))
      ExtensionNames.push_back(std::move(Name));
    else if (std::none_of(std::begin(Tables), std::end(Tables),
                          [&](std::u16string_view Table) { return EqualNoCase(Name, Table); }))
      FileTypeNames.push_back(std::move(Name));
  }
  return static_cast<std::int32_t>(ExtensionNames.size() + FileTypeNames.size());
}

std::int32_t TScanRegistry::EstimateWork() {
  constexpr std::int32_t FixedSteps = 22; // of the scanners that advance once
  return CountComKeys() + CountSharedDlls() + CountFileTypes() +
         CountSubkeys(TRegRoot::LocalMachine, u"SOFTWARE\\Classes") + FixedSteps;
}

std::int32_t TScanRegistry::RunArea(const TArea &Area, TStatusLabel &StatusLabel,
                                    TProgressBar &ProgressBar) {
  TAreaResult &Result = AreaResults_[AreaIndex(Area.Number)];
  TGroupItems &Group = *Problems_.AddGroup(Area.GroupName);
  Result.Scanned = true;
  CurrentArea_ = Area.Number;
  try {
    for (const TScannerRow &Scanner : Scanners_)
      if (Scanner.Area == Area.Number)
        Result.Found += Scanner.Scan(*this, StatusLabel, ProgressBar, Group);
  } catch (const std::exception &Failure) {
    Result.Failure = FromUtf8(Failure.what());
  } catch (...) {
    Result.Failure = u"an unknown failure";
  }
  CurrentArea_ = 0;
  Result.Listed = Group.Count();
  if (Result.Failure.empty())
    return Result.Listed;
  // The scanner that broke off has not answered how many it found.
  const std::int32_t OfFinished = std::exchange(Result.Found, Result.Listed + Result.Protected);
  // A broken-off area reports nothing; the deep scan, whose first pass alone may
  // take minutes, what its finished passes found.
  return Area.Number == DeepScanArea ? OfFinished : 0;
}

bool TScanRegistry::IsAllowed(std::u16string_view KeyPath, std::u16string_view ValueName,
                              std::u16string_view Data) {
  std::optional<TProtection> Protection = Filter_->Check(KeyPath, ValueName, Data);
  NoteUnread(IgnoreFile_.Failure());
  if (Protection)
    HoldBack(KeyPath, ValueName, Data, std::move(*Protection));
  return !Protection;
}

bool TScanRegistry::IsIgnored(std::u16string_view KeyPath) {
  const bool Ignored = IgnoreFile_.Contains(KeyPath);
  NoteUnread(IgnoreFile_.Failure());
  return Ignored;
}

std::int32_t TScanRegistry::GradeProblems(const TRiskTexts &Texts, TProgressBar &ProgressBar) {
  const std::uint32_t Before = Stops_;
  const bool MovesBar = !Stopped; // that of a stopped scan shows where it was
  if (MovesBar) {
    ProgressBar.SetPosition(0);
    ProgressBar.SetMax(std::max(Problems_.ViewCount(), 1));
  }
  const std::int32_t Selected = GradeRisks(
      Problems_, Texts, [this](std::u16string_view KeyPath) { return IsIgnored(KeyPath); },
      [&] {
        Pump();
        if (MovesBar)
          ProgressBar.Advance();
        return Stops_ == Before;
      });
  ThrowHandlerError();
  if (UnreadSettings_.empty())
    return Selected;
  Problems_.CheckAll(false);
  return 0;
}

void TScanRegistry::HoldBack(std::u16string_view KeyPath, std::u16string_view ValueName,
                             std::u16string_view Data, TProtection Protection) {
  if (CurrentArea_ != 0)
    ++AreaResults_[AreaIndex(CurrentArea_)].Protected;
  ProtectedItems_.push_back({CurrentArea_, std::u16string(KeyPath), std::u16string(ValueName),
                             std::u16string(Data), std::move(Protection)});
}

void TScanRegistry::Report(TGroupItems &Group, TFinding Finding) {
  if (const std::u16string_view Why = WhyUnfixable(Finding); !Why.empty()) {
    HoldBack(Finding.KeyPath, Finding.ValueName, Finding.Data,
             {TProtection::TSource::Unfixable, std::u16string(Why)});
    return;
  }
  if (!IsAllowed(Finding.KeyPath, Finding.ValueName, Finding.Data))
    return;
  TItemInfo &Item = *Group.Add();
  Item.Type = Finding.Label;
  Item.Action = Finding.Action;
  Item.TypeName = Caption(Finding.Label);
  Item.KeyPath = std::move(Finding.KeyPath);
  Item.ValueName = std::move(Finding.ValueName);
  Item.Data = std::move(Finding.Data);
  Item.ImageIndex = ToDecimal(static_cast<std::uint64_t>(Finding.Area));
  Item.ItemKind = Finding.ItemKind;
  std::move(Finding.BackupLines.begin(), Finding.BackupLines.end(), std::back_inserter(BackupText));
}

void TScanRegistry::NoteUnreadable(std::u16string_view KeyPath, TRegStatus Status) {
  if (Status == TRegStatus::Ok || Status == TRegStatus::NotFound)
    return;
  const std::u16string Path(BareKeyPath(KeyPath));
  if (UnreadablePaths_.insert(Path).second)
    UnreadableKeys_.push_back({Path, Status});
}

bool TScanRegistry::IsUnreadable(std::u16string_view KeyPath) const {
  return UnreadablePaths_.contains(BareKeyPath(KeyPath));
}

std::unique_ptr<TRegKey> TScanRegistry::OpenKey(TRegRoot Root, std::u16string_view Path) {
  TRegistry Registry(*Platform_.Registry);
  Registry.SetRoot(Root);
  const TRegStatus Status = Registry.OpenKey(Path);
  if (Status != TRegStatus::Ok)
    NoteUnreadable(std::u16string(RegRootName(Root)) + (Path.starts_with(u'\\') ? u"" : u"\\") +
                       std::u16string(Path),
                   Status);
  return Registry.ReleaseKey();
}

std::unique_ptr<TRegKey> TScanRegistry::OpenSubkey(TRegKey &Parent, std::u16string_view ParentPath,
                                                   std::u16string_view Name) {
  TRegOpened Opened = Parent.Open(Name);
  if (Opened.Status != TRegStatus::Ok)
    NoteUnreadable(std::u16string(ParentPath) + std::u16string(Name), Opened.Status);
  return std::move(Opened.Key);
}

void TScanRegistry::ShowStatus(TStatusLabel &StatusLabel, TProblemType Label) const {
  StatusLabel.SetText(ScanPrefix + Caption(Label));
}

} // namespace hivesweep
