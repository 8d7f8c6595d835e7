// Tour.exe PICTURE.hdr FOLDER
// The component in C#: loads an HDR picture, reads values, writes BMP, JPEG and HDR files, works on an array, expands a
// pattern, handles an error and receives events.
using System;
using System.IO;
using System.Runtime.InteropServices;
using VrxCommon;

static class Tour
{
    // [create]
    [STAThread]
    static int Main(string[] arguments)
    {
        if (arguments.Length != 2)
        {
            Console.Error.WriteLine("usage: Tour PICTURE.hdr FOLDER");
            return 2;
        }
        string picture = Path.GetFullPath(arguments[0]);
        string target = Path.Combine(Path.GetFullPath(arguments[1]), Path.GetFileNameWithoutExtension(picture));
        var hdr = new CVrxHDR();
    // [/create]
        LoadAndRead(hdr, picture);
        Write(hdr, target);
        ReadArray(hdr);
        ExpandPattern();
        HandleAnError(hdr);
        Preview(picture);
        return 0;
    }

    static void LoadAndRead(CVrxHDR hdr, string picture)
    {
        // [load]
        bool invert = false;                        // row 0 is the top row
        hdr.Load_HDR(picture, ref invert);
        Console.WriteLine("{0} x {1}", hdr.DimX, hdr.DimY);
        // [/load]

        // [read]
        Console.WriteLine("red at 10,20: {0}", hdr.Get_Compo(10, 20, 0));
        // [/read]
    }

    static void Write(CVrxHDR hdr, string target)
    {
        // [write]
        var image = new CVrxImage();
        hdr.Gamma = 2.2f;
        hdr.Exposure = 16;                          // in stops
        hdr.Convert_HDR_to_BMP(target + "_tour.bmp");
        image.Convert_BMP_to_JPG(target + "_tour.jpg", 90, target + "_tour.bmp");
        Console.WriteLine("wrote {0}", hdr.Save_HDR(target + "_tour.hdr"));
        // [/write]
    }

    static void ReadArray(CVrxHDR hdr)
    {
        // [arrays]
        object pixels = null;
        hdr.Get_HDR(ref pixels);
        var bytes = (byte[,,])pixels;               // [0..DimX, 0..DimY, 0..3]
        Console.WriteLine("exponent at 10,20: {0}", bytes[10, 20, 3]);
        hdr.Set_HDR(ref pixels);
        // [/arrays]
    }

    static void ExpandPattern()
    {
        // [pattern]
        object colors = null;
        new CVrxPattern().Get_PatternFromString("0-255;1000-16711680;", 4, ref colors);
        foreach (int color in (object[])colors)
            Console.WriteLine("#{0:X2}{1:X2}{2:X2}", color & 255, color >> 8 & 255, color >> 16 & 255);
        // [/pattern]
    }

    static void HandleAnError(CVrxHDR hdr)
    {
        // [error]
        try
        {
            bool invert = false;
            hdr.Load_HDR(typeof(Tour).Assembly.Location, ref invert);   // not a picture
        }
        catch (COMException failure)
        {
            int number = failure.ErrorCode & 0xFFFF;
            Console.WriteLine("error {0} from {1}: {2}", number, failure.Source, failure.Message);
        }
        // [/error]
    }

    static void Preview(string picture)
    {
        // [events]
        var hdr = new CVrxHDR();
        int refreshes = 0;
        hdr.OnHeaderLoaded += (dimX, dimY) => Console.WriteLine("header: {0} x {1}", dimX, dimY);
        hdr.OnRefresh += shown => { if (++refreshes == 3) hdr.EndHDR(); };
        hdr.OnFinish += () => Console.WriteLine("finished after {0} refreshes", refreshes);
        hdr.Gamma = 2.2f;
        hdr.Exposure = 16;
        hdr.Get_Preview(picture);                   // the events come while this call runs
        // [/events]
    }

    static string ChooseAPicture()
    {
        // [dialog]
        var hdr = new CVrxHDR();
        hdr.REGKEY = @"Software\My company\My program";   // where the dialogs keep their settings
        return hdr.Load(@"C:\Pictures\x.hdr");            // starts in C:\Pictures; empty when cancelled
        // [/dialog]
    }
}
