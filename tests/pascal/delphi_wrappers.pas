unit delphi_wrappers;
// TCVrxHDR as Delphi's importer makes it with component wrappers, over what Free Pascal's importer makes, so far as the
// samples in Delphi use it.
{$mode delphi}

interface

uses
  Classes, VrxCommon_TLB;

type
  TCVrxHDR = class(TEvsCVrxHDR)
  private
    procedure SetExposure(Value: Single);
    procedure SetGamma(Value: Single);
    procedure SetOnRefresh(Value: T__CVrxHDROnRefresh);
    procedure SetOnHeaderLoaded(Value: T__CVrxHDROnHeaderLoaded);
    procedure SetOnFinish(Value: T__CVrxHDROnFinish);
  public
    procedure Get_Preview(const strFileName: WideString);
    procedure EndHDR;
    property Exposure: Single write SetExposure;
    property Gamma: Single write SetGamma;
    property OnRefresh: T__CVrxHDROnRefresh write SetOnRefresh;
    property OnHeaderLoaded: T__CVrxHDROnHeaderLoaded write SetOnHeaderLoaded;
    property OnFinish: T__CVrxHDROnFinish write SetOnFinish;
  end;

implementation

procedure TCVrxHDR.SetExposure(Value: Single);
begin
  ComServer.Exposure := Value;
end;

procedure TCVrxHDR.SetGamma(Value: Single);
begin
  ComServer.Gamma := Value;
end;

procedure TCVrxHDR.SetOnRefresh(Value: T__CVrxHDROnRefresh);
begin
  OnOnRefresh := Value;
end;

procedure TCVrxHDR.SetOnHeaderLoaded(Value: T__CVrxHDROnHeaderLoaded);
begin
  OnOnHeaderLoaded := Value;
end;

procedure TCVrxHDR.SetOnFinish(Value: T__CVrxHDROnFinish);
begin
  OnOnFinish := Value;
end;

procedure TCVrxHDR.Get_Preview(const strFileName: WideString);
begin
  ComServer.Get_Preview(strFileName);
end;

procedure TCVrxHDR.EndHDR;
begin
  ComServer.EndHDR;
end;

end.
