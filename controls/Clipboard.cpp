#include "controls/Clipboard.h"

#include <cstring>

#include "controls/Form.h"
#include "controls/Win32.h"

namespace hivesweep {

namespace {

// The text as the clipboard wants it; null when there is no room.
HGLOBAL BlockOf(std::u16string_view Text) {
  const std::size_t Bytes = Text.size() * sizeof(char16_t);
  const HGLOBAL Block = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, Bytes + sizeof(char16_t));
  void *const Place = Block ? GlobalLock(Block) : nullptr;
  if (!Place)
    return GlobalFree(Block);
  std::memcpy(Place, Text.data(), Bytes);
  GlobalUnlock(Block);
  return Block;
}

bool OpenPatiently(HWND Window) {
  constexpr int Tries = 10;
  constexpr DWORD Pause = 20; // milliseconds
  for (int Try = 0; Try < Tries; ++Try) {
    if (OpenClipboard(Window))
      return true;
    Sleep(Pause);
  }
  return false;
}

} // namespace

bool CopyText(const TForm &From, std::u16string_view Text) {
  HGLOBAL Block = BlockOf(Text);
  if (!Block || !OpenPatiently(From.Handle())) {
    GlobalFree(Block);
    return false;
  }
  EmptyClipboard();
  const bool IsTaken = SetClipboardData(CF_UNICODETEXT, Block) != nullptr; // it is the system's now
  CloseClipboard();
  if (!IsTaken)
    GlobalFree(Block);
  return IsTaken;
}

} // namespace hivesweep
