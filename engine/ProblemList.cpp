#include "engine/ProblemList.h"

#include <algorithm>

#include "engine/TextSort.h"
#include "platform/Text.h"

namespace hivesweep {

TItemInfo *TGroupItems::Add() {
  TItemInfo *const Item = Items_.emplace_back(std::make_unique<TItemInfo>()).get();
  if (!Places_.empty())
    Places_.emplace(Item, Items_.size() - 1);
  return Item;
}

void TGroupItems::Delete(const TItemInfo *Item) {
  const std::optional<std::size_t> Place = PlaceOf(Item);
  if (!Place)
    return;
  Places_.erase(Item);
  Whole_ = Gaps_++ == 0 ? *Place : std::min(Whole_, *Place);
  Items_[*Place].reset();
  if (Gaps_ == Items_.size())
    Clear();
}

void TGroupItems::Clear() {
  Items_.clear();
  CloseGaps();
}

std::int32_t TGroupItems::IndexOf(const TItemInfo *Item) const {
  std::optional<std::size_t> Place = PlaceOf(Item);
  if (Place && Gaps_ != 0 && *Place > Whole_) {
    CloseGaps();
    Place = PlaceOf(Item);
  }
  return Place ? static_cast<std::int32_t>(*Place) : -1;
}

TItemInfo *TGroupItems::Get(std::int32_t Index) const {
  if (Index < 0 || Index >= Count())
    return nullptr;
  const auto Place = static_cast<std::size_t>(Index);
  if (Gaps_ != 0 && Place >= Whole_)
    CloseGaps();
  return Items_[Place].get();
}

void TGroupItems::CloseGaps() const {
  std::erase(Items_, nullptr);
  Gaps_ = 0;
  Places_.clear();
}

std::optional<std::size_t> TGroupItems::PlaceOf(const TItemInfo *Item) const {
  if (Places_.empty())
    for (std::size_t Place = 0; Place < Items_.size(); ++Place)
      if (Items_[Place])
        Places_.emplace(Items_[Place].get(), Place);
  const auto Found = Places_.find(Item);
  return Found == Places_.end() ? std::nullopt : std::optional(Found->second);
}

TGroupItems *TListViewManage::AddGroup(std::u16string_view Name) {
  ++Changes_;
  return Groups_.emplace_back(std::make_unique<TGroupItems>(Name)).get();
}

TGroupItems *TListViewManage::FindGroup(std::u16string_view Name) const {
  const auto Found = std::find_if(Groups_.begin(), Groups_.end(),
                                  [&](const auto &Group) { return Group->GroupName == Name; });
  return Found == Groups_.end() ? nullptr : Found->get();
}

TGroupItems *TListViewManage::GetGroup(std::int32_t Index) const {
  return Index >= 0 && Index < GroupCount() ? Groups_[static_cast<std::size_t>(Index)].get()
                                            : nullptr;
}

std::int32_t TListViewManage::TotalCount() const {
  std::int32_t Total = 0;
  for (const auto &Group : Groups_)
    Total += Group->Count();
  return Total;
}

std::int32_t TListViewManage::CheckedCount() const {
  std::int32_t Checked = 0;
  for (const auto &Group : Groups_)
    for (std::int32_t Index = 0; Index < Group->Count(); ++Index)
      Checked += Group->Get(Index)->Checked ? 1 : 0;
  return Checked;
}

void TListViewManage::DeleteItem(const TItemInfo *Item) {
  for (const auto &Group : Groups_) {
    const std::int32_t Before = Group->Count();
    Group->Delete(Item);
    if (Group->Count() != Before) {
      ++Changes_;
      return;
    }
  }
}

void TListViewManage::BuildView(std::u16string_view Name) {
  ViewItems_.clear();
  const std::uint32_t Own = ++Changes_;
  for (std::int32_t At = 0; const TGroupItems *Group = GetGroup(At); ++At) {
    if (!Name.empty() && Group->GroupName != Name)
      continue;
    for (std::int32_t Index = 0; Index < Group->Count(); ++Index) {
      ViewItems_.push_back(Group->Get(Index));
      Messages_.Pump();
      if (Changes_ != Own)
        return;
    }
    if (!Name.empty())
      return;
  }
}

void TListViewManage::Clear() {
  // The view first: it must never hold a problem that is gone.
  ++Changes_;
  ViewItems_.clear();
  Groups_.clear();
}

bool TListViewManage::GetRow(std::int32_t Index, TProblemRow &Out) const {
  Out = {};
  if (Index < 0 || Index >= ViewCount())
    return false;
  TItemInfo &Item = *ViewItems_[static_cast<std::size_t>(Index)];
  std::int32_t Image = 0;
  for (const char16_t Digit : Item.ImageIndex)
    Image = Image * 10 + (Digit - u'0');
  Out = {Item.TypeName,   Item.RiskText,  Item.KeyPath, Item.Data,
         Item.ImageIndex, Item.RiskImage, Image,        &Item};
  return true;
}

void TListViewManage::DropFromView(const TItemInfo *Item) {
  ++Changes_;
  std::erase(ViewItems_, Item);
}

void TListViewManage::CheckAll(bool Checked) {
  for (TItemInfo *Item : ViewItems_)
    Item->Checked = Checked;
}

void TListViewManage::SortBy(int Column) {
  SortAscending_ = !SortAscending_;
  if (Column < static_cast<int>(TProblemColumn::TypeName) ||
      Column > static_cast<int>(TProblemColumn::KeyPath))
    return;
  const auto Text = [Column](const TItemInfo *Item) -> const std::u16string & {
    switch (static_cast<TProblemColumn>(Column)) {
    case TProblemColumn::TypeName:
      return Item->TypeName;
    case TProblemColumn::RiskText:
      return Item->RiskText;
    case TProblemColumn::KeyPath:
      break;
    }
    return Item->KeyPath;
  };
  std::vector<TSortEntry> Entries;
  Entries.reserve(ViewItems_.size());
  for (TItemInfo *Item : ViewItems_)
    Entries.push_back({.Text = Text(Item), .Owner = Item});
  SortByText(Entries);
  if (!SortAscending_)
    std::ranges::reverse(Entries);
  std::ranges::transform(Entries, ViewItems_.begin(), [](const TSortEntry &Entry) {
    return static_cast<TItemInfo *>(Entry.Owner);
  });
}

std::u16string CountCaption(std::int32_t Count) {
  return Count == 0 ? std::u16string() : u"(" + ToDecimal(static_cast<std::uint64_t>(Count)) + u")";
}

} // namespace hivesweep
