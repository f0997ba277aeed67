// The three forms of a report, and the names of findings.
#include "tests/cli/TestCli.h"

#include <set>

#include "cli/FindingId.h"
#include "cli/TerminalText.h"

namespace hivesweep {

namespace {

std::int32_t FindKey(TScanRegistry &Engine, TStatusLabel &, TProgressBar &, TGroupItems &Group) {
  return ReportWholeKey(Engine, Group, u"HKEY_CLASSES_ROOT\\CLSID\\{1}");
}

std::string ReportOf(const char *Format, int Columns = 0, bool ShowProtected = true) {
  std::vector<TScannerRow> Scanners = {{1, FindKey}};
  for (const TScannerRow &Row : ScannerTable())
    if (Row.Area != 1)
      Scanners.push_back(Row);
  TTestCli Cli;
  Cli.Scanners = Scanners;
  Cli.WriteRegistry(SmallRegistry);
  Cli.Write(u"machine", SmallMachine);
  Cli.Console.Columns = Columns;
  std::vector<std::string> Arguments = {"scan", "--registry", "@registry", "--machine", "@machine"};
  Arguments.insert(Arguments.end(),
                   {"--areas", "Active,Fonts,Help,Shared,Startup", "--format", Format});
  if (ShowProtected)
    Arguments.emplace_back("--show-protected");
  EXPECT_EQ(Cli.Run(Arguments), 0) << Cli.Console.Error;
  return Cli.Console.Output;
}

TEST(Reports, Text) {
  EXPECT_EQ(ReportOf("text", 80), R"(ActiveX Component: 1 problem, high risk
  [ ]  ActiveX and Class Issues  HKEY_CLASSES_ROOT\CLSID\{1}
       (whole key) = C:\gone.dll

Fonts: 1 problem, low risk
  [x]  Invalid Font  HKEY_LOCAL_MACHINE\…rosoft\Windows NT\CurrentVersion\Fonts
       Old, "bold" = C:\Fonts\OLD.TTF

Help Files: 1 problem, low risk
  [x]  Missing Help Files  HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\Help\
       gone.hlp = C:\Program Files\日本語\gone.hlp

Startup Items: 1 problem, medium risk
  [x]  Startup Issue  HKEY_LOCAL_MACHINE…e\Microsoft\Windows\CurrentVersion\Run
       Agent = C:\Agent\agent.exe

Shared Files: 1 protected entry, low risk
   -   HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\SharedDlls
       C:\Norton\n.dll = 1
       AnyFieldWords: norton

Area               Risk    Found  Listed  Protected
ActiveX Component  high        1       1          0
Fonts              low         1       1          0
Help Files         low         1       1          0
Shared Files       low         1       0          1
Startup Items      medium      1       1          0
Total                          5       4          1

4 problems, 3 selected for fixing
)");
}

TEST(Reports, Csv) {
  const std::string Expected =
      "id,area,switch,risk,selected,type,key,value,data,rule\r\n"
      "612c1bc26c790fec,1,Active,high,no,ActiveX and Class Issues,"
      "HKEY_CLASSES_ROOT\\CLSID\\{1},N/A,C:\\gone.dll,\r\n"
      "82ff07a6d475f6d9,4,Fonts,low,yes,Invalid Font,HKEY_LOCAL_MACHINE\\Software\\Microsoft\\"
      "Windows NT\\CurrentVersion\\Fonts,\"Old, \"\"bold\"\"\",C:\\Fonts\\OLD.TTF,\r\n"
      "c0e98e0854fd48f3,5,Help,low,yes,Missing Help Files,HKEY_LOCAL_MACHINE\\Software\\"
      "Microsoft\\Windows\\Help\\,gone.hlp,C:\\Program Files\\日本語\\gone.hlp,\r\n"
      "ba4393b32ca75c4d,12,Startup,medium,yes,Startup Issue,HKEY_LOCAL_MACHINE\\Software\\"
      "Microsoft\\Windows\\CurrentVersion\\Run,Agent,C:\\Agent\\agent.exe,\r\n"
      ",7,Shared,low,protected,,HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\"
      "CurrentVersion\\SharedDlls,C:\\Norton\\n.dll,1,AnyFieldWords: norton\r\n";
  EXPECT_EQ(ReportOf("csv"), Expected);
  EXPECT_TRUE(ReportOf("csv", 0, false)
                  .starts_with("id,area,switch,risk,selected,type,key,value,data\r\n"));
}

TEST(Reports, JsonHasItsKeysInTheirOrder) {
  const auto Report = nlohmann::ordered_json::parse(ReportOf("json"));
  const auto Keys = [](const nlohmann::ordered_json &Object) {
    std::string Out;
    for (const auto &[Key, Value] : Object.items())
      Out += Key + " ";
    return Out;
  };
  EXPECT_EQ(Keys(Report), "areas problems protected backup total ");
  ASSERT_EQ(Report["areas"].size(), 17u);
  EXPECT_EQ(Report["areas"][6].dump(),
            R"({"number":7,"switch":"Shared","group":"8","caption":"Shared Files","risk":"low",)"
            R"("scanned":true,"found":1,"listed":0,"protected":1})");
  EXPECT_EQ(Report["areas"][16].dump(),
            R"({"number":17,"switch":"Openscan","group":"18","caption":"Deep Scan",)"
            R"("risk":"high","scanned":false,"found":0,"listed":0,"protected":0})");
  ASSERT_EQ(Report["problems"].size(), 4u);
  EXPECT_EQ(Report["problems"][0].dump(),
            R"({"id":"612c1bc26c790fec","area":1,"group":"2",)"
            R"("TypeName":"ActiveX and Class Issues","KeyPath":"HKEY_CLASSES_ROOT\\CLSID\\{1}",)"
            R"("ValueName":"N/A","Data":"C:\\gone.dll","ImageIndex":"1","ItemKind":1,)"
            R"("RiskText":"High-Risk","RiskImage":20,"Checked":false})");
  EXPECT_EQ(Report["problems"][2]["Data"], "C:\\Program Files\\日本語\\gone.hlp");
  EXPECT_EQ(Report["protected"].dump(),
            R"([{"area":7,"KeyPath":"HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\)"
            R"(CurrentVersion\\SharedDlls","ValueName":"C:\\Norton\\n.dll","Data":"1",)"
            R"("rule":"AnyFieldWords: norton"}])");
  EXPECT_EQ(Report["backup"][0], "[HKEY_CLASSES_ROOT\\CLSID\\{1}]");
  EXPECT_EQ(Report["backup"][2], "\"Old, \"bold\"\"=\"C:\\\\Fonts\\\\OLD.TTF\"");
  EXPECT_EQ(Report["total"], 4);
  EXPECT_EQ(Keys(nlohmann::ordered_json::parse(ReportOf("json", 0, false))),
            "areas problems backup total ");
}

// ---- hostile data -------------------------------------------------------------------

// A text in which names and data hold what no honest program writes there. In UTF-16,
// where lone halves of a pair can stand.
std::string HostileRegistry() {
  return Utf16Bytes(
      u"\uFEFFWindows Registry Editor Version 5.00\r\n\r\n"
      u"[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\Help]\r\n"
      u"\"\x1B[2J\x9B\x7F.hlp\"=\"C:\\\\\xD83D\\\\a\u202Eb\"\r\n"
      u"\"\xD800.hlp\"=\"C:\\\\日本語日本語日本語日本語日本語日本語日本語日本語日本語\"\r\n"
      u"\"\xD801.hlp\"=\"C:\\\\x\"\r\n"
      u"\" , \\\"q\\\".hlp\"=\"C:\\\\gone\"\r\n");
}

TEST(Reports, HostileTextsComeOutAsValidJson) {
  TTestCli Cli;
  Cli.Write(u"registry", HostileRegistry());
  const auto Report = Cli.Scan({"--areas", "Help"});
  std::set<std::string> Names;
  std::set<std::string> Ids;
  for (const auto &Problem : Report["problems"]) {
    Names.insert(Problem["ValueName"].get<std::string>());
    Ids.insert(Problem["id"].get<std::string>());
  }
  EXPECT_EQ(Names,
            (std::set<std::string>{"\x1B[2J\xC2\x9B\x7F.hlp", "\uFFFD.hlp", " , \"q\".hlp"}));
  EXPECT_EQ(Ids.size(), 4u) << "texts that only look the same";
}

TEST(Reports, NothingReachesATerminalThatItWouldObey) {
  for (const char *const Format : {"text", "json", "csv"}) {
    TTestCli Cli;
    Cli.Write(u"registry", HostileRegistry());
    ASSERT_EQ(Cli.Run({"scan", "--registry", "@registry", "--areas", "Help", "--format", Format}),
              0);
    const std::u16string Text = FromUtf8(Cli.Console.Output);
    EXPECT_NE(Text.find(u"[2J"), std::u16string::npos) << "the test sees nothing";
    for (const char16_t Unit : Text)
      EXPECT_TRUE((Unit >= 0x20 && Unit < 0x7F) || Unit >= 0xA0 || Unit == u'\n' || Unit == u'\r')
          << Format << ": " << static_cast<int>(Unit);
  }
}

TEST(Reports, ATableNeverLeavesItsTerminal) {
  for (const int Columns : {20, 40, 80, 119, 120, 121, 200}) {
    TTestCli Cli;
    Cli.Write(u"registry", HostileRegistry());
    Cli.Console.Columns = Columns;
    for (const char *const Command : {"scan", "areas"}) {
      Cli.Console.Output.clear();
      ASSERT_EQ(Cli.Run({Command, "--registry", "@registry"}), 0);
      const std::u16string Text = FromUtf8(Cli.Console.Output);
      int Widest = 0;
      for (const std::u16string_view Line : SplitLines(Text))
        Widest = std::max(Widest, DisplayWidth(Line));
      // The last column stays free.
      EXPECT_LT(Widest, Columns) << Command;
      EXPECT_GT(Widest, std::min(Columns, 40) / 2) << Command;
    }
  }
}

TEST(Reports, WithoutATerminalNothingIsCut) {
  const std::u16string Long(3000, u'x');
  TTestCli Cli;
  Cli.WriteRegistry(u"[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\Help]\r\n\"" + Long +
                    u".hlp\"=\"C:\\\\" + Long + u"\"\r\n\"a.hlp\"=\"C:\\\\gone\"\r\n");
  ASSERT_EQ(Cli.Run({"scan", "--registry", "@registry"}), 0);
  const std::string &Text = Cli.Console.Output;
  EXPECT_NE(Text.find(ToUtf8(u" " + Long + u".hlp  C:\\" + Long + u"\\" + Long + u".hlp\n")),
            std::string::npos);
  // The long one does not push the short one's data out of sight.
  const std::size_t Short = Text.find("a.hlp  ");
  EXPECT_LT(Text.find("C:\\gone\\a.hlp", Short) - Short, 100u);

  // A file is no terminal either, however narrow that is.
  Cli.Console.Columns = 40;
  ASSERT_EQ(Cli.Run({"scan", "--registry", "@registry", "--output", "@out"}), 0);
  EXPECT_EQ(Cli.Read(u"out"), Text);
}

// ---- names of findings ----------------------------------------------------------------

TItemInfo Item(std::u16string Key, std::u16string Name, std::u16string Data) {
  TItemInfo Out;
  Out.KeyPath = std::move(Key);
  Out.ValueName = std::move(Name);
  Out.Data = std::move(Data);
  return Out;
}

TEST(FindingIds, DifferWheneverAFieldDiffers) {
  const struct {
    const char *Why = nullptr;
    int Area = 0;
    TItemInfo Finding;
  } Cases[] = {
      {"the finding itself", 5, Item(u"K\\L", u"name", u"data")},
      {"another area", 6, Item(u"K\\L", u"name", u"data")},
      {"another key", 5, Item(u"K\\M", u"name", u"data")},
      {"another name", 5, Item(u"K\\L", u"nane", u"data")},
      {"letter case", 5, Item(u"K\\L", u"Name", u"data")},
      {"other data", 5, Item(u"K\\L", u"name", u"dat")},
      {"the cut between the fields", 5, Item(u"K\\Ln", u"ame", u"data")},
      {"the other cut", 5, Item(u"K\\L", u"named", u"ata")},
      {"a half that can't be shown", 5, Item(u"K\\L", u"name", u"\xD800")},
      {"another half", 5, Item(u"K\\L", u"name", u"\xD801")},
      {"nothing at all", 5, Item(u"", u"", u"")},
      {"a zero", 5, Item(u"", u"", std::u16string(1, u'\0'))},
  };
  std::set<std::string> Seen;
  for (const auto &C : Cases) {
    const std::string Id = TFindingIds().Next(C.Area, C.Finding);
    EXPECT_EQ(Id.size(), 16u) << C.Why;
    EXPECT_TRUE(Seen.insert(Id).second) << C.Why;
  }
}

TEST(FindingIds, TheSameThingFoundAgainGetsANumber) {
  TFindingIds Ids;
  const TItemInfo First = Item(u"K", u"a", u"");
  const TItemInfo Second = Item(u"K", u"b", u"");
  const std::string FirstId = Ids.Next(5, First);
  const std::string SecondId = Ids.Next(5, Second);
  EXPECT_EQ(Ids.Next(5, First), FirstId + "-2");
  EXPECT_EQ(Ids.Next(5, First), FirstId + "-3");
  EXPECT_EQ(Ids.Next(5, Second), SecondId + "-2");
}

TEST(FindingIds, StayWhenOtherThingsChange) {
  const auto IdsOf = [](std::u16string_view Lines, const char *AreaNames) {
    TTestCli Cli;
    Cli.WriteRegistry(Lines);
    std::set<std::string> Out;
    const auto Report = Cli.Scan({"--areas", AreaNames});
    for (const auto &Problem : Report["problems"])
      Out.insert(Problem["id"].get<std::string>());
    return Out;
  };
  const std::set<std::string> All = IdsOf(SmallRegistry, "all");
  std::set<std::string> Parts = IdsOf(SmallRegistry, "Startup");
  Parts.merge(IdsOf(std::u16string(SmallRegistry) +
                        u"[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\Help]\r\n"
                        u"\"gone.hlp\"=-\r\n\"new.hlp\"=\"C:\\\\x\"\r\n\"gone.hlp\"="
                        u"\"C:\\\\Program Files\\\\日本語\"\r\n",
                    "Help"));
  EXPECT_EQ(Parts.size(), 3u);
  std::set<std::string> Kept;
  std::set_intersection(All.begin(), All.end(), Parts.begin(), Parts.end(),
                        std::inserter(Kept, Kept.end()));
  EXPECT_EQ(Kept.size(), 2u);
}

} // namespace

} // namespace hivesweep
