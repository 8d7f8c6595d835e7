# powershell -ExecutionPolicy Bypass -STA -File dialogs.ps1
# Lets the user choose an HDR picture and save it as HDR, JPEG or BMP file.
$ErrorActionPreference = 'Stop'
# [dialog]
$hdr = New-Object -ComObject VrxCommon.CVrxHDR
$hdr.REGKEY = 'Software\My company\My program'  # where the dialogs keep their settings
$path = $hdr.Load('C:\Pictures\x.hdr')          # starts in C:\Pictures
if ($path -ne '') {
    $hdr.Load_HDR($path, $false)
    $hdr.Save()
}
# [/dialog]
