program PreviewForm;
// PreviewForm.exe PICTURE.hdr
// The preview control on a form. Import the type library first (Component, Import Component, Import ActiveX Control,
// "VrxCommon 1.0"); this makes the unit VrxCommon_TLB with the component TVrxPreviewImg.

uses
  Forms, Controls, Classes, VrxCommon_TLB;

type
  // [control]
  TPreviewForm = class(TForm)
  private
    FHdr: _CVrxHDR;
    FPreview: TVrxPreviewImg;
    procedure Clicked(Sender: TObject);
    procedure Asked(Sender: TObject; var CanClose: Boolean);
  public
    constructor CreateFor(const Picture: WideString);
  end;

constructor TPreviewForm.CreateFor(const Picture: WideString);
begin
  CreateNew(nil);
  OnCloseQuery := Asked;
  FHdr := CoCVrxHDR.Create;
  FHdr.Exposure := 16;                           // in stops; without them a picture is nearly black
  FHdr.Gamma := 2.2;
  FPreview := TVrxPreviewImg.Create(Self);
  FPreview.Parent := Self;
  FPreview.Align := alClient;
  FPreview.OnClick := Clicked;
  FPreview.objHDR := FHdr;
  FPreview.HDRFile := True;
  Show;
  FPreview.File_ := Picture;                     // loads; the form lives meanwhile
end;

procedure TPreviewForm.Clicked(Sender: TObject);
begin
  Close;
end;

procedure TPreviewForm.Asked(Sender: TObject; var CanClose: Boolean);
begin
  CanClose := not FHdr.HDRLoading;               // the form is needed until the load has ended
  FHdr.EndHDR;
end;
// [/control]

var
  Form: TPreviewForm;
begin
  Application.Initialize;
  Form := TPreviewForm.CreateFor(ParamStr(1));
  while Form.Visible do
    Application.HandleMessage;
end.
