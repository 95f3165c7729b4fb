#include "platform/ShellMenu.h"

#ifdef _WIN32

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#include <knownfolders.h>
#include <objbase.h>
#include <shlobj.h>
#include <shobjidl.h>

#include "platform/Win32Errors.h"

namespace qp::platform {

namespace {

const std::wstring kClasses = L"Software\\Classes\\";

// Where the verbs go: the class's shell key, the argument Explorer fills in, and whether
// several chosen objects each start the program (a folder's background is one object).
struct Place {
    const wchar_t* shellKey;
    const wchar_t* argument;
    bool multiSelect;
};
constexpr Place kPlaces[] = {
    {L"*\\shell\\", L"%1", true},
    {L"Directory\\shell\\", L"%1", true},
    {L"Directory\\Background\\shell\\", L"%V", false},
};
// Keys the verbs may have brought into being, deepest first: removed when left empty.
constexpr const wchar_t* kParents[] = {
    L"*\\shell", L"*", L"Directory\\Background\\shell", L"Directory\\Background", L"Directory\\shell", L"Directory",
};

std::wstring wide(std::u16string_view text) { return std::wstring(text.begin(), text.end()); }

std::wstring windowsPath(const Path& path)
{
    std::wstring out = wide(path);
    for (wchar_t& c : out) {
        if (c == L'/') c = L'\\';
    }
    return out;
}

std::u16string shown(const std::wstring& text) { return std::u16string(text.begin(), text.end()); }

LSTATUS setString(HKEY key, const wchar_t* name, const std::wstring& value)
{
    return RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                          static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

class Key {
public:
    Key(HKEY parent, const std::wstring& path)
    {
        m_status = RegCreateKeyExW(parent, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &m_key, nullptr);
    }
    ~Key()
    {
        if (m_status == ERROR_SUCCESS) RegCloseKey(m_key);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    LSTATUS status() const { return m_status; }
    HKEY get() const { return m_key; }

private:
    HKEY m_key = nullptr;
    LSTATUS m_status = ERROR_INVALID_HANDLE;
};

LSTATUS writeVerb(const std::wstring& keyPath, const ShellVerb& verb, const Place& place)
{
    const std::wstring program = L"\"" + windowsPath(verb.program) + L"\"";
    Key key(HKEY_CURRENT_USER, keyPath);
    if (key.status() != ERROR_SUCCESS) return key.status();
    LSTATUS status = setString(key.get(), nullptr, wide(verb.caption));
    if (status == ERROR_SUCCESS) status = setString(key.get(), L"MUIVerb", wide(verb.caption));
    if (status == ERROR_SUCCESS) status = setString(key.get(), L"Icon", program + L",0");
    if (status == ERROR_SUCCESS && place.multiSelect) status = setString(key.get(), L"MultiSelectModel", L"Player");
    if (status != ERROR_SUCCESS) return status;
    Key command(key.get(), L"command");
    if (command.status() != ERROR_SUCCESS) return command.status();
    return setString(command.get(), nullptr, program + L" \"" + place.argument + L"\"");
}

void deleteIfEmpty(const std::wstring& keyPath)
{
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, keyPath.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return;
    DWORD subkeys = 0, values = 0;
    const LSTATUS status =
        RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr, &values, nullptr, nullptr, nullptr, nullptr);
    RegCloseKey(key);
    if (status == ERROR_SUCCESS && subkeys == 0 && values == 0) RegDeleteKeyW(HKEY_CURRENT_USER, keyPath.c_str());
}

// The shortcut's full path in the user's SendTo folder (created when missing); empty when
// the folder cannot be found.
std::wstring sendToShortcut(const ShellVerb& verb)
{
    wchar_t* folder = nullptr;
    std::wstring path;
    if (SUCCEEDED(SHGetKnownFolderPath(FOLDERID_SendTo, KF_FLAG_CREATE, nullptr, &folder)))
        path = std::wstring(folder) + L"\\" + wide(verb.sendToName) + L".lnk";
    CoTaskMemFree(folder);
    return path;
}

// COM for the calling thread for one scope, left as it was found.
class ComScope {
public:
    ComScope() : m_result(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE)) {}
    ~ComScope()
    {
        if (SUCCEEDED(m_result)) CoUninitialize();
    }
    ComScope(const ComScope&) = delete;
    ComScope& operator=(const ComScope&) = delete;

private:
    HRESULT m_result;
};

HRESULT writeShortcut(const std::wstring& file, const ShellVerb& verb)
{
    const ComScope com;
    IShellLinkW* link = nullptr;
    HRESULT result = CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                      reinterpret_cast<void**>(&link));
    if (FAILED(result)) return result;
    const std::wstring program = windowsPath(verb.program);
    link->SetPath(program.c_str());
    link->SetIconLocation(program.c_str(), 0);
    link->SetDescription(wide(verb.caption).c_str());
    IPersistFile* persist = nullptr;
    result = link->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(&persist));
    if (SUCCEEDED(result)) {
        result = persist->Save(file.c_str(), TRUE);
        persist->Release();
    }
    link->Release();
    return result;
}

void fail(ShellResult& result, const std::wstring& what, unsigned long error)
{
    result.status = ShellStatus::Failed;
    if (!result.message.empty()) result.message += "\n";
    result.message += toUtf8(shown(what)) + ": " + errorText(error);
}

}  // namespace

ShellResult registerShellVerbs(const ShellVerb& verb)
{
    ShellResult result;
    result.status = ShellStatus::Ok;
    for (const Place& place : kPlaces) {
        const std::wstring keyPath = kClasses + place.shellKey + wide(verb.key);
        const LSTATUS status = writeVerb(keyPath, verb, place);
        if (status != ERROR_SUCCESS) fail(result, L"HKEY_CURRENT_USER\\" + keyPath, static_cast<unsigned long>(status));
        else result.done.push_back(shown(L"HKEY_CURRENT_USER\\" + keyPath));
    }
    const std::wstring shortcut = sendToShortcut(verb);
    const HRESULT written = shortcut.empty() ? E_FAIL : writeShortcut(shortcut, verb);
    if (FAILED(written)) fail(result, shortcut.empty() ? std::wstring(L"SendTo") : shortcut, static_cast<unsigned long>(written));
    else result.done.push_back(shown(shortcut));
    SHChangeNotify(SHCNE_ASSOCCHANGED, SHCNF_IDLIST, nullptr, nullptr);
    return result;
}

ShellResult unregisterShellVerbs(const ShellVerb& verb)
{
    ShellResult result;
    result.status = ShellStatus::Ok;
    for (const Place& place : kPlaces) {
        const std::wstring keyPath = kClasses + place.shellKey + wide(verb.key);
        const LSTATUS status = RegDeleteTreeW(HKEY_CURRENT_USER, keyPath.c_str());
        if (status == ERROR_SUCCESS) result.done.push_back(shown(L"HKEY_CURRENT_USER\\" + keyPath));
        else if (status != ERROR_FILE_NOT_FOUND) fail(result, L"HKEY_CURRENT_USER\\" + keyPath, static_cast<unsigned long>(status));
    }
    for (const wchar_t* parent : kParents) deleteIfEmpty(kClasses + parent);
    const std::wstring shortcut = sendToShortcut(verb);
    if (!shortcut.empty() && GetFileAttributesW(shortcut.c_str()) != INVALID_FILE_ATTRIBUTES) {
        if (DeleteFileW(shortcut.c_str())) result.done.push_back(shown(shortcut));
        else fail(result, shortcut, GetLastError());
    }
    SHChangeNotify(SHCNE_ASSOCCHANGED, SHCNF_IDLIST, nullptr, nullptr);
    return result;
}

}  // namespace qp::platform

#else

namespace qp::platform {

ShellResult registerShellVerbs(const ShellVerb&) { return {}; }
ShellResult unregisterShellVerbs(const ShellVerb&) { return {}; }

}  // namespace qp::platform

#endif  // _WIN32
