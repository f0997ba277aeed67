#include "scanners/ValueScan.h"

#include <utility>

#include "engine/ExportLines.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

bool IsExamined(TEntries Entries, TRegType Type) {
  switch (Entries) {
  case TEntries::AnyType:
    return true;
  case TEntries::Strings:
  case TEntries::SubkeyDefaults:
  case TEntries::SubkeyStrings:
    return Type == TRegType::String || Type == TRegType::ExpandString;
  case TEntries::PlainStrings:
    return Type == TRegType::String;
  case TEntries::Dwords:
    break;
  }
  return Type == TRegType::Dword;
}

bool IsPath(std::u16string_view Text) { return Text.size() > 1 && Text[1] == u':'; }

// The value in the form of its type; nothing where the type has none.
std::optional<std::u16string> TypedLine(const TScanEntry &Entry, const std::u16string &Text) {
  switch (Entry.Value.Type()) {
  case TRegType::String:
  case TRegType::ExpandString:
    // Shares keep their single backslashes: these lists have always been written so.
    return StringLine(Entry.Name, IsPath(Text) ? Escaped(Text) : Text);
  case TRegType::Dword:
    return DwordLine(Entry.Name, Entry.Value.Dword().value_or(0));
  case TRegType::Binary:
    return BinaryLine(Entry.Name, Entry.Value.Bytes());
  default:
    return std::nullopt;
  }
}

std::optional<std::u16string> ValueLine(const TValueScan &Scan, const TScanEntry &Entry,
                                        const TVerdict &Verdict) {
  const std::u16string Name = Scan.EscapeName ? Escaped(Entry.Name) : std::u16string(Entry.Name);
  switch (Scan.LineData) {
  case TLineData::DecimalDword:
    return DecimalDwordLine(Name, Entry.Value.Dword().value_or(0));
  case TLineData::ByType:
    return TypedLine(Entry, Verdict.LineData);
  case TLineData::EscapedIfNameIsPath:
    if (!IsPath(Entry.Name))
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
    Engine_.NoteUnreadable(KeyPath_, Key.Values(Values_));
    for (std::size_t Index = 0; Index < Values_.Count() && !Engine_.Stopped; ++Index) {
      Engine_.Pump();
      Examine({Values_[Index].Name, Values_[Index].Data}, {});
    }
    return Found_;
  }

  std::int32_t OverSubkeys(TRegKey &Key) {
    std::vector<std::u16string> Names;
    Engine_.NoteUnreadable(KeyPath_, Key.SubkeyNames(Names));
    for (std::size_t Index = 0; Index < Names.size() && !Engine_.Stopped; ++Index) {
      if (Scan_.Entries == TEntries::SubkeyDefaults)
        OverDefault(Key, Names[Index]);
      else
        OverStrings(Key, Names[Index]);
    }
    return Found_;
  }

private:
  void OverDefault(TRegKey &Key, std::u16string_view Name) {
    Engine_.Pump();
    const auto Subkey = Engine_.OpenSubkey(Key, KeyPath_, Name);
    if (!Subkey)
      return;
    const TRegStatus Status = Subkey->Read(u"", Default_);
    if (Status == TRegStatus::Ok)
      Examine({u"", Default_.Data()}, Name);
    else if (Status != TRegStatus::NotFound)
      Engine_.NoteUnreadable(KeyPath(Name), Status);
  }

  // All of them: a stop takes effect before the next subkey.
  void OverStrings(TRegKey &Key, std::u16string_view Name) {
    const auto Subkey = Engine_.OpenSubkey(Key, KeyPath_, Name);
    if (!Subkey)
      return;
    Engine_.NoteUnreadable(KeyPath(Name), Subkey->Values(Values_));
    for (std::size_t Index = 0; Index < Values_.Count(); ++Index) {
      Engine_.Pump();
      Examine({Values_[Index].Name, Values_[Index].Data}, Name);
    }
  }

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
    if (auto Line = ValueLine(Scan_, Entry, *Verdict))
      Finding.BackupLines = {KeyLine(Finding.KeyPath), *std::move(Line)};
    Finding.Data = std::move(Verdict->Data);
    Engine_.Report(Group_, std::move(Finding));
  }

  const TValueScan &Scan_;
  TScanRegistry &Engine_;
  TGroupItems &Group_;
  const std::u16string KeyPath_;
  const TScanContext Context_;
  std::int32_t Found_ = 0;
  TRegValueList Values_; // of the key that is walked
  TRegValue Default_;
};

bool IsOfSubkeys(TEntries Entries) {
  return Entries == TEntries::SubkeyDefaults || Entries == TEntries::SubkeyStrings;
}

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
    Found += IsOfSubkeys(Scan.Entries) ? Walk.OverSubkeys(*Key) : Walk.OverValues(*Key);
  }
  return Found;
}

} // namespace hivesweep
