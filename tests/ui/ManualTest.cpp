// The shipped manual.
#include <gtest/gtest.h>

#include "engine/Areas.h"
#include "platform/ErrorTexts.h"
#include "platform/Platform.h"
#include "platform/Text.h"

namespace hivesweep {
namespace {

std::string Manual() {
  std::string Bytes;
  const TError Error = MakeLocalServices().Storage->Read(SHIPPED_FOLDER u"Manual.html", Bytes);
  EXPECT_FALSE(Error) << ToUtf8(EnglishWords(Error));
  return Bytes;
}

TEST(Manual, NamesEveryAreaWithItsRiskInTheirOrder) {
  const std::string Page = Manual();
  std::size_t Place = 0;
  for (const TArea &Area : Areas) {
    const std::string Risk = Area.Risk == TRisk::Low      ? "low"
                             : Area.Risk == TRisk::Medium ? "medium"
                                                          : "high";
    Place = Page.find("<td class=\"name\">" + ToUtf8(Area.Caption) + "</td><td class=\"" + Risk +
                          "\">" + Risk + "</td>",
                      Place);
    ASSERT_NE(Place, std::string::npos) << ToUtf8(Area.Caption);
  }
}

// It is read from the disk, without a network, in whatever browser there is.
TEST(Manual, NeedsNothingButItself) {
  const std::string Page = Manual();
  for (const char *Foreign : {"<script", "<img", "<link", "<iframe", "src=", "@import", "url(",
                              "href=\"http", "@PROJECT"})
    EXPECT_EQ(Page.find(Foreign), std::string::npos) << Foreign;
  // Every place that it leads to is there.
  constexpr std::string_view Link = "href=\"#";
  int Links = 0;
  for (std::size_t At = 0; (At = Page.find(Link, At)) != std::string::npos; ++Links) {
    At += Link.size();
    const std::string Name = Page.substr(At, Page.find('"', At) - At);
    EXPECT_NE(Page.find("<a name=\"" + Name + "\">"), std::string::npos) << Name;
  }
  EXPECT_GT(Links, 5);
}

} // namespace
} // namespace hivesweep
