#include "scanners/HistoryScanners.h"

#include "scanners/ValueScan.h"

namespace hivesweep {

namespace {

std::optional<TVerdict> ListWithData(const TScanContext & /*Context*/, const TScanEntry &Entry) {
  const std::u16string Text(Entry.Value.Text());
  return TVerdict{Text, Text};
}

// Most of these are binary, with nothing in them to be read.
std::optional<TVerdict> ListWithoutData(const TScanContext & /*Context*/, const TScanEntry &Entry) {
  return TVerdict{u"", std::u16string(Entry.Value.Text())};
}

constexpr TScanKey LastVisitedKeys[] = {
    {TRegRoot::CurrentUser,
     u"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\ComDlg32\\LastVisitedMRU"},
    {TRegRoot::CurrentUser, u"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\StreamMRU"},
};
constexpr TScanKey OpenSaveKeys[] = {
    {TRegRoot::CurrentUser,
     u"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\ComDlg32\\OpenSaveMRU\\"}};

constexpr TValueScan LastVisited = {
    .Area = 6,
    .StatusLabel = TProblemType::MruCache,
    .RecordLabel = TProblemType::MruCache,
    .Entries = TEntries::AnyType,
    .Rule = ListWithoutData,
    .LineData = TLineData::ByType,
    .Keys = LastVisitedKeys,
};
constexpr TValueScan OpenSave = {
    .Area = 6,
    .StatusLabel = TProblemType::MruCache,
    .RecordLabel = TProblemType::MruCache,
    .Entries = TEntries::SubkeyStrings,
    .Rule = ListWithData,
    .LineData = TLineData::ByType,
    .Keys = OpenSaveKeys,
};

} // namespace

constinit const TScanner ScanLastVisitedMRU = RunRow<LastVisited>;
constinit const TScanner ScanOpenSaveMRU = RunRow<OpenSave>;

} // namespace hivesweep
