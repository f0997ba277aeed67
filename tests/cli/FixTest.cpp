// The fix as a user meets it: what it takes, what it asks, what it tells and leaves alone.
#include "tests/cli/LiveMachine.h"

#include <map>

namespace hivesweep {

namespace {

using TWords = std::vector<std::string>;

// Every file below the folder with its bytes; folders have none.
std::map<std::u16string, std::string> Contents(const std::u16string &Folder) {
  const TPlatform Local = MakeLocalServices();
  std::map<std::u16string, std::string> Out;
  std::vector<TStoredFile> Files;
  EXPECT_EQ(Local.Storage->List(Folder, Files), TError());
  for (const TStoredFile &File : Files) {
    const std::u16string Path = JoinPath(Folder, File.Name);
    std::string &Bytes = Out[Path];
    if (File.IsFolder)
      Out.merge(Contents(Path));
    else
      EXPECT_EQ(ReadWholeFile(Path, Bytes), TError());
  }
  return Out;
}

std::string NewestBackup(TLiveCli &Live, std::size_t ExpectedCount) {
  const auto List = Live.Json({"backups"})["backups"];
  EXPECT_EQ(List.size(), ExpectedCount) << List;
  return List.empty() ? "" : List.back()["name"].get<std::string>();
}

TEST(CliFix, IsUndoneByTheCommandThatItNames) {
  TLiveCli Live;
  const std::u16string Before = Live.Described();
  ASSERT_EQ(Live.Run({"fix", "--risk", "low,medium,high", "--yes"}), 0) << Live.Cli.Console.Error;
  EXPECT_EQ(Live.Left(), "");
  EXPECT_TRUE(Has(Live.Cli.Console.Output, "\n4 of 4 problems to be fixed\n4 problems fixed\n"))
      << Live.Cli.Console.Output;
  const std::string Told = std::move(Live.Cli.Console.Output);
  const std::u16string Fixed = Live.Described();

  const auto Statistics = Live.Json({"statistics"})["statistics"][0];
  EXPECT_EQ(Statistics["total"], 4);
  EXPECT_EQ(Statistics["lastScan"].get<std::string>().size(), 10u);
  EXPECT_EQ(Statistics["lastClean"], Statistics["lastScan"]);

  const auto Backups = Live.Json({"backups"})["backups"];
  ASSERT_EQ(Backups.size(), 1u);
  EXPECT_EQ(Backups[0]["changes"], 4);
  EXPECT_EQ(Backups[0]["text"], true);
  EXPECT_EQ(Backups[0]["exact"], true);
  const std::string Name = Backups[0]["name"];
  EXPECT_TRUE(Has(Told, "\nTo undo it: hivesweep-cli restore " + Name + " --data-folder \""))
      << Told;

  ASSERT_EQ(Live.Run({"restore", Name, "--yes"}), 0) << Live.Cli.Console.Error;
  EXPECT_EQ(Live.Described(), Before);
  const std::string Undo = NewestBackup(Live, 2);
  EXPECT_NE(Undo, Name);
  ASSERT_EQ(Live.Run({"restore", Undo, "--yes"}), 0) << Live.Cli.Console.Error;
  EXPECT_EQ(Live.Described(), Fixed);

  const std::u16string Record = DataPathsIn(Live.Cli.Scratch.Path()).UndoFolderPath +
                                FromUtf8(Name.substr(0, Name.find('.')) + ".undo");
  ASSERT_EQ(WriteWholeFile(Record, "junk"), TError());
  EXPECT_EQ(Live.Json({"backups"})["backups"][0]["exact"], "damaged");
  ASSERT_EQ(Live.Run({"delete", Name, "--yes"}), 0) << Live.Cli.Console.Error;
  EXPECT_EQ(Live.Run({"restore", Name, "--yes"}), 3);
  EXPECT_TRUE(Has(Live.Cli.Console.Error, Name + ": there is no backup of that name"));
  for (const auto &[Path, Bytes] : Contents(Live.Cli.Scratch.Path()))
    EXPECT_FALSE(Has(ToUtf8(Path), Name.substr(0, Name.find('.')) + "."));
}

TEST(CliRestore, AnInterruptedOneIsToldByEveryCommandAndPutRight) {
  TLiveCli Live;
  ASSERT_EQ(Live.Run({"fix", "--yes"}), 0) << Live.Cli.Console.Error;
  const std::string Name = NewestBackup(Live, 1);
  const std::string Stem = "undo/" + Name.substr(0, Name.find('.'));
  TError Why;
  TUndoRecord Record = *DecodeUndoRecord(Live.Cli.Read(FromUtf8(Stem + ".undo")), Why);
  Record.Kind = TUndoKind::Restore;
  Record.Finished = false;
  Record.Goal = TRestoreGoal{u"backup7.reg", Record.Before.Keys, {}, {}, {}};
  Live.Cli.Write(FromUtf8(Stem + "-2.pending"), EncodeUndoRecord(Record));
  for (const char *const Command : {"backups", "statistics"}) {
    EXPECT_EQ(Live.Run({Command}), 0);
    EXPECT_TRUE(Has(Live.Cli.Console.Error, "the restore of backup7.reg was interrupted"));
  }
  EXPECT_EQ(Live.Run({"restore", Name, "--yes"}), 0) << Live.Cli.Console.Error;
  Live.Run({"backups"});
  EXPECT_EQ(Live.Cli.Console.Error, "");
}

TEST(CliFix, TakesWhatTheRisksSay) {
  static const struct {
    TWords Arguments;
    const char *Left;
  } Cases[] = {
      {{}, "K"},
      {{"--risk", "low"}, "SK"},
      {{"--risk", " High , LOW"}, "S"},
      {{"--areas", "Active,Fonts"}, "HSK"},
      {{"--areas", "Active"}, "FHSK"},
      {{"--areas", "Active", "--risk", "high"}, "FHS"},
  };
  for (const auto &C : Cases) {
    TLiveCli Live;
    TWords Arguments = {"fix", "--yes"};
    Arguments.insert(Arguments.end(), C.Arguments.begin(), C.Arguments.end());
    EXPECT_EQ(Live.Run(Arguments), 0) << Live.Cli.Console.Error;
    EXPECT_EQ(Live.Left(), C.Left) << Live.Cli.Console.Output;
  }
}

TEST(CliFix, AsksAndTakesOnlyYesForYes) {
  static const struct {
    const char *Why = nullptr;
    std::optional<std::string> Answer;
    int Code = 0;
    const char *Left = nullptr;
  } Cases[] = {
      {"yes", "y", 0, "K"},           {"in full, with blanks", " YES \r", 0, "K"},
      {"no", "n", 0, "FHSK"},         {"the return key", "", 0, "FHSK"},
      {"no word", "yess", 0, "FHSK"}, {"Ctrl+C, or no more input", std::nullopt, 130, "FHSK"},
  };
  for (const auto &C : Cases) {
    TLiveCli Live;
    Live.Cli.Console.HasAnswers = true;
    Live.Cli.Console.Answer = C.Answer;
    EXPECT_EQ(Live.Run({"fix"}), C.Code) << C.Why;
    EXPECT_EQ(Live.Left(), C.Left) << C.Why;
    EXPECT_EQ(Live.Cli.Console.Questions, 1) << C.Why;
    const bool IsDone = std::string_view(C.Left) == "K";
    EXPECT_NE(Has(Live.Cli.Console.Error, "nothing was changed"), IsDone) << C.Why;
    EXPECT_EQ(NewestBackup(Live, IsDone ? 1 : 0).empty(), !IsDone);
  }
}

TEST(CliFix, WithoutATerminalNothingIsDoneUnasked) {
  TLiveCli Live;
  ASSERT_EQ(Live.Run({"fix", "--yes"}), 0);
  const std::string Name = NewestBackup(Live, 1);
  const std::u16string Fixed = Live.Described();
  const auto Files = Contents(Live.Cli.Scratch.Path());
  for (const TWords &Arguments :
       {TWords{"fix", "--risk", "high"}, TWords{"restore", Name}, TWords{"delete", Name}}) {
    EXPECT_EQ(Live.Run(Arguments), 2);
    EXPECT_TRUE(Has(Live.Cli.Console.Error, "--yes")) << Live.Cli.Console.Error;
    Live.Cli.Console.HasAnswers = true;
    Live.Cli.Console.Answer = "n";
    EXPECT_EQ(Live.Run(Arguments), 0);
    Live.Cli.Console.HasAnswers = false;
  }
  EXPECT_EQ(Live.Described(), Fixed);
  EXPECT_EQ(Contents(Live.Cli.Scratch.Path()), Files);
}

TEST(CliFix, ADryRunAndWhatOnlyReadsChangeNothing) {
  TLiveCli Live;
  Live.Cli.Write(u"Ignore.ini", "[Registry]\r\nHKEY_CURRENT_USER\\A=N/A\r\n");
  const std::u16string Before = Live.Described();
  const auto Files = Contents(Live.Cli.Scratch.Path());
  const TWords Commands[] = {{"fix", "--dry-run"},
                             {"backups"},
                             {"statistics"},
                             {"ignore", "list"},
                             {"ignore", "check", "HKEY_CURRENT_USER\\A"}};
  for (const TWords &Arguments : Commands) {
    EXPECT_EQ(Live.Run(Arguments), 0) << Live.Cli.Console.Error;
    Live.Cli.Run(Arguments); // in the program's own folder
  }
  EXPECT_EQ(Live.Run({"fix", "--dry-run"}), 0);
  EXPECT_TRUE(Has(Live.Cli.Console.Output, "[x]  Invalid Font"));
  EXPECT_FALSE(Has(Live.Cli.Console.Output, "C:\\gone.dll")) << "of high risk";
  EXPECT_TRUE(Has(Live.Cli.Console.Output, "3 of 4 problems to be fixed\nnothing was changed"));
  EXPECT_EQ(Live.Described(), Before);
  EXPECT_EQ(Contents(Live.Cli.Scratch.Path()), Files);
  EXPECT_TRUE(NothingThere(Live.Files(), u"C:\\Data\\Orvane"));
  EXPECT_TRUE(NothingThere(Live.Files(), u"C:\\Program Files\\Hivesweep\\Backup"));
}

// ---- plans ----------------------------------------------------------------------------

nlohmann::json &ProblemOf(nlohmann::json &Plan, int Area) {
  for (auto &Problem : Plan["problems"])
    if (Problem["area"] == Area)
      return Problem;
  throw std::runtime_error("no such problem");
}

TEST(CliPlan, RemovesWhatIsCheckedAndStillTheSame) {
  using TEdit = void (*)(nlohmann::json & Plan, TLiveCli & Live);
  static const struct {
    const char *Why;
    TEdit Edit;
    const char *Left;
    const char *Named;
  } Cases[] = {
      {"as the scan left it", [](nlohmann::json &, TLiveCli &) {}, "K", ""},
      {"one of high risk wanted, one of low not",
       [](nlohmann::json &Plan, TLiveCli &) {
         ProblemOf(Plan, 1)["Checked"] = true;
         ProblemOf(Plan, 4)["Checked"] = false;
       },
       "F", ""},
      {"only the checked ones left, and nothing else",
       [](nlohmann::json &Plan, TLiveCli &) {
         Plan = {{"problems", nlohmann::json::array({ProblemOf(Plan, 5)})}};
       },
       "FSK", ""},
      {"other data wished for",
       [](nlohmann::json &Plan, TLiveCli &) { ProblemOf(Plan, 5)["Data"] = "C:\\other"; }, "HK",
       "\"gone.hlp\" of HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\Help\\ (C:\\other)"},
      {"another value's name",
       [](nlohmann::json &Plan, TLiveCli &) { ProblemOf(Plan, 5)["ValueName"] = "x"; }, "HK",
       "\"x\" of"},
      {"another key",
       [](nlohmann::json &Plan, TLiveCli &) {
         ProblemOf(Plan, 1)["Checked"] = true, ProblemOf(Plan, 1)["KeyPath"] = "HKEY_USERS";
       },
       "K", "left alone, not found as the plan has it: HKEY_USERS (C:\\gone.dll)"},
      {"another area", [](nlohmann::json &Plan, TLiveCli &) { ProblemOf(Plan, 12)["area"] = 5; },
       "SK", "\"Agent\""},
      {"the data has changed since",
       [](nlohmann::json &, TLiveCli &Live) {
         Live.Load(u"[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\Run]\r\n"
                   u"\"Agent\"=\"C:\\\\Agent\\\\new.exe\"\r\n");
       },
       "SK", "\"Agent\" of"},
      {"ignored since",
       [](nlohmann::json &, TLiveCli &Live) {
         Live.Run({"ignore", "add",
                   "HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\Run"});
       },
       "SK", "\"Agent\" of"},
  };
  for (const auto &C : Cases) {
    TLiveCli Live;
    nlohmann::json Plan = Live.Json({"scan"});
    C.Edit(Plan, Live);
    Live.Cli.Write(u"plan", Plan.dump());
    EXPECT_EQ(Live.Run({"fix", "--plan", "@plan", "--yes"}), 0) << C.Why << Live.Cli.Console.Error;
    EXPECT_EQ(Live.Left(), C.Left) << C.Why << Live.Cli.Console.Output;
    EXPECT_TRUE(Has(Live.Cli.Console.Error, C.Named)) << C.Why << ": " << Live.Cli.Console.Error;
    EXPECT_EQ(Live.Cli.Console.Error.empty(), std::string_view(C.Named).empty()) << C.Why;
  }
}

TEST(CliPlan, IsScannedForInItsOwnAreasAndReadInAnyEncoding) {
  TLiveCli Live;
  const std::string Plan = Live.Json({"scan"}).dump();
  Live.Cli.Write(u"Main.ini", "[RegistryOpt]\r\nHelp=0\r\n");
  Live.Cli.Write(u"plan", Utf16Bytes(u"\uFEFF" + FromUtf8(Plan)));
  ASSERT_EQ(Live.Run({"fix", "--plan", "@plan", "--areas", "Fonts", "--yes"}), 0);
  EXPECT_EQ(Live.Left(), "HSK");
  ASSERT_EQ(Live.Run({"fix", "--plan", "@plan", "--yes"}), 0);
  EXPECT_EQ(Live.Left(), "K");
}

TEST(CliPlan, AMalformedOneIsRefusedWithItsReason) {
  const std::string Good = R"({"area":4,"id":"1","KeyPath":"K","ValueName":"","Data":"",)";
  const auto With = [](const std::string &Problem) { return "{\"problems\":[" + Problem + "]}"; };
  const struct {
    std::string Text;
    const char *Named;
  } Cases[] = {
      {"", "parse error"},
      {"{\"problems\":[", "parse error"},
      {std::string(3, '\0'), "parse error"},
      {std::string(100'000, '['), "nested deeper than 100 levels"},
      {"{\"problems\":[],\"a\":1,\"more\":" + std::string(100'000, '[') +
           std::string(100'000, ']') + "}",
       "nested deeper than 100 levels"},
      {"[]", "\"problems\""},
      {"{}", "\"problems\""},
      {"{\"problems\":{}}", "\"problems\""},
      {With("7"), "problem 1 is no object"},
      {With("{}"), "problem 1 has no \"area\""},
      {With(Good + "\"Checked\":1}"), "\"Checked\" is neither"},
      {With(Good + "\"Data\":7,\"Checked\":true}"), "\"Data\" is no text"},
      {With(Good + "\"area\":0,\"Checked\":true}"), "\"area\" is no number from 1 to 17"},
      {With(Good + "\"area\":4.5,\"Checked\":true}"), "\"area\""},
      {With(Good + "\"area\":1e999,\"Checked\":true}"), "number overflow"},
      {With(Good + "\"area\":18446744073709551620,\"Checked\":true}"), "\"area\""},
      {With(Good + "\"Checked\":true}," + Good + "\"Checked\":false}"), "problem 2 stands there "},
  };
  for (const auto &C : Cases) {
    TLiveCli Live;
    Live.Cli.Write(u"plan", C.Text);
    EXPECT_EQ(Live.Run({"fix", "--plan", "@plan", "--yes"}), 3) << C.Text.substr(0, 99);
    EXPECT_TRUE(Has(Live.Cli.Console.Error, C.Named)) << Live.Cli.Console.Error;
    EXPECT_TRUE(Has(Live.Cli.Console.Error, "plan: is no plan: ")) << Live.Cli.Console.Error;
    EXPECT_LT(Live.Cli.Console.Error.size(), 500u);
    EXPECT_EQ(Live.Left(), "FHSK");
    EXPECT_EQ(Live.Cli.Scratch.Count(), 1u);
  }
}

// ---- what goes wrong --------------------------------------------------------------------

TEST(CliFix, TellsWhatItCouldNotRemoveAndWhy) {
  TLiveCli Live;
  Live.Cli.Console.HasAnswers = true;
  Live.Cli.Console.Answer = "y";
  Live.Cli.Console.OnQuestion = [&] {
    Live.Load(u"[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows NT\\CurrentVersion\\Fonts]\r\n"
              u"\"Old, \\\"bold\\\"\"=-\r\n");
    Live.Registry().Deny(u"HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\Help");
  };
  EXPECT_EQ(Live.Run({"fix"}), 3);
  const std::string &Error = Live.Cli.Console.Error;
  EXPECT_TRUE(Has(Error, "was gone already: \"Old, \"bold\"\" of HKEY_LOCAL_MACHINE\\")) << Error;
  EXPECT_TRUE(Has(Error, "\"gone.hlp\" of HKEY_LOCAL_MACHINE\\")) << Error;
  const std::string &Output = Live.Cli.Console.Output;
  EXPECT_TRUE(Has(Output, "\n1 problem fixed\n1 not removed: gone already\n1 not removed: "))
      << Output;
  EXPECT_TRUE(Has(Output, "To undo it: ")) << Output;
  EXPECT_EQ(Live.Json({"statistics"})["statistics"][0]["total"], 3) << "as the window counts";
}

TEST(CliFix, CtrlCStopsItBetweenTwoProblems) {
  bool SawPart = false;
  bool SawAll = false;
  for (int After = 1; After < 100 && !SawAll; ++After) {
    TLiveCli Live;
    Live.Cli.Console.HasAnswers = true;
    Live.Cli.Console.Answer = "y";
    Live.Cli.Console.OnQuestion = [&] { Live.Cli.Console.InterruptAfter(After); };
    const int Code = Live.Run({"fix"});
    const std::string Left = Live.Left();
    EXPECT_EQ(Code, Left == "K" ? 0 : 130) << After;
    EXPECT_EQ(Has(Live.Cli.Console.Error, "not fixed: " + std::to_string(Left.size() - 1)),
              Left != "K")
        << Live.Cli.Console.Error;
    SawPart |= Left.size() == 2 || Left.size() == 3;
    SawAll = Left == "K";
  }
  EXPECT_TRUE(SawPart && SawAll);

  TLiveCli Live;
  Live.Cli.Console.InterruptAt = 1;
  EXPECT_EQ(Live.Run({"fix", "--yes"}), 130);
  EXPECT_EQ(Live.Left(), "FHSK") << "of a scan that was not finished";
  EXPECT_EQ(Live.Cli.Scratch.Count(), 0u);
}

TEST(CliFix, WithoutABackupNothingIsRemoved) {
  TLiveCli Live;
  Live.Cli.Write(u"backup", "a file where the folder should be");
  EXPECT_EQ(Live.Run({"fix", "--yes"}), 3);
  EXPECT_EQ(Live.Left(), "FHSK");
  EXPECT_TRUE(Has(Live.Cli.Console.Error, ToUtf8(JoinPath(u"", u"backup"))))
      << Live.Cli.Console.Error;
}

TEST(CliFix, MeetsHostileSettings) {
  std::string Large = "[Registry]\r\n";
  while (Large.size() < 1'000'000)
    Large += "HKEY_USERS\\" + std::to_string(Large.size()) + "=1\r\n";
  const std::string Long(2'000'000, 'x');
  const std::string Binary = std::string("\x00\xFF\x01[Regi\x00", 9) + "\xD8\xFE\r\n=\r\n[";
  for (const char16_t *const Name : {u"Main.ini", u"Ignore.ini"}) {
    for (const std::string &Bytes : {std::string(), std::string("\xFF"), Binary, Large, Long}) {
      TLiveCli Live;
      Live.Cli.Write(Name, Bytes);
      const int Code = Live.Run({"fix", "--areas", "Fonts", "--yes"});
      EXPECT_EQ(Live.Left(), "HSK") << Bytes.size();
      // What can't be written into such a file is told.
      EXPECT_TRUE(Code == 0 ? Live.Cli.Console.Error.empty()
                            : Code == 3 && Has(Live.Cli.Console.Error, "could not be written"))
          << Live.Cli.Console.Error;
      const int Added = Live.Run({"ignore", "add", "HKEY_USERS\\a"});
      EXPECT_EQ(Live.Run({"ignore", "check", "HKEY_USERS\\a"}), Added == 0 ? 0 : 1);
    }
    TLiveCli Live;
    Live.Cli.Write(Name, "[Registry]\r\n");
    SetReadOnly(Live.Cli.Scratch.File(Name), true);
    EXPECT_EQ(Live.Run({"fix", "--yes"}), 0) << Live.Cli.Console.Error;
    SetReadOnly(Live.Cli.Scratch.File(Name), false);
    EXPECT_EQ(Live.Json({"statistics"})["statistics"][0]["total"], 3);

    // A list that can't be read protects nothing: better nothing is fixed.
    TLiveCli Folder;
    Folder.Cli.Write(std::u16string(Name) + u"-", "");
    EXPECT_EQ(MakeLocalServices().Storage->CreateFolder(Folder.Cli.Scratch.File(Name)), TError());
    EXPECT_EQ(Folder.Run({"fix", "--yes"}), 3);
    EXPECT_EQ(Folder.Left(), "FHSK");
    EXPECT_TRUE(Has(Folder.Cli.Console.Error, ToUtf8(Name))) << Folder.Cli.Console.Error;
  }
}

// ---- the ignore list and the statistics ---------------------------------------------------

TEST(CliIgnore, WhatWasAddedIsFoundAgainOrRefused) {
  static const struct {
    const char *Key;
    bool Fits;
  } Cases[] = {{"HKEY_CURRENT_USER\\\xE6\x97\xA5 \"q\" %TEMP% --yes", true},
               {"HKEY_CURRENT_USER\\A=B", false}};
  TLiveCli Live;
  for (const auto &C : Cases) {
    EXPECT_EQ(Live.Run({"ignore", "add", C.Key, "value name"}), C.Fits ? 0 : 3);
    EXPECT_EQ(Live.Cli.Console.Error.empty(), C.Fits) << C.Key << Live.Cli.Console.Error;
    EXPECT_EQ(Live.Run({"ignore", "check", C.Key}), C.Fits ? 0 : 1) << C.Key;
    const auto List = Live.Json({"ignore", "list"})["ignored"];
    ASSERT_EQ(List.size(), 1u) << List;
    EXPECT_EQ(List[0]["KeyPath"], Cases[0].Key);
    EXPECT_EQ(List[0]["ValueName"], "value name");
  }
  for (const auto &C : Cases) {
    EXPECT_EQ(Live.Run({"ignore", "remove", C.Key}), 0) << Live.Cli.Console.Error;
    EXPECT_EQ(Has(Live.Cli.Console.Error, "not on the list"), !C.Fits) << C.Key;
    EXPECT_EQ(Live.Run({"ignore", "check", C.Key}), 1);
  }
}

TEST(CliIgnore, KeepsAKeyFromBeingFixed) {
  TLiveCli Live;
  const std::string Key = "HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\Help\\";
  ASSERT_EQ(Live.Run({"ignore", "add", Key}), 0);
  EXPECT_EQ(Live.Json({"ignore", "list"})["ignored"][0]["ValueName"], "N/A");
  ASSERT_EQ(Live.Run({"fix", "--risk", "low,medium,high", "--yes"}), 0);
  EXPECT_EQ(Live.Left(), "H");
}

TEST(CliLists, AreTablesAndRecordsToo) {
  TLiveCli Live;
  EXPECT_EQ(Live.Run({"statistics"}), 0);
  EXPECT_EQ(Live.Cli.Console.Output, "Last scan  Last clean  Problems fixed\n"
                                     "None       None                     0\n");
  EXPECT_EQ(Live.Run({"backups", "--format", "csv"}), 0);
  EXPECT_EQ(Live.Cli.Console.Output, "name,time,changes,size,text,exact\r\n");
  ASSERT_EQ(Live.Run({"ignore", "add", "HKEY_CURRENT_USER\\A,\x1B[2J", ""}), 0);
  EXPECT_EQ(Live.Run({"ignore", "list", "--format", "csv", "--output", "@out"}), 0);
  EXPECT_EQ(Live.Cli.Read(u"out"),
            "KeyPath,ValueName\r\n\"HKEY_CURRENT_USER\\A,\xEF\xBF\xBD[2J\",\r\n");
  // A system without a place for the program's data.
  TTestCli Bare;
  EXPECT_EQ(Bare.Run({"backups"}), 2);
  EXPECT_TRUE(Has(Bare.Console.Error, "--data-folder")) << Bare.Console.Error;
}

} // namespace

} // namespace hivesweep
