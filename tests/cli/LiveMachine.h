// A live system for whole commands: its registry and its disk stay from one command to
// the next, and its registry editor imports at once.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "tests/cli/TestCli.h"
#include "tests/engine/TestScan.h"
#include "tests/platform/CutSeam.h"
#include "tests/repair/TestRepair.h"

namespace hivesweep {

// Beside the three findings of the small registry, one of high risk: a whole key.
inline std::int32_t FindGoneKey(TScanRegistry &Engine, TStatusLabel &, TProgressBar &,
                                TGroupItems &Group) {
  if (!Engine.OpenKey(TRegRoot::LocalMachine, u"\\Software\\Gone"))
    return 0;
  return ReportWholeKey(Engine, Group, u"HKEY_LOCAL_MACHINE\\Software\\Gone");
}

class TLiveCli {
public:
  TLiveCli()
      : Inner_(MakeMemoryPlatform(
            MemoryRegistry(std::u16string(SmallRegistry) +
                           u"[HKEY_LOCAL_MACHINE\\Software\\Gone]\r\n@=\"a\"\r\n\"b\"=dword:1\r\n"
                           u"[HKEY_LOCAL_MACHINE\\Software\\Gone\\Below]\r\n\"c\"=hex:01\r\n"),
            Machine())),
        Scanners_{{1, FindGoneKey}} {
    for (const TScannerRow &Row : ScannerTable())
      if (Row.Area != 1)
        Scanners_.push_back(Row);
    Cli.Scanners = Scanners_;
    Cli.MakeLive = [this] { return Make(); };
  }

  // The command with the scratch folder as its data folder; answers its exit code.
  int Run(std::vector<std::string> Arguments) {
    Arguments.insert(Arguments.end(), {"--data-folder", "@."});
    Cli.Console.Output.clear();
    Cli.Console.Error.clear();
    return Cli.Run(std::move(Arguments));
  }
  nlohmann::json Json(std::vector<std::string> Arguments) {
    Arguments.insert(Arguments.end(), {"--format", "json"});
    EXPECT_EQ(Run(std::move(Arguments)), 0) << Cli.Console.Error;
    return nlohmann::json::parse(Cli.Console.Output);
  }

  void Load(std::u16string_view Lines) {
    EXPECT_FALSE(Registry().LoadText("Windows Registry Editor Version 5.00\r\n" + ToUtf8(Lines)));
  }
  TMemoryRegistry &Registry() { return static_cast<TMemoryRegistry &>(*Inner_.Registry); }
  TFileSystem &Files() { return *Inner_.Files; }

  // Which of the four are there: F(ont), H(elp), S(tartup), K(ey).
  std::string Left() {
    std::string Out;
    const auto Look = [&](char Letter, const char16_t *Path, const char16_t *Name) {
      const TRegOpened Key = Registry().Open(TRegRoot::LocalMachine, Path);
      TRegValue Value;
      if (Key.Key && Key.Key->Read(Name, Value) == TRegStatus::Ok)
        Out.push_back(Letter);
    };
    Look('F', u"Software\\Microsoft\\Windows NT\\CurrentVersion\\Fonts", u"Old, \"bold\"");
    Look('H', u"Software\\Microsoft\\Windows\\Help", u"gone.hlp");
    Look('S', u"Software\\Microsoft\\Windows\\CurrentVersion\\Run", u"Agent");
    Look('K', u"Software\\Gone", u"");
    return Out;
  }

  std::u16string Described() {
    std::u16string Out;
    Describe(*Registry().Open(TRegRoot::LocalMachine, u"").Key, u"", Out);
    return Out;
  }

  TTestCli Cli;
  std::u16string HeldSettings; // the name of a file that can't be read

private:
  static TMachine Machine() {
    TMachine Out;
    Out.AppData = u"C:\\Data";
    Out.Files = {u"C:\\Fonts\\there.ttf", u"C:\\Data\\", u"C:\\Program Files\\Hivesweep\\"};
    return Out;
  }

  TPlatform Make() {
    TPlatform Out = MakeMemoryPlatform(nullptr, Machine());
    TPlatform Shared = CutPlatform(Inner_, NoCut_);
    Out.Registry = std::move(Shared.Registry);
    Out.Files = std::move(Shared.Files);
    TTestProfiles::In(Out).Held = HeldSettings;
    Out.Shell = std::make_unique<TTestEditor>([this](std::u16string_view Parameters) {
      std::string Bytes;
      const std::size_t Start = Parameters.find(u'"') + 1;
      ReadWholeFile(Parameters.substr(Start, Parameters.rfind(u'"') - Start), Bytes);
      // A name with quotes makes a text of it that is refused as a whole.
      Registry().LoadText(Bytes);
    });
    return Out;
  }

  TPlatform Inner_;
  TPowerCut NoCut_;
  std::vector<TScannerRow> Scanners_;
};

} // namespace hivesweep
