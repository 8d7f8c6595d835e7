"""tour_comtypes.py PICTURE.hdr

The component in Python with comtypes, early-bound from its type library: what a member gives back by reference
is returned.
"""
import os
import sys

import comtypes.client


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: tour_comtypes.py PICTURE.hdr")
    # [tour]
    hdr = comtypes.client.CreateObject("VrxCommon.CVrxHDR")
    hdr.Load_HDR(os.path.abspath(sys.argv[1]), False)
    print(hdr.DimX, "x", hdr.DimY, "red at 10,20:", hdr.Get_Compo(10, 20, 0))

    pattern = comtypes.client.CreateObject("VrxCommon.CVrxPattern")
    colors = pattern.Get_PatternFromString("0-255;1000-16711680;", 4, None)
    print(["%06X" % color for color in colors])

    try:
        hdr.Load_HDR(r"C:\no such file.hdr", False)
    except comtypes.COMError as error:
        description, source = error.details[0], error.details[1]
        print("error", error.hresult & 0xFFFF, "from", source + ":", description)
    # [/tour]


if __name__ == "__main__":
    main()
