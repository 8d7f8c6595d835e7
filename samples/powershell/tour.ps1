# powershell -ExecutionPolicy Bypass -File tour.ps1 PICTURE.hdr FOLDER
# The component in PowerShell: loads an HDR picture, reads values, writes BMP, JPEG and HDR files, works on an array,
# expands a pattern and handles an error.
param(
    [Parameter(Mandatory = $true)] [string] $Picture,
    [Parameter(Mandatory = $true)] [string] $Folder
)
$ErrorActionPreference = 'Stop'

# The component takes full paths: PowerShell's current folder is not that of its process.
$Picture = (Resolve-Path $Picture).ProviderPath
$base = Join-Path (Resolve-Path $Folder).ProviderPath ([IO.Path]::GetFileNameWithoutExtension($Picture))

# [create]
$hdr = New-Object -ComObject VrxCommon.CVrxHDR
$image = New-Object -ComObject VrxCommon.CVrxImage
$pattern = New-Object -ComObject VrxCommon.CVrxPattern
# [/create]

# [load]
$hdr.Load_HDR($Picture, $false)               # $false: row 0 is the top row
"$($hdr.DimX) x $($hdr.DimY)"
# [/load]

# [read]
"red at 10,20: $($hdr.Get_Compo(10, 20, 0))"
# [/read]

# [write]
$hdr.Gamma = 2.2
$hdr.Exposure = 16                            # in stops
$hdr.Convert_HDR_to_BMP("${base}_tour.bmp")
$image.Convert_BMP_to_JPG("${base}_tour.jpg", 90, "${base}_tour.bmp")
"wrote $($hdr.Save_HDR("${base}_tour.hdr"))"
# [/write]

# [by-reference]
$pixels = $null
$hdr.Get_HDR([ref] $pixels)                   # a byte array [0..DimX, 0..DimY, 0..3]
"exponent at 10,20: $($pixels[10, 20, 3])"
# [/by-reference]

# [pattern]
$colors = $null
$pattern.Get_PatternFromString('0-255;1000-16711680;', 4, [ref] $colors)
$colors | ForEach-Object { '#{0:X2}{1:X2}{2:X2}' -f ($_ -band 255), (($_ -shr 8) -band 255), (($_ -shr 16) -band 255) }
# [/pattern]

# [error]
try {
    $hdr.Load_HDR($PSCommandPath, $false)      # not a picture
} catch {
    $failure = $_.Exception
    while ($failure.InnerException) { $failure = $failure.InnerException }
    "error $($failure.HResult -band 0xFFFF) from $($failure.Source): $($failure.Message)"
}
# [/error]
