{ compile_chm FOLDER OUT.chm - compiles the folder's pages into a help file. The folder also holds
    files.txt       the files to take in, one on a line; the first one is the page to open with
    contexts.txt    "NUMBER PAGE#ANCHOR" lines: the page for each help context
    contents.hhc    the table of contents
    keywords.hhk    the index
  Free Pascal's own chmcmd takes one context for each file and writes it with the folder's path, so that no
  viewer finds it; its library takes what is right. }
program compile_chm;

{$mode objfpc}{$H+}

uses
  cwstring, Classes, SysUtils, chmwriter, chmsitemap;

type
  THelpFile = class
  private
    FFolder: string;
    FWriter: TChmWriter;
    function Lines(const Name: string): TStringList;
    function Bytes(const Name: string): TMemoryStream;
    function SiteMap(const Name: string; Kind: TSiteMapType): TChmSiteMap;
    function ReadPage(const Name: string; out Folder, FileName: string; var Stream: TStream): Boolean;
    procedure AddNavigation(Sender: TObject);
    procedure AddContexts;
  public
    constructor Create(const Folder, OutFile: string);
    procedure Write;
  end;

constructor THelpFile.Create(const Folder, OutFile: string);
begin
  FFolder := IncludeTrailingPathDelimiter(Folder);
  FWriter := TChmWriter.Create(TFileStream.Create(OutFile, fmCreate), True);
end;

function THelpFile.Lines(const Name: string): TStringList;
begin
  Result := TStringList.Create;
  Result.LoadFromFile(FFolder + Name);
end;

function THelpFile.Bytes(const Name: string): TMemoryStream;
begin
  Result := TMemoryStream.Create;
  Result.LoadFromFile(FFolder + Name);
end;

function THelpFile.SiteMap(const Name: string; Kind: TSiteMapType): TChmSiteMap;
begin
  Result := TChmSiteMap.Create(Kind);
  Result.LoadFromFile(FFolder + Name);
end;

{ Gives the writer the bytes of a page and where it stands in the help file; False goes on with the next. }
function THelpFile.ReadPage(const Name: string; out Folder, FileName: string; var Stream: TStream): Boolean;
begin
  (Stream as TMemoryStream).LoadFromFile(FFolder + Name);
  Folder := '/' + ExtractFilePath(Name);
  FileName := ExtractFileName(Name);
  Result := False;
end;

procedure THelpFile.AddNavigation(Sender: TObject);
begin
  FWriter.AppendIndex(Bytes('keywords.hhk'));
  FWriter.AppendBinaryIndexFromSiteMap(SiteMap('keywords.hhk', stIndex), False);
  FWriter.AppendTOC(Bytes('contents.hhc'));
end;

procedure THelpFile.AddContexts;
var
  Line: string;
begin
  for Line in Lines('contexts.txt') do
    FWriter.AddContext(StrToInt(Copy(Line, 1, Pos(' ', Line) - 1)), Copy(Line, Pos(' ', Line) + 1));
end;

procedure THelpFile.Write;
begin
  FWriter.FilesToCompress.AddStrings(Lines('files.txt'));
  FWriter.OnGetFileData := @ReadPage;
  FWriter.OnLastFile := @AddNavigation;
  FWriter.Title := 'VrxCommon';
  FWriter.DefaultPage := FWriter.FilesToCompress[0];
  FWriter.TocName := 'contents.hhc';
  FWriter.IndexName := 'keywords.hhk';
  FWriter.HasBinaryIndex := True;
  FWriter.FullTextSearch := True;
  FWriter.LocaleID := $409;
  FWriter.TocSiteMap := SiteMap('contents.hhc', stTOC);
  AddContexts;
  FWriter.Execute;
  FWriter.Free;
end;

begin
  if ParamCount <> 2 then
  begin
    WriteLn(StdErr, 'usage: compile_chm FOLDER OUT.chm');
    Halt(2);
  end;
  THelpFile.Create(ParamStr(1), ParamStr(2)).Write;
end.
