#include <algorithm>
#include <memory>

#include "cli/Commands.h"
#include "cli/Input.h"
#include "cli/ListReport.h"
#include "cli/OptionTable.h"
#include "cli/Output.h"
#include "cli/Session.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

struct TIgnoreCall {
  TCliConsole &Console;
  const TOptions &Options;
  TIgnoreList &List;
  std::u16string KeyPath;
  std::u16string ValueName;
};

void Check(const TError &Error) {
  if (Error)
    throw TFailure(TExitCode::Failed, WordsOf(Error));
}

TExitCode List(TIgnoreCall &Call) {
  TListReport Out("ignored", {{u"Registry key", u"KeyPath"}, {u"Registry value", u"ValueName"}});
  Call.List.Fill(Out);
  WriteList(Call.Console, Call.Options, Out);
  return TExitCode::Done;
}

TExitCode Add(TIgnoreCall &Call) {
  Check(Call.List.Add(Call.KeyPath, Call.ValueName));
  return TExitCode::Done;
}

TExitCode Remove(TIgnoreCall &Call) {
  if (Call.List.Contains(Call.KeyPath))
    Check(Call.List.Remove(Call.KeyPath));
  else
    Complain(Call.Console, "it is not on the list: " + ToUtf8(Call.KeyPath));
  return TExitCode::Done;
}

TExitCode Test(TIgnoreCall &Call) {
  const bool IsIgnored = Call.List.Contains(Call.KeyPath);
  WriteOutput(Call.Console, IsIgnored ? "ignored\n" : "not ignored\n");
  return IsIgnored ? TExitCode::Done : TExitCode::No;
}

// Fewest and most of the words after the action itself.
struct TAction {
  const char *Name;
  std::size_t Fewest;
  std::size_t Most;
  TFolderUse Use;
  TExitCode (*Run)(TIgnoreCall &Call);
};

constexpr TAction Actions[] = {
    {"list", 0, 0, TFolderUse::Reads, List},
    {"add", 1, 2, TFolderUse::Writes, Add},
    {"remove", 1, 1, TFolderUse::Reads, Remove},
    {"check", 1, 1, TFolderUse::Reads, Test},
};

const TAction &ActionOf(const std::vector<std::string> &Words) {
  const std::string &Name = Words.front();
  const auto *const Action = std::ranges::find_if(
      Actions, [&](const TAction &Candidate) { return Candidate.Name == Name; });
  if (Action == std::end(Actions))
    throw TWrongUse("ignore: " + Quoted(Name) + " is none of list, add, remove, check");
  const std::size_t Count = Words.size() - 1;
  if (Count < Action->Fewest)
    throw TWrongUse("ignore " + Name + ": KEY is expected, the full path of a key");
  if (Count > Action->Most)
    throw TWrongUse("ignore " + Name + ": " + Quoted(Words.back()) + " is a word too many");
  return *Action;
}

} // namespace

TExitCode RunIgnore(TCliHost &Host, const TOptions &Options) {
  const std::vector<std::string> &Words = Options.Words;
  const TAction &Action = ActionOf(Words);
  TSession Session = OpenSession(Host, Options, false);
  RequireReadable(Session, Session.Paths.IgnoreIniPath);
  const auto Data = OpenData(Host.Console, Session, Action.Use);
  TIgnoreCall Call = {Host.Console, Options, Data->IgnoreList,
                      Words.size() > 1 ? FromUtf8(Words[1]) : u"",
                      Words.size() > 2 ? FromUtf8(Words[2]) : std::u16string(WholeKey)};
  return Action.Run(Call);
}

} // namespace hivesweep
