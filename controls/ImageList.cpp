#include "controls/ImageList.h"

#include "controls/Form.h"
#include "controls/Win32.h"

namespace hivesweep {

TImageList::TImageList(TForm *Owner, std::u16string Name, int Units)
    : TComponent(Owner, std::move(Name)), Extent_(Owner->FormLook().Scale(Units)),
      List_(ImageList_Create(Extent_, Extent_, ILC_COLOR32 | ILC_MASK, 0, 8)) {}

TImageList::~TImageList() { ImageList_Destroy(List_); }

int TImageList::Count() const { return ImageList_GetImageCount(List_); }

int TImageList::Add(HICON__ *Icon) { return ImageList_ReplaceIcon(List_, -1, Icon); }

bool TImageList::AddResource(std::u16string_view Resource) {
  const auto Icon =
      static_cast<HICON>(LoadImageW(GetModuleHandleW(nullptr), Wide(std::u16string(Resource)),
                                    IMAGE_ICON, Extent_, Extent_, LR_DEFAULTCOLOR));
  if (!Icon)
    return false;
  Add(Icon);
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
  ImageList_DrawEx(List_, Number, Canvas.Context(), Place.Left + (Place.Width - Extent_) / 2,
                   Place.Top + (Place.Height - Extent_) / 2, 0, 0, CLR_NONE,
                   Canvas.Look().Color(TColorRole::Face),
                   Enabled ? ILD_TRANSPARENT : ILD_TRANSPARENT | ILD_BLEND50);
}

} // namespace hivesweep
