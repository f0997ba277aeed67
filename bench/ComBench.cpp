// A scan of classes and type libraries against the bare enumeration of the same keys
// through the same calls, in one run; and how it grows with their number.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "bench/Measure.h"
#include "bench/Scene.h"

using namespace hivesweep;

namespace {

constexpr int ClassesPerLibrary = 20;

// Eight digits: a registry that keeps its keys sorted then only appends.
std::u16string Identifier(int Entry) {
  const std::u16string Digits = Number(100'000'000 + Entry).substr(1);
  return u"{" + Digits + u"-0C5A-11D2-A000-00C04F8EDB8A}";
}

// A class as most are: a library in the process, a ProgID, and a key that no scan
// looks at.
std::u16string ClassText(const TScene &Scene, int Entry) {
  const std::u16string Key = u"[~\\HKEY_CLASSES_ROOT\\CLSID\\" + Identifier(Entry);
  return Key + u"\\InprocServer32]\n@=" + Quoted(Scene.PathOf(Entry % TScene::FileCount)) +
         u"\n\"ThreadingModel\"=\"Both\"\n" + Key + u"\\ProgID]\n@=\"Library." + Number(Entry) +
         u"\"\n" + Key + u"\\TypeLib]\n@=" + Quoted(Identifier(Entry / ClassesPerLibrary)) + u"\n";
}

std::u16string LibraryText(const TScene &Scene, int Entry) {
  const std::u16string Key = u"[~\\HKEY_CLASSES_ROOT\\TypeLib\\" + Identifier(Entry) + u"\\1.0\\";
  return Key + u"0\\win32]\n@=" + Quoted(Scene.PathOf(Entry % TScene::FileCount)) + u"\n" + Key +
         u"FLAGS]\n@=\"0\"\n";
}

void LoadClasses(const TScene &Scene, int From, int To) {
  std::u16string Text;
  for (int Entry = From; Entry < To; ++Entry) {
    Text += ClassText(Scene, Entry);
    if (Entry % ClassesPerLibrary == 0)
      Text += LibraryText(Scene, Entry / ClassesPerLibrary);
  }
  Scene.Registry->Load(Text);
}

using TNames = std::vector<std::u16string>;

TNames NamesOf(const TRegOpened &Opened) {
  TNames Names;
  if (Opened.Key)
    Opened.Key->SubkeyNames(Names);
  return Names;
}

std::size_t ReadDefault(const TRegOpened &Opened, TRegValue &Value) {
  return Opened.Key && Opened.Key->Read(u"", Value) == TRegStatus::Ok ? 1 : 0;
}

// Opens, lists and reads what a scan has to, and answers how many default values.
std::size_t Enumerate(TRegistryHost &Host) {
  std::size_t Count = 0;
  TRegValue Value;
  const TRegOpened Classes = Host.Open(TRegRoot::ClassesRoot, u"CLSID");
  for (const std::u16string &Name : NamesOf(Classes)) {
    const TRegOpened Class = Classes.Key->Open(Name);
    for (const std::u16string &Part : NamesOf(Class))
      if (Part != u"TypeLib")
        Count += ReadDefault(Class.Key->Open(Part), Value);
  }
  const TRegOpened Libraries = Host.Open(TRegRoot::ClassesRoot, u"TypeLib");
  for (const std::u16string &Name : NamesOf(Libraries)) {
    const TRegOpened Library = Libraries.Key->Open(Name);
    for (const std::u16string &Number : NamesOf(Library)) {
      const TRegOpened Version = Library.Key->Open(Number);
      for (const std::u16string &Part : NamesOf(Version)) {
        const TRegOpened Locale = Version.Key->Open(Part);
        const TNames Platforms = NamesOf(Locale);
        if (Platforms.empty())
          Count += ReadDefault(Version.Key->Open(Part), Value);
        for (const std::u16string &Platform : Platforms)
          Count += ReadDefault(Locale.Key->Open(Platform), Value);
      }
    }
  }
  return Count;
}

} // namespace

int main() {
  TScene Scene;
  double FirstPerClass = 0;
  int Loaded = 0;
  for (const auto &[Classes, Rounds] : {std::pair(1'000, 10), {10'000, 4}, {100'000, 2}}) {
    LoadClasses(Scene, Loaded, Classes);
    Loaded = Classes;
    // In turn, and the quickest of each: it was disturbed least.
    std::size_t Values = 0;
    double Bare = 1e9, Scan = 1e9;
    for (int Round = 0; Round < Rounds; ++Round) {
      Bare = std::min(Bare, SecondsFor([&] { Values = Enumerate(*Scene.Run.Platform.Registry); }));
      Scan = std::min(Scan, SecondsFor([&] { Scene.Run.Scan(TTestScan::Only(1)); }));
      Scene.Run.Progress.States.clear();
    }
    std::printf("%d classes, %zu default values, %d problems, %.0f us a class\n", Classes, Values,
                Scene.Found(), 1e6 * Scan / Classes);
    if (Values == 0 || Scene.Found() == 0)
      return 1;
    PrintRatio("scan of the classes / bare enumeration of the same keys", Scan / Bare,
               "goal: at most 1.3");
    if (FirstPerClass == 0)
      FirstPerClass = Scan / Classes;
    else
      PrintRatio("time per class / that with 1,000 classes", Scan / Classes / FirstPerClass,
                 "about 1: linear");
  }
  return 0;
}
