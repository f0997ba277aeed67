#include "scanners/ValueScan.h"

#include <utility>

#include "engine/ExportLines.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

bool IsExamined(TEntries Entries, TRegType Type) {
  switch (Entries) {
  case TEntries::Strings:
  case TEntries::SubkeyDefaults:
    return Type == TRegType::String || Type == TRegType::ExpandString;
  case TEntries::PlainStrings:
    return Type == TRegType::String;
  case TEntries::Dwords:
    break;
  }
  return Type == TRegType::Dword;
}

std::u16string ValueLine(const TValueScan &Scan, const TScanEntry &Entry, const TVerdict &Verdict) {
  const std::u16string Name = Scan.EscapeName ? Escaped(Entry.Name) : std::u16string(Entry.Name);
  switch (Scan.LineData) {
  case TLineData::DecimalDword:
    return DecimalDwordLine(Name, Entry.Value.Dword().value_or(0));
  case TLineData::EscapedIfNameIsPath:
    if (Entry.Name.size() < 2 || Entry.Name[1] != u':')
      break;
    [[fallthrough]];
  case TLineData::Escaped:
    return StringLine(Name, Escaped(Verdict.LineData));
  case TLineData::AsRead:
    break;
  }
  return StringLine(Name, Verdict.LineData);
}

// One run of one scanner over one of its keys.
class TWalk {
public:
  TWalk(const TValueScan &Scan, const TScanKey &Key, TScanRegistry &Engine, TGroupItems &Group)
      : Scan_(Scan), Engine_(Engine), Group_(Group),
        KeyPath_(std::u16string(RegRootName(Key.Root)) + u"\\" + std::u16string(Key.Path)),
        Context_{Engine.Disk(), Engine.WinDir, Key.Root == TRegRoot::CurrentUser} {}

  std::int32_t OverValues(TRegKey &Key) {
    TRegValueList Values;
    Engine_.NoteUnreadable(KeyPath_, Key.Values(Values));
    for (std::size_t Index = 0; Index < Values.Count() && !Engine_.Stopped; ++Index) {
      Engine_.Pump();
      Examine({Values[Index].Name, Values[Index].Data}, {});
    }
    return Found_;
  }

  std::int32_t OverSubkeys(TRegKey &Key) {
    std::vector<std::u16string> Names;
    Engine_.NoteUnreadable(KeyPath_, Key.SubkeyNames(Names));
    TRegValue Value;
    for (std::size_t Index = 0; Index < Names.size() && !Engine_.Stopped; ++Index) {
      Engine_.Pump();
      const auto Subkey = Engine_.OpenSubkey(Key, KeyPath_, Names[Index]);
      if (!Subkey)
        continue;
      const TRegStatus Status = Subkey->Read(u"", Value);
      if (Status == TRegStatus::Ok)
        Examine({u"", Value.Data()}, Names[Index]);
      else if (Status != TRegStatus::NotFound)
        Engine_.NoteUnreadable(KeyPath(Names[Index]), Status);
    }
    return Found_;
  }

private:
  std::u16string KeyPath(std::u16string_view Subkey) const {
    return KeyPath_ + std::u16string(Subkey);
  }

  void Examine(const TScanEntry &Entry, std::u16string_view Subkey) {
    if (!IsExamined(Scan_.Entries, Entry.Value.Type()))
      return;
    std::optional<TVerdict> Verdict = Scan_.Rule(Context_, Entry);
    if (!Verdict)
      return;
    ++Found_;
    TFinding Finding;
    Finding.Label = Scan_.RecordLabel;
    Finding.Area = Scan_.Area;
    Finding.KeyPath = KeyPath(Subkey);
    Finding.ValueName = Entry.Name;
    Finding.ItemKind = Verdict->EmptyValue ? Engine_.KindKey : Engine_.KindValue;
    Finding.BackupLines = {KeyLine(Finding.KeyPath), ValueLine(Scan_, Entry, *Verdict)};
    Finding.Data = std::move(Verdict->Data);
    Engine_.Report(Group_, std::move(Finding));
  }

  const TValueScan &Scan_;
  TScanRegistry &Engine_;
  TGroupItems &Group_;
  const std::u16string KeyPath_;
  const TScanContext Context_;
  std::int32_t Found_ = 0;
};

} // namespace

std::int32_t RunValueScan(const TValueScan &Scan, TScanRegistry &Engine, TStatusLabel &StatusLabel,
                          TProgressBar &ProgressBar, TGroupItems &Group) {
  ProgressBar.Advance();
  std::int32_t Found = 0;
  for (const TScanKey &ScanKey : Scan.Keys) {
    const auto Key = Engine.OpenKey(ScanKey.Root, ScanKey.Path);
    if (!Key)
      continue;
    Engine.ShowStatus(StatusLabel, Scan.StatusLabel);
    TWalk Walk(Scan, ScanKey, Engine, Group);
    Found +=
        Scan.Entries == TEntries::SubkeyDefaults ? Walk.OverSubkeys(*Key) : Walk.OverValues(*Key);
  }
  return Found;
}

} // namespace hivesweep
