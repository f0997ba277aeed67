#include "controls/ImageList.h"

#include "controls/Form.h"
#include "controls/Win32.h"

namespace hivesweep {

namespace {

// The picture in the middle of a larger one, with nothing around it. Null: none could be
// made.
HICON Surrounded(HICON Icon, int Extent, int Air) {
  ICONINFO Parts{};
  if (!GetIconInfo(Icon, &Parts))
    return nullptr;
  const int Whole = Extent + 2 * Air;
  BITMAPINFO Form{};
  Form.bmiHeader = {sizeof Form.bmiHeader, Whole, Whole, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  void *Bits = nullptr;
  const HBITMAP Color = CreateDIBSection(nullptr, &Form, DIB_RGB_COLORS, &Bits, nullptr, 0);
  const HBITMAP Mask = CreateBitmap(Whole, Whole, 1, 1, nullptr);
  const HDC From = CreateCompatibleDC(nullptr), To = CreateCompatibleDC(nullptr);
  const auto Copy = [&](HBITMAP Target, HBITMAP Source, DWORD Around) {
    const HGDIOBJ OldTarget = SelectObject(To, Target), OldSource = SelectObject(From, Source);
    PatBlt(To, 0, 0, Whole, Whole, Around);
    BitBlt(To, Air, Air, Extent, Extent, From, 0, 0, SRCCOPY);
    SelectObject(To, OldTarget);
    SelectObject(From, OldSource);
  };
  Copy(Color, Parts.hbmColor, BLACKNESS);
  Copy(Mask, Parts.hbmMask, WHITENESS); // white lets the ground through
  ICONINFO Larger{TRUE, 0, 0, Mask, Color};
  const HICON Answer = CreateIconIndirect(&Larger);
  for (const HBITMAP Bitmap : {Color, Mask, Parts.hbmColor, Parts.hbmMask})
    DeleteObject(Bitmap);
  DeleteDC(From);
  DeleteDC(To);
  return Answer;
}

} // namespace

TImageList::TImageList(TForm *Owner, std::u16string Name, int Units, int AirUnits)
    : TComponent(Owner, std::move(Name)), Extent_(Owner->FormLook().Scale(Units)),
      Air_(Owner->FormLook().Scale(AirUnits)),
      List_(ImageList_Create(CellExtent(), CellExtent(), ILC_COLOR32 | ILC_MASK, 0, 8)) {}

TImageList::~TImageList() { ImageList_Destroy(List_); }

int TImageList::Count() const { return ImageList_GetImageCount(List_); }

int TImageList::Add(HICON__ *Icon) { return ImageList_ReplaceIcon(List_, -1, Icon); }

bool TImageList::AddResource(std::u16string_view Resource) {
  const auto Icon =
      static_cast<HICON>(LoadImageW(GetModuleHandleW(nullptr), Wide(std::u16string(Resource)),
                                    IMAGE_ICON, Extent_, Extent_, LR_DEFAULTCOLOR));
  if (!Icon)
    return false;
  const HICON Cell = Air_ > 0 ? Surrounded(Icon, Extent_, Air_) : nullptr;
  Add(Cell ? Cell : Icon);
  if (Cell)
    DestroyIcon(Cell);
  DestroyIcon(Icon);
  return true;
}

void TImageList::CopyFrom(const TImageList &Other) {
  if (const HIMAGELIST Copy = ImageList_Duplicate(Other.List_)) {
    ImageList_Destroy(List_);
    List_ = Copy;
  }
}

void TImageList::Draw(TCanvas &Canvas, const TRect &Place, int Number, bool Enabled) const {
  if (Number < 0 || Number >= Count())
    return;
  ImageList_DrawEx(List_, Number, Canvas.Context(), Place.Left + (Place.Width - CellExtent()) / 2,
                   Place.Top + (Place.Height - CellExtent()) / 2, 0, 0, CLR_NONE,
                   Canvas.Look().Color(TColorRole::Face),
                   Enabled ? ILD_TRANSPARENT : ILD_TRANSPARENT | ILD_BLEND50);
}

} // namespace hivesweep
