#include "ui/FormImages.h"

#include <stdexcept>

#include "controls/Form.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

// Loading them takes longer than everything else that a dialog does to open.
const TImageList *LoadedBefore(const TImageList &Images) {
  for (const TForm *Form = Images.Owner()->Above(); Form; Form = Form->Above())
    for (const auto &Component : Form->Components())
      if (const auto *List = dynamic_cast<const TImageList *>(Component.get()))
        if (List->Extent() == Images.Extent() && List->CellExtent() == Images.CellExtent() &&
            List->Count() == static_cast<int>(IconNames.size()))
          return List;
  return nullptr;
}

} // namespace

void FillImages(TImageList &Images) {
  if (const TImageList *Loaded = LoadedBefore(Images)) {
    Images.CopyFrom(*Loaded);
    return;
  }
  for (const std::u16string_view Name : IconNames)
    if (!Images.AddResource(Name))
      throw std::runtime_error("the program lacks its icon " + ToUtf8(Name));
}

} // namespace hivesweep
