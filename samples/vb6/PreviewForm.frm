VERSION 5.00
Begin VB.Form PreviewForm 
   Caption         =   "Preview"
   ClientHeight    =   6000
   ClientLeft      =   60
   ClientTop       =   345
   ClientWidth     =   8000
   LinkTopic       =   "Form1"
   ScaleHeight     =   6000
   ScaleWidth      =   8000
   StartUpPosition =   3  'Windows Default
   Begin VB.CommandButton cmdCancel 
      Cancel          =   -1  'True
      Caption         =   "Cancel"
      Height          =   375
      Left            =   1440
      TabIndex        =   1
      Top             =   120
      Width           =   1215
   End
   Begin VB.CommandButton cmdLoad 
      Caption         =   "Load..."
      Default         =   -1  'True
      Height          =   375
      Left            =   120
      TabIndex        =   0
      Top             =   120
      Width           =   1215
   End
   Begin VB.PictureBox picView 
      AutoRedraw      =   -1  'True
      Height          =   5295
      Left            =   120
      ScaleHeight     =   5235
      ScaleWidth      =   7695
      TabIndex        =   2
      Top             =   600
      Width           =   7755
   End
End
Attribute VB_Name = "PreviewForm"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
' Shows a picture in a picture box while it loads; Cancel ends the load.
Option Explicit

' [create]
Private WithEvents hdr As VrxCommon.CVrxHDR
Attribute hdr.VB_VarHelpID = -1

Private Sub Form_Load()
    Set hdr = New VrxCommon.CVrxHDR
    hdr.REGKEY = "Software\My company\My program"   ' where the dialogs keep their settings
    hdr.Gamma = 2.2
    hdr.Exposure = 16                               ' in stops
End Sub
' [/create]

' [load]
Private Sub cmdLoad_Click()
    Dim path As String
    path = hdr.Load                                 ' the dialog
    If path = "" Then Exit Sub                      ' cancelled
    On Error GoTo Failed
    cmdLoad.Enabled = False
    hdr.Get_Preview path                            ' the events come while this call runs
    Caption = hdr.DimX & " x " & hdr.DimY & ", red at 0,0: " & hdr.Get_Compo(0, 0, 0)
    hdr.Convert_HDR_to_BMP App.Path & "\preview.bmp"
    cmdLoad.Enabled = True
    Exit Sub
Failed:
    MsgBox "Error " & Err.Number & " from " & Err.Source & ": " & Err.Description, vbExclamation
    cmdLoad.Enabled = True
End Sub
' [/load]

' [events]
Private Sub hdr_OnHeaderLoaded(ByVal DimX As Long, ByVal DimY As Long)
    Caption = "Loading " & DimX & " x " & DimY
End Sub

Private Sub hdr_OnRefresh(ByVal PicHDR As Variant)
    Set picView.Picture = PicHDR
    picView.Refresh
End Sub

Private Sub hdr_OnFinish()
    Caption = "Finished"
End Sub

Private Sub cmdCancel_Click()
    hdr.EndHDR                                      ' the load ends at its next check
End Sub

Private Sub Form_QueryUnload(Cancel As Integer, UnloadMode As Integer)
    Cancel = hdr.HDRLoading                         ' the form is needed until the load has ended
    hdr.EndHDR
End Sub
' [/events]
