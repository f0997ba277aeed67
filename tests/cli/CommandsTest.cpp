// What the commands answer: exit codes, messages, what reaches which stream.
#include "tests/cli/LiveMachine.h"

#include <filesystem>
#include <stdexcept>

namespace hivesweep {

namespace {

using TWords = std::vector<std::string>;

TEST(CliOptions, WrongUseIsNamedWithWhatWasExpected) {
  static const struct {
    const char *Why;
    TWords Arguments;
    TWords Named;
  } Cases[] = {
      {"no such command", {"scann"}, {"\"scann\"", "areas, scan, fix"}},
      {"an option before the command", {"--format", "json", "scan"}, {"\"--format\""}},
      {"two commands", {"scan", "areas"}, {"\"areas\""}},
      {"no such option", {"scan", "--deep"}, {"\"--deep\"", "--areas"}},
      {"the other command's option", {"areas", "--areas", "Help"}, {"areas:", "\"--areas\""}},
      {"an option as old Windows programs have it", {"scan", "/areas", "Help"}, {"\"/areas\""}},
      {"no such risk", {"fix", "--risk", "low,none"}, {"--risk", "\"none\"", "low, medium, high"}},
      {"a risk twice", {"fix", "--risk", "low,LOW"}, {"--risk", "\"LOW\""}},
      {"risks and a plan", {"fix", "--risk", "low", "--plan", "p"}, {"--risk", "--plan"}},
      {"a fix of a text", {"fix", "--registry", "r.reg", "--yes"}, {"--registry", "--dry-run"}},
      {"no name", {"restore", "--yes"}, {"restore: NAME"}},
      {"two names", {"delete", "a", "b"}, {"delete:", "\"b\""}},
      {"no action", {"ignore"}, {"ignore: ACTION"}},
      {"no such action", {"ignore", "lost"}, {"\"lost\"", "list, add, remove, check"}},
      {"no key", {"ignore", "add"}, {"ignore add: KEY"}},
      {"a value to remove", {"ignore", "remove", "K", "V"}, {"ignore remove:", "\"V\""}},
      {"nobody to ask", {"restore", "NAME"}, {"--yes"}},
      {"nothing to restore into", {"restore", "NAME", "--yes"}, {"no registry"}},
      {"a word too many", {"scan", "file.reg"}, {"\"file.reg\""}},
      {"a value is missing", {"scan", "--registry"}, {"--registry", "FILE"}},
      {"a switch with a value", {"scan", "--no-progress=no"}, {"--no-progress", "\"no\""}},
      {"given twice", {"scan", "--format", "json", "--format", "csv"}, {"--format", "2 times"}},
      {"a switch given twice", {"scan", "--show-protected", "--show-protected"}, {"2 times"}},
      {"no such area", {"scan", "--areas", "Help,Helpp"}, {"--areas", "\"Helpp\"", "Startmenu"}},
      {"an empty area", {"scan", "--areas", "Help,,App"}, {"--areas", "\"\""}},
      {"a comma at the end", {"scan", "--areas", "Help,"}, {"--areas", "\"\""}},
      {"no area at all", {"scan", "--areas="}, {"--areas", "\"\""}},
      {"an area twice", {"scan", "--areas", "Help, hELP"}, {"--areas", "\"hELP\""}},
      {"all and one", {"scan", "--areas", "Help,all"}, {"--areas", "\"all\""}},
      {"areas in two ways", {"scan", "--areas", "all", "--area-flags", "1"}, {"--area-flags"}},
      {"18 flags", {"scan", "--area-flags", "111111111111111111"}, {"--area-flags", "17"}},
      {"no such form", {"scan", "--format", "xml"}, {"\"xml\"", "text, json, csv"}},
      {"an empty name", {"scan", "--registry", ""}, {"--registry", "FILE"}},
      {"a machine alone", {"scan", "--machine", "m.ini"}, {"--machine", "--registry"}},
      {"no registry here", {"scan"}, {"--registry"}},
      {"no terminal commands in messages", {"\x1B[31m"}, {"\"\xC2\xB7[31m\""}},
      {"an option where a text belongs",
       {"scan", "--area-flags", "--format", "json"},
       {"--area-flags: its value (TEXT)", "\"--format\""}},
      {"an option where a name belongs", {"areas", "--output", "--yes"}, {"--output", "\"--yes\""}},
      {"a version of what", {"--version=x"}, {"--version: takes no value", "\"x\""}},
      {"help with what", {"scan", "--help=x"}, {"--help: takes no value"}},
      {"what ends a command for the library", {"areas", "++"}, {"\"++\""}},
      {"the same in the place of a value", {"ignore", "add", "K", "++"}, {"\"++\""}},
      {"a zero does not end a message",
       {std::string("sc\0an", 5)},
       {"\"sc\xC2\xB7"
        "an\" is no command"}},
  };
  for (const auto &C : Cases) {
    TTestCli Cli;
    EXPECT_EQ(Cli.Run(C.Arguments), 2) << C.Why;
    EXPECT_EQ(Cli.Console.Output, "") << C.Why;
    EXPECT_EQ(std::count(Cli.Console.Error.begin(), Cli.Console.Error.end(), '\n'), 1) << C.Why;
    for (const std::string &Word : C.Named)
      EXPECT_TRUE(Has(Cli.Console.Error, Word)) << C.Why << ": " << Cli.Console.Error;
  }
}

TEST(CliOptions, AVeryLongWordIsNotEchoedWhole) {
  const std::string Long(100'000, 'x');
  for (const TWords &Arguments : {TWords{Long}, TWords{"areas", "--format", Long},
                                  TWords{"scan", "--registry", Long}, TWords{"ignore", Long}}) {
    TTestCli Cli;
    Cli.Run(Arguments);
    EXPECT_TRUE(Has(Cli.Console.Error, "xxx\xE2\x80\xA6xxx"));
    EXPECT_LT(Cli.Console.Error.size(), 2'100u);
  }
}

TEST(CliOptions, HelpIsAnAnswerAndItsAbsenceAMistake) {
  static const struct {
    TWords Arguments;
    int Code;
    const char *Part;
  } Cases[] = {
      {{"--help"}, 0, "scan"},
      {{"scan", "--help"}, 0, "--show-protected"},
      {{"areas", "-h"}, 0, "--data-folder"},
      {{"scan", "--bogus", "--help"}, 0, "--registry"},
      {{"--version"}, 0, "hivesweep-cli 1.2.3\n"},
      {{}, 2, "scan"},
  };
  for (const auto &C : Cases) {
    TTestCli Cli;
    EXPECT_EQ(Cli.Run(C.Arguments), C.Code) << C.Part;
    const TTestConsole &Console = Cli.Console;
    EXPECT_TRUE(Has(C.Code == 0 ? Console.Output : Console.Error, C.Part)) << Console.Output;
    EXPECT_EQ(C.Code == 0 ? Console.Error : Console.Output, "");
  }
}

TEST(CliFailures, NameTheFileAndTheLine) {
  static const struct {
    const char *Why;
    TWords Arguments;
    const char *Named;
  } Cases[] = {
      {"no such registry text", {"--registry", "@nowhere"}, "nowhere: could not be read: "},
      {"malformed registry text", {"--registry", "@bad"}, "bad:3: "},
      {"no such machine", {"--machine", "@nowhere"}, "nowhere: "},
      {"malformed machine", {"--machine", "@badmachine"}, "badmachine:2: "},
      {"a machine in a code page", {"--machine", "@ansimachine"}, "ansimachine:3: "},
      {"no such data folder", {"--data-folder", "@nowhere"}, "nowhere: "},
      {"a file as data folder", {"--data-folder", "@bad"}, "bad: "},
      {"no folder for the output", {"--output", "@nowhere/out"}, "out: could not be written: "},
  };
  for (const auto &C : Cases) {
    TTestCli Cli;
    Cli.WriteRegistry(SmallRegistry);
    Cli.Write(u"bad", "REGEDIT4\r\n[HKEY_CURRENT_USER\\A]\r\n\"name\"=what\r\n");
    Cli.Write(u"badmachine", "[Machine]\nWinDir=Windows\n");
    Cli.Write(u"ansimachine", "[Files]\nC:\\a.txt\nC:\\\xE4.txt\n");
    TWords Arguments = {"scan", "--registry", "@registry"};
    Arguments.insert(Arguments.end(), C.Arguments.begin(), C.Arguments.end());
    EXPECT_EQ(Cli.Run(Arguments), 3) << C.Why;
    EXPECT_TRUE(Has(Cli.Console.Error, C.Named)) << C.Why << ": " << Cli.Console.Error;
    EXPECT_EQ(Cli.Console.Output, "") << C.Why;
  }
}

TEST(CliFailures, WhatCannotBeReadIsNamedAndHasNoDefaults) {
  static const struct {
    TWords Arguments;
    std::u16string_view Name;
    bool IsFile; // where a folder should be; else the other way round
  } Cases[] = {{{"areas"}, u"Main.ini", false},
               {{"scan", "--areas", "Sounds"}, u"Ignore.ini", false}, // finds nothing
               {{"ignore", "list"}, u"Ignore.ini", false},
               {{"backups"}, u"backup", true},
               {{"delete", "backup1.reg", "--yes"}, u"undo", true}};
  for (const auto &C : Cases) {
    TLiveCli Live;
    if (C.IsFile)
      Live.Cli.Write(C.Name, "a file");
    else
      MakeLocalServices().Storage->CreateFolder(Live.Cli.Scratch.File(C.Name));
    EXPECT_EQ(Live.Run(C.Arguments), 3) << C.Arguments.front();
    const std::string &Error = Live.Cli.Console.Error;
    EXPECT_TRUE(Has(Error, ToUtf8(JoinPath(u"", C.Name))) && !Has(Error, "there is no")) << Error;
    EXPECT_EQ(Live.Cli.Console.Output == "", C.Arguments.front() != "scan");
  }
}

TEST(CliFailures, ACutOrTooLargeTextIsRefused) {
  static const struct {
    TWords Arguments;
    std::u16string_view Name;
    std::uintmax_t Limit;
  } Cases[] = {{{"ignore", "list", "--data-folder", "@."}, u"Ignore.ini", 64},
               {{"scan", "--registry", "@registry"}, u"registry", 512},
               {{"fix", "--dry-run", "--plan", "@plan", "--registry", "@"}, u"plan", 512}};
  for (const auto &C : Cases) {
    TTestCli Cli;
    Cli.Write(C.Name, Utf16Bytes(u"\uFEFFWindows Registry Editor Version 5.00\r\n") + "x");
    EXPECT_EQ(Cli.Run(C.Arguments), 3);
    std::filesystem::resize_file(Cli.Scratch.File(C.Name), (C.Limit << 20) + 1);
    EXPECT_EQ(Cli.Run(C.Arguments), 3);
    for (const std::string &Part : {ToUtf8(C.Name), std::string("in the middle of a character"),
                                    "larger than " + std::to_string(C.Limit) + " MiB"})
      EXPECT_TRUE(Has(Cli.Console.Error, Part)) << Cli.Console.Error;
  }
}

TEST(CliInput, ADashIsStandardInput) {
  TTestCli Cli;
  Cli.WriteRegistry(SmallRegistry);
  Cli.Console.Input = Cli.Read(u"registry");
  EXPECT_EQ(Cli.Run({"scan", "--registry", "-", "--format", "json"}), 0) << Cli.Console.Error;
  Cli.Console.Input = std::exchange(Cli.Console.Output, "");
  EXPECT_EQ(Cli.Run({"fix", "--dry-run", "--registry", "@registry", "--plan", "-"}), 0);
  EXPECT_TRUE(Has(Cli.Console.Output, "4 of 4 problems to be fixed")) << Cli.Console.Output;
  EXPECT_EQ(Cli.Run({"scan", "--registry", "-"}), 3);
  EXPECT_TRUE(Has(Cli.Console.Error, "standard input:1: ")) << Cli.Console.Error;
}

TEST(CliFailures, AFullDiskBehindStandardOutputIsToldByEveryCommand) {
  for (const TWords &Arguments :
       {TWords{"areas"}, TWords{"--help"}, TWords{"scan", "--registry", "@registry"}}) {
    TTestCli Cli;
    Cli.WriteRegistry(SmallRegistry);
    Cli.Console.IsFull = true;
    EXPECT_EQ(Cli.Run(Arguments), 3);
    EXPECT_TRUE(Has(Cli.Console.Error, "standard output")) << Cli.Console.Error;
  }
}

TEST(CliOutput, GoesToTheFileWholeOrNotAtAll) {
  TTestCli Cli;
  Cli.WriteRegistry(SmallRegistry);
  Cli.Scan();
  const std::string Expected = std::move(Cli.Console.Output);
  Cli.Console.Output.clear();
  const TWords Arguments = {"scan", "--registry", "@registry", "--format",
                            "json", "--output",   "@out"};
  ASSERT_EQ(Cli.Run(Arguments), 0) << Cli.Console.Error;
  EXPECT_EQ(Cli.Read(u"out"), Expected);
  EXPECT_EQ(Cli.Console.Output, "");

  Cli.Write(u"out", "what was there");
  SetReadOnly(Cli.Scratch.File(u"out"), true);
  EXPECT_EQ(Cli.Run(Arguments), 3);
  SetReadOnly(Cli.Scratch.File(u"out"), false);
  EXPECT_EQ(Cli.Read(u"out"), "what was there");
  EXPECT_TRUE(Has(Cli.Console.Error, "out: could not be written")) << Cli.Console.Error;
  EXPECT_EQ(Cli.Scratch.Count(), 2u) << "something was left behind";
}

// ---- settings ---------------------------------------------------------------------

std::string ScannedAreas(const nlohmann::json &Report) {
  std::string Out;
  for (const auto &Area : Report["areas"])
    Out += Area["scanned"].get<bool>() ? '1' : '0';
  return Out;
}

TEST(CliAreas, ComeFromTheWordsOrTheSettings) {
  static const struct {
    const char *Why;
    TWords Arguments;
    const char *Scanned;
  } Cases[] = {
      {"no settings: all but the deep scan", {}, "11111111111111110"},
      {"the settings", {"--data-folder", "@."}, "11101111111111111"},
      {"the engine reads settings itself",
       {"--data-folder", "@.", "--area-flags", ""},
       "11101111111111111"},
      {"an empty value behind an equals sign",
       {"--data-folder", "@.", "--area-flags="},
       "11101111111111111"},
      {"words go over settings", {"--data-folder", "@.", "--areas", "Fonts"}, "00010000000000000"},
      {"any case, blanks around", {"--areas", " help , OPENSCAN"}, "00001000000000001"},
      {"all", {"--areas", "All"}, "11111111111111111"},
      {"flags that end early", {"--area-flags", "01"}, "01000000000000000"},
      {"only 1 is on", {"--area-flags", "x2 1"}, "00010000000000000"},
  };
  for (const auto &C : Cases) {
    TTestCli Cli;
    Cli.WriteRegistry(SmallRegistry);
    Cli.Write(u"Main.ini", "[RegistryOpt]\r\nFonts=0\r\nOpenscan=1\r\n");
    TWords Arguments = {"scan", "--registry", "@registry", "--format", "json"};
    Arguments.insert(Arguments.end(), C.Arguments.begin(), C.Arguments.end());
    ASSERT_EQ(Cli.Run(Arguments), 0) << C.Why << ": " << Cli.Console.Error;
    EXPECT_EQ(ScannedAreas(nlohmann::json::parse(Cli.Console.Output)), C.Scanned) << C.Why;
  }
}

TEST(CliAreas, AreListedWithTheirSwitches) {
  TTestCli Cli;
  Cli.Write(u"Main.ini", "[RegistryOpt]\r\nFonts=0\r\nOpenscan=1\r\n");
  ASSERT_EQ(Cli.Run({"areas", "--data-folder", "@.", "--format", "json"}), 0);
  std::string Switches;
  const auto List = nlohmann::json::parse(Cli.Console.Output);
  for (const auto &Area : List["areas"])
    Switches += Area["on"].get<bool>() ? '1' : '0';
  EXPECT_EQ(Switches, "11101111111111111");

  Cli.Console.Output.clear();
  ASSERT_EQ(Cli.Run({"areas"}), 0);
  EXPECT_TRUE(Has(Cli.Console.Output, "\n 4  Fonts       Fonts              low     on\n"));
  EXPECT_TRUE(Has(Cli.Console.Output, "\n17  Openscan    Deep Scan          high    off\n"));
}

TEST(CliProtected, EachRuleIsNamed) {
  TTestCli Cli;
  Cli.WriteRegistry(std::u16string(SmallRegistry) + u"\"N/A\"=\"C:\\\\Agent\\\\gone.exe\"\r\n");
  Cli.Write(u"Main.ini",
            "[Registry]\r\nHKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\Help\\=gone.hlp\r\n");
  Cli.Write(u"Ignore.ini", "[Registry]\r\nHKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\"
                           "CurrentVersion\\Run=1\r\n");
  const auto Report = Cli.Scan({"--data-folder", "@.", "--show-protected"});
  std::vector<std::string> Rules;
  for (const auto &Item : Report["protected"])
    Rules.push_back(Item["area"].dump() + " " + Item["rule"].get<std::string>());
  EXPECT_EQ(Rules, (std::vector<std::string>{
                       "5 ExactPairs: HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\Help\\="
                       "gone.hlp",
                       "7 AnyFieldWords: norton",
                       "12 Ignore.ini: HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\"
                       "CurrentVersion\\Run",
                       "12 Unfixable: its name is the mark of a whole key",
                   }));
  Cli.Run({"scan", "--registry", "@registry", "--show-protected"});
  EXPECT_FALSE(Has(Cli.Console.Output, "(whole key)")) << Cli.Console.Output;
  EXPECT_FALSE(Cli.Scan({"--data-folder", "@."}).contains("protected"));
}

// ---- what happens during a scan ------------------------------------------------------

TEST(CliInterrupt, WhateverWasFoundIsPrinted) {
  std::u16string Lines = u"[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\Help]\r\n";
  constexpr int Entries = 9;
  for (int Number = 0; Number < Entries; ++Number)
    Lines += u"\"" + ToDecimal(static_cast<std::uint64_t>(Number)) + u".hlp\"=\"C:\\\\Gone\"\r\n";
  std::vector<int> Totals;
  for (int At = 1; At <= Entries; ++At) {
    TTestCli Cli;
    Cli.WriteRegistry(Lines);
    Cli.Console.InterruptAt = At;
    const auto Report = Cli.Scan({"--areas", "Help"}, 130);
    EXPECT_EQ(Report["problems"].size(), Report["total"].get<std::size_t>());
    Totals.push_back(Report["total"].get<int>());
  }
  EXPECT_LE(Totals.front(), 1);
  EXPECT_LT(Totals.front(), Totals.back());
  EXPECT_TRUE(std::is_sorted(Totals.begin(), Totals.end()));
}

TEST(CliFailures, UnreadableKeysAreToldAndDoNotSpoilTheScan) {
  TLiveCli Live;
  ASSERT_TRUE(Live.Registry().Deny(u"HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\Help"));
  EXPECT_EQ(Live.Run({"scan", "--format", "csv", "--areas", "Fonts,Help"}), 0);
  const TTestConsole &Console = Live.Cli.Console;
  EXPECT_TRUE(Has(Console.Error, "could not read HKEY_LOCAL_MACHINE\\Software\\Microsoft\\"
                                 "Windows\\Help"));
  EXPECT_TRUE(Has(Console.Error, ": access denied\n"));
  EXPECT_TRUE(Has(Console.Output, "OLD.TTF"));
}

TEST(CliFailures, AListThatIsHeldIsToldAndNothingIsSelected) {
  TLiveCli Live;
  for (const char16_t *Name : {u"Ignore.ini", u"Main.ini"}) {
    Live.HeldSettings = Name;
    EXPECT_EQ(Live.Run({"scan"}), 3);
    EXPECT_TRUE(Has(Live.Cli.Console.Error, "could not be read")) << Live.Cli.Console.Error;
    EXPECT_TRUE(Has(Live.Cli.Console.Output, "\n4 problems, 0 selected"))
        << Live.Cli.Console.Output;
    EXPECT_EQ(Live.Run({"fix", "--risk", "low,medium,high", "--yes"}), 3);
    EXPECT_EQ(Live.Left(), "FHSK");
  }
}

std::int32_t BreakOff(TScanRegistry &, TStatusLabel &, TProgressBar &, TGroupItems &) {
  throw std::runtime_error("the scanner broke");
}

TEST(CliFailures, ABrokenAreaIsToldAndTheOthersArePrinted) {
  std::vector<TScannerRow> Scanners = {{1, BreakOff}};
  Scanners.insert(Scanners.end(), ScannerTable().begin(), ScannerTable().end());
  TTestCli Cli;
  Cli.Scanners = Scanners;
  Cli.WriteRegistry(SmallRegistry);
  const auto Report = Cli.Scan({"--areas", "Active,Fonts"}, 3);
  EXPECT_TRUE(Has(Cli.Console.Error, "Active")) << Cli.Console.Error;
  EXPECT_TRUE(Has(Cli.Console.Error, "the scanner broke")) << Cli.Console.Error;
  EXPECT_FALSE(Report["problems"].empty());
}

std::int32_t WalkLong(TScanRegistry &Engine, TStatusLabel &Status, TProgressBar &Progress,
                      TGroupItems &) {
  Engine.ShowStatus(Status, TProblemType::HelpFiles);
  Progress.SetMax(2000);
  for (int Step = 0; Step < 2000; ++Step)
    Progress.Advance();
  return 0;
}

TEST(CliProgress, IsDrawnSeldomAndFitsAndGoesAway) {
  constexpr TScannerRow Scanners[] = {{4, WalkLong}, {5, WalkLong}};
  for (const int Columns : {0, 20, 40, 80, 300}) {
    TTestCli Cli;
    Cli.Scanners = Scanners;
    Cli.WriteRegistry(SmallRegistry);
    Cli.Console.ErrorIsTerminal = true;
    Cli.Console.Columns = Columns;
    Cli.Scan({"--areas", "Fonts,Help"});
    const std::vector<std::string> &Writes = Cli.Console.ErrorWrites;
    // Some 4000 milliseconds by the console's clock: 80 draws, and one for each area.
    ASSERT_GT(Writes.size(), 40u);
    ASSERT_LT(Writes.size(), 90u);
    std::size_t Shown = 0;
    for (const std::string &Text : std::span(Writes).first(Writes.size() - 1)) {
      EXPECT_TRUE(Text.ends_with("%")) << Text;
      EXPECT_TRUE(Text.starts_with("\r"));
      EXPECT_LE(Text.size() - 1, static_cast<std::size_t>(Columns == 0 ? 80 : Columns));
      EXPECT_EQ(Text.find_first_of("\n\x1B"), std::string::npos);
      Shown = std::max(Shown, Text.size());
    }
    EXPECT_TRUE(Writes.front().starts_with("\rFonts")) << Writes.front();
    EXPECT_TRUE(Has(Cli.Console.Error, "\rHelp Files"));
    EXPECT_EQ(Writes.back(), "\r" + std::string(Shown - 1, ' ') + "\r");
  }
}

TEST(CliProgress, IsNotDrawnWhereNobodyLooksOrWantsIt) {
  TTestCli Cli;
  Cli.WriteRegistry(SmallRegistry);
  Cli.Scan();
  EXPECT_EQ(Cli.Console.Error, "") << "into a file";
  Cli.Console.ErrorIsTerminal = true;
  Cli.Scan({"--no-progress"});
  EXPECT_EQ(Cli.Console.Error, "");
}

} // namespace

} // namespace hivesweep
