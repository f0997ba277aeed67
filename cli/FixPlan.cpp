#include "cli/FixPlan.h"

#include <set>
#include <unordered_map>

#include <nlohmann/json.hpp>

#include "cli/Failure.h"
#include "cli/Input.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

// Reports need three levels.
constexpr int DeepestLevel = 100;

// The one that keeps the order of fields copies and frees its values by recursion: what
// somebody has nested deeply would end the program.
using TJson = nlohmann::json;

[[noreturn]] void Refuse(const std::string &File, const std::string &Reason) {
  throw TFailure(TExitCode::Failed, File + ": is no plan: " + Reason);
}

// The library's own words, without its number for the error; they may hold a long piece
// of the file.
std::string ReasonOf(const TJson::exception &Error) {
  constexpr std::size_t Longest = 200;
  std::string Reason = Error.what();
  if (const std::size_t End = Reason.find("] ");
      Reason.starts_with('[') && End != std::string::npos)
    Reason.erase(0, End + 2);
  return Reason.size() > Longest ? Reason.substr(0, Longest) + "..." : Reason;
}

// A shell may have saved the report in an encoding of its own.
TJson Parse(const std::string &File, const std::string &Bytes) {
  if (EndsInHalfUnit(Bytes))
    Refuse(File, "it is cut: it ends in the middle of a character");
  const auto CheckDepth = [&](int Depth, TJson::parse_event_t, const TJson &) {
    if (Depth > DeepestLevel)
      Refuse(File, "it is nested deeper than " + std::to_string(DeepestLevel) + " levels");
    return true;
  };
  try {
    return TJson::parse(ToUtf8(DecodeTextFile(Bytes)), CheckDepth);
  } catch (const TJson::exception &Error) {
    Refuse(File, ReasonOf(Error));
  }
}

// Reads the fields of one entry, and complains about those that are not as they should be.
class TEntryReader {
public:
  TEntryReader(const std::string &File, const TJson &Entry, std::size_t Number)
      : File_(File), Entry_(Entry), Where_("problem " + std::to_string(Number)) {
    if (!Entry.is_object())
      Refuse(File_, Where_ + " is no object");
  }

  TPlanEntry Read() const {
    TPlanEntry Out;
    Out.Area = Area();
    Out.Id = Text("id");
    Out.KeyPath = FromUtf8(Text("KeyPath"));
    Out.ValueName = FromUtf8(Text("ValueName"));
    Out.Data = FromUtf8(Text("Data"));
    const TJson &Checked = Field("Checked");
    if (!Checked.is_boolean())
      Refuse(File_, Where_ + ": \"Checked\" is neither true nor false");
    Out.Checked = Checked.get<bool>();
    return Out;
  }

private:
  const TJson &Field(const char *Name) const {
    const auto Found = Entry_.find(Name);
    if (Found == Entry_.end())
      Refuse(File_, Where_ + " has no \"" + Name + "\"");
    return *Found;
  }
  std::string Text(const char *Name) const {
    const TJson &Value = Field(Name);
    if (!Value.is_string())
      Refuse(File_, Where_ + ": \"" + Name + "\" is no text");
    return Value.get<std::string>();
  }
  int Area() const {
    const TJson &Value = Field("area");
    if (Value.is_number_integer())
      for (const TArea &Area : Areas)
        if (Value == Area.Number)
          return Area.Number;
    Refuse(File_, Where_ + ": \"area\" is no number from 1 to " + std::to_string(AreaCount));
  }

  const std::string &File_;
  const TJson &Entry_;
  const std::string Where_;
};

// Both as a report shows them: half a surrogate pair has become another character there.
bool LooksLike(const std::u16string &Text, const std::u16string &Found) {
  return Text == Found || Text == FromUtf8(ToUtf8(Found));
}

// The name of a finding stands for its exact texts; that no two texts share one is
// what the rest looks at.
bool Names(const TPlanEntry &Entry, const TReportedProblem &Problem) {
  const TItemInfo &Item = *Problem.Item;
  return Entry.Area == Problem.Area && LooksLike(Entry.KeyPath, Item.KeyPath) &&
         LooksLike(Entry.ValueName, Item.ValueName) && LooksLike(Entry.Data, Item.Data);
}

} // namespace

TFixPlan::TFixPlan(TCliConsole &Console, const std::string &Name) {
  const std::string File = NameOfInput(Name);
  const TJson Report = Parse(File, ReadInput(Console, Name));
  const auto Problems = Report.is_object() ? Report.find("problems") : Report.end();
  if (!Report.is_object() || Problems == Report.end() || !Problems->is_array())
    Refuse(File, "it has no list \"problems\"");
  std::set<std::string> Ids;
  for (const TJson &Problem : *Problems) {
    Entries_.push_back(TEntryReader(File, Problem, Entries_.size() + 1).Read());
    if (!Ids.insert(Entries_.back().Id).second)
      Refuse(File, "problem " + std::to_string(Entries_.size()) + " stands there twice");
  }
}

std::u16string TFixPlan::AreaFlags() const {
  std::u16string Flags(AreaCount, u'0');
  for (const TPlanEntry &Entry : Entries_)
    if (Entry.Checked)
      Flags[AreaIndex(Entry.Area)] = u'1';
  return Flags;
}

std::vector<TPlanEntry> TFixPlan::Select(const std::vector<TReportedProblem> &Problems) const {
  std::unordered_map<std::string, const TReportedProblem *> ById;
  for (const TReportedProblem &Problem : Problems) {
    Problem.Item->Checked = false;
    ById.emplace(Problem.Id, &Problem);
  }
  std::vector<TPlanEntry> Missing;
  for (const TPlanEntry &Entry : Entries_) {
    if (!Entry.Checked)
      continue;
    const auto Found = ById.find(Entry.Id);
    if (Found != ById.end() && Names(Entry, *Found->second))
      Found->second->Item->Checked = true;
    else
      Missing.push_back(Entry);
  }
  return Missing;
}

} // namespace hivesweep
