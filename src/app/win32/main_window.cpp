#include "app/win32/main_window.h"

#include <objbase.h>

#include <algorithm>
#include <utility>

#include "app/command_ids.h"
#include "resource_ids.h"
#include "ui/win32/control_colors.h"
#include "ui/win32/layout_direction.h"
#include "ui/win32/popup_menu.h"
#include "ui/win32/window_text.h"

namespace corvina {
namespace {

// The window's own messages: a selection that waits until the control's notification has returned.
constexpr UINT TreeSelectionMessage = WM_APP + 1;
constexpr UINT RowSelectionMessage = WM_APP + 2;

constexpr SIZE SmallestWindow = {320, 240};  // at 96 dots per inch

}  // namespace

MainWindow::MainWindow(MainWindowArguments arguments)
    : arguments_(std::move(arguments)),
      tree_([this](NodeId node) { application_->TreeSelectionChanged(node); }),
      list_(*this),
      eventWindow_([this] { return SurroundingsOfDetails(); }),
      verticalBar_(ui::SplitterDirection::Vertical, [this](int edge) { DragVertical(edge); }),
      horizontalBar_(ui::SplitterDirection::Horizontal, [this](int edge) { DragHorizontal(edge); }),
      toolTip_([this](POINT place) { return ToolTipTextAt(place); }),
      menuBar_([this](std::uint32_t menu) { return application_->Menu(menu); }) {}

MainWindow::~MainWindow() {
    DestroyHandle();
    if (comIsReady_) {
        CoUninitialize();
    }
}

bool MainWindow::RegisterOwnClass(HINSTANCE instance, const std::wstring& className) {
    WNDCLASSEXW description{};
    description.style = CS_HREDRAW | CS_VREDRAW;
    description.hInstance = instance;
    description.lpszClassName = className.c_str();
    description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    description.hIcon = LoadIconW(instance, MAKEINTRESOURCEW(CORVINA_ICON_PROGRAM));
    description.hIconSm =
        static_cast<HICON>(LoadImageW(instance, MAKEINTRESOURCEW(CORVINA_ICON_PROGRAM_SMALL), IMAGE_ICON,
                                      GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON), LR_SHARED));
    return RegisterWindowClass(description);
}

bool MainWindow::Create(const std::wstring& className, const std::wstring& title) {
    return CreateHandle({.ClassName = className,
                         .Title = title,
                         .Style = WS_OVERLAPPEDWINDOW,
                         .DefaultPlace = true,
                         .Instance = arguments_.Instance});
}

LRESULT MainWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CREATE:
            OnCreate();
            return 0;
        case WM_CLOSE:
            OnClose();
            return 0;
        case WM_ENDSESSION:
            if (wParam != FALSE && application_ != nullptr) {
                application_->Close();
            }
            return 0;
        case WM_SIZE:
            Layout();
            return 0;
        case WM_GETMINMAXINFO:
            reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {
                scale_.Pixels(static_cast<int>(SmallestWindow.cx)), scale_.Pixels(static_cast<int>(SmallestWindow.cy))};
            return 0;
        case WM_GETFONT:  // the windows over this one are written like it
            return reinterpret_cast<LRESULT>(font_.get());
        case WM_DPICHANGED:
            OnScaleChanged(ui::Scale(LOWORD(wParam)), *reinterpret_cast<const RECT*>(lParam));
            return 0;
        case WM_SETTINGCHANGE:
            OnSettingChange(reinterpret_cast<const wchar_t*>(lParam));
            return Window::HandleMessage(message, wParam, lParam);
        case WM_ACTIVATE:
            if (LOWORD(wParam) == WA_INACTIVE) {
                lastStation_ = FocusedStation().value_or(lastStation_);
            }
            return Window::HandleMessage(message, wParam, lParam);
        case WM_SETFOCUS:
            Focus(lastStation_);
            return 0;
        case WM_NOTIFY:
            return OnNotify(*reinterpret_cast<const NMHDR*>(lParam), lParam);
        case WM_COMMAND:
            if (LOWORD(wParam) == IDOK && GetFocus() == list_.Handle()) {
                RowActivated();  // Enter, which never reaches a list
            } else if (lParam == 0 && application_ != nullptr) {
                application_->Command(LOWORD(wParam));
            }
            return 0;
        case WM_CONTEXTMENU:
            OnContextMenu(reinterpret_cast<HWND>(wParam),
                          {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))});
            return 0;
        case WM_INITMENUPOPUP:
            if (menuBar_.PopupOpens(reinterpret_cast<HMENU>(wParam))) {
                menus_.Prepare(reinterpret_cast<HMENU>(wParam), false);
            }
            return 0;
        case WM_NCPAINT:
        case WM_NCACTIVATE: {
            const LRESULT answer = Window::HandleMessage(message, wParam, lParam);
            menus_.FillBar(Handle());
            return answer;
        }
        case WM_MEASUREITEM:
            return menus_.Measure(Handle(), *reinterpret_cast<MEASUREITEMSTRUCT*>(lParam)) ? TRUE : FALSE;
        case WM_DRAWITEM:
            return menus_.Draw(Handle(), *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam)) ? TRUE : FALSE;
        case WM_MENUCHAR:
            return menus_.CharacterTyped(reinterpret_cast<HMENU>(lParam), static_cast<wchar_t>(LOWORD(wParam)));
        case WM_CTLCOLORSTATIC:
        case WM_CTLCOLOREDIT:
            return OnTextColors(reinterpret_cast<HDC>(wParam), reinterpret_cast<HWND>(lParam));
        case WM_ERASEBKGND:
            OnEraseBackground(reinterpret_cast<HDC>(wParam));
            return TRUE;
        case TreeSelectionMessage:
            tree_.DeliverSelection();
            return 0;
        case RowSelectionMessage:
            list_.DeliverSelection();
            return 0;
        default:
            return Window::HandleMessage(message, wParam, lParam);
    }
}

void MainWindow::OnCreate() {
    // The children cover the client area, so painting below them would only flicker.
    SetWindowLongPtrW(Handle(), GWL_STYLE, GetWindowLongPtrW(Handle(), GWL_STYLE) | WS_CLIPCHILDREN);
    scale_ = ui::Scale::Of(Handle());
    if (arguments_.Created) {
        arguments_.Created(Handle());
    }
    application_ = std::make_unique<Application>(arguments_.System, Views{*this, tree_, *this, details_, eventWindow_});
    application_->Create();
}

void MainWindow::OnClose() {
    if (application_ != nullptr) {
        application_->Close();
    }
    arguments_.EndProcess();
}

void MainWindow::OnSettingChange(const wchar_t* changed) {
    if (changed != nullptr && hasControls_ && application_->Scheme().SettingChanged(changed)) {
        UseColors();
    }
}

void MainWindow::CreateControls() {
    const HWND parent = Handle();
    const HINSTANCE instance = arguments_.Instance;
    UseScriptOfLanguage();
    hasControls_ = tree_.Create(parent, instance, TreeSelectionMessage);
    verticalBar_.Create(parent, instance);
    caption_ = CreateLabel(SS_LEFT);
    hasControls_ = list_.Create(parent, instance, RowSelectionMessage) && hasControls_;
    horizontalBar_.Create(parent, instance);
    hasControls_ = CreateDetails() && hasControls_;
    status_ = CreateLabel(SS_LEFT);
    version_ = CreateLabel(SS_RIGHT);
    ui::PaintEdge(tree_.Handle(), look_);
    ui::PaintEdge(list_.Handle(), look_);
    UseScale(scale_);
    UseColors();
    Layout();
}

bool MainWindow::CreateDetails() {
    const bool created = details_.Create(Handle(), arguments_.Instance);
    for (const DetailsField field :
         {DetailsField::LeftProperties, DetailsField::RightProperties, DetailsField::Description, DetailsField::Xml}) {
        ui::PaintEdge(details_.Field(field), look_);
    }
    return created;
}

void MainWindow::UseScriptOfLanguage() {
    const i18n::Language& language = application_->CurrentLanguage();
    look_.Face = ui::InterfaceFace(language.FontFaces());
    ui::SetMirrored(Handle(), language.ReadsRightToLeft());
}

HWND MainWindow::CreateLabel(DWORD style) {
    return CreateWindowExW(0, L"STATIC", L"",
                           WS_CHILD | WS_VISIBLE | SS_CENTERIMAGE | SS_ENDELLIPSIS | SS_NOPREFIX | style, 0, 0, 0, 0,
                           Handle(), nullptr, arguments_.Instance, nullptr);
}

LRESULT MainWindow::OnNotify(const NMHDR& notification, LPARAM lParam) {
    if (application_ == nullptr) {
        return 0;
    }
    if (notification.hwndFrom == list_.Handle()) {
        return list_.NotificationReceived(notification, lParam);
    }
    if (notification.hwndFrom == tree_.Handle()) {
        return tree_.NotificationReceived(notification, lParam);
    }
    if (notification.hwndFrom == toolTip_.Handle() && notification.code == TTN_GETDISPINFOW) {
        toolTip_.FillText(*reinterpret_cast<NMTTDISPINFOW*>(lParam));
    }
    return 0;
}

LRESULT MainWindow::OnTextColors(HDC device, HWND control) const {
    if (look_.Brushes == nullptr) {
        return 0;
    }
    const auto labels = Labels();
    const bool isLabel = std::ranges::find(labels, control) != labels.end();
    return isLabel
               ? look_.Brushes->PaintText(device, look_.Brushes->Colors().Panel, look_.Brushes->Panel())
               : look_.Brushes->PaintText(device, look_.Brushes->Colors().ControlBack, look_.Brushes->ControlBack());
}

void MainWindow::OnEraseBackground(HDC device) const {
    RECT area{};
    GetClientRect(Handle(), &area);
    if (look_.Brushes == nullptr) {
        FillRect(device, &area, GetSysColorBrush(COLOR_BTNFACE));
        return;
    }
    // Controls ask for this too, for what is behind their themed edges, and some versions then fill themselves with it.
    const HWND asking = WindowFromDC(device);
    const bool forControl = asking == tree_.Handle() || asking == list_.Handle() || details_.FieldOf(asking);
    FillRect(device, &area, forControl ? look_.Brushes->ControlBack() : look_.Brushes->Panel());
}

void MainWindow::OnScaleChanged(ui::Scale scale, const RECT& place) {
    const ui::Scale previous = scale_;
    splitters_ = {scale.Converted(splitters_.Vertical, previous), scale.Converted(splitters_.Horizontal, previous)};
    list_.ScaleColumns(previous, scale);
    UseScale(scale);
    SetWindowPos(Handle(), nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    Layout();
}

void MainWindow::UseScale(ui::Scale scale) {
    scale_ = scale;
    look_.Resolution = scale;
    ui::UniqueFont font = ui::CreateInterfaceFont(scale, look_.Face);
    const auto parameter = reinterpret_cast<WPARAM>(font.get());
    for (const HWND control : {tree_.Handle(), list_.Handle(), caption_, status_, version_}) {
        SendMessageW(control, WM_SETFONT, parameter, TRUE);
    }
    details_.SetFont(font.get(), scale);
    tree_.SetIcons(arguments_.Instance, scale);
    list_.SetIcons(arguments_.Instance, scale);
    // The controls draw with the old font until here.
    font_ = std::move(font);
}

void MainWindow::UseColors() {
    // The splitters draw with brushes of the old set until they get new ones.
    const auto previous = std::exchange(look_.Brushes, std::make_unique<ui::PaletteBrushes>(application_->Colors()));
    ui::ColorFrame(Handle(), application_->Scheme());
    ColorMenuBar();
    ui::ColorChildren(Handle(), look_, application_->Scheme(), styles_);
    tree_.SetColors(*look_.Brushes);
    list_.SetColors(*look_.Brushes);
    verticalBar_.SetBackground(look_.Brushes->Panel());
    horizontalBar_.SetBackground(look_.Brushes->Panel());
    RedrawWindow(Handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
}

void MainWindow::ColorMenuBar() {
    const HMENU bar = GetMenu(Handle());
    if (bar != nullptr && look_.Brushes != nullptr) {
        menus_.Prepare(bar, true);
        DrawMenuBar(Handle());
        menus_.FillBar(Handle());
    }
}

SIZE MainWindow::ClientSize() const {
    RECT area{};
    GetClientRect(Handle(), &area);
    return {area.right, area.bottom};
}

void MainWindow::Layout() {
    if (!hasControls_ || IsIconic(Handle())) {
        return;
    }
    const int versionWidth = static_cast<int>(ui::TextExtent(version_, font_.get(), ui::TextOf(version_)).cx) +
                             scale_.Pixels(2);  // shaped letters reach beyond their extent
    const MainLayout layout = ComputeMainLayout(ClientSize(), splitters_, versionWidth, scale_);
    const std::pair<HWND, RECT> places[] = {
        {tree_.Handle(), layout.Tree}, {verticalBar_.Handle(), layout.VerticalBar},     {caption_, layout.Caption},
        {list_.Handle(), layout.List}, {horizontalBar_.Handle(), layout.HorizontalBar}, {status_, layout.StatusText},
        {version_, layout.VersionText}};
    for (const auto& [window, place] : places) {
        SetWindowPos(window, nullptr, place.left, place.top, std::max<LONG>(place.right - place.left, 0),
                     std::max<LONG>(place.bottom - place.top, 0), SWP_NOZORDER | SWP_NOACTIVATE);
    }
    details_.Place(layout.Details, scale_);
    toolTip_.FitToParent();
}

void MainWindow::DragVertical(int edge) {
    splitters_.Vertical = AllowedSplitters(ClientSize(), {edge + 2, splitters_.Horizontal}, scale_).Vertical;
    Layout();
    UpdateWindow(Handle());
}

void MainWindow::DragHorizontal(int edge) {
    const int wanted = edge + 2 - ListTop(scale_);
    splitters_.Horizontal = AllowedSplitters(ClientSize(), {splitters_.Vertical, wanted}, scale_).Horizontal;
    Layout();
    UpdateWindow(Handle());
}

std::wstring MainWindow::ToolTipTextAt(POINT clientPlace) const {
    for (const HWND label : Labels()) {
        RECT area{};
        GetWindowRect(label, &area);
        MapWindowPoints(nullptr, Handle(), reinterpret_cast<POINT*>(&area), 2);
        if (!PtInRect(&area, clientPlace)) {
            continue;
        }
        const std::wstring text = ui::TextOf(label);
        return ui::TextExtent(label, font_.get(), text).cx > area.right - area.left ? text : std::wstring();
    }
    return {};
}

}  // namespace corvina
