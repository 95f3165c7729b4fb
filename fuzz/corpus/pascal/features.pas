program Features;
uses SysUtils;
type TNames = array of String;
const Sep = '-'; Limit: Integer = 3;
var a: TNames; i: Integer; c: Char; s: String = 'x';
function Twice(const t: String): String; forward;
function Twice(const t: String): String; begin Result := t + t; end;
procedure Add(var t: String; n: Integer); begin t := t + IntToStr(n); end;
begin
  SetLength(a, Limit);
  for i := 0 to High(a) do a[i] := IntToHex(i * 17, 2);
  for c := 'a' to 'c' do s := s + c;
  case Length(FileName) of 0: Exit; 1..5: s := Twice(s); else Add(s, 7); end;
  repeat Dec(i) until i < 0;
  while i < 3 do begin Inc(i); if Odd(i) then Continue; if i > 2 then Break; end;
  if (s <> '') and not (FileName[1] in ['0'..'9']) then
    FileName := Format('%s%s%d %.2f %x', [s, Sep, i, 2.5, 255]) + FormatDateTime('yyyymmdd', Now) + FileName;
  { braces } (* parens *) // line
end.
