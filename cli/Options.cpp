#include "cli/Options.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include <CLI/CLI.hpp>

#include "cli/OptionTable.h"

namespace hivesweep {

namespace {

constexpr const char *ProgramName = "hivesweep-cli";

constexpr const char *ExitCodes =
    "Exit codes: 0 done, 1 no (ignore check), 2 wrong use, 3 something "
    "could not\nbe read, written or removed, 130 stopped by "
    "Ctrl+C (what was found is printed).";

// Lines of a terminal's usual width, broken at blanks.
std::string Wrapped(std::string Text) {
  constexpr std::size_t Width = 70;
  for (std::size_t Start = 0; Start + Width < Text.size();) {
    Start = Text.rfind(' ', Start + Width);
    Text[Start] = '\n';
  }
  return Text;
}

// ---- the words ------------------------------------------------------------------

void CheckTogether(const CLI::App &Command) {
  for (const TOptionRule &Rule : OptionRules()) {
    const CLI::Option *const Given = Command.get_option_no_throw(Rule.Given);
    const CLI::Option *const Other = Command.get_option_no_throw(Rule.Other);
    if (Given && Other && Given->count() > 0 && (Other->count() > 0) != Rule.NeedsOther)
      throw TWrongUse(std::string(Rule.Given) + ": " + Rule.Message);
  }
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
  for (const TOptionRow &Row : OptionTable()) {
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

// The library may not ask for more of a word than for one text, or it would take brackets
// and commas in it for a list.
void AddWords(CLI::App &App, const TCommand &Command) {
  for (const TWord &Word : Command.Words)
    App.add_option(Word.Name)
        ->description(Word.Description)
        ->type_name("")
        ->required(!Word.Optional);
}

std::string OptionNames(TOptionGroups Takes) {
  std::vector<std::string> Names;
  for (const TOptionRow &Row : OptionTable())
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

bool TakesValue(const std::string &Word) {
  return std::ranges::any_of(OptionTable(), [&](const TOptionRow &Row) {
    return Row.Value != TValue::None && Word == Row.Name;
  });
}

[[noreturn]] void RefuseMissingValue(const std::string &Name, const std::string &Given) {
  const TOptionRow &Row = *std::ranges::find(OptionTable(), Name, &TOptionRow::Name);
  throw TWrongUse(Name + ": its value (" + Row.Placeholder + ") is expected behind it" + Given);
}

// What the library would take in another sense than the user's, or pass over.
void CheckWords(const std::vector<std::string> &Arguments) {
  for (std::size_t Index = 0; Index < Arguments.size() && Arguments[Index] != "--"; ++Index) {
    const std::string &Word = Arguments[Index];
    if (TakesValue(Word) && Index + 1 < Arguments.size()) {
      const std::string &Value = Arguments[++Index];
      if (Value.starts_with("--"))
        RefuseMissingValue(Word, ", not the option " + Quoted(Value));
    } else if (Word == "++") {
      throw TWrongUse(Quoted(Word) + " is no option and no command");
    }
    for (const std::string Flag : {"--help", "--version"})
      if (Word.starts_with(Flag + "="))
        throw TWrongUse(Flag + ": takes no value, and " + Quoted(Word.substr(Flag.size() + 1)) +
                        " is one");
  }
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
      AddWords(Added, Command);
      AddOptions(Added, Command.Takes);
      Added.footer((Command.Takes & TakesAreas) != 0
                       ? "Areas: " + Wrapped(AreaNames()) + "\n" + ExitCodes
                       : ExitCodes);
    }
  }

  TInvocation Parse(const std::vector<std::string> &Arguments) {
    CheckWords(Arguments);
    try {
      App_.parse(Prepared(Arguments));
    } catch (const CLI::CallForHelp &) {
      return {nullptr, {}, App_.help(), true};
    } catch (const CLI::CallForVersion &Call) {
      return {nullptr, {}, std::string(Call.what()) + "\n", true};
    } catch (const CLI::ExtrasError &) {
      RefuseWord();
    } catch (const CLI::RequiredError &) {
      RefuseMissingWord();
    } catch (const CLI::ParseError &Error) {
      // Values run out only behind the last word.
      if (TakesValue(Arguments.back()))
        RefuseMissingValue(Arguments.back(), "");
      throw TWrongUse(Error.what());
    }
    for (const TCommand &Command : Commands_) {
      const CLI::App &Parsed = *App_.get_subcommand(Command.Name);
      if (!Parsed.parsed())
        continue;
      CheckTogether(Parsed);
      TInvocation Out;
      Out.Command = &Command;
      for (const TWord &Word : Command.Words)
        if (Parsed.get_option(Word.Name)->count() > 0)
          Out.Options.Words.push_back(Parsed.get_option(Word.Name)->results().front());
      for (const TOptionRow &Row : OptionTable())
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

  // The library does not tell which one is missing.
  [[noreturn]] void RefuseMissingWord() const {
    for (const TCommand &Command : Commands_)
      for (const TWord &Word : Command.Words) {
        const CLI::App &Parsed = *App_.get_subcommand(Command.Name);
        if (Parsed.parsed() && !Word.Optional && Parsed.get_option(Word.Name)->count() == 0)
          throw TWrongUse(std::string(Command.Name) + ": " + Word.Name + " is expected; " +
                          Command.Name + " --help tells more");
      }
    throw TWrongUse("a word is missing");
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
