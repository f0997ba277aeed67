#include "scanners/DeepScan.h"

#include <iterator>
#include <utility>

#include "engine/PathRules.h"
#include "engine/PhraseMatcher.h"
#include "platform/Text.h"
#include "scanners/CommandRules.h"
#include "scanners/ScannerRun.h"

namespace hivesweep {

namespace {

// An entry is a key, with so many of its values: a look at the messages costs more than
// one at a value.
constexpr std::size_t ValuesPerEntry = 32;

// So many entries are one step of the bar.
constexpr std::uint32_t EntriesPerStep = 64;

// The keys that other areas look after. Their names are ASCII, and no other letter has
// an ASCII capital: the matcher, which folds ASCII alone, finds each of them wherever it
// stands in a path of which all letters have been folded.
TPhraseMatcher MakeMatcher(const std::vector<std::u16string> &Phrases) {
  std::vector<std::u16string> Lower;
  for (const std::u16string &Phrase : Phrases)
    Lower.push_back(AsciiLower(Phrase));
  std::vector<TPhraseMatcher::TPhrase> Out;
  for (const std::u16string &Phrase : Lower)
    Out.push_back({Phrase, 0, 0});
  return TPhraseMatcher(Out);
}

// Walks trees of keys with a list of its own: the registry allows a depth that would
// be too much for the machine's stack. Only the way down to the current key is kept.
class TDeepWalk {
public:
  explicit TDeepWalk(TScannerRun &Run)
      : Run_(Run), Matcher_(MakeMatcher(Run.Engine.ScannedAreaKeys)) {}

  // Walks a key, without the subkey of the name LeftOut. Of a root the values are left
  // out: a problem there would have no path by which a fix could find it.
  void Walk(TKeyAt Top, const TPathVariables &Variables, std::u16string_view LeftOut = {}) {
    Variables_ = &Variables;
    Path_.clear();
    TPhraseMatcher::TState State = TPhraseMatcher::AtStart;
    if (!Append(Top.Path, State) || !GoesOn())
      return;
    Enter(std::move(Top.Key), State);
    if (!LeftOut.empty())
      std::erase_if(Level().Names,
                    [&](const std::u16string &Name) { return EqualNoCase(Name, LeftOut); });
    while (Depth_ > 0 && GoesOn()) {
      TLevel &Here = Level();
      if (Here.Next == Here.Names.size())
        Leave();
      else
        EnterSubkey(Here, Here.Names[Here.Next++]);
    }
    while (Depth_ > 0)
      Leave();
  }

private:
  struct TLevel {
    std::unique_ptr<TRegKey> Key;
    std::vector<std::u16string> Names; // of the subkeys
    std::size_t Next = 0;
    std::size_t PathLength = 0;
    TPhraseMatcher::TState State = TPhraseMatcher::AtStart; // behind the path
  };

  TLevel &Level() { return Levels_[Depth_ - 1]; }

  // Makes the path longer. False when it now holds what another area looks after.
  bool Append(std::u16string_view Text, TPhraseMatcher::TState &State) {
    Path_ += Text;
    return !Matcher_.Continue(State, Text);
  }

  void EnterSubkey(TLevel &Parent, std::u16string_view Name) {
    TPhraseMatcher::TState State = Parent.State;
    Path_.resize(Parent.PathLength);
    if (!Append(u"\\", State) || !Append(Name, State))
      return;
    TRegOpened Opened = Parent.Key->OpenItself(Name);
    Run_.Engine.NoteUnreadable(Path_, Opened.Status);
    if (Opened.Key)
      Enter(std::move(Opened.Key), State);
  }

  // The key of the current path. Its level takes the memory of the last one there.
  void Enter(std::unique_ptr<TRegKey> Key, TPhraseMatcher::TState State) {
    if (Depth_++ == Levels_.size())
      Levels_.emplace_back();
    TLevel &Here = Level();
    Here.Key = std::move(Key);
    Here.Next = 0;
    Here.PathLength = Path_.size();
    Here.State = State;
    if (Path_.find(u'\\') != std::u16string::npos)
      ExamineValues(*Here.Key);
    Run_.Engine.NoteUnreadable(Path_, Here.Key->SubkeyNames(Here.Names));
  }

  void Leave() {
    Level().Key.reset();
    --Depth_;
  }

  void ExamineValues(TRegKey &Key) {
    Run_.Engine.NoteUnreadable(Path_, Key.Values(Values_));
    for (std::size_t Index = 0; Index < Values_.Count(); ++Index) {
      const auto &[Name, Data] = Values_[Index];
      if (const std::u16string_view Text = Data.Text();
          Data.IsText() && !IsPathValid(Run_.Engine.Disk(), *Variables_, Text))
        Run_.ReportValue(TProblemType::DeepScan, Path_, Name, Text, Text);
      if ((Index + 1) % ValuesPerEntry == 0 && !GoesOn())
        return;
    }
  }

  // To be asked once per entry.
  bool GoesOn() {
    if (++Entries_ % EntriesPerStep == 0)
      MoveBar();
    return Run_.GoesOn();
  }

  // Nobody knows how large the tree is. The bar's end, once near, moves on with it:
  // a bar that shows itself full would say that nothing is left to do.
  void MoveBar() {
    constexpr int Share = 20; // of the bar that stays free
    TProgressBar &Bar = Run_.ProgressBar;
    if (Bar.Max() - Bar.Position() <= Bar.Max() / Share)
      Bar.SetMax(Bar.Max() + 1);
    Bar.Advance();
  }

  TScannerRun &Run_;
  const TPhraseMatcher Matcher_;
  const TPathVariables *Variables_ = nullptr; // those of the tree that is walked
  std::vector<TLevel> Levels_;                // from the top; behind Depth_ only memory
  std::size_t Depth_ = 0;
  std::u16string Path_;
  TRegValueList Values_;
  std::uint32_t Entries_ = 0;
};

TPathVariables OwnVariables(TScanRegistry &Engine) {
  Engine.WinDir = Engine.Platform().Folders->Windows();
  Engine.TempDir = Engine.Platform().Folders->Temp();
  return {Engine.WinDir, Engine.TempDir};
}

// The text of one value of a user's own key; empty when there is none.
std::u16string TextOf(TScanRegistry &Engine, TRegRoot Root, const std::u16string &Path,
                      std::u16string_view Name) {
  const TRegOpened Opened = Engine.Platform().Registry->Open(Root, Path);
  TRegValue Value;
  if (!Opened.Key || Opened.Key->Read(Name, Value) != TRegStatus::Ok || !Value.Data().IsText())
    return {};
  return std::u16string(Value.Data().Text());
}

// Another user's temporary folder, with a backslash. What can't be told stays a
// variable, and a text with a variable is never judged.
std::u16string TempDirOf(TScanRegistry &Engine, const std::u16string &User) {
  constexpr std::u16string_view Unknown = u"%TEMP%\\";
  constexpr std::u16string_view Profiles =
      u"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\ProfileList";
  std::u16string Temp = TextOf(Engine, TRegRoot::Users, Below(User, u"Environment"), u"TEMP");
  ReplaceAllNoAsciiCase(
      Temp, u"%userprofile%",
      TextOf(Engine, TRegRoot::LocalMachine, Below(Profiles, User), u"ProfileImagePath"));
  ExpandSystemRoot(Temp, Engine.WinDir);
  ReplaceAllNoAsciiCase(Temp, u"%systemdrive%", Engine.WinDir.substr(0, 2));
  if (!IsPlainPath(Engine, Temp))
    return std::u16string(Unknown);
  return Temp.ends_with(u'\\') ? Temp : Temp + u"\\";
}

} // namespace

std::int32_t ScanDeepFileSystem(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                                TProgressBar &ProgressBar, TGroupItems &Group) {
  TScannerRun Run(Engine, StatusLabel, ProgressBar, Group, DeepScanArea);
  Run.Begin(TProblemType::DeepScan);
  const TPathVariables Variables = OwnVariables(Engine);
  // On 64-bit systems the other half of the machine's software, which a program of
  // that kind sees here itself.
  constexpr std::u16string_view OtherHalf = u"Wow6432Node";
  TDeepWalk Walk(Run);
  if (TKeyAt Software = Run.Open(TRegRoot::LocalMachine, u"SOFTWARE"))
    Walk.Walk(std::move(Software), Variables, OtherHalf);
  return Run.Found;
}

std::int32_t ScanDeepUsers(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                           TProgressBar &ProgressBar, TGroupItems &Group) {
  TScannerRun Run(Engine, StatusLabel, ProgressBar, Group, DeepScanArea);
  Run.Begin(TProblemType::DeepScan);
  TPathVariables Variables = OwnVariables(Engine);
  TDeepWalk Walk(Run);
  if (TKeyAt Own = Run.Open(TRegRoot::CurrentUser, u""))
    Walk.Walk(std::move(Own), Variables);

  const std::u16string Current = Engine.Platform().System->UserKey();
  const TKeyAt Users = Run.Open(TRegRoot::Users, u"");
  if (!Users)
    return Run.Found;
  Run.ForEachName(Run.SubkeyNames(Users), [&](const std::u16string &User) {
    // "..._Classes" are software classes, which other areas look after.
    if (EqualNoCase(User, Current) || UpperCase(User).ends_with(u"_CLASSES"))
      return;
    const std::u16string Path = Below(Users.Path, User);
    TRegOpened Opened = Users.Key->OpenItself(User);
    Engine.NoteUnreadable(Path, Opened.Status);
    if (!Opened.Key)
      return;
    Variables.TempDir = TempDirOf(Engine, User);
    Walk.Walk({std::move(Opened.Key), Path}, Variables);
  });
  return Run.Found;
}

} // namespace hivesweep
