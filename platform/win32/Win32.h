// The system's own header, and what every source of this folder needs beside it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace hivesweep {

// ---- text ------------------------------------------------------------------
// Both types hold the same UTF-16 units; only the system's functions want the one.

static_assert(sizeof(wchar_t) == sizeof(char16_t));

inline const wchar_t *Wide(const std::u16string &Text) {
  return reinterpret_cast<const wchar_t *>(Text.c_str());
}
inline wchar_t *Wide(char16_t *Units) { return reinterpret_cast<wchar_t *>(Units); }
inline const char16_t *FromWide(const wchar_t *Units) {
  return reinterpret_cast<const char16_t *>(Units);
}

// The system's functions end a text at its first zero: such a text would be
// taken for another one.
inline bool HoldsZero(std::u16string_view Text) {
  return Text.find(u'\0') != std::u16string_view::npos;
}

// A text of any length from a function that fills a buffer: Fill(units, count)
// answers how many units it wrote, and count less one or two, or more than count,
// when there were too few of them.
template <typename TFill> std::u16string GrowingText(TFill Fill) {
  std::u16string Text(MAX_PATH, u'\0');
  for (;;) {
    const std::size_t Length = Fill(Wide(Text.data()), static_cast<DWORD>(Text.size()));
    if (Length + 2 < Text.size()) {
      Text.resize(Length);
      return Text;
    }
    Text.resize(Length > Text.size() ? Length + 3 : Text.size() * 2);
  }
}

// ---- functions that Windows 2000 does not have -------------------------------

// Of a module that every process holds; null when this system has no such function.
inline void (*FindFunction(const wchar_t *Module, const char *Name))() {
  const HMODULE Found = GetModuleHandleW(Module);
  return Found ? reinterpret_cast<void (*)()>(GetProcAddress(Found, Name)) : nullptr;
}

// ---- handles ------------------------------------------------------------------

// A file's handle; closes it.
class TFileHandle {
public:
  explicit TFileHandle(HANDLE Handle) : Owned_(Handle) {}
  TFileHandle(TFileHandle &&Other) noexcept
      : Owned_(std::exchange(Other.Owned_, INVALID_HANDLE_VALUE)) {}
  TFileHandle &operator=(TFileHandle &&Other) noexcept {
    std::swap(Owned_, Other.Owned_);
    Other.Close();
    return *this;
  }
  ~TFileHandle() { Close(); }

  bool IsOpen() const { return Owned_ != INVALID_HANDLE_VALUE; }
  HANDLE Get() const { return Owned_; }
  void Close() {
    if (IsOpen())
      CloseHandle(Owned_);
    Owned_ = INVALID_HANDLE_VALUE;
  }

private:
  HANDLE Owned_;
};

// A search through a folder; closes it.
class TSearch {
public:
  TSearch(const std::u16string &Pattern, WIN32_FIND_DATAW &First)
      : Owned_(FindFirstFileW(Wide(Pattern), &First)) {}
  TSearch(const TSearch &) = delete;
  TSearch &operator=(const TSearch &) = delete;
  ~TSearch() {
    if (IsOpen())
      FindClose(Owned_);
  }

  bool IsOpen() const { return Owned_ != INVALID_HANDLE_VALUE; }
  bool Next(WIN32_FIND_DATAW &Out) const { return FindNextFileW(Owned_, &Out) != 0; }

private:
  HANDLE Owned_;
};

// "." or "..", which every folder has.
inline bool IsOwnOrParent(const WIN32_FIND_DATAW &Entry) {
  const std::u16string_view Name = FromWide(Entry.cFileName);
  return Name == u"." || Name == u"..";
}

// ---- times --------------------------------------------------------------------

// Steps of 100 ns since 1601.
inline std::uint64_t Number(const FILETIME &Time) {
  return static_cast<std::uint64_t>(Time.dwHighDateTime) << 32 | Time.dwLowDateTime;
}
inline FILETIME FileTime(std::uint64_t Number) {
  return {static_cast<DWORD>(Number), static_cast<DWORD>(Number >> 32)};
}

} // namespace hivesweep
