// Numbers of the dialog templates and of their controls, for the resource compiler and the code. A control
// has the same number in every dialog that has a control of that name.
#pragma once

#define IDD_FRMZOOM 100
#define IDD_FRMLOADHDR 101
#define IDD_FRMLOADIMAGE 102
#define IDD_FRMSAVEHDR 103
#define IDD_FRMSAVEIMAGE 104
#define IDD_FRMPATTERN 105

#define IDB_VRXPREVIEWIMG 110

#define IDC_PICTURE1 1000
#define IDC_IMGPREVIEW 1001
#define IDC_VRXPREVIMG 1002
#define IDC_PICBMP 1003

#define IDC_LBLRED 1010
#define IDC_LBLGREEN 1011
#define IDC_LBLBLU 1012
#define IDC_LBLCOMP0 1013
#define IDC_LBLCOMP1 1014
#define IDC_LBLCOMP2 1015
#define IDC_LBLBY 1016

#define IDC_DRIVE1 1020
#define IDC_DIR1 1021
#define IDC_FILE1 1022
#define IDC_COMBO1 1023
#define IDC_TEXT1 1024
#define IDC_CHECK1 1025
#define IDC_CHKAUTOEXPOSURE 1026
#define IDC_CMBAUTOEXPTYPE 1027

#define IDC_COMMAND1 1030
#define IDC_COMMAND2 1031
#define IDC_COMMAND3 1032
#define IDC_COMMAND4 1033
#define IDC_CMDPLUS 1034
#define IDC_CMDMINIUS 1035

#define IDC_SLIDER1 1041
#define IDC_SLIDER2 1042
#define IDC_SLIDER3 1043

#define IDC_LABEL1 1051
#define IDC_LABEL2 1052
#define IDC_LABEL3 1053
#define IDC_LABEL4 1054
#define IDC_LABEL5 1055
#define IDC_LABEL6 1056
#define IDC_LABEL7 1057
#define IDC_LABEL8 1058
#define IDC_LABEL9 1059
#define IDC_LABEL10 1060
#define IDC_LABEL11 1061
#define IDC_LABEL12 1062
#define IDC_LABEL13 1063
#define IDC_LABEL14 1064

#define IDC_PICPATTERN 1100
#define IDC_PICTOOLTIPS 1101
#define IDC_LBLPERC 1102
#define IDC_LBLBLUE 1103
#define IDC_LEGENDRED 1104
#define IDC_LEGENDGREEN 1105
#define IDC_LEGENDBLUE 1106

#define IDM_FRMPATTERN 1110
#define IDM_ITEMLOAD 1111
#define IDM_ITEMSAVE 1112
#define IDM_ITEMCLEAR 1113

// The first of an array: one number for each stop of a pattern.
#define IDC_PICFLAGUP 2000
