#include "cli/Options.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include <CLI/CLI.hpp>

#include "engine/Areas.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

constexpr const char *ProgramName = "hivesweep-cli";

std::string Quoted(const std::string &Word) { return "\"" + Word + "\""; }

std::string Joined(const std::vector<std::string> &Words) {
  std::string Out;
  for (const std::string &Word : Words)
    Out.append(Out.empty() ? "" : ", ").append(Word);
  return Out;
}

// ---- what the options mean ----------------------------------------------------

constexpr std::pair<const char *, TFormat> Formats[] = {
    {"text", TFormat::Text}, {"json", TFormat::Json}, {"csv", TFormat::Csv}};

std::string AreaNames() {
  std::vector<std::string> Names;
  Names.reserve(Areas.size());
  for (const TArea &Area : Areas)
    Names.push_back(ToUtf8(Area.Switch));
  return Joined(Names);
}

// Lines of a terminal's usual width, broken at blanks.
std::string Wrapped(std::string Text) {
  constexpr std::size_t Width = 70;
  for (std::size_t Start = 0; Start + Width < Text.size();) {
    Start = Text.rfind(' ', Start + Width);
    Text[Start] = '\n';
  }
  return Text;
}

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

void TakeAreas(TOptions &Options, const std::string &Word) {
  const std::u16string List = FromUtf8(Word);
  if (EqualNoCase(Trim(List), u"all")) {
    Options.AreaFlags = std::u16string(AreaCount, u'1');
    return;
  }
  std::u16string Flags(AreaCount, u'0');
  for (std::size_t Start = 0; Start <= List.size();) {
    const std::size_t End = std::min(List.find(u',', Start), List.size());
    SwitchOn(Flags, Trim(std::u16string_view(List).substr(Start, End - Start)));
    Start = End + 1;
  }
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

void TakeRegistry(TOptions &Options, const std::string &Word) {
  Options.RegistryFiles.push_back(Word);
}
void TakeMachine(TOptions &Options, const std::string &Word) { Options.MachineFile = Word; }
void TakeDataFolder(TOptions &Options, const std::string &Word) { Options.DataFolder = Word; }
void TakeOutput(TOptions &Options, const std::string &Word) { Options.OutputFile = Word; }
void TakeShowProtected(TOptions &Options, const std::string &) { Options.ShowProtected = true; }
void TakeNoProgress(TOptions &Options, const std::string &) { Options.NoProgress = true; }

enum class TValue { None, Text, Name }; // Name: of a file or folder, never empty

struct TOptionRow {
  TOptionGroups Group = 0;
  const char *Name = nullptr;
  TValue Value = TValue::None;
  const char *Placeholder = nullptr;
  const char *Description = nullptr;
  void (*Take)(TOptions &Options, const std::string &Word) = nullptr;
  bool Repeatable = false;
};

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
    {TakesScan, "--no-progress", TValue::None, "",
     "no progress bar (there is none when standard error\n"
     "is no terminal)",
     TakeNoProgress},
    {TakesSource, "--registry", TValue::Name, "FILE",
     "the text that a registry editor exports, instead of\n"
     "the live registry; may be given several times",
     TakeRegistry, true},
    {TakesSource, "--machine", TValue::Name, "FILE",
     "the machine that belongs to it: drives, folders and\n"
     "which files exist",
     TakeMachine},
    {TakesSource, "--data-folder", TValue::Name, "DIR",
     "where Main.ini and Ignore.ini lie; default: the\n"
     "program's own data folder",
     TakeDataFolder},
};

constexpr const char *ExitCodes = "Exit codes: 0 done, 2 wrong use, 3 nothing could be read or "
                                  "written,\n130 stopped by Ctrl+C (what was found is printed).";

// ---- the words ------------------------------------------------------------------

void CheckTogether(const CLI::App &Command) {
  const auto Given = [&](const char *Name) {
    const CLI::Option *Option = Command.get_option_no_throw(Name);
    return Option && Option->count() > 0;
  };
  if (Given("--areas") && Given("--area-flags"))
    throw TWrongUse("--area-flags: --areas is given too; only one of them is expected");
  if (Given("--machine") && !Given("--registry"))
    throw TWrongUse("--machine: a --registry that the machine belongs to is expected too");
}

void TakeOption(TOptions &Options, const TOptionRow &Row, const CLI::Option &Option) {
  const std::vector<std::string> &Words = Option.results();
  if (Words.size() > 1 && !Row.Repeatable)
    throw TWrongUse(std::string(Row.Name) + ": given " + std::to_string(Words.size()) +
                    " times; once is expected");
  for (const std::string &Word : Words) {
    if (Row.Value == TValue::None && Word != "true")
      throw TWrongUse(std::string(Row.Name) + ": takes no value, and " + Quoted(Word) + " is one");
    if (Row.Value == TValue::Name && Word.empty())
      throw TWrongUse(std::string(Row.Name) + ": a name (" + Row.Placeholder +
                      ") is expected, not \"\"");
    Row.Take(Options, Word);
  }
}

// The option table's rows, as the library knows them.
void AddOptions(CLI::App &App, TOptionGroups Takes) {
  for (const TOptionRow &Row : Rows) {
    if ((Row.Group & Takes) == 0)
      continue;
    // All words are kept, so that it is this file that judges how many may be there.
    if (Row.Value == TValue::None)
      App.add_flag(Row.Name)->description(Row.Description)->take_last();
    else
      App.add_option(Row.Name)
          ->description(Row.Description)
          ->type_name(Row.Placeholder)
          ->take_all();
  }
}

std::string OptionNames(TOptionGroups Takes) {
  std::vector<std::string> Names;
  for (const TOptionRow &Row : Rows)
    if ((Row.Group & Takes) != 0)
      Names.emplace_back(Row.Name);
  return Joined(Names);
}

std::string CommandNames(std::span<const TCommand> Commands) {
  std::vector<std::string> Names;
  for (const TCommand &Command : Commands)
    Names.emplace_back(Command.Name);
  return Joined(Names);
}

// The library takes words from the back. It would also take the word after "--name="
// for the empty value that is meant.
std::vector<std::string> Prepared(const std::vector<std::string> &Arguments) {
  std::vector<std::string> Out;
  for (const std::string &Word : Arguments) {
    if (Word.starts_with("--") && Word.find('=') == Word.size() - 1) {
      Out.push_back(Word.substr(0, Word.size() - 1));
      Out.emplace_back();
    } else {
      Out.push_back(Word);
    }
  }
  std::reverse(Out.begin(), Out.end());
  return Out;
}

class TParser {
public:
  TParser(std::span<const TCommand> Commands, const std::string &Version)
      : Commands_(Commands),
        App_("Finds registry entries that point at missing files.", ProgramName) {
    // On Windows a file named "/x" would otherwise be an option.
    App_.allow_windows_style_options(false);
    App_.set_help_flag("-h,--help", "prints this help and ends");
    App_.set_version_flag("--version", std::string(ProgramName) + " " + Version,
                          "prints the version and ends");
    App_.require_subcommand(0, 1);
    App_.get_formatter()->column_width(25);
    App_.get_formatter()->label("SUBCOMMAND", "COMMAND");
    App_.footer(std::string("Each command has a --help of its own.\n") + ExitCodes);
    for (const TCommand &Command : Commands_) {
      CLI::App &Added = *App_.add_subcommand(Command.Name, Command.Summary);
      Added.group("Commands");
      AddOptions(Added, Command.Takes);
      Added.footer((Command.Takes & TakesAreas) != 0
                       ? "Areas: " + Wrapped(AreaNames()) + "\n" + ExitCodes
                       : ExitCodes);
    }
  }

  TInvocation Parse(const std::vector<std::string> &Arguments) {
    try {
      App_.parse(Prepared(Arguments));
    } catch (const CLI::CallForHelp &) {
      return {nullptr, {}, App_.help(), true};
    } catch (const CLI::CallForVersion &Call) {
      return {nullptr, {}, std::string(Call.what()) + "\n", true};
    } catch (const CLI::ExtrasError &) {
      RefuseWord();
    } catch (const CLI::ParseError &Error) {
      RefuseMissingValue(Arguments.back());
      throw TWrongUse(Error.what());
    }
    for (const TCommand &Command : Commands_) {
      const CLI::App &Parsed = *App_.get_subcommand(Command.Name);
      if (!Parsed.parsed())
        continue;
      CheckTogether(Parsed);
      TInvocation Out;
      Out.Command = &Command;
      for (const TOptionRow &Row : Rows)
        if ((Row.Group & Command.Takes) != 0)
          TakeOption(Out.Options, Row, *Parsed.get_option(Row.Name));
      return Out;
    }
    return {nullptr, {}, App_.help(), false};
  }

private:
  [[noreturn]] void RefuseWord() const {
    for (const TCommand &Command : Commands_)
      if (const auto Words = App_.get_subcommand(Command.Name)->remaining(); !Words.empty())
        throw TWrongUse(std::string(Command.Name) + ": " + Quoted(Words.front()) +
                        " is no option of it; the options are " + OptionNames(Command.Takes));
    throw TWrongUse(Quoted(App_.remaining().front()) + " is no command; the commands are " +
                    CommandNames(Commands_));
  }

  // Values run out only behind the last word.
  static void RefuseMissingValue(const std::string &Name) {
    for (const TOptionRow &Row : Rows)
      if (Name == Row.Name)
        throw TWrongUse(Name + ": its value (" + Row.Placeholder + ") is expected behind it");
  }

  std::span<const TCommand> Commands_;
  CLI::App App_;
};

} // namespace

TInvocation ParseArguments(const std::vector<std::string> &Arguments,
                           std::span<const TCommand> Commands, const std::string &Version) {
  return TParser(Commands, Version).Parse(Arguments);
}

} // namespace hivesweep
