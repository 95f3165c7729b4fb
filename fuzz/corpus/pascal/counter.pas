var
  n: Integer;
begin
  Inc(n);
  FileName := Format('%.3d_', [n]) + FileName;
end.
