#include <algorithm>
#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "engine/ProblemList.h"
#include "engine/RiskGrading.h"
#include "tests/engine/TestScan.h"

namespace hivesweep {
namespace {

class TProblemListTest : public testing::Test {
protected:
  TItemInfo *Add(TGroupItems *Group, std::u16string_view Key, std::u16string_view Area = u"4") {
    TItemInfo *Item = Group->Add();
    Item->KeyPath = Key;
    Item->ImageIndex = Area;
    return Item;
  }
  std::u16string ViewKeys() const {
    std::u16string Keys;
    for (const TItemInfo *Item : List.ViewItems())
      Keys += Item->KeyPath + u" ";
    return Keys;
  }

  TTestMessages Messages;
  TListViewManage List{Messages};
};

TEST_F(TProblemListTest, GroupsAreFoundByTheirExactNameAndSurviveEmpty) {
  TGroupItems *Two = List.AddGroup(u"2");
  List.AddGroup(u"02");
  TItemInfo *Item = Add(Two, u"a");
  EXPECT_TRUE(Item->Checked);
  EXPECT_EQ(List.FindGroup(u"2"), Two);
  EXPECT_EQ(List.FindGroup(u" 2"), nullptr);
  EXPECT_EQ(List.FindGroup(u"02")->Count(), 0);
  EXPECT_EQ(List.GetGroup(2), nullptr);
  EXPECT_EQ(List.GetGroup(-1), nullptr);
  EXPECT_EQ(Two->Get(-1), nullptr);
  EXPECT_EQ(Two->Get(1), nullptr);
  TItemInfo Stranger;
  List.DeleteItem(&Stranger);
  EXPECT_EQ(List.TotalCount(), 1);
  List.DeleteItem(Item);
  EXPECT_EQ(List.TotalCount(), 0);
  EXPECT_EQ(CountCaption(0), u"");
  EXPECT_EQ(CountCaption(12), u"(12)");
}

TEST_F(TProblemListTest, WhatIsDeletedInAnyOrderLeavesTheOthersInTheirs) {
  TGroupItems *Group = List.AddGroup(u"3");
  std::vector<TItemInfo *> Left; // an oracle that moves and searches
  unsigned Seed = 7;
  const auto Random = [&] { return (Seed = Seed * 1664525U + 1013904223U) >> 16; };
  for (int Step = 0; Step < 5'000; ++Step) {
    if (Step < 200 || Random() % 3 == 0)
      Left.push_back(Add(Group, u"a"));
    if (const std::size_t At = Random() % Left.size(); Step >= 200 && Left.size() > 1) {
      List.DeleteItem(Left[At]);
      Left.erase(Left.begin() + static_cast<std::ptrdiff_t>(At));
    }
    ASSERT_EQ(Group->Count(), static_cast<std::int32_t>(Left.size()));
    const auto At = static_cast<std::int32_t>(Random() % Left.size());
    if (Step % 2 == 0) {
      ASSERT_EQ(Group->Get(At), Left[static_cast<std::size_t>(At)]);
    } else if (Step % 5 == 0) {
      ASSERT_EQ(Group->IndexOf(Left[static_cast<std::size_t>(At)]), At);
    }
  }
}

TEST_F(TProblemListTest, TheViewShowsOneGroupOrAll) {
  Add(List.AddGroup(u"3"), u"a");
  TGroupItems *Four = List.AddGroup(u"4");
  Add(Four, u"b");
  Add(Four, u"c")->RiskImage = 19;
  List.BuildView(u"");
  EXPECT_EQ(ViewKeys(), u"a b c ");
  EXPECT_EQ(Messages.Pumps, 3);
  List.BuildView(u"5");
  EXPECT_EQ(ViewKeys(), u"");
  List.BuildView(u"4");
  EXPECT_EQ(ViewKeys(), u"b c ");
  TProblemRow Row;
  ASSERT_TRUE(List.GetRow(1, Row));
  EXPECT_EQ(Row.KeyPath, u"c");
  EXPECT_EQ(Row.Image, 4);
  EXPECT_EQ(Row.RiskImage, 19);
  EXPECT_FALSE(List.GetRow(2, Row));
  EXPECT_FALSE(List.GetRow(-1, Row));
  EXPECT_EQ(Row.Item, nullptr);
  // Only what is in view changes its selection.
  List.CheckAll(false);
  EXPECT_EQ(List.CheckedCount(), 1);
}

TEST_F(TProblemListTest, AViewUnderConstructionSurvivesWhatHandlersDo) {
  TGroupItems *Group = List.AddGroup(u"3");
  Add(Group, u"a");
  Add(Group, u"b");
  int Calls = 0;
  Messages.OnPump = [&] {
    if (++Calls == 1)
      List.Clear();
  };
  List.BuildView(u"");
  EXPECT_EQ(List.ViewCount(), 0);

  Group = List.AddGroup(u"3");
  Add(Group, u"c");
  Add(List.AddGroup(u"4"), u"d");
  Calls = 0;
  Messages.OnPump = [&] {
    if (++Calls == 1)
      List.BuildView(u"4");
  };
  List.BuildView(u"");
  EXPECT_EQ(ViewKeys(), u"d ");
}

TEST_F(TProblemListTest, OneFlagTurnsTheOrderWhateverTheColumn) {
  TGroupItems *Group = List.AddGroup(u"3");
  for (const std::u16string_view Key : {u"b", u"_", u"C", u"\u00E9", u"a", u"\u00C9", u"Z"})
    Add(Group, Key)->TypeName = Key == u"a" ? u"x" : u"y";
  List.BuildView(u"");
  List.SortBy(2);
  // Small letters count as the capitals, which stand before "_"; others by code.
  EXPECT_EQ(ViewKeys(), u"a b C Z _ \u00C9 \u00E9 ");
  List.SortBy(2);
  EXPECT_EQ(ViewKeys(), u"\u00E9 \u00C9 _ Z C b a ");
  List.SortBy(0);
  EXPECT_EQ(List.ViewItems().front()->KeyPath, u"a") << "ascending again";
  List.SortBy(3); // no column: turns the flag and leaves the order
  EXPECT_EQ(List.ViewItems().front()->KeyPath, u"a");
  List.SortBy(0);
  EXPECT_EQ(List.ViewItems().front()->KeyPath, u"a");
}

// The sort looks at a few units at a time: beginnings of every length in common, ends at
// every place, and zeros that must not pass for ends.
TEST_F(TProblemListTest, TheOrderIsThatOfAWalkAlongBothTexts) {
  const auto Less = [](const std::u16string &Left, const std::u16string &Right) {
    return std::ranges::lexicographical_compare(
        Left, Right, [](char16_t A, char16_t B) { return AsciiUpper(A) < AsciiUpper(B); });
  };
  constexpr std::u16string_view Units(u"aAbZ_\0\uFFFF", 7);
  TGroupItems *Group = List.AddGroup(u"3");
  std::u16string Key;
  for (unsigned Index = 0, Seed = 7; Index < 3'000; ++Index) {
    Key.resize(Index % 11);
    for (unsigned Length = Index % 6; Length > 0; --Length) {
      Seed = Seed * 1664525U + 1013904223U;
      Key.push_back(Units[(Seed >> 16) % Units.size()]);
    }
    Add(Group, Key);
  }
  List.BuildView(u"");
  const std::set<TItemInfo *> Before(List.ViewItems().begin(), List.ViewItems().end());
  for (const bool Ascending : {true, false}) {
    List.SortBy(2);
    const std::vector<TItemInfo *> &View = List.ViewItems();
    for (std::size_t Index = 1; Index < View.size(); ++Index) {
      const TItemInfo &First = *View[Ascending ? Index - 1 : Index];
      const TItemInfo &Second = *View[Ascending ? Index : Index - 1];
      ASSERT_FALSE(Less(Second.KeyPath, First.KeyPath)) << Index;
    }
    EXPECT_EQ(std::set<TItemInfo *>(View.begin(), View.end()), Before) << "none is lost";
  }
}

TEST_F(TProblemListTest, RiskIsThatOfTheArea) {
  TGroupItems *Group = List.AddGroup(u"any");
  for (int Area = 1; Area <= 17; ++Area)
    Add(Group, u"key", ToDecimal(static_cast<std::uint64_t>(Area)));
  Add(Group, u"ignored", u"1");
  Add(Group, u"key", u"01");
  List.BuildView(u"");
  const auto IsIgnored = [](std::u16string_view Key) { return Key == u"ignored"; };
  EXPECT_EQ(GradeRisks(List, {}, IsIgnored, [] { return true; }), 15);
  std::u16string Risks;
  for (const TItemInfo *Item : List.ViewItems())
    Risks += (Item->RiskText.empty() ? u"?" : Item->RiskText.substr(0, 1)) +
             (Item->Checked ? u"+" : u"-") +
             ToDecimal(static_cast<std::uint64_t>(Item->RiskImage)) + u" ";
  EXPECT_EQ(Risks, u"H-20 M+19 H-20 L+18 L+18 L+18 L+18 L+18 M+19 L+18 L+18 M+19 L+18 M+19 L+18 "
                   u"L+18 H-20 ?+0 L+18 ");
}

} // namespace
} // namespace hivesweep
