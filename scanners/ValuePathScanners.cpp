#include "scanners/ValuePathScanners.h"

#include "scanners/ValueRules.h"
#include "scanners/ValueScan.h"

namespace hivesweep {

namespace {

constexpr TRegRoot Machine = TRegRoot::LocalMachine;
constexpr TRegRoot User = TRegRoot::CurrentUser;

constexpr TScanKey AppPathsKeys[] = {
    {Machine, u"Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\"}};
constexpr TScanKey HelpKeys[] = {{Machine, u"Software\\Microsoft\\Windows\\Help\\"}};
constexpr TScanKey HtmlHelpKeys[] = {{Machine, u"Software\\Microsoft\\Windows\\Html Help\\"}};
constexpr TScanKey InstallerFoldersKeys[] = {
    {Machine, u"Software\\Microsoft\\Windows\\CurrentVersion\\Installer\\Folders\\"}};
constexpr TScanKey MuiCacheKeys[] = {
    {User, u"Software\\Microsoft\\Windows\\ShellNoRoam\\MUICache\\"}};
constexpr TScanKey SharedDllsKeys[] = {
    {Machine, u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\SharedDlls"}};
constexpr TScanKey Drivers32Keys[] = {
    {Machine, u"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion\\Drivers32\\"}};
constexpr TScanKey FontsKeys[] = {
    {Machine, u"Software\\Microsoft\\Windows NT\\CurrentVersion\\Fonts"}};
constexpr TScanKey RunKeys[] = {
    {Machine, u"Software\\Microsoft\\Windows\\CurrentVersion\\Run"},
    {User, u"Software\\Microsoft\\Windows\\CurrentVersion\\Run"},
};
constexpr TScanKey FirewallKeys[] = {
    {Machine, u"SYSTEM\\CurrentControlSet\\Services\\SharedAccess\\Parameters\\FirewallPolicy\\"
              u"StandardProfile\\AuthorizedApplications\\List"}};

// Three scanners record another label than they show while they run, and the two
// kinds of help files share theirs: the texts say what is wrong with the entry, not
// where it was found.
constexpr TValueScan AppPaths = {
    .Area = 2,
    .StatusLabel = TProblemType::ApplicationIcon,
    .RecordLabel = TProblemType::MissingPath,
    .Entries = TEntries::SubkeyDefaults,
    .Rule = JudgeAppPath,
    .Keys = AppPathsKeys,
};
constexpr TValueScan HelpFiles = {
    .Area = 5,
    .StatusLabel = TProblemType::HelpFiles,
    .RecordLabel = TProblemType::HelpFiles,
    .Rule = JudgeHelpFile,
    .Keys = HelpKeys,
};
constexpr TValueScan HtmlHelpFiles = {
    .Area = 5,
    .StatusLabel = TProblemType::HelpFiles,
    .RecordLabel = TProblemType::HelpFiles,
    .Rule = JudgeHelpFile,
    .Keys = HtmlHelpKeys,
};
constexpr TValueScan InstallerFolders = {
    .Area = 9,
    .StatusLabel = TProblemType::Software,
    .RecordLabel = TProblemType::Installer,
    .Rule = JudgeInstallerFolder,
    .EscapeName = true,
    .LineData = TLineData::EscapedIfNameIsPath,
    .Keys = InstallerFoldersKeys,
};
constexpr TValueScan MuiCache = {
    .Area = 13,
    .StatusLabel = TProblemType::MuiHistory,
    .RecordLabel = TProblemType::MissingPath,
    .Entries = TEntries::PlainStrings,
    .Rule = JudgeMuiEntry,
    .EscapeName = true,
    .LineData = TLineData::AsRead, // a program's title, not a path
    .Keys = MuiCacheKeys,
};
constexpr TValueScan SharedDlls = {
    .Area = 7,
    .StatusLabel = TProblemType::SharedDll,
    .RecordLabel = TProblemType::SharedDll,
    .Entries = TEntries::Dwords,
    .Rule = JudgeSharedDll,
    .EscapeName = true,
    .LineData = TLineData::DecimalDword,
    .Keys = SharedDllsKeys,
};
constexpr TValueScan Drivers32 = {
    .Area = 16,
    .StatusLabel = TProblemType::InvalidExtensions,
    .RecordLabel = TProblemType::InvalidExtensions,
    .Rule = JudgeDriver,
    .Keys = Drivers32Keys,
};
constexpr TValueScan Fonts = {
    .Area = 4,
    .StatusLabel = TProblemType::Font,
    .RecordLabel = TProblemType::Font,
    .Rule = JudgeFont,
    .Keys = FontsKeys,
};
constexpr TValueScan Startup = {
    .Area = 12,
    .StatusLabel = TProblemType::Startup,
    .RecordLabel = TProblemType::Startup,
    .Rule = JudgeStartupEntry,
    .Keys = RunKeys,
};
constexpr TValueScan FirewallList = {
    .Area = 16,
    .StatusLabel = TProblemType::Firewall,
    .RecordLabel = TProblemType::Firewall,
    .Rule = JudgeFirewallEntry,
    .EscapeName = true,
    .Keys = FirewallKeys,
};

} // namespace

constinit const TScanner ScanAppPaths = RunRow<AppPaths>;
constinit const TScanner ScanHelpFiles = RunRow<HelpFiles>;
constinit const TScanner ScanHtmlHelpFiles = RunRow<HtmlHelpFiles>;
constinit const TScanner ScanInstallerFolders = RunRow<InstallerFolders>;
constinit const TScanner ScanMuiCache = RunRow<MuiCache>;
constinit const TScanner ScanSharedDlls = RunRow<SharedDlls>;
constinit const TScanner ScanDrivers32 = RunRow<Drivers32>;
constinit const TScanner ScanFonts = RunRow<Fonts>;
constinit const TScanner ScanStartup = RunRow<Startup>;
constinit const TScanner ScanFirewallList = RunRow<FirewallList>;

} // namespace hivesweep
