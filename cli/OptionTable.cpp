#include "cli/OptionTable.h"

#include <algorithm>
#include <functional>
#include <string_view>
#include <utility>

#include "cli/ScanReport.h"
#include "cli/TerminalText.h"
#include "platform/Text.h"

namespace hivesweep {

std::string Quoted(const std::string &Word) {
  constexpr int Longest = 100;
  return "\"" + ToUtf8(ShortenMiddle(FromUtf8(Word), Longest)) + "\"";
}

std::string Joined(const std::vector<std::string> &Words) {
  std::string Out;
  for (const std::string &Word : Words)
    Out.append(Out.empty() ? "" : ", ").append(Word);
  return Out;
}

std::string AreaNames() {
  std::vector<std::string> Names;
  Names.reserve(Areas.size());
  for (const TArea &Area : Areas)
    Names.push_back(ToUtf8(Area.Switch));
  return Joined(Names);
}

namespace {

constexpr std::pair<const char *, TFormat> Formats[] = {
    {"text", TFormat::Text}, {"json", TFormat::Json}, {"csv", TFormat::Csv}};

void SwitchOn(std::u16string &Flags, std::u16string_view Name) {
  const std::string Word = Quoted(ToUtf8(Name));
  const auto Area = std::find_if(Areas.begin(), Areas.end(), [&](const TArea &Candidate) {
    return EqualNoCase(Candidate.Switch, Name);
  });
  if (Area == Areas.end()) {
    if (EqualNoCase(Name, u"all"))
      throw TWrongUse("--areas: " + Word + " stands alone, without other areas");
    throw TWrongUse("--areas: " + Word + " is no area; the areas are " + AreaNames() +
                    ", or \"all\"");
  }
  char16_t &Flag = Flags[AreaIndex(Area->Number)];
  if (Flag == u'1')
    throw TWrongUse("--areas: " + Word + " is named twice");
  Flag = u'1';
}

// Walks names with commas between them.
void ForEachName(std::u16string_view List, const std::function<void(std::u16string_view)> &Take) {
  for (std::size_t Start = 0; Start <= List.size();) {
    const std::size_t End = std::min(List.find(u',', Start), List.size());
    Take(Trim(List.substr(Start, End - Start)));
    Start = End + 1;
  }
}

void TakeAreas(TOptions &Options, const std::string &Word) {
  const std::u16string List = FromUtf8(Word);
  if (EqualNoCase(Trim(List), u"all")) {
    Options.AreaFlags = std::u16string(AreaCount, u'1');
    return;
  }
  std::u16string Flags(AreaCount, u'0');
  ForEachName(List, [&](std::u16string_view Name) { SwitchOn(Flags, Name); });
  Options.AreaFlags = Flags;
}

void TakeAreaFlags(TOptions &Options, const std::string &Word) {
  std::u16string Flags = FromUtf8(Word);
  if (Flags.size() > AreaCount)
    throw TWrongUse("--area-flags: " + Quoted(Word) + " is longer than " +
                    std::to_string(AreaCount) + " characters, one for each area");
  Options.AreaFlags = std::move(Flags);
}

void TakeFormat(TOptions &Options, const std::string &Word) {
  std::vector<std::string> Names;
  for (const auto &[Name, Format] : Formats) {
    if (Word == Name) {
      Options.Format = Format;
      return;
    }
    Names.emplace_back(Name);
  }
  throw TWrongUse("--format: " + Quoted(Word) + " is none of " + Joined(Names));
}

void AddRisk(std::vector<TRisk> &Risks, std::u16string_view Name) {
  const std::string Word = Quoted(ToUtf8(Name));
  std::vector<std::string> Names;
  for (const TRisk Risk : {TRisk::Low, TRisk::Medium, TRisk::High}) {
    Names.push_back(ToUtf8(RiskName(Risk)));
    if (!EqualNoCase(RiskName(Risk), Name))
      continue;
    if (std::ranges::find(Risks, Risk) != Risks.end())
      throw TWrongUse("--risk: " + Word + " is named twice");
    Risks.push_back(Risk);
    return;
  }
  throw TWrongUse("--risk: " + Word + " is none of " + Joined(Names));
}

void TakeRisks(TOptions &Options, const std::string &Word) {
  std::vector<TRisk> Risks;
  ForEachName(FromUtf8(Word), [&](std::u16string_view Name) { AddRisk(Risks, Name); });
  Options.Risks = std::move(Risks);
}

void TakeRegistry(TOptions &Options, const std::string &Word) {
  Options.RegistryFiles.push_back(Word);
}
void TakeMachine(TOptions &Options, const std::string &Word) { Options.MachineFile = Word; }
void TakeDataFolder(TOptions &Options, const std::string &Word) { Options.DataFolder = Word; }
void TakeOutput(TOptions &Options, const std::string &Word) { Options.OutputFile = Word; }
void TakeShowProtected(TOptions &Options, const std::string &) { Options.ShowProtected = true; }
void TakeNoProgress(TOptions &Options, const std::string &) { Options.NoProgress = true; }
void TakePlan(TOptions &Options, const std::string &Word) { Options.PlanFile = Word; }
void TakeDryRun(TOptions &Options, const std::string &) { Options.DryRun = true; }
void TakeYes(TOptions &Options, const std::string &) { Options.Yes = true; }

constexpr TOptionRow Rows[] = {
    {TakesAreas, "--areas", TValue::Text, "LIST",
     "switch names with commas between them, or \"all\";\n"
     "default: the switches of Main.ini, or all but the\n"
     "deep scan",
     TakeAreas},
    {TakesAreas, "--area-flags", TValue::Text, "TEXT",
     "a \"1\" or \"0\" for each area, up to 17; empty: the\n"
     "engine reads Main.ini",
     TakeAreaFlags},
    {TakesOutput, "--format", TValue::Text, "F", "text (default), json or csv", TakeFormat},
    {TakesOutput, "--output", TValue::Name, "FILE", "writes there instead of standard output",
     TakeOutput},
    {TakesScan, "--show-protected", TValue::None, "",
     "also lists what was held back, and by which rule;\n"
     "in csv as rows \"protected\" with a column more, rule",
     TakeShowProtected},
    {TakesFix, "--risk", TValue::Text, "LIST",
     "fixes exactly the problems of these risks: low,\n"
     "medium, high, with commas between them; default:\n"
     "low and medium",
     TakeRisks},
    {TakesFix, "--plan", TValue::Name, "FILE",
     "the JSON of an earlier scan, in which \"Checked\" may\n"
     "have been changed: of its checked problems, fixes\n"
     "those that are still there with the same data;\n"
     "up to 512 MiB; - is standard input",
     TakePlan},
    {TakesFix, "--dry-run", TValue::None, "",
     "tells what would be fixed and changes nothing at all", TakeDryRun},
    {TakesAnswer, "--yes", TValue::None, "", "does it without asking", TakeYes},
    {TakesProgress, "--no-progress", TValue::None, "",
     "no progress bar (there is none when standard error\n"
     "is no terminal)",
     TakeNoProgress},
    {TakesSource, "--registry", TValue::Name, "FILE",
     "the text that a registry editor exports, instead of\n"
     "the live registry; may be given several times;\n"
     "up to 512 MiB; - is standard input",
     TakeRegistry, true},
    {TakesSource, "--machine", TValue::Name, "FILE",
     "the machine that belongs to it: drives, folders and\n"
     "which files exist; up to 64 MiB; - is standard input",
     TakeMachine},
    {TakesFolder, "--data-folder", TValue::Name, "DIR",
     "where settings, ignore list and backups lie;\n"
     "(files of up to 64 MiB; backups: 512 MiB);\n"
     "default: the program's own data folder",
     TakeDataFolder},
};

constexpr TOptionRule Rules[] = {
    {"--area-flags", "--areas", false, "--areas is given too; only one of them is expected"},
    {"--risk", "--plan", false, "--plan is given too; only one of them is expected"},
    {"--machine", "--registry", true, "a --registry that the machine belongs to is expected too"},
    {"--registry", "--dry-run", true,
     "only the live registry can be changed; --dry-run is expected too"},
};

} // namespace

std::span<const TOptionRow> OptionTable() { return Rows; }

std::span<const TOptionRule> OptionRules() { return Rules; }

} // namespace hivesweep
