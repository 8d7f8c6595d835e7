' The preview control on a form of Excel, Word or Access: the code of an empty UserForm. Insert a UserForm, paste this
' into its code and set the reference VrxCommon 1.0.
Option Explicit

' [control]
Private WithEvents preview As VrxCommon.VrxPreviewImg
Private hdr As VrxCommon.CVrxHDR

Private Sub UserForm_Initialize()
    Dim place As MSForms.Control
    Set place = Controls.Add("VrxCommon.VrxPreviewImg", "Preview1")
    place.Move 6, 6, InsideWidth - 12, InsideHeight - 12
    Set preview = place.Object
    Set hdr = New VrxCommon.CVrxHDR
    hdr.Exposure = 16                               ' in stops; without them a picture is nearly black
    hdr.Gamma = 2.2
    Set preview.objHDR = hdr
    preview.HDRFile = True
End Sub

Private Sub UserForm_Click()
    Dim path As String
    path = hdr.Load                                 ' the dialog
    If path <> "" Then preview.File = path
End Sub

Private Sub preview_Click()
    Caption = hdr.DimX & " x " & hdr.DimY
End Sub

Private Sub UserForm_QueryClose(Cancel As Integer, CloseMode As Integer)
    Cancel = hdr.HDRLoading                         ' the form is needed until the load has ended
    hdr.EndHDR
End Sub
' [/control]
