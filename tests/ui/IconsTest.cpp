#include "ui/Icons.h"

#include <algorithm>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/DiskFile.h"
#include "platform/Text.h"

namespace hivesweep {
namespace {

// A number of an icon file; 0 behind its end, which no size and no place may be.
std::uint32_t NumberAt(std::string_view Bytes, std::size_t At, std::size_t Width) {
  std::uint32_t Number = 0;
  for (std::size_t Place = 0; Place < Width && At + Width <= Bytes.size(); ++Place)
    Number |= std::uint32_t{static_cast<unsigned char>(Bytes[At + Place])} << (8 * Place);
  return Number;
}

// One image: how opaque each pixel is, from 0 to 255, and its colour, which is 0 where
// there is nothing.
struct TImage {
  std::size_t Size = 0;
  std::uint32_t Depth = 0;
  std::vector<std::uint32_t> Colours; // 0xRRGGBB, from the bottom row up
  std::vector<std::uint32_t> Alpha;
};

// Reads the image as a system does: a header, the palette, the pixels, and the mask of
// what is not there.
TImage ReadImage(std::string_view Bytes) {
  constexpr std::size_t Header = 40;
  TImage Image;
  Image.Size = NumberAt(Bytes, 4, 4);
  Image.Depth = NumberAt(Bytes, 14, 2);
  EXPECT_EQ(NumberAt(Bytes, 0, 4), Header);
  EXPECT_EQ(NumberAt(Bytes, 8, 4), 2 * Image.Size) << "the pixels and the mask";
  EXPECT_EQ(NumberAt(Bytes, 16, 4), 0u) << "compressed";
  const std::size_t Used = NumberAt(Bytes, 32, 4) ? NumberAt(Bytes, 32, 4) : 256;
  const std::size_t Pixels = Header + (Image.Depth == 8 ? Used * 4 : 0);
  const std::size_t Row = Image.Size * Image.Depth / 8; // sizes that need no padding
  const std::size_t MaskRow = (Image.Size + 31) / 32 * 4;
  const std::size_t Mask = Pixels + Row * Image.Size;
  EXPECT_GE(Bytes.size(), Mask + MaskRow * Image.Size);
  for (std::size_t Y = 0; Y < Image.Size; ++Y)
    for (std::size_t X = 0; X < Image.Size; ++X) {
      const bool Masked = (NumberAt(Bytes, Mask + Y * MaskRow + X / 8, 1) >> (7 - X % 8) & 1) != 0;
      if (Image.Depth == 8) {
        const std::size_t Index = NumberAt(Bytes, Pixels + Y * Row + X, 1);
        EXPECT_LT(Index, Used);
        Image.Colours.push_back(NumberAt(Bytes, Header + Index * 4, 4) & 0xFFFFFF);
        Image.Alpha.push_back(Masked ? 0 : 255);
      } else {
        const std::uint32_t Pixel = NumberAt(Bytes, Pixels + Y * Row + X * 4, 4);
        Image.Alpha.push_back(Pixel >> 24);
        Image.Colours.push_back(Pixel >> 24 ? Pixel & 0xFFFFFF : 0);
      }
    }
  return Image;
}

std::u16string FileOf(std::u16string_view Name) { return ICON_FOLDER + AsciiLower(Name) + u".ico"; }

std::vector<TImage> ReadIcon(std::u16string_view Name) {
  std::string Bytes;
  EXPECT_EQ(ReadWholeFile(FileOf(Name), Bytes), TError());
  EXPECT_EQ(NumberAt(Bytes, 0, 4), 0x10000u) << "no icon file";
  std::vector<TImage> Images;
  for (std::size_t Entry = 6; Images.size() < NumberAt(Bytes, 4, 2); Entry += 16) {
    const std::size_t Size = NumberAt(Bytes, Entry + 8, 4);
    const std::size_t Place = NumberAt(Bytes, Entry + 12, 4);
    EXPECT_LE(Place + Size, Bytes.size());
    Images.push_back(
        ReadImage(std::string_view(Bytes).substr(std::min(Place, Bytes.size()), Size)));
    EXPECT_EQ(NumberAt(Bytes, Entry, 1), Images.back().Size);
    EXPECT_EQ(NumberAt(Bytes, Entry + 6, 2), Images.back().Depth);
  }
  return Images;
}

TEST(Icons, HaveTheirEightImagesInEverySizeAndDepth) {
  for (const std::u16string_view Name : IconNames) {
    SCOPED_TRACE(ToUtf8(Name));
    std::set<std::pair<std::size_t, std::uint32_t>> Kinds;
    for (const TImage &Image : ReadIcon(Name)) {
      SCOPED_TRACE(std::to_string(Image.Size) + " pixels, bits: " + std::to_string(Image.Depth));
      Kinds.emplace(Image.Size, Image.Depth);
      std::set<std::uint32_t> Seen;
      std::size_t Solid = 0;
      for (std::size_t At = 0; At < Image.Alpha.size(); ++At)
        if (Image.Alpha[At] >= 128) {
          Seen.insert(Image.Colours[At]);
          ++Solid;
        } else if (Image.Depth == 8) {
          // Any other colour would be mixed into the ground.
          EXPECT_EQ(Image.Colours[At], 0u);
        }
      const std::size_t Area = Image.Size * Image.Size;
      EXPECT_GE(Solid, Area / 5);
      EXPECT_LT(Solid, Area) << "no corner is free: the ground was drawn too";
      EXPECT_GE(Seen.size(), 2u);
    }
    std::set<std::pair<std::size_t, std::uint32_t>> Expected;
    for (const std::size_t Size : {16u, 24u, 32u, 48u})
      for (const std::uint32_t Depth : {8u, 32u})
        Expected.emplace(Size, Depth);
    EXPECT_EQ(Kinds, Expected);
  }
}

// How many pixels of two icons' smallest images differ.
std::size_t Apart(const std::vector<std::uint32_t> &Left, const std::vector<std::uint32_t> &Right) {
  std::size_t Count = 0;
  for (std::size_t At = 0; At < Left.size(); ++At)
    Count += Left[At] != Right[At] ? 1 : 0;
  return Count;
}

TEST(Icons, CanBeToldApartAtTheirSmallest) {
  std::vector<TImage> Images;
  for (const std::u16string_view Name : IconNames) {
    const std::vector<TImage> Icon = ReadIcon(Name);
    Images.push_back(*std::find_if(Icon.begin(), Icon.end(), [](const TImage &Image) {
      return Image.Size == 16 && Image.Depth == 8;
    }));
  }
  const auto IsRisk = [](std::size_t Number) {
    return Number >= static_cast<std::size_t>(TIcon::RiskLow) &&
           Number <= static_cast<std::size_t>(TIcon::RiskHigh);
  };
  for (std::size_t Left = 0; Left < Images.size(); ++Left)
    for (std::size_t Right = Left + 1; Right < Images.size(); ++Right) {
      SCOPED_TRACE(ToUtf8(IconNames[Left]) + ", " + ToUtf8(IconNames[Right]));
      EXPECT_GE(Apart(Images[Left].Colours, Images[Right].Colours), 32u);
      if (IsRisk(Left) && IsRisk(Right)) {
        EXPECT_GE(Apart(Images[Left].Alpha, Images[Right].Alpha), 12u) << "in shape";
      }
    }
}

} // namespace
} // namespace hivesweep
