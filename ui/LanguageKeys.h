// The one table of the texts that a language file can replace, with their English.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "engine/Areas.h"
#include "engine/Labels.h"

namespace hivesweep {

// A single text, of the section "Hivesweep_M".
struct TLanguageText {
  std::u16string_view Key;
  std::u16string_view English;
};

// A text of a form's component, of the section "Hivesweep_" and the form's name. A
// component has it already when it is made; the key is how the language finds it.
struct TFormText {
  std::u16string_view Form;
  std::u16string_view Key;
  std::u16string_view English;
};

// Keys and texts are spelled as the language files that exist spell them, also where
// that is no English word. "%d" is a count.
inline constexpr TLanguageText LanguageTexts[] = {
    {u"Title", u"Hivesweep"}, // of every message box
    // Risks, and the two panels of the status bar behind their counts.
    {u"HighRisk", u"High-Risk"},
    {u"MidRisk", u"Medium-Risk"},
    {u"LowRisk", u"Low-Risk"},
    {u"StatusbarPanel1Text", u"problems found"},
    {u"StatusbarPanel2Text", u"problems selected for fixing"},
    // The main window.
    {u"LvproblemstypeCaption", u"Type"},
    {u"LabelNone", u"None"},
    {u"LabWelcomeFoundNone", u"No problems were found."},
    {u"LabWelcomeFoundError", u"problems were found. Click \"Start Fixing\" in the menu bar to fix "
                              u"the selected problems."},
    {u"LabWelcomeStopped", u"The scan was stopped, so the list is not complete."},
    {u"LabWelcomeBrokenOff", u"An error broke off at least one area, so the list is not complete."},
    {u"LabWelcomeUnprotected", u"Nothing is selected, because what you want to keep may be in the "
                               u"list:"},
    {u"LabWelcomefixed", u"problems were fixed. If you want to restore, you can click \"Restore\" "
                         u"in the menu bar to restore."},
    {u"NoErrorSelected", u"No problems selected."},
    {u"IgnoreFailed", u"The problem could not be ignored:"},
    {u"UnignoreFailed", u"The key is still on the ignore list:"},
    {u"LimitedRights", u"Without administrator rights, entries that belong to the whole computer "
                       u"cannot be removed."},
    {u"AboutMessage", u"Hivesweep finds and removes registry entries that point at things that "
                      u"no longer exist. Version"},
    {u"HelpMissing", u"The manual could not be opened."},
    // The dialog that scans and fixes.
    {u"DiscraptionScan", u"Select the areas you want Hivesweeep to scan for problems."},
    {u"DiscraptionFix", u"problems were selected for fixing. Click \"Fix Now\" to fix the selected "
                        u"problems."},
    {u"CaptionScan", u"Scan"},
    {u"CaptionFixnow", u"Fix Now"},
    {u"CaptionStop", u"Stop"},
    {u"Scanlvstring", u"Scanning..."},
    {u"haveProblem", u"%d Problems"},
    {u"NoProblem", u"No Problems"},
    {u"BrokenOff", u"Broken off:"},
    {u"Scanfinish", u"Scan completed."},
    {u"Scanstopped", u"The scan was stopped."},
    {u"BackData", u"Backup data..."},
    {u"fixing", u"Fixing..."},
    {u"Repairfinish", u"Repaired successfully."},
    {u"NotRemoved",
     u"Problems that were not removed: %d. A new scan lists those that are still there."},
    {u"WhyGone", u"It was gone already."},
    {u"WhyDenied", u"Access was denied."},
    {u"WhyFailed", u"The system reported an error."},
    {u"WhyNotRecorded", u"It was left alone: it could not be recorded, or was changed meanwhile."},
    {u"WhyNotRemakable", u"It was left alone: a restore could not make it again exactly as it is."},
    {u"WhyIgnored", u"It was left alone: it is on the ignore list by now."},
    {u"WhyListUnread", u"It was left alone: the ignore list could not be read any more."},
    {u"WhyOtherKey", u"Its key could not be opened, so the value was removed from:"},
    {u"CopyFailed", u"The list could not be copied, because another program uses the clipboard."},
    // The dialog of the backups.
    {u"RestoreMessage", u"You will perform a rollback with this backup. Continue?"},
    {u"RestoreSucMessage", u"The backup has been restored successfully!"},
    {u"DeleteMessage", u"You will delete this backup. Continue?"},
    {u"RestoreFailed", u"The backup was not restored completely:"},
    {u"NotRestored", u"entries that could not be restored: %d"},
    {u"DeleteFailed", u"The backup could not be deleted:"},
};

// The system speaks its own language, which need not be the user's: these stand in place of
// its words for its errors. The last is for all others, and "%d" is the error's number.
struct TSystemErrorText {
  std::uint32_t Number;
  TLanguageText Text;
};
inline constexpr TSystemErrorText SystemErrorTexts[] = {
    {2, {u"System2", u"the file was not found"}},
    {3, {u"System3", u"the folder was not found"}},
    {5, {u"System5", u"access was denied"}},
    {8, {u"System8", u"there is not enough memory"}},
    {15, {u"System15", u"the drive was not found"}},
    {19, {u"System19", u"the disk is write-protected"}},
    {21, {u"System21", u"the drive is not ready"}},
    {23, {u"System23", u"the disk is damaged"}},
    {32, {u"System32", u"another program uses the file"}},
    {33, {u"System33", u"another program has locked a part of the file"}},
    {39, {u"System39", u"the disk is full"}},
    {112, {u"System112", u"the disk is full"}},
    {123, {u"System123", u"the name is not valid"}},
    {183, {u"System183", u"there is something of that name already"}},
    {206, {u"System206", u"the name is too long"}},
    {267, {u"System267", u"it is no folder"}},
    {1117, {u"System1117", u"the drive reports an error"}},
    {1392, {u"System1392", u"the file is damaged"}},
    {0, {u"SystemOther", u"the system reports the error %d"}},
};

// What the window says about each area, by area number - 1.
inline constexpr std::array<TLanguageText, AreaCount> AreaDescriptions = {{
    {u"ActiveXComponent",
     u"Many Windows programs access ActiveX and COM by using registry entries, which are created "
     u"during programs installation, but often can not be deleted after uninstalling the programs. "
     u"Some programs even create invalid entries during installation."},
    {u"ApplicationPaths",
     u"The installation folders of some programs are saved in the registry in order to run these "
     u"programs directly via \"Start>Run\". And those registries cannot be deleted after "
     u"uninstalling the programs."},
    {u"FileTypes",
     u"File types associate one or several file extensions (e.g. .txt or .doc) with various "
     u"information (e.g. icons used to show files in Windows Explorer, or procedures used to open "
     u"file). These entries will become invalid after uninstalling the programs."},
    {u"Fonts", u"The entries of Windows fonts are stored in a special part of the registry. "
               u"Windows will try to load the corresponding fonts each time the system starts up. "
               u"So the errors of this part should be corrected."},
    {u"Helpfiles", u"Many programs save their help files by creating entries in the registry. Some "
                   u"entries will not be deleted after uninstalling the applications."},
    {u"HistoryLists",
     u"Windows and many programs will keep records of your used documents in the history lists. "
     u"References of these records are stored in the corresponding catalog of the registry. These "
     u"entries become invalid after deleting or moving the files."},
    {u"SharedFiles",
     u"Shared files contain references to files and program libraries (DLLs) which accessed "
     u"usually by several programs. These entries are often not deleted after uninstalling the "
     u"programs."},
    {u"Shortcut", u"\".lnk\", associated with program shortcut, may be an invalid shortcut as the "
                  u"change of its associated file."},
    {u"Software", u"There will be some invalid registry keys left after uninstalling the programs. "
                  u"It is helpful to scan this part of the registry to save space."},
    {u"Sounds",
     u"Sounds, sound related files, usually come up when play a player or encounter certain system "
     u"or program events (e.g. error messages, closing Windows). The entries stored in the "
     u"registry will become invalid when these sound files do not exist."},
    {u"StartMenu",
     u"Every program installed on the computer can create entries in the registry with "
     u"program-specific information (e.g. data or program path). These entries are often not "
     u"deleted after uninstalling the programs."},
    {u"StartupItems",
     u"Some programs will start automatically with the Windows (e.g. virus scanning). The "
     u"information of these programs is usually stored in Startup Items area of the registry. The "
     u"registry entries will usually not be deleted when uninstalling these programs."},
    {u"MUICache", u"This special part of the registry is used to manage the multilingual cache and "
                  u"desktop related text. It is helpful to scan this part of the registry to fix "
                  u"errors."},
    {u"FileExtend", u"Files extensions can not be displayed or displayed correctly after being "
                    u"infected. So scan this part of the registry can solve these problems."},
    {u"Classes",
     u"Classes contain the necessary information (e.g. extensions, relevance, and drive "
     u"applications) needed when running the programs. It is necessary to scan and repair this "
     u"part to guarantee the programs running normally."},
    {u"SystemExtentions",
     u"System extensions contain references to add-ons, which expand the functions of individual "
     u"programs. Scan and repair the problems of this part will correct the relevance between the "
     u"system programs and their extension files."},
    {u"DeepScan",
     u"Deep scan enhances the scan and repair capability of the registry. The latest technology of "
     u"\"Deep Scan\" will greatly improve the reliability and security of registry scan. And the "
     u"technology of intelligent repair and optimization surpasses the similar products on the "
     u"market. \"Deep Scan\" can reduce the risk of Windows crash to a large extent and greatly "
     u"improve the stability and performance of your system."},
}};

// The row of that key. A key that is not in the table does not compile.
consteval const TLanguageText &LanguageText(std::u16string_view Key) {
  for (const TLanguageText &Text : LanguageTexts)
    if (Text.Key == Key)
      return Text;
  throw "there is no such language key";
}

// The key of an area's caption in the list of areas; its English is the area's Caption.
std::u16string AreaCaptionKey(const TArea &Area);

// The key of the name of a type of problems; its English is in EnglishLabels.
std::u16string ProblemTypeKey(TProblemType Label);

// The texts of the forms' components, but for those that repeat the areas' captions.
inline constexpr TFormText FormTexts[] = {
    {u"frm_main", u"frm_main.Caption", u"Hivesweep"},
    // Menus
    {u"frm_main", u"dxBarSubItem1.Caption", u"&File"},
    {u"frm_main", u"dxBarSubItem2.Caption", u"&View"},
    {u"frm_main", u"dxBarSubItem3.Caption", u"&Help"},
    {u"frm_main", u"dxBarButton7.Caption", u"Scan"},
    {u"frm_main", u"dxBarButton8.Caption", u"Start fixing"},
    {u"frm_main", u"dxBarButton6.Caption", u"Ignore List"},
    {u"frm_main", u"dxBarButton5.Caption", u"Restore"},
    {u"frm_main", u"dxBarButton2.Caption", u"Exit"},
    {u"frm_main", u"dxBarButton9.Caption", u"Show Description"},
    {u"frm_main", u"dxBarButton10.Caption", u"Help"},
    {u"frm_main", u"dxBarButton19.Caption", u"Homepage"},
    {u"frm_main", u"dxBarButton11.Caption", u"About"},
    // Tool bar
    {u"frm_main", u"dxBarLargeButton1.Caption", u"Scan"},
    {u"frm_main", u"dxBarLargeButton2.Caption", u"Start fixing"},
    {u"frm_main", u"dxBarLargeButton3.Caption", u"Ignore List"},
    {u"frm_main", u"dxBarLargeButton4.Caption", u"Restore"},
    {u"frm_main", u"dxBarLargeButton5.Caption", u"Help"},
    // Details, and the categories' first one
    {u"frm_main", u"Label_1.Caption", u"Summary"},
    {u"frm_main", u"dxb_1.Caption", u"Summary"},
    {u"frm_main", u"Lab_welcome.Caption",
     u"Click \"Scan\" in the menu bar to search the registry for problems."},
    {u"frm_main", u"Lab_scan.Caption", u"Last scan:"},
    {u"frm_main", u"Lab_clean.Caption", u"Last fix time:"},
    {u"frm_main", u"Lab_correct.Caption", u"Fixed problems:"},
    {u"frm_main", u"Lab_valuecaption.Caption", u"Value:"},
    {u"frm_main", u"Lab_datacaption.Caption", u"Data:"},
    {u"frm_main", u"Lab_pathcaption.Caption", u"Path:"},
    // The list. Its first column is "LvproblemstypeCaption": a file's texts lose the
    // blanks at their front, with which this column makes room for its icon.
    {u"frm_main", u"CheckBox_selectall.Caption", u"Select All"},
    {u"frm_main", u"Lv_problems.Columns[1].Caption", u"Risk Level"},
    {u"frm_main", u"Lv_problems.Columns[2].Caption", u"Registry key"},
    {u"frm_main", u"Startfixing1.Caption", u"Start Fixing"},
    {u"frm_main", u"checkall1.Caption", u"Select All"},
    {u"frm_main", u"Nonechecked1.Caption", u"Deselect All"},
    {u"frm_main", u"InverseSelection1.Caption", u"Invert Selection"},
    {u"frm_main", u"Jumptoentry1.Caption", u"Open in RegEdit"},
    {u"frm_main", u"IgnoredProblem1.Caption", u"Ignore Selected Problem"},

    {u"frm_check", u"frm_check.Caption", u"Scan and Fix"},
    {u"frm_check", u"Lv_check.Columns[0].Caption", u"Areas"},
    {u"frm_check", u"Lv_check.Columns[1].Caption", u"Status"},
    {u"frm_check", u"Bt_close.Caption", u"Close"},
    {u"frm_check", u"SelectAll1.Caption", u"Select All"},
    {u"frm_check", u"SelectAll2.Caption", u"Deselect All"},

    {u"frm_ignored", u"frm_ignored.Caption", u"Ignored Problems"},
    {u"frm_ignored", u"Label_Discraption.Caption",
     u"The below list contains all programs that are currently ignored by Hivesweep. If you do not "
     u"want to ignore some programs, select them and click \"Remove\" button."},
    {u"frm_ignored", u"Label_title.Caption", u"Ignored problems:"},
    {u"frm_ignored", u"Lv_ignored.Columns[0].Caption", u"Registry key"},
    {u"frm_ignored", u"Lv_ignored.Columns[1].Caption", u"Registry value"},
    {u"frm_ignored", u"Bt_remove.Caption", u"Remove"},
    {u"frm_ignored", u"Bt_close.Caption", u"Close"},
    {u"frm_ignored", u"SelectAll1.Caption", u"Select All"},
    {u"frm_ignored", u"SelectAll2.Caption", u"Deselect All"},

    {u"frm_report", u"frm_report.Caption", u"Report"},
    {u"frm_report", u"Lv_report.Columns[0].Caption", u"Registry key or file"},
    {u"frm_report", u"Lv_report.Columns[1].Caption", u"Value"},
    {u"frm_report", u"Lv_report.Columns[2].Caption", u"Reason"},
    {u"frm_report", u"CopyRow.Caption", u"Copy"},
    {u"frm_report", u"CopyAll.Caption", u"Copy All"},
    {u"frm_report", u"Bt_copy.Caption", u"Copy All"},
    {u"frm_report", u"Bt_close.Caption", u"Close"},

    {u"frm_rescue", u"frm_rescue.Caption", u"Restore"},
    {u"frm_rescue", u"Label_warning.Caption",
     u"Be cautious when using this function as it may affect the functionality of your softwares. "
     u"Use this feature only when you have to restore to a previous working state. Select the "
     u"items you want to restore from the list below."},
    {u"frm_rescue", u"Lv_back.Columns[0].Caption", u"Backup Date"},
    {u"frm_rescue", u"Lv_back.Columns[1].Caption", u"Changes"},
    {u"frm_rescue", u"Lv_back.Columns[2].Caption", u"Size"},
    {u"frm_rescue", u"Button1.Caption", u"Undo Changes"},
    {u"frm_rescue", u"Button2.Caption", u"Delete Backups"},
    {u"frm_rescue", u"Button3.Caption", u"Close"},
};

// Everything that a complete language file holds, the texts that are made by number
// included.
struct TFileText {
  std::u16string Section;
  std::u16string Key;
  std::u16string English;
};
std::vector<TFileText> AllFileTexts();

} // namespace hivesweep
