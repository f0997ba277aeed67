// The system's handle types, declared as its own header declares them, so that headers
// can name them without including it.
#pragma once

// NOLINTBEGIN(bugprone-reserved-identifier): the names are the system's
struct HBITMAP__;
struct HDC__;
struct HFONT__;
struct HICON__;
struct HMENU__;
struct HWND__;
struct _IMAGELIST;
// NOLINTEND(bugprone-reserved-identifier)
struct tagMSG;
