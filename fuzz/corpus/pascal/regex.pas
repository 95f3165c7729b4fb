begin
  FileName := ReplaceRegExpr(FileName, '^([^-]+)-([^.]+)', '$2-$1');
end.
