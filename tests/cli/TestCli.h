// Runs the command line inside a test: its streams are texts, its files lie in a
// folder of the test's own.
#pragma once

#include <algorithm>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "cli/Application.h"
#include "engine/ExportLines.h"
#include "platform/DiskFile.h"
#include "platform/Text.h"
#include "scanners/ScannerTable.h"
#include "tests/platform/TestHosts.h"

namespace hivesweep {

class TTestConsole final : public TCliConsole {
public:
  bool Write(TConsoleStream Stream, std::string_view Utf8) override {
    if (Stream == TConsoleStream::Error)
      ErrorWrites.emplace_back(Utf8);
    (Stream == TConsoleStream::Output ? Output : Error).append(Utf8);
    return Stream == TConsoleStream::Error || !IsFull;
  }
  bool IsTerminal(TConsoleStream Stream) override {
    return Stream == TConsoleStream::Error && ErrorIsTerminal;
  }
  int Width(TConsoleStream) override { return Columns; }
  bool InputIsTerminal() override { return HasAnswers; }
  std::optional<std::string> ReadLine() override {
    ++Questions;
    if (OnQuestion)
      OnQuestion();
    return Answer;
  }
  std::optional<std::string> ReadAll(std::size_t Most) override { return Input.substr(0, Most); }
  void CatchInterrupt() override { Catches = true; }
  bool WasInterrupted() override { return Catches && InterruptAt > 0 && ++Polls >= InterruptAt; }
  std::uint64_t Ticks() override { return ++Now; } // a millisecond from call to call

  std::string Output;
  std::string Error;
  std::vector<std::string> ErrorWrites;
  int Columns = 0;
  bool ErrorIsTerminal = false;
  bool IsFull = false;     // nothing more can be written to the output
  bool HasAnswers = false; // standard input is a terminal
  std::string Input;       // what standard input holds, for who reads all of it
  std::optional<std::string> Answer;
  std::function<void()> OnQuestion; // what happens meanwhile
  int Questions = 0;
  void InterruptAfter(int More) { InterruptAt = Polls + More; }
  int InterruptAt = 0; // the question for it that is answered with yes; 0: none

private:
  bool Catches = false;
  int Polls = 0;
  std::uint64_t Now = 0;
};

inline bool Has(const std::string &Text, std::string_view Part) {
  return Text.find(Part) != std::string::npos;
}

// What a scanner of an area with high risk does that finds a key.
inline std::int32_t ReportWholeKey(TScanRegistry &Engine, TGroupItems &Group,
                                   std::u16string KeyPath) {
  TFinding Finding;
  Finding.Label = TProblemType::ActiveX;
  Finding.Action = TFixAction::RemoveKey;
  Finding.Area = 1;
  Finding.BackupLines = {KeyLine(KeyPath)};
  Finding.KeyPath = std::move(KeyPath);
  Finding.ValueName = WholeKey;
  Finding.Data = u"C:\\gone.dll";
  Finding.ItemKind = Engine.KindKey;
  Engine.Report(Group, std::move(Finding));
  return 1;
}

inline std::optional<TPlatform> NoLivePlatform() { return std::nullopt; }

class TTestCli {
public:
  // Writes a file into the folder; "@name" in arguments stands for its path.
  void Write(std::u16string_view Name, std::string_view Bytes) const {
    ASSERT_EQ(WriteWholeFile(Scratch.File(Name), Bytes), TError());
  }
  std::string Read(std::u16string_view Name) const {
    std::string Bytes;
    EXPECT_EQ(ReadWholeFile(Scratch.File(Name), Bytes), TError());
    return Bytes;
  }
  // A text of version 5 under the name "registry", from its lines.
  void WriteRegistry(std::u16string_view Lines) const {
    Write(u"registry", "Windows Registry Editor Version 5.00\r\n\r\n" + ToUtf8(Lines));
  }

  int Run(std::vector<std::string> Arguments) {
    for (std::string &Word : Arguments)
      if (Word.starts_with("@"))
        Word = ToUtf8(Scratch.File(FromUtf8(Word.substr(1))));
    TCliHost Host = {Console, "1.2.3", Scanners, MakeLive};
    return RunCli(Host, Arguments);
  }

  // Runs a scan of "registry" with more arguments and reads its JSON; an exit code
  // other than the expected one is an error of the test.
  nlohmann::json Scan(std::initializer_list<std::string> More = {}, int ExpectedCode = 0) {
    std::vector<std::string> Arguments = {"scan", "--registry", "@registry", "--format", "json"};
    Arguments.insert(Arguments.end(), More);
    Console.Output.clear();
    EXPECT_EQ(Run(Arguments), ExpectedCode) << Console.Error;
    return nlohmann::json::parse(Console.Output);
  }

  TScratchFolder Scratch;
  TTestConsole Console;
  std::span<const TScannerRow> Scanners = ScannerTable();
  std::function<std::optional<TPlatform>()> MakeLive = NoLivePlatform;
};

// Three findings in three areas, and an entry that is held back.
inline constexpr std::u16string_view SmallRegistry =
    u"[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows NT\\CurrentVersion\\Fonts]\r\n"
    u"\"Old, \\\"bold\\\"\"=\"C:\\\\Fonts\\\\OLD.TTF\"\r\n"
    u"\"There\"=\"C:\\\\Fonts\\\\there.ttf\"\r\n"
    u"[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\Help]\r\n"
    u"\"gone.hlp\"=\"C:\\\\Program Files\\\\日本語\"\r\n"
    u"[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\SharedDlls]\r\n"
    u"\"C:\\\\Norton\\\\n.dll\"=dword:00000001\r\n"
    u"[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\Run]\r\n"
    u"\"Agent\"=\"C:\\\\Agent\\\\agent.exe\"\r\n";
inline constexpr std::string_view SmallMachine = "[Files]\r\nC:\\Fonts\\there.ttf\r\n";

} // namespace hivesweep
