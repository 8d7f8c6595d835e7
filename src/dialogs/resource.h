// Numbers of the dialog templates and of their controls, for the resource compiler and the code.
#pragma once

// The zoom window.
#define IDD_ZOOM 100
#define IDC_ZOOM_VIEW 1000
#define IDC_ZOOM_RED_CAPTION 1001
#define IDC_ZOOM_RED 1002
#define IDC_ZOOM_GREEN_CAPTION 1003
#define IDC_ZOOM_GREEN 1004
#define IDC_ZOOM_BLUE_CAPTION 1005
#define IDC_ZOOM_BLUE 1006
