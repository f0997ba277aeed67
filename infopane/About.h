// Numbers that the resources and the code share.
#pragma once

#define ABOUT_DIALOG 100
#define ABOUT_ICON 101
#define ABOUT_NAME 102
#define ABOUT_APP_ICON 1

#define TEXT_NOT_OPENED 200
