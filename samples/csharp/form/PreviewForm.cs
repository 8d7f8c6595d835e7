// PreviewForm.exe PICTURE.hdr
// The preview control on a Windows form, without a wrapper made by a tool: AxHost holds the control, and its members are
// called through the imported type library.
using System;
using System.Drawing;
using System.Runtime.InteropServices;
using System.Windows.Forms;
using VrxCommon;

// [host]
/// Holds the control on a form.
class PreviewHost : AxHost, __VrxPreviewImg
{
    ConnectionPointCookie events;

    public PreviewHost() : base("c18292e6-ba22-49dd-9997-e84c248296be") { }

    public event EventHandler PictureClick;

    /// The control's own members; there once the form has made its windows.
    public _VrxPreviewImg Control => (_VrxPreviewImg)GetOcx();

    void __VrxPreviewImg.Click() => PictureClick?.Invoke(this, EventArgs.Empty);

    protected override void CreateSink() =>
        events = new ConnectionPointCookie(GetOcx(), this, typeof(__VrxPreviewImg));

    protected override void DetachSink() => events?.Disconnect();
}
// [/host]

// [form]
class PreviewForm : Form
{
    readonly CVrxHDR hdr = new CVrxHDR();
    readonly PreviewHost preview = new PreviewHost { Dock = DockStyle.Fill };
    readonly TrackBar exposure = new TrackBar { Dock = DockStyle.Bottom, Maximum = 320, Value = 160, TickFrequency = 10 };
    readonly string picture;

    PreviewForm(string picture)
    {
        this.picture = picture;
        Text = "Preview form";
        ClientSize = new Size(640, 480);
        Controls.Add(preview);
        Controls.Add(exposure);
        exposure.ValueChanged += (sender, arguments) => Apply();
        preview.PictureClick += (sender, arguments) => Text = hdr.DimX + " x " + hdr.DimY;
    }

    protected override void OnShown(EventArgs arguments)
    {
        base.OnShown(arguments);
        hdr.Gamma = 2.2f;                           // without them a picture is nearly black
        hdr.Exposure = exposure.Value / 10f;        // in stops
        preview.Control.objHDR = hdr;
        preview.Control.HDRFile = true;
        preview.Control.File = picture;             // loads; the form lives meanwhile
    }

    void Apply()
    {
        hdr.Exposure = exposure.Value / 10f;        // a load that runs begins again
        if (!hdr.HDRLoading && hdr.DimX > 0) hdr.Get_BMP();
    }

    protected override void OnFormClosing(FormClosingEventArgs arguments)
    {
        arguments.Cancel = hdr.HDRLoading;          // the form is needed until the load has ended
        hdr.EndHDR();
        base.OnFormClosing(arguments);
    }
// [/form]

    [STAThread]
    static void Main(string[] arguments)
    {
        if (arguments.Length != 1)
        {
            MessageBox.Show("usage: PreviewForm PICTURE.hdr");
            return;
        }
        Application.Run(new PreviewForm(arguments[0]));
    }
}
