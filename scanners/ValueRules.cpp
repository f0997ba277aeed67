#include "scanners/ValueRules.h"

#include "engine/PathRules.h"
#include "platform/Text.h"
#include "scanners/LocalTargets.h"

namespace hivesweep {

namespace {

constexpr auto Healthy = std::nullopt;

TVerdict Problem(std::u16string_view Data, std::u16string_view LineData) {
  return {std::u16string(Data), std::u16string(LineData), false};
}

} // namespace

std::optional<TVerdict> JudgeAppPath(const TScanContext &Context, const TScanEntry &Entry) {
  std::u16string Path(Entry.Value.Text());
  ExpandSystemRoot(Path, Context.WinDir);
  if (Path.starts_with(u'"'))
    Path = WithoutQuotes(Path);
  ExpandProgramFiles(Path, Context.WinDir);
  if (!IsLocalPath(Context.Disk, Path) || !Context.Disk.NoSuchFile(Path))
    return Healthy;
  return Problem(Path, Entry.Value.Text());
}

std::optional<TVerdict> JudgeHelpFile(const TScanContext &Context, const TScanEntry &Entry) {
  std::u16string Path(Entry.Value.Text());
  if (!Path.ends_with(u'\\'))
    Path.push_back(u'\\');
  Path += Entry.Name;
  if (Context.Disk.IsOnFixedDrive(Path) && !Context.Disk.NoSuchFile(Path))
    return Healthy;
  return Problem(Path, Entry.Value.Text());
}

std::optional<TVerdict> JudgeInstallerFolder(const TScanContext &Context, const TScanEntry &Entry) {
  if (!Context.Disk.IsOnFixedDrive(Entry.Name) || !Context.Disk.NoSuchFolder(Entry.Name))
    return Healthy;
  return Problem(u"", Entry.Value.Text());
}

std::optional<TVerdict> JudgeMuiEntry(const TScanContext &Context, const TScanEntry &Entry) {
  constexpr std::size_t LongestPath = 255;
  std::u16string Path(Entry.Name);
  if (Path.starts_with(u'@')) {
    const std::u16string_view Resource = TextBeforeComma(Path);
    Path = std::u16string(Resource.substr(Resource.empty() ? 0 : 1, LongestPath));
  }
  ExpandSystemRoot(Path, Context.WinDir);
  Path = WithoutQuotes(Path);
  if (!IsLocalPath(Context.Disk, Path) || !Context.Disk.NoSuchFile(ExtractFileFromCommand(Path)))
    return Healthy;
  return Problem(Entry.Value.Text(), Entry.Value.Text());
}

std::optional<TVerdict> JudgeSharedDll(const TScanContext &Context, const TScanEntry &Entry) {
  const std::optional<std::uint32_t> Users = Entry.Value.Dword();
  if (!Users || !Context.Disk.IsOnFixedDrive(Entry.Name))
    return Healthy;
  if (*Users != 0 && !Context.Disk.NoSuchFile(Entry.Name))
    return Healthy;
  return Problem(ToDecimal(*Users), u"");
}

std::optional<TVerdict> JudgeDriver(const TScanContext & /*Context*/, const TScanEntry &Entry) {
  if (!Entry.Value.Text().empty())
    return Healthy;
  return TVerdict{u"", u"", true};
}

std::u16string FontPath(std::u16string_view WinDir, std::u16string_view Data) {
  return UnitAt(Data, 2) == u':' ? std::u16string(Data)
                                 : std::u16string(WinDir) + u"\\Fonts\\" + std::u16string(Data);
}

std::optional<TVerdict> JudgeFont(const TScanContext &Context, const TScanEntry &Entry) {
  const std::u16string_view Data = Entry.Value.Text();
  // A bare file name has no fixed drive in front, so it is healthy: Windows looks
  // for fonts in more places than its own folder.
  if (!Context.Disk.IsOnFixedDrive(Data) ||
      !Context.Disk.NoSuchFile(FontPath(Context.WinDir, Data)))
    return Healthy;
  return Problem(Data, Data);
}

std::optional<std::u16string> RundllTarget(std::u16string_view Command) {
  const std::u16string Lower = AsciiLower(Command);
  for (const std::u16string_view Program : {u"rundll32.exe", u"rundll.exe"}) {
    const std::size_t At = Lower.find(Program);
    if (At == std::u16string::npos)
      continue;
    const std::u16string_view Rest = Trim(std::u16string_view(Lower).substr(At + Program.size()));
    return std::u16string(Trim(TextBeforeComma(Rest)));
  }
  return std::nullopt;
}

std::optional<TVerdict> JudgeStartupEntry(const TScanContext &Context, const TScanEntry &Entry) {
  const std::u16string Command = WithoutQuotes(Entry.Value.Text());
  if (Command.empty())
    return TVerdict{u"", u"", true};
  // Only what is tested is expanded, and only the user's: the record keeps the text
  // that the registry has.
  std::u16string Tested = Command;
  if (Context.UserPass)
    ExpandSystemRoot(Tested, Context.WinDir);
  if (const std::optional<std::u16string> Dll = RundllTarget(Tested)) {
    if (UnitAt(*Dll, 2) != u':' || !Context.Disk.IsOnFixedDrive(*Dll) ||
        !Context.Disk.NoSuchFile(*Dll))
      return Healthy;
  } else if (!IsLocalPath(Context.Disk, Tested) ||
             !Context.Disk.NoSuchFile(ExtractFileFromCommand(Tested))) {
    return Healthy;
  }
  return Problem(Command, Command);
}

std::optional<TVerdict> JudgeFirewallEntry(const TScanContext &Context, const TScanEntry &Entry) {
  std::u16string Path(Entry.Name);
  ExpandSystemRoot(Path, Context.WinDir);
  Path = WithoutQuotes(Path);
  if (!IsLocalPath(Context.Disk, Path))
    return Healthy;
  const std::u16string_view File = ExtractFileFromCommand(Path);
  if (!Context.Disk.NoSuchFile(File))
    return Healthy;
  // A file's name has its dot before the last three units; a name without any dot or
  // comma may be a folder's. Between the two nothing can be told.
  const bool FileLike = UnitAt(File, DotPosition(File)) == u'.';
  const bool FolderLike = File.find_first_of(u".,") == std::u16string_view::npos;
  if ((!FileLike && !FolderLike) || !Context.Disk.NoSuchFolder(File))
    return Healthy;
  return Problem(Entry.Value.Text(), Entry.Value.Text());
}

} // namespace hivesweep
