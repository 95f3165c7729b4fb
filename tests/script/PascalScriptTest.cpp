#include <gtest/gtest.h>

#include <QRegularExpression>

#include "script/PascalScript.h"
#include "../support/QStringPrinter.h"

namespace qp::pascal {
namespace {

// A script, the name it is given, and what FileName becomes, or "!line:column text" for an
// error whose message contains `text`.
struct Case {
    const char* source;
    const char* input;
    const char* expected;
};

Host testHost()
{
    Host host;
    host.variables = {{QStringLiteral("FileName"), kString, true}, {QStringLiteral("Initialized"), kBoolean, false}};
    return host;
}

// Runs the script once per input and gives the outputs, or the error as "!line:column message".
QStringList runRows(const QString& source, const QStringList& inputs, Limits limits = {})
{
    ScriptError error;
    const auto script = Script::compile(source, testHost(), &error);
    auto failure = [&] { return QStringList{QStringLiteral("!%1:%2 %3").arg(error.at.line).arg(error.at.column).arg(error.message)}; };
    if (!script)
        return failure();
    ScriptRun run(script, limits);
    QStringList outputs;
    for (const QString& input : inputs) {
        run.variable(0) = Value::string(input);
        run.variable(1) = Value::boolean(!outputs.isEmpty());
        if (!run.runOnce(&error))
            return failure();
        outputs.append(run.variable(0).s);
    }
    return outputs;
}

void check(const std::vector<Case>& cases, Limits limits = {})
{
    for (const Case& c : cases) {
        const QString got = runRows(QString::fromUtf8(c.source), {QString::fromUtf8(c.input)}, limits).join(u'|');
        const QString expected = QString::fromUtf8(c.expected);
        if (expected.startsWith(u'!')) {
            // "!2:15 text": the position exactly (when given), the message by a fragment.
            const bool positioned = expected.size() > 1 && expected[1].isDigit();
            const QString position = positioned ? expected.section(u' ', 0, 0) + u' ' : QStringLiteral("!");
            const QString text = positioned ? expected.section(u' ', 1) : expected.mid(1);
            EXPECT_TRUE(got.startsWith(position) && got.contains(text))
                << c.source << "\n  got: " << got.toStdString() << "\n  expected: " << c.expected;
        } else {
            EXPECT_EQ(got, expected) << c.source;
        }
    }
}

TEST(PascalScript, Expressions)
{
    check({
        {"FileName := FileName + '_' + IntToStr(2 * 3 + 4 div 3 - 7 mod 4);", "a", "a_4"},
        {"if not (1 > 2) and (3 >= 3) then FileName := 'yes';", "no", "yes"},
        // "and" stops at a false left side, so the empty array is never indexed.
        {"var a: array of String; begin if (Length(a) > 0) and (a[0] = 'x') then FileName := 'bad' else FileName := 'ok'; end.", "", "ok"},
        {"FileName := FloatToStr(7 / 2) + ' ' + FloatToStr(1e20) + ' ' + IntToStr(Round(2.5)) + IntToStr(Round(3.5)) + IntToStr(Trunc(-2.7));", "", "3.5 1E20 24-2"},
        {"FileName := IntToStr(9223372036854775807 + 1) + IntToStr($FF shl 4) + IntToStr(-7 div 2);", "", "-92233720368547758084080-3"},
        {"FileName := FileName[1] + Chr(Ord('a') + 1) + #65'x'#$42 + IntToStr(Length('😀'));", "Zed", "ZbAxB2"},
        {"FileName[1] := 'X';", "abc", "Xbc"},
        {"var i: Integer; s: String; begin for i := 1 to Length(FileName) do if FileName[i] in ['0'..'9', '_'] then s := s + FileName[i]; FileName := s; end.", "a1_b2", "1_2"},
        {"case Length(FileName) of 1..3: FileName := 'short'; 4, 5: FileName := 'mid'; else FileName := 'long'; end;", "abcd", "mid"},
        {"case FileName of 'a': FileName := 'A'; 'b': FileName := 'B'; end;", "b", "B"},
        {"FileName := BoolToStr('abc' < 'abd', True) + BoolToStr(Integer('A') = 65, True) + Char(66);", "", "TrueTrueB"},
    });
}

TEST(PascalScript, ControlFlow)
{
    check({
        {"var i: Integer; s: String; begin i := 0; while True do begin Inc(i); if i > 5 then Break; if Odd(i) then Continue; s := s + IntToStr(i); end; FileName := s; end.", "", "24"},
        {"var i: Integer; begin i := 3; repeat FileName := FileName + '.'; Dec(i); until i = 0; end.", "x", "x..."},
        {"var i: Integer; s: String; begin for i := 3 downto 1 do s := s + IntToStr(i); for i := 2 to 1 do s := 'never'; FileName := s; end.", "", "321"},
        {"var c: Char; s: String; begin for c := 'a' to 'e' do s := s + c; FileName := s; end.", "", "abcde"},
        {"FileName := 'a'; Exit; FileName := 'b';", "", "a"},
        {"BEGIN { a comment } filename := UPPERCASE(FileName); (* another *) // to the end\nEND.", "ab.txt", "AB.TXT"},
        {"program P; uses SysUtils; begin FileName := 'ok' end.", "", "ok"},
    });
}

TEST(PascalScript, ProceduresAndTypes)
{
    check({
        {"function Fact(n: Integer): Int64; begin if n <= 1 then Result := 1 else Result := n * Fact(n - 1); end;\n"
         "begin FileName := IntToStr(Fact(10)); end.", "", "3628800"},
        {"function Twice(s: String): String; begin Twice := s + s; end; begin FileName := Twice(FileName); end.", "ab", "abab"},
        {"procedure AddTo(var s: String; const t: String); begin s := s + t; end; begin AddTo(FileName, '!'); end.", "x", "x!"},
        {"function IsEven(n: Integer): Boolean; forward;\n"
         "function IsOdd(n: Integer): Boolean; begin if n = 0 then Result := False else Result := IsEven(n - 1); end;\n"
         "function IsEven; begin if n = 0 then Result := True else Result := IsOdd(n - 1); end;\n"
         "begin FileName := BoolToStr(IsEven(10), True); end.", "", "True"},
        {"function F(x: Integer): String; begin if x > 0 then Exit('pos'); Result := 'non'; end; begin FileName := F(1) + F(0); end.", "", "posnon"},
        {"type TList = array of String; const Sep = '-'; var a: TList; i: Integer;\n"
         "begin SetLength(a, 3); for i := 0 to High(a) do a[i] := IntToStr(i * i); FileName := a[0] + Sep + a[1] + Sep + a[2]; end.", "", "0-1-4"},
        // Dynamic arrays are shared, as in Delphi, until SetLength gives one its own copy.
        {"var a, b: array of Integer; begin SetLength(a, 1); b := a; b[0] := 7; SetLength(b, 2); b[0] := 9; FileName := IntToStr(a[0]) + IntToStr(b[0]); end.", "", "79"},
    });
}

TEST(PascalScript, BuiltIns)
{
    check({
        {"var s: String; begin s := FileName; Delete(s, 1, 4); Insert('[', s, 1); FileName := s + Copy('abcdef', 2, 3) + IntToStr(Pos('c', 'abc')) + Copy('ab', 5); end.", "IMG_001", "[001bcd3"},
        {"FileName := StringReplace(Trim('  a-b-A  '), 'a', 'x', [rfReplaceAll, rfIgnoreCase]) + StringReplace('a-a', 'a', 'x', []);", "", "x-b-xx-a"},
        {"FileName := UpperCase('é中a') + LowerCase('ÉA') + WideUpperCase('b');", "", "é中AÉaB"},
        {"FileName := Format('%s_%3d_%.2f_%x_%-3s|%.3d%%', ['a', 7, 3.14159, 255, 'b', 7]);", "", "a_  7_3.14_FF_b  |007%"},
        {"FileName := ExtractFileExt('/a/b.c.txt') + '|' + ExtractFileName('/a/b.txt') + '|' + ExtractFilePath('/a/b.txt') + '|' + ChangeFileExt('b.txt', '.md') + '|' + WideExtractBaseName('/a.d/b.tar.gz') + ExtractFileExt('/a.d/b');", "", ".txt|b.txt|/a/|b.md|b.tar"},
        {"FileName := IntToHex(255, 4) + IntToStr(StrToIntDef('x', -1)) + IntToStr(StrToInt(' 42 ')) + IntToStr(Max(3, 9)) + FloatToStr(Max(1, 2.5));", "", "00FF-14292.5"},
        {"FileName := FormatDateTime('yyyy-mm-dd hh:nn:ss \"at\" h:m', EncodeDate(2024, 5, 1) + EncodeTime(9, 5, 15, 0));", "", "2024-05-01 09:05:15 at 9:5"},
        {"FileName := BoolToStr(SameText('ABC', 'abc'), True) + IntToStr(Ord(CompareText('a', 'B') < 0)) + ReverseString('ab😀');", "", "True1😀ba"},
    });
}

TEST(PascalScript, CompileErrorsNameTheirPlace)
{
    std::string chain = "FileName := FileName";
    for (int i = 0; i < 300; ++i)
        chain += " + FileName";
    check({
        {"begin\n  FileName := Foo;\nend.", "", "!2:15 未知的名称“Foo”"},
        {"begin FileName := 1; end.", "", "!1:19 类型不匹配"},
        {"begin\n  FileName := 'a'\n  FileName := 'b';\nend.", "", "!3:3 此处应为“;”或“end”"},
        {"FileName := 'abc;", "", "!1:13 字符串没有结束"},
        {"{ not closed", "", "!1:1 注释没有结束"},
        {"Break;", "", "!1:1 Break 只能用在循环中"},
        {"Initialized := True;", "", "!1:1 “Initialized”是只读的"},
        {"var a: Integer; A: String; begin end.", "", "!1:17 重复定义"},
        {"var FileName: String; begin end.", "", "!1:5 重复定义"},
        {"FileName := Copy(FileName);", "", "!1:13 参数个数或类型不对"},
        {"Delete('abc', 1, 1);", "", "!1:1 参数个数或类型不对"},
        {"if FileName then FileName := '';", "", "!1:4 条件必须是 Boolean"},
        {"var a: array[0..3] of String; begin end.", "", "!1:13 不支持定长数组"},
        {"function F: Integer; forward; begin end.", "", "!1:10 forward"},
        {chain.c_str(), "", "!表达式过于复杂"},
    });
    const QString deep = QStringLiteral("FileName := ") + QString(200, u'(') + QStringLiteral("'a'") + QString(200, u')') + u';';
    EXPECT_TRUE(runRows(deep, {QString()}).constFirst().contains(QStringLiteral("嵌套层数过多")));
}

TEST(PascalScript, RunTimeErrorsAndLimits)
{
    Limits limits;
    limits.operationsPerRow = 200'000;
    check({
        {"var z: Integer; begin FileName := IntToStr(1 div z); end.", "", "!1:46 除数为零"},
        {"FileName := FileName[10];", "ab", "!1:21 字符串下标 10 超出范围（长度 2）"},
        {"var a: array of String; begin SetLength(a, 2); a[2] := 'x'; end.", "", "!1:49 数组下标 2 超出范围"},
        {"FileName := IntToStr(StrToInt('12a'));", "", "!1:22 不是有效的整数"},
        {"while True do ;", "", "!1:1 运算次数超过上限"},
        {"procedure R; begin R; end; begin R; end.", "", "!1:20 递归层数过多"},
        {"FileName := FormatDateTime('yyyy', EncodeDate(2024, 2, 30));", "", "!1:36 日期无效"},
    }, limits);
    check({{"var s: String; begin s := 'x'; while True do s := s + s; end.", "", "!1:53 字符串过长"}});
    // What the globals keep from row to row is bounded too.
    const QStringList grown = runRows("var a: array of String; i: Integer; begin SetLength(a, Length(a) + 4000);\n"
                                      "for i := Length(a) - 4000 to High(a) do a[i] := StringOfChar('x', 4000); end.",
                                      {"", "", ""});
    EXPECT_TRUE(grown.constFirst().contains("内存过多")) << grown.join(u'|').toStdString();
    Limits quick;
    quick.timeLimitMs = 50;
    quick.operationsPerRow = std::numeric_limits<qint64>::max() / 2;
    check({{"while True do ;", "", "!1:1 时间上限"}}, quick);
}

TEST(PascalScript, GlobalsLastFromRowToRow)
{
    const QStringList rows{"a", "b", "c"};
    EXPECT_EQ(runRows("var n: Integer; begin if not Initialized then n := 100; Inc(n); FileName := IntToStr(n) + FileName; end.", rows),
              QStringList({"101a", "102b", "103c"}));
    EXPECT_EQ(runRows("var n: Integer = 5; s: String; begin Inc(n); s := s + FileName; FileName := IntToStr(n) + s; end.", rows),
              QStringList({"6a", "7ab", "8abc"}));
    // After an error the run is spent: the following rows are not run.
    const QStringList failed = runRows("if FileName = 'b' then FileName := FileName[9];", rows);
    EXPECT_TRUE(failed.constFirst().startsWith(QStringLiteral("!1:"))) << failed.join(u'|').toStdString();
}

}  // namespace
}  // namespace qp::pascal
