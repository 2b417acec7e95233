#include "platform/win32/windows_dark_mode.h"

#include <cstddef>
#include <cstring>
#include <span>

#include "platform/loaded_image.h"

namespace corvina {
namespace {

using ThemeHandle = HANDLE;
using OpenThemeFunction = ThemeHandle(WINAPI*)(HWND, LPCWSTR);

// What SetWindowCompositionAttribute takes.
struct CompositionAttribute {
    DWORD Attribute;
    void* Data;
    SIZE_T Size;
};

HWND Handle(NativeWindow window) {
    return static_cast<HWND>(window);
}

template <typename Function>
Function FunctionOf(HMODULE library, const char* name) {
    return library == nullptr ? nullptr
                              : reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

template <typename Function>
Function FunctionOf(HMODULE library, ThemeFunction function) {
    return FunctionOf<Function>(library, MAKEINTRESOURCEA(static_cast<WORD>(function)));
}

template <typename Function>
Function FunctionOf(const std::optional<SystemLibrary>& library, ThemeFunction function) {
    return library ? FunctionOf<Function>(library->Get(), function) : nullptr;
}

using SetCompositionFunction = BOOL(WINAPI*)(HWND, CompositionAttribute*);

SetCompositionFunction FindSetComposition() {
    return FunctionOf<SetCompositionFunction>(GetModuleHandleW(L"user32.dll"), "SetWindowCompositionAttribute");
}

// Stands in the controls library's slot for the theme library's function. Scroll bars of list views and trees ask for
// the class "ScrollBar" of their window, which is light; the one of the shell without a window follows the dark mode.
// It has no place for an object, so it looks its counterpart up at each call; scroll bars open themes rarely.
ThemeHandle WINAPI OpenScrollBarTheme(HWND window, LPCWSTR classes) {
    const auto open =
        FunctionOf<OpenThemeFunction>(GetModuleHandleW(L"uxtheme.dll"), ThemeFunction::OpenNonClientThemeData);
    if (open == nullptr) {
        return nullptr;
    }
    if (classes != nullptr && std::wcscmp(classes, L"ScrollBar") == 0) {
        return open(nullptr, L"Explorer::ScrollBar");
    }
    return open(window, classes);
}

// The bytes of a library as it is mapped; none when its header does not say how many.
std::span<const std::byte> ImageOf(HMODULE library) {
    const auto* begin = reinterpret_cast<const std::byte*>(library);
    const auto* dosHeader = reinterpret_cast<const IMAGE_DOS_HEADER*>(begin);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(begin + dosHeader->e_lfanew);
    return {begin, headers->OptionalHeader.SizeOfImage};
}

}  // namespace

void WindowsDarkMode::LoadThemeFunctions() {
    if (!theme_) {
        theme_.emplace(L"uxtheme.dll");
    }
}

bool WindowsDarkMode::Has(ThemeFunction function) const {
    return FunctionOf<FARPROC>(theme_, function) != nullptr;
}

bool WindowsDarkMode::HasCompositionAttribute() const {
    return FindSetComposition() != nullptr;
}

void WindowsDarkMode::RefreshColorPolicy() {
    FunctionOf<void(WINAPI*)()>(theme_, ThemeFunction::RefreshColorPolicy)();
}

bool WindowsDarkMode::RefreshHighContrast() {
    constexpr int Refresh = 1;  // 0 would give the state that was cached
    using Function = bool(WINAPI*)(int);
    return FunctionOf<Function>(theme_, ThemeFunction::IsHighContrastInUse)(Refresh);
}

bool WindowsDarkMode::ShouldAppsUseDarkMode() const {
    return FunctionOf<bool(WINAPI*)()>(theme_, ThemeFunction::ShouldAppsUseDarkMode)();
}

void WindowsDarkMode::AllowDarkModeForWindow(NativeWindow window, bool allow) {
    using Function = bool(WINAPI*)(HWND, bool);
    FunctionOf<Function>(theme_, ThemeFunction::AllowDarkModeForWindow)(Handle(window), allow);
}

bool WindowsDarkMode::IsDarkModeAllowedForWindow(NativeWindow window) const {
    using Function = bool(WINAPI*)(HWND);
    return FunctionOf<Function>(theme_, ThemeFunction::IsDarkModeAllowedForWindow)(Handle(window));
}

void WindowsDarkMode::AllowDarkModeForApp(bool allow) {
    FunctionOf<bool(WINAPI*)(bool)>(theme_, ThemeFunction::SetAppMode)(allow);
}

void WindowsDarkMode::SetPreferredAppMode(int mode) {
    FunctionOf<int(WINAPI*)(int)>(theme_, ThemeFunction::SetAppMode)(mode);
}

void WindowsDarkMode::SetWindowProperty(NativeWindow window, const wchar_t* name, bool value) {
    SetPropW(Handle(window), name, reinterpret_cast<HANDLE>(static_cast<INT_PTR>(value ? 1 : 0)));
}

void WindowsDarkMode::SetCompositionAttribute(NativeWindow window, std::uint32_t attribute, bool value) {
    if (const auto set = FindSetComposition(); set != nullptr) {
        BOOL data = value ? TRUE : FALSE;
        CompositionAttribute argument{attribute, &data, sizeof(data)};
        set(Handle(window), &argument);
    }
}

void WindowsDarkMode::SetDwmAttribute(NativeWindow window, std::uint32_t attribute, std::uint32_t value) {
    if (!windowManager_) {
        windowManager_.emplace(L"dwmapi.dll");
    }
    using Function = HRESULT(WINAPI*)(HWND, DWORD, LPCVOID, DWORD);
    if (const auto set = windowManager_->Find<Function>("DwmSetWindowAttribute"); set != nullptr) {
        set(Handle(window), attribute, &value, sizeof(value));
    }
}

bool WindowsDarkMode::IsHighContrast() const {
    HIGHCONTRASTW state{};
    state.cbSize = sizeof(state);
    return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof(state), &state, 0) &&
           (state.dwFlags & HCF_HIGHCONTRASTON) != 0;
}

bool WindowsDarkMode::RedirectScrollBarThemes() {
    // By name and not by path: only then the manifest's version of the library is meant, the one that draws for us.
    const HMODULE controls = LoadLibraryExW(L"comctl32.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (controls == nullptr) {
        return false;
    }
    const auto offset = FindImportSlot(ImageOf(controls), "uxtheme.dll",
                                       static_cast<std::uint16_t>(ThemeFunction::OpenNonClientThemeData));
    if (!offset) {
        FreeLibrary(controls);
        return false;
    }
    // The library is not given back: it must not be unloaded and loaded anew without our function.
    auto* slot = reinterpret_cast<std::byte*>(controls) + *offset;
    const OpenThemeFunction replacement = &OpenScrollBarTheme;
    DWORD protection = 0;
    if (!VirtualProtect(slot, sizeof(replacement), PAGE_READWRITE, &protection)) {
        return false;
    }
    std::memcpy(slot, &replacement, sizeof(replacement));
    VirtualProtect(slot, sizeof(replacement), protection, &protection);
    return true;
}

bool WindowsDarkMode::EqualIgnoringCase(std::wstring_view left, std::wstring_view right) const {
    using Function = int(WINAPI*)(LPCWCH, int, LPCWCH, int, BOOL);
    const auto compare = FunctionOf<Function>(GetModuleHandleW(L"kernel32.dll"), "CompareStringOrdinal");
    return compare != nullptr && compare(left.data(), static_cast<int>(left.size()), right.data(),
                                         static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

}  // namespace corvina
