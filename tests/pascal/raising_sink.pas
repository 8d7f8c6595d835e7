program raising_sink;
// raising_sink PICTURE.hdr COUNT - loads the picture with sinks of Free Pascal, which do not catch what a handler raises:
// by longjmp (32 bits) or structured exceptions (64 bits) it leaves the component's call for the handler around it.
// Every third of the COUNT loads raises in another event. Ends with the line "sound" when each exception has arrived,
// the object was idle and loaded again after it, and nobody holds more references than before.
{$mode delphi}{$APPTYPE CONSOLE}

uses
  SysUtils, ActiveX, ComObj, VrxCommon_TLB;

type
  TEvent = (HeaderLoaded, Refresh, Finish);

  ERaisedInHandler = class(Exception);

  TSinks = class
  private
    FEvents: TEvsCVrxHDR;
    FCounts: array[TEvent] of Integer;
    FRaises: Boolean;
    FRaiseIn: TEvent;
    procedure Happened(Event: TEvent);
    procedure OnHeaderLoaded(Sender: TObject; DimX, DimY: Integer);
    procedure OnRefresh(Sender: TObject; PicHDR: OleVariant);
    procedure OnFinish(Sender: TObject);
    function References: Integer;
  public
    constructor Create;
    destructor Destroy; override;
    procedure LoadQuietly(const Picture: WideString);
    procedure LoadRaising(const Picture: WideString; Event: TEvent);
    procedure Run(const Picture: WideString; Count: Integer);
  end;

procedure Require(Holds: Boolean; const What: string);
begin
  if Holds then Exit;
  Writeln('not so: ', What);
  Halt(1);
end;

constructor TSinks.Create;
begin
  FEvents := TEvsCVrxHDR.Create(nil);
  FEvents.OnOnHeaderLoaded := OnHeaderLoaded;
  FEvents.OnOnRefresh := OnRefresh;
  FEvents.OnOnFinish := OnFinish;
end;

destructor TSinks.Destroy;
begin
  FEvents.Free;
end;

procedure TSinks.Happened(Event: TEvent);
begin
  Inc(FCounts[Event]);
  if FRaises and (Event = FRaiseIn) then raise ERaisedInHandler.Create('raised in a handler');
end;

procedure TSinks.OnHeaderLoaded(Sender: TObject; DimX, DimY: Integer);
begin
  Require((DimX = 768) and (DimY = 384), 'the header tells 768 x 384');
  Happened(HeaderLoaded);
end;

procedure TSinks.OnRefresh(Sender: TObject; PicHDR: OleVariant);
begin
  Happened(Refresh);
end;

procedure TSinks.OnFinish(Sender: TObject);
begin
  Happened(Finish);
end;

function TSinks.References: Integer;
begin
  FEvents.ComServer._AddRef;
  Result := FEvents.ComServer._Release;
end;

// 384 rows: refreshes with rows 0, 80, 160, 240 and 320, and one at the end.
procedure TSinks.LoadQuietly(const Picture: WideString);
begin
  FillChar(FCounts, SizeOf(FCounts), 0);
  FRaises := False;
  FEvents.ComServer.Get_Preview(Picture);
  Require((FCounts[HeaderLoaded] = 1) and (FCounts[Refresh] = 6) and (FCounts[Finish] = 1), 'each event came');
  Require(FEvents.ComServer.DimX = 768, 'the picture is loaded');
end;

procedure TSinks.LoadRaising(const Picture: WideString; Event: TEvent);
var
  Arrived: Boolean;
begin
  Arrived := False;
  FRaises := True;
  FRaiseIn := Event;
  try
    FEvents.ComServer.Get_Preview(Picture);
  except
    on ERaisedInHandler do Arrived := True;
  end;
  Require(Arrived, 'the exception arrives');
  Require(not FEvents.ComServer.HDRLoading, 'the object is idle');
end;

procedure TSinks.Run(const Picture: WideString; Count: Integer);
var
  I, Before: Integer;
begin
  LoadQuietly(Picture);
  Before := References;
  for I := 0 to Count - 1 do
  begin
    LoadRaising(Picture, TEvent(I mod 3));
    if I mod 100 = 99 then LoadQuietly(Picture);
  end;
  LoadQuietly(Picture);
  Require(References = Before, 'the references are as before');
end;

var
  Sinks: TSinks;
begin
  CoInitialize(nil);
  Sinks := TSinks.Create;
  Sinks.Run(ParamStr(1), StrToInt(ParamStr(2)));
  Sinks.Free;
  CoUninitialize;
  Writeln('sound');
end.
