program import_type_library;
// import_type_library LIBRARY UNIT.pas - writes the unit that declares what a type library has.
{$mode objfpc}{$H+}

uses
  TypeLib;

begin
  with TTypeLibImporter.Create(nil) do
  try
    InputFileName := ParamStr(1);
    OutputFileName := ParamStr(2);
    Execute;
  finally
    Free;
  end;
end.
