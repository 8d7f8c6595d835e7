program Tour;
// Tour.exe PICTURE.hdr FOLDER
// The component in Delphi: loads an HDR picture, reads values, writes BMP, JPEG and HDR files, works on an array,
// expands a pattern, handles an error and receives events.
// Import the type library first (Component, Import Component, Import a Type Library, "VrxCommon 1.0", with component
// wrappers); this makes the units VrxCommon_TLB and VrxTypeLib_TLB.
{$APPTYPE CONSOLE}

uses
  SysUtils, ActiveX, ComObj, VrxCommon_TLB;

procedure LoadAndRead(const Hdr: _CVrxHDR; const Picture: WideString);
var
  Invert: WordBool;
begin
  // [load]
  Invert := False;                               // row 0 is the top row
  Hdr.Load_HDR(Picture, Invert);
  Writeln(Hdr.DimX, ' x ', Hdr.DimY);
  // [/load]

  // [read]
  Writeln('red at 10,20: ', Hdr.Get_Compo(10, 20, 0):0:6);
  // [/read]
end;

procedure WriteFiles(const Hdr: _CVrxHDR; const Base: WideString);
var
  Image: _CVrxImage;
begin
  // [write]
  Image := CoCVrxImage.Create;
  Hdr.Gamma := 2.2;
  Hdr.Exposure := 16;                            // in stops
  Hdr.Convert_HDR_to_BMP(Base + '_tour.bmp', -1, -1);
  Image.Convert_BMP_to_JPG(Base + '_tour.jpg', 90, Base + '_tour.bmp');
  Writeln('wrote ', Hdr.Save_HDR(Base + '_tour.hdr'));
  // [/write]
end;

procedure ReadArray(const Hdr: _CVrxHDR);
var
  Pixels: OleVariant;
  Exponent: Byte;
begin
  // [arrays]
  Hdr.Get_HDR(Pixels);                           // bytes [0..DimX, 0..DimY, 0..3]
  Exponent := Pixels[10, 20, 3];
  Writeln('exponent at 10,20: ', Exponent);
  Pixels[10, 20, 3] := Exponent;
  Hdr.Set_HDR(Pixels);
  // [/arrays]
end;

procedure ExpandPattern;
var
  Pattern: _CVrxPattern;
  Colors: OleVariant;
  I, Color: Integer;
begin
  // [pattern]
  Pattern := CoCVrxPattern.Create;
  Pattern.Get_PatternFromString('0-255;1000-16711680;', 4, Colors);
  for I := 0 to 4 do
  begin
    Color := Colors[I];
    Writeln(I, ' $', IntToHex(Color, 6));        // $BBGGRR
  end;
  // [/pattern]
end;

procedure HandleAnError(const Hdr: _CVrxHDR);
var
  Invert: WordBool;
begin
  // [error]
  Invert := False;
  try
    Hdr.Load_HDR('C:\no such file.hdr', Invert);
  except
    on Failure: EOleException do
      Writeln('error ', Failure.ErrorCode and $FFFF, ' from ', Failure.Source, ': ', Failure.Message);
  end;
  // [/error]
end;

// [events]
type
  TPreview = class
  private
    FHdr: TCVrxHDR;
    FRefreshes: Integer;
    procedure HeaderLoaded(ASender: TObject; DimX, DimY: Integer);
    procedure Refreshed(ASender: TObject; PicHDR: OleVariant);
    procedure Finished(Sender: TObject);
  public
    procedure Load(const Picture: WideString);
  end;

procedure TPreview.HeaderLoaded(ASender: TObject; DimX, DimY: Integer);
begin
  Writeln('header: ', DimX, ' x ', DimY);
end;

procedure TPreview.Refreshed(ASender: TObject; PicHDR: OleVariant);
begin
  Inc(FRefreshes);
  if FRefreshes = 3 then FHdr.EndHDR;            // the load ends at its next check
end;

procedure TPreview.Finished(Sender: TObject);
begin
  Writeln('finished after ', FRefreshes, ' refreshes');
end;

procedure TPreview.Load(const Picture: WideString);
begin
  FHdr := TCVrxHDR.Create(nil);
  try
    FHdr.OnHeaderLoaded := HeaderLoaded;
    FHdr.OnRefresh := Refreshed;
    FHdr.OnFinish := Finished;
    FHdr.Gamma := 2.2;
    FHdr.Exposure := 16;
    FHdr.Get_Preview(Picture);                   // the events come while this call runs
  finally
    FHdr.Free;
  end;
end;
// [/events]

function ChooseAPicture: WideString;
var
  Hdr: _CVrxHDR;
begin
  // [dialog]
  Hdr := CoCVrxHDR.Create;
  Hdr.REGKEY := 'Software\My company\My program';   // where the dialogs keep their settings
  Result := Hdr.Load('C:\Pictures\x.hdr');          // starts in C:\Pictures; empty when cancelled
  // [/dialog]
end;

var
  Hdr: _CVrxHDR;
  Preview: TPreview;
  Base: WideString;
begin
  if ParamCount <> 2 then
  begin
    Writeln('usage: Tour PICTURE.hdr FOLDER');
    Halt(2);
  end;
  CoInitialize(nil);
  try
    Base := IncludeTrailingPathDelimiter(ParamStr(2)) + ChangeFileExt(ExtractFileName(ParamStr(1)), '');
    // [create]
    Hdr := CoCVrxHDR.Create;
    // [/create]
    LoadAndRead(Hdr, ParamStr(1));
    WriteFiles(Hdr, Base);
    ReadArray(Hdr);
    ExpandPattern;
    HandleAnError(Hdr);
    Preview := TPreview.Create;
    try
      Preview.Load(ParamStr(1));
    finally
      Preview.Free;
    end;
    Hdr := nil;
  finally
    CoUninitialize;
  end;
end.
