// The problems that a scan found: one group per area, and the flat view of them
// that the problem table shows.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engine/Labels.h"
#include "platform/Messages.h"

namespace hivesweep {

// What a fix deletes to solve a problem.
enum class TFixAction { RemoveKey, RemoveValue, RemoveFile };

// One problem.
struct TItemInfo {
  std::u16string TypeName;   // the problem type's caption, in the user's language
  std::u16string KeyPath;    // the key, its root spelled out
  std::u16string ValueName;  // "N/A" when the whole key is the problem
  std::u16string Data;       // the value's data, or the missing path it names
  std::u16string ImageIndex; // the area's number, "1" to "17"
  std::u16string RiskText;   // empty until the risks are graded
  std::int32_t ItemKind = 0;
  std::int32_t RiskImage = 0;
  bool Checked = true; // selected for fixing

  // From the scanner that found the problem. Both are unset in a record that was made of
  // texts alone; only then do TypeName and ValueName decide what a fix does.
  std::optional<TProblemType> Type;
  std::optional<TFixAction> Action;
};

// What a problem of a whole key has for a value name.
inline constexpr std::u16string_view WholeKey = u"N/A";

// The problems of one area, in the order in which they were found.
class TGroupItems {
public:
  explicit TGroupItems(std::u16string_view Name) : GroupName(Name) {}

  TItemInfo *Add();
  void Delete(const TItemInfo *Item);
  void Clear();

  std::int32_t Count() const { return static_cast<std::int32_t>(Items_.size() - Gaps_); }
  std::int32_t IndexOf(const TItemInfo *Item) const; // -1: not of this group
  TItemInfo *Get(std::int32_t Index) const;          // null out of range

  const std::u16string GroupName;

private:
  void CloseGaps() const;
  std::optional<std::size_t> PlaceOf(const TItemInfo *Item) const;

  // A deleted problem leaves a gap, so that deleting many never moves the others or
  // searches for each. The gaps are closed when somebody asks for a problem behind one.
  mutable std::vector<std::unique_ptr<TItemInfo>> Items_;
  mutable std::size_t Gaps_ = 0;
  mutable std::size_t Whole_ = 0; // with gaps: so many places in front have none
  mutable std::unordered_map<const TItemInfo *, std::size_t> Places_; // empty: not asked yet
};

// What the problem table shows in one row. Data and ImageIndex travel with it
// without being visible.
struct TProblemRow {
  std::u16string_view Caption;
  std::u16string_view RiskText;
  std::u16string_view KeyPath;
  std::u16string_view Data;
  std::u16string_view ImageIndex;
  std::int32_t RiskImage = 0;
  std::int32_t Image = 0;
  TItemInfo *Item = nullptr;
};

enum class TProblemColumn : int { TypeName = 0, RiskText = 1, KeyPath = 2 };

class TListViewManage {
public:
  // Messages are pumped while the view is built, so that a large list does not
  // freeze the window.
  explicit TListViewManage(TMessages &Messages) : Messages_(Messages) {}

  // Appends a group; does not look whether there is one of that name.
  TGroupItems *AddGroup(std::u16string_view Name);
  TGroupItems *FindGroup(std::u16string_view Name) const; // exact; null: none
  std::int32_t GroupCount() const { return static_cast<std::int32_t>(Groups_.size()); }
  TGroupItems *GetGroup(std::int32_t Index) const; // null out of range
  std::int32_t TotalCount() const;
  std::int32_t CheckedCount() const;

  // Deletes the problem from the group that holds it. The view still has it:
  // build it again before it is shown.
  void DeleteItem(const TItemInfo *Item);

  // Takes the named group's problems into the view, or all groups' for an empty
  // name. Gives up when a handler of the messages that it pumps has changed the
  // list or built another view.
  void BuildView(std::u16string_view Name);
  void Clear();

  // ---- the view ---------------------------------------------------------------
  std::int32_t ViewCount() const { return static_cast<std::int32_t>(ViewItems_.size()); }
  const std::vector<TItemInfo *> &ViewItems() const { return ViewItems_; }
  // False, and nothing in Out, when there is no such row.
  bool GetRow(std::int32_t Index, TProblemRow &Out) const;
  // Takes the problem out of the view alone; the others keep their order.
  void DropFromView(const TItemInfo *Item);
  void CheckAll(bool Checked);

  // Another number once a group, a problem or the view has been changed: records that were
  // borrowed may be gone.
  std::uint32_t Version() const { return Changes_; }

  // Turns the one direction flag round, whatever the column, and sorts the view;
  // the first sort is ascending. Only ASCII letters compare without regard to
  // case. A column that does not sort only turns the flag.
  void SortBy(int Column);

private:
  TMessages &Messages_;
  std::vector<std::unique_ptr<TGroupItems>> Groups_;
  std::vector<TItemInfo *> ViewItems_;
  std::uint32_t Changes_ = 0; // counts whatever makes a view under construction stale
  bool SortAscending_ = false;
};

// "(12)", and nothing for 0.
std::u16string CountCaption(std::int32_t Count);

} // namespace hivesweep
