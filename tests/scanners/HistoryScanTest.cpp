#include "tests/scanners/ScannerTest.h"

namespace hivesweep {
namespace {

class HistoryScan : public TScannerTest {};

INSTANTIATE_TEST_SUITE_P(Registries, HistoryScan, testing::ValuesIn(AllRegistries()), NameOfKind);

// Names in alphabetical order: not every registry keeps another one.
constexpr std::u16string_view Lists =
    uR"([HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Explorer\ComDlg32\LastVisitedMRU]
"a"=hex:01,02,03,04,05,06,07,08,09,0a,0b,0c,0d,0e,0f,10,11,12,13,14,15,16,17,18,19,1a,1b
"b"=dword:0000001a
"c"="C:\\a\\b"
"d"=hex(2):5c,00,5c,00,73,00,00,00
"e"=hex(7):43,00,3a,00,5c,00,00,00,00,00
"f"=hex:
"MRUList"="ab"
"Norton"="held back"
[HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Explorer\StreamMRU]
"0"=hex:ff,fe,fd
[HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Explorer\ComDlg32\OpenSaveMRU]
"a"="not of a subkey"
[HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Explorer\ComDlg32\OpenSaveMRU\jpg]
"a"="C:\\a\\b"
"b"=hex:00
"c\\d"="\\\\server\\x"
"e"=hex(2):44,00,3a,00,5c,00
"f"=dword:1
[HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Explorer\ComDlg32\OpenSaveMRU\txt]
"a"="C:\\x"
"MRUList"="a"
)";

TEST_P(HistoryScan, LeavesItsTexts) {
  Load(Lists);
  const TLines Lines = Scan(6);
  ASSERT_EQ(Lines.size(), 13u + 2 * 12) << "two lines each, but for the type without a form";
  EXPECT_EQ(
      Lines[0],
      R"(MRU Cache | HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Explorer\ComDlg32\LastVisitedMRU | a |  | 2)");
  EXPECT_EQ(
      Lines[12],
      R"(MRU Cache | HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Explorer\ComDlg32\OpenSaveMRU\txt | MRUList | a | 2)");
  EXPECT_EQ(Run_->Engine->AreaResults()[5].Found, 14) << "those that are held back included";
  EXPECT_EQ(Run_->Status.Texts, std::vector<std::u16string>(3, u"Scanning...MRU Cache"));

  std::string Values;
  std::string Keys; // of those, their last names
  for (std::size_t Index = 13; Index < Lines.size(); Index += 2) {
    Keys += Lines[Index].substr(Lines[Index].rfind('\\') + 1);
    Values += Lines[Index + 1] + "\n";
  }
  EXPECT_EQ(Keys, "LastVisitedMRU]LastVisitedMRU]LastVisitedMRU]LastVisitedMRU]LastVisitedMRU]"
                  "LastVisitedMRU]StreamMRU]jpg]jpg]jpg]txt]txt]");
  EXPECT_EQ(Values, // of "a" every second byte, then zeros
            "\"a\"=hex:01,03,05,07,09,0B,0D,0F,11,13,15,17,19,1B,00,00,00,00,00,00,00,00,00,00,00,"
            "00,\\\r00\n"
            R"("b"=dword:0000001A
"c"="C:\\a\\b"
"d"="\\s"
"f"=hex:
"MRUList"="ab"
"0"=hex:FF,FD,00
"a"="C:\\a\\b"
"c\d"="\\server\x"
"e"="D:\\"
"a"="C:\\x"
"MRUList"="a"
)");
}

// A stop ends the first list at its next value, of the second only the next subkey.
TEST_P(HistoryScan, StopsBetweenValuesOrBetweenSubkeys) {
  Load(Lists);
  const auto ListedUntil = [this](int Pump) {
    OnPump_ = [this, Pump] {
      if (Run_->Messages->Pumps == Pump)
        Run_->Engine->Stop();
    };
    Scan(6);
    return Run_->Problems->TotalCount();
  };
  EXPECT_EQ(ListedUntil(2), 2);
  EXPECT_EQ(ListedUntil(8 + 1 + 1), 8 + 3) << "the whole first subkey";
}

} // namespace
} // namespace hivesweep
