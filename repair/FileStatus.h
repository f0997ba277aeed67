#pragma once

#include "platform/FileSystem.h"
#include "platform/Registry.h"

namespace hivesweep {

// What became of a file in the words for a key: a fix and a restore tell of both alike.
constexpr TRegStatus RegStatusOf(TFileStatus Status) {
  switch (Status) {
  case TFileStatus::Ok:
    return TRegStatus::Ok;
  case TFileStatus::NotFound:
    return TRegStatus::NotFound;
  case TFileStatus::Denied:
    return TRegStatus::Denied;
  case TFileStatus::Failed:
    break;
  }
  return TRegStatus::Failed;
}

} // namespace hivesweep
