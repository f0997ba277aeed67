#include "ui/FormImages.h"

#include <stdexcept>

#include "platform/Text.h"

namespace hivesweep {

void FillImages(TImageList &Images) {
  for (const std::u16string_view Name : IconNames)
    if (!Images.AddResource(Name))
      throw std::runtime_error("the program lacks its icon " + ToUtf8(Name));
}

} // namespace hivesweep
