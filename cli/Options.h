// From the words of a command line to plain settings.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "cli/Failure.h"
#include "engine/Areas.h"

namespace hivesweep {

struct TCliHost;

enum class TFormat { Text, Json, Csv };

// Names of files and folders are kept as the user wrote them, in UTF-8.
struct TOptions {
  std::vector<std::string> RegistryFiles; // none: the live registry
  std::optional<std::string> MachineFile;
  std::optional<std::string> DataFolder;

  TFormat Format = TFormat::Text;
  std::optional<std::string> OutputFile; // none: standard output

  std::optional<std::u16string> AreaFlags; // as the engine takes them; none: by the settings

  bool ShowProtected = false;
  bool NoProgress = false;

  std::optional<std::vector<TRisk>> Risks; // none: as the grading leaves them selected
  std::optional<std::string> PlanFile;
  bool DryRun = false;
  bool Yes = false; // without a question

  std::vector<std::string> Words; // those of the command, in UTF-8
};

// Groups of options; a command takes whole groups.
using TOptionGroups = std::uint32_t;
inline constexpr TOptionGroups TakesSource = 1; // which registry
inline constexpr TOptionGroups TakesFolder = 2; // whose settings and backups
inline constexpr TOptionGroups TakesOutput = 4; // in which form, and where to
inline constexpr TOptionGroups TakesAreas = 8;
inline constexpr TOptionGroups TakesScan = 16;
inline constexpr TOptionGroups TakesProgress = 32;
inline constexpr TOptionGroups TakesFix = 64;
inline constexpr TOptionGroups TakesAnswer = 128;

// A word that stands for itself, without an option's name before it.
struct TWord {
  const char *Name = nullptr;
  const char *Description = nullptr;
  bool Optional = false;
};

struct TCommand {
  const char *Name;
  const char *Summary;
  TOptionGroups Takes;
  TExitCode (*Run)(TCliHost &Host, const TOptions &Options);
  std::span<const TWord> Words = {}; // optional ones stand behind the others
};

// Either a command with its options, or a text for the user.
struct TInvocation {
  const TCommand *Command = nullptr;
  TOptions Options;
  std::string Text;     // help or version
  bool IsAsked = false; // the user asked for the text; otherwise a command is missing
};

// Throws TWrongUse.
TInvocation ParseArguments(const std::vector<std::string> &Arguments,
                           std::span<const TCommand> Commands, const std::string &Version);

} // namespace hivesweep
