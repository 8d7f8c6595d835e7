VERSION 5.00
Object = "{271DDEDC-AA8E-40E4-8980-0EE31D67DBA4}#1.0#0"; "VrxCommon.dll"
Begin VB.Form ControlForm 
   Caption         =   "Preview"
   ClientHeight    =   6000
   ClientLeft      =   60
   ClientTop       =   345
   ClientWidth     =   8000
   LinkTopic       =   "Form1"
   ScaleHeight     =   6000
   ScaleWidth      =   8000
   StartUpPosition =   3  'Windows Default
   Begin VrxCommon.VrxPreviewImg Preview1 
      Height          =   4935
      Left            =   120
      TabIndex        =   0
      Top             =   120
      Width           =   7755
      _ExtentX        =   13679
      _ExtentY        =   8705
      MousePointer    =   2
   End
   Begin VB.HScrollBar scrExposure 
      Height          =   255
      LargeChange     =   10
      Left            =   120
      Max             =   320
      TabIndex        =   1
      Top             =   5160
      Value           =   160
      Width           =   7755
   End
   Begin VB.CommandButton cmdLoad 
      Caption         =   "Load..."
      Height          =   375
      Left            =   120
      TabIndex        =   2
      Top             =   5520
      Width           =   1215
   End
End
Attribute VB_Name = "ControlForm"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
' The preview control on a form: shows an HDR file while it loads, with a scroll bar for the exposure.
Option Explicit

' [control]
Private hdr As VrxCommon.CVrxHDR

Private Sub Form_Load()
    Set hdr = New VrxCommon.CVrxHDR
    hdr.Exposure = scrExposure.Value / 10           ' in stops; without them a picture is nearly black
    hdr.Gamma = 2.2
    Set Preview1.objHDR = hdr
    Preview1.HDRFile = True
End Sub

Private Sub cmdLoad_Click()
    Dim path As String
    path = hdr.Load                                 ' the dialog
    If path = "" Then Exit Sub
    Preview1.File = path                            ' loads; the form lives meanwhile
    If Preview1.File = "Error" Then MsgBox "Cannot be shown: " & path, vbExclamation
End Sub

Private Sub scrExposure_Change()
    hdr.Exposure = scrExposure.Value / 10           ' a load that runs begins again
    If Not hdr.HDRLoading And hdr.DimX > 0 Then hdr.Get_BMP
End Sub

Private Sub Preview1_Click()
    If hdr.DimX > 0 Then Caption = hdr.DimX & " x " & hdr.DimY
End Sub

Private Sub Form_QueryUnload(Cancel As Integer, UnloadMode As Integer)
    Cancel = hdr.HDRLoading                         ' the form is needed until the load has ended
    hdr.EndHDR
End Sub
' [/control]
