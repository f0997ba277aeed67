// From the words of a command line to plain settings.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "cli/Failure.h"

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
};

// Groups of options; a command takes whole groups.
using TOptionGroups = std::uint32_t;
inline constexpr TOptionGroups TakesSource = 1; // which registry, whose settings
inline constexpr TOptionGroups TakesOutput = 2; // in which form, and where to
inline constexpr TOptionGroups TakesAreas = 4;
inline constexpr TOptionGroups TakesScan = 8;

struct TCommand {
  const char *Name;
  const char *Summary;
  TOptionGroups Takes;
  TExitCode (*Run)(TCliHost &Host, const TOptions &Options);
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
