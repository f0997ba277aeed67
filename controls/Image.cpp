#include "controls/Image.h"

#include "controls/ImageList.h"

namespace hivesweep {

void TImage::SetImage(const TImageList *Images, int Number) {
  Images_ = Images;
  Number_ = Number;
  Invalidate();
}

TSize TImage::Needed(int Width) const {
  static_cast<void>(Width);
  return Images_ ? TSize{Images_->Extent(), Images_->Extent()} : TSize{};
}

void TImage::Paint(TCanvas &Canvas) {
  if (Images_)
    Images_->Draw(Canvas, Bounds(), Number_);
}

} // namespace hivesweep
