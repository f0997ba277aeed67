// Windows of other programs, as a user finds them: by what they are and whose they are.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/win32/Win32.h"

namespace hivesweep {

// A started program; ended when this goes, if it has not ended by itself.
class TStartedProgram {
public:
  explicit TStartedProgram(const std::u16string &Path);
  TStartedProgram(const TStartedProgram &) = delete;
  TStartedProgram &operator=(const TStartedProgram &) = delete;
  ~TStartedProgram();

  DWORD Id() const { return Info_.dwProcessId; }
  bool HasEnded() const;
  DWORD ExitCode() const;

private:
  PROCESS_INFORMATION Info_ = {};
};

// The top-level windows of that class (empty: of any); of one process alone unless the
// number is 0.
std::vector<HWND> FindWindows(std::u16string_view Class, DWORD ProcessId = 0);

// Those that can be seen.
std::vector<HWND> FindVisibleWindows(std::u16string_view Class, DWORD ProcessId = 0);

// The first window below one, of that class; null when there is none.
HWND FindChild(HWND Window, std::u16string_view Class);

std::u16string TextOf(HWND Window);
std::u16string ClassOf(HWND Window);

// Asks the windows to close, and waits until they are gone.
void CloseAll(std::u16string_view Class);

} // namespace hivesweep
