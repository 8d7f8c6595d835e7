"""tour.py PICTURE.hdr FOLDER

The component in Python with pywin32: loads an HDR picture, reads values, writes BMP, JPEG and HDR files,
expands a pattern, handles an error and receives events.
"""
import os
import sys

import pywintypes
from win32com.client import DispatchWithEvents
from win32com.client.gencache import EnsureDispatch


def load_and_read(hdr, picture):
    # [load]
    hdr.Load_HDR(picture, False)              # False: row 0 is the top row
    print(hdr.DimX, "x", hdr.DimY)
    # [/load]

    # [read]
    print("red at 10,20:", hdr.Get_Compo(10, 20, 0))
    # [/read]


def write(hdr, base):
    # [write]
    image = EnsureDispatch("VrxCommon.CVrxImage")
    hdr.Gamma = 2.2
    hdr.Exposure = 16                         # in stops
    hdr.Convert_HDR_to_BMP(base + "_tour.bmp")
    image.Convert_BMP_to_JPG(base + "_tour.jpg", 90, base + "_tour.bmp")
    print("wrote", hdr.Save_HDR(base + "_tour.hdr"))
    # [/write]


def read_pixels(hdr):
    # [by-reference]
    hdr.Get_BMP()                             # builds the tables that Get_Pixel asks for
    red, green, blue = hdr.Get_Pixel(10, 20, None, None, None)
    print("in percent:", red, green, blue)
    # [/by-reference]


def expand_pattern():
    # [pattern]
    pattern = EnsureDispatch("VrxCommon.CVrxPattern")
    for color in pattern.Get_PatternFromString("0-255;1000-16711680;", 4, None):
        print("#%02X%02X%02X" % (color & 255, color >> 8 & 255, color >> 16 & 255))
    # [/pattern]


def handle_an_error(hdr):
    # [error]
    try:
        hdr.Load_HDR(r"C:\no such file.hdr", False)
    except pywintypes.com_error as error:
        _, source, description, _, _, scode = error.excepinfo
        print("error", scode & 0xFFFF, "from", source + ":", description)
    # [/error]


# [events]
class Events:
    refreshes = 0

    def OnHeaderLoaded(self, dim_x, dim_y):
        print("header:", dim_x, "x", dim_y)

    def OnRefresh(self, picture):
        self.refreshes += 1
        if self.refreshes == 3:
            self.EndHDR()                     # the load ends at its next check

    def OnFinish(self):
        print("finished after", self.refreshes, "refreshes")


def preview(picture):
    hdr = DispatchWithEvents("VrxCommon.CVrxHDR", Events)
    hdr.Gamma = 2.2
    hdr.Exposure = 16
    hdr.Get_Preview(picture)                  # the events come while this call runs
# [/events]


def choose_a_picture():
    # [dialog]
    hdr = EnsureDispatch("VrxCommon.CVrxHDR")
    hdr.REGKEY = r"Software\My company\My program"   # where the dialogs keep their settings
    return hdr.Load(r"C:\Pictures\x.hdr")            # starts in C:\Pictures; empty when cancelled
    # [/dialog]


def main():
    if len(sys.argv) != 3:
        sys.exit("usage: tour.py PICTURE.hdr FOLDER")
    picture = os.path.abspath(sys.argv[1])
    base = os.path.join(os.path.abspath(sys.argv[2]), os.path.splitext(os.path.basename(picture))[0])

    # [create]
    hdr = EnsureDispatch("VrxCommon.CVrxHDR")
    # [/create]
    load_and_read(hdr, picture)
    write(hdr, base)
    read_pixels(hdr)
    expand_pattern()
    handle_an_error(hdr)
    preview(picture)


if __name__ == "__main__":
    main()
