// The exact state of a part of the registry and of some files at one moment: read,
// compared, and put back.
#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Platform.h"
#include "platform/Text.h"

namespace hivesweep {

// A key by the place where it is stored. HKEY_CLASSES_ROOT stores nothing: it shows two
// other places.
struct TKeyPlace {
  TRegRoot Root = TRegRoot::CurrentUser;
  std::u16string Path; // without a backslash at either end
};

// Orders places so that a key stands before all that is below it.
struct TKeyPlaceLess {
  bool operator()(const TKeyPlace &Left, const TKeyPlace &Right) const {
    return Left.Root != Right.Root ? Left.Root < Right.Root : TNameLess()(Left.Path, Right.Path);
  }
};

// The places in which the key at Path below Root may be stored, the one that is looked
// into first before the other.
std::vector<TKeyPlace> StoredPlaces(TRegRoot Root, std::u16string_view Path);

// The place's full path, its root spelled out.
std::u16string PathOf(const TKeyPlace &Place);

// The key above; with an empty path for one directly below the root, and for the root.
TKeyPlace ParentOf(const TKeyPlace &Place);

// Place is Top or below it.
bool IsAtOrBelow(const TKeyPlace &Place, const TKeyPlace &Top);

struct TSavedValue {
  TRegType Type = TRegType::None;
  std::vector<std::byte> Bytes;
  std::uint32_t Order = 0; // values come back in the order in which they stood

  bool SameData(const TSavedValue &Other) const {
    return Type == Other.Type && Bytes == Other.Bytes;
  }
};

using TSavedValues = std::map<std::u16string, TSavedValue, TNameLess>;

// The same names with the same data, in whatever order they stood.
bool SameValues(const TSavedValues &Left, const TSavedValues &Right);

struct TSavedKey {
  TRegKeyInfo Info;
  TSavedValues Values;
};

using TSavedKeys = std::map<TKeyPlace, TSavedKey, TKeyPlaceLess>;

// One of the keys is below Place.
bool HasKeyBelow(const TSavedKeys &Keys, const TKeyPlace &Place);

// The same owner and access list, in descriptors as TRegKeyInfo has them. What else is in them,
// and in which order, is the system's own affair.
bool SameSecurity(std::span<const std::byte> Left, std::span<const std::byte> Right);

// All that a key is, but for what SameSecurity leaves out.
bool SameInfo(const TRegKeyInfo &Left, const TRegKeyInfo &Right);

// What a snapshot looks at: the keys by themselves, those with all below them, and files.
struct TScope {
  std::set<TKeyPlace, TKeyPlaceLess> Keys;
  std::set<TKeyPlace, TKeyPlaceLess> Trees;
  std::set<std::u16string, TNameLess> Files;

  bool IsInTree(const TKeyPlace &Place) const;
  void Add(const TScope &Other);
};

struct TSnapshot {
  TScope Scope;
  // What is in the scope and not here is not there, but for what could not be read.
  TSavedKeys Keys;
  std::map<std::u16string, TFileContent, TNameLess> Files;
  std::map<TKeyPlace, TRegStatus, TKeyPlaceLess> UnreadableKeys;
  std::map<std::u16string, TFileStatus, TNameLess> UnreadableFiles;

  const TSavedValue *FindValue(const TKeyPlace &Place, std::u16string_view Name) const;

  // Nothing at the place or on the way to it was unreadable: that it is not in Keys means
  // that it was not there.
  bool Knows(const TKeyPlace &Place) const;

  // Something at the place or below it could not be read.
  bool IsUnreadable(const TKeyPlace &Place) const;
};

// How the top of a tree is spelled: as the scope names it, or as it is stored, which
// takes the list of its parent's keys.
enum class TSpelling { AsNamed, AsStored };

// Asked again and again by what takes long; it may handle messages. False: leave it.
using TGoesOn = std::function<bool()>;

// Reads what is in the scope; in trees, links are taken as themselves and not followed.
// Of a key that is not there the snapshot's scope has its topmost missing ancestor, as
// a tree: whoever makes the key makes that. GoesOn is asked once for each key, and now and
// then among many values; without one, messages are handled. Once it answers false, the rest
// is left out, and the snapshot is of no use.
TSnapshot TakeSnapshot(TPlatform &Platform, const TScope &Scope,
                       TSpelling Spelling = TSpelling::AsStored, const TGoesOn &GoesOn = {});

// What of a key, value or file is not as it should be. Security is the owner and who may do
// what with a key.
enum class TPutPart { Content, ClassName, Security };

// One change that could not be made.
struct TPutFailure {
  std::u16string Path;  // a key's or a file's
  std::u16string Value; // empty: the key or file itself, or its default value
  TRegStatus Status = TRegStatus::Failed;
  TPutPart Part = TPutPart::Content;
};

// Makes the registry and the files what Wanted says, for all that is in the scope of
// Present, which is what they are now. Only differences are written; only in the
// scope's trees are keys removed. What could not be read is left alone, and is a failure
// when something is wanted there. One failure does not keep the rest from being written.
std::vector<TPutFailure> PutBack(TPlatform &Platform, const TSnapshot &Present,
                                 const TSnapshot &Wanted);

// Where Now, in its scope, is not as Wanted, each with the status of its failure, if there
// is one among Failures. What can't be read now and is wanted is a difference.
std::vector<TPutFailure> Differences(const TSnapshot &Now, const TSnapshot &Wanted,
                                     std::span<const TPutFailure> Failures = {});

} // namespace hivesweep
