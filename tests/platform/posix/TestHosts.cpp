#include "tests/platform/TestHosts.h"

#include <ctime>
#include <filesystem>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/DiskFile.h"

namespace hivesweep {

std::optional<std::u16string> SystemIniText(const std::u16string &, std::u16string_view,
                                            std::u16string_view, std::u16string_view) {
  return std::nullopt;
}

bool IsWine() { return false; }

std::vector<TRegistryKind> LiveRegistries() { return {}; }
std::vector<TDiskKind> LiveDisks() { return {}; }
std::vector<TShortcutsKind> LiveShortcuts() { return {}; }

TScratchFolder::TScratchFolder() {
  std::string Name = (std::filesystem::temp_directory_path() / "hivesweep-test-XXXXXX").string();
  EXPECT_NE(mkdtemp(Name.data()), nullptr);
  Path_ = FromUtf8(Name);
}

TScratchFolder::~TScratchFolder() { std::filesystem::remove_all(ToUtf8(Path_)); }

std::u16string TScratchFolder::File(std::u16string_view Name) const {
  return JoinPath(Path_, Name);
}

std::size_t TScratchFolder::Count() const {
  const std::filesystem::directory_iterator Entries(ToUtf8(Path_));
  return static_cast<std::size_t>(std::distance(begin(Entries), end(Entries)));
}

void SetAge(const std::u16string &Path, int Seconds) {
  timespec Times[2] = {};
  clock_gettime(CLOCK_REALTIME, &Times[0]);
  Times[0].tv_sec -= Seconds;
  Times[1] = Times[0];
  ASSERT_EQ(utimensat(AT_FDCWD, ToUtf8(Path).c_str(), Times, 0), 0);
}

std::size_t OpenHandles() {
  const std::filesystem::directory_iterator Entries("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(Entries), end(Entries)));
}

// The sanitizer keeps what was freed, so there is no telling; it finds leaks itself.
std::optional<std::size_t> PrivateBytes() { return std::nullopt; }

void SetReadOnly(const std::u16string &Path, bool ReadOnly) {
  ASSERT_EQ(chmod(ToUtf8(Path).c_str(), ReadOnly ? 0444 : 0644), 0);
}

} // namespace hivesweep
