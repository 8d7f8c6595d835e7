// Numbers of the form of form_test.cpp, for the resource compiler and the code.
#pragma once

#define IDD_TEST_FORM 900

#define IDC_TEST_EDIT 2000
#define IDC_TEST_COMBO 2001
#define IDC_TEST_SLIDER 2002
