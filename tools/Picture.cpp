#include "tools/Picture.h"

#include <stdexcept>
#include <string>

#include "controls/Win32.h"
#include "platform/DiskFile.h"
#include "platform/Text.h"

namespace hivesweep {

void SavePicture(const TForm &Form, const std::u16string &Path) {
  RECT Place;
  GetWindowRect(Form.Handle(), &Place);
  BITMAPINFOHEADER Info{};
  Info.biSize = sizeof Info;
  Info.biWidth = Place.right - Place.left;
  Info.biHeight = Place.bottom - Place.top;
  Info.biPlanes = 1;
  Info.biBitCount = 24;

  const HDC Screen = GetDC(nullptr);
  const HDC Memory = CreateCompatibleDC(Screen);
  void *Pixels = nullptr;
  const HBITMAP Picture = CreateDIBSection(Memory, reinterpret_cast<BITMAPINFO *>(&Info),
                                           DIB_RGB_COLORS, &Pixels, nullptr, 0);
  const HGDIOBJ Before = SelectObject(Memory, Picture);
  const bool Copied = BitBlt(Memory, 0, 0, Info.biWidth, Info.biHeight, Screen, Place.left,
                             Place.top, SRCCOPY) != 0;
  const LONG Line = (Info.biWidth * 3 + 3) & ~3; // a line ends on a whole word
  const auto Size = static_cast<std::size_t>(Line * Info.biHeight);
  BITMAPFILEHEADER File{};
  File.bfType = 0x4D42; // "BM"
  File.bfOffBits = sizeof File + sizeof Info;
  File.bfSize = File.bfOffBits + static_cast<DWORD>(Size);
  std::string Bytes(reinterpret_cast<const char *>(&File), sizeof File);
  Bytes.append(reinterpret_cast<const char *>(&Info), sizeof Info);
  if (Pixels)
    Bytes.append(static_cast<const char *>(Pixels), Size);
  SelectObject(Memory, Before);
  DeleteObject(Picture);
  DeleteDC(Memory);
  ReleaseDC(nullptr, Screen);
  if (!Copied || !Pixels || WriteWholeFile(Path, Bytes))
    throw std::runtime_error("no picture could be written: " + ToUtf8(Path));
}

} // namespace hivesweep
