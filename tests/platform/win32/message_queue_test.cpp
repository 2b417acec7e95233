#include <windows.h>

#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <thread>

#include "platform/win32/windows_message_pump.h"
#include "platform/win32/windows_prompts.h"

namespace corvina {
namespace {

// A window without a picture that counts what it is sent.
class CountingWindow {
  public:
    CountingWindow() {
        WNDCLASSW windowClass{};
        windowClass.lpfnWndProc = Handle;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.lpszClassName = L"CorvinaCountingWindow";
        RegisterClassW(&windowClass);
        Window = CreateWindowExW(0, windowClass.lpszClassName, L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                                 windowClass.hInstance, nullptr);
        SetWindowLongPtrW(Window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    }
    ~CountingWindow() {
        DestroyWindow(Window);
        UnregisterClassW(L"CorvinaCountingWindow", GetModuleHandleW(nullptr));
    }
    CountingWindow(const CountingWindow&) = delete;
    CountingWindow& operator=(const CountingWindow&) = delete;

    HWND Window = nullptr;
    int Handled = 0;
    int Characters = 0;

  private:
    static LRESULT CALLBACK Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        auto* self = reinterpret_cast<CountingWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (self != nullptr && message == WM_APP) {
            ++self->Handled;
            if (wParam > 0) {
                PostMessageW(window, WM_APP, wParam - 1, 0);
            }
        }
        if (self != nullptr && message == WM_CHAR) {
            ++self->Characters;
        }
        return DefWindowProcW(window, message, wParam, lParam);
    }
};

TEST(WindowsMessagePumpTest, EmptiesTheQueueAlsoOfWhatHandlersPost) {
    CountingWindow window;
    WindowsMessagePump pump;
    PostMessageW(window.Window, WM_APP, 3, 0);
    PostMessageW(window.Window, WM_KEYDOWN, 'A', 0x001E0001);
    pump.DispatchPending();
    EXPECT_EQ(window.Handled, 4);
    EXPECT_EQ(window.Characters, 1) << "keys are translated";
    pump.DispatchPending();
    EXPECT_EQ(window.Handled, 4);
}

TEST(WindowsMessagePumpTest, LeavesTheQuitMessageToTheMainLoop) {
    CountingWindow window;
    WindowsMessagePump pump;
    PostMessageW(window.Window, WM_APP, 0, 0);
    PostQuitMessage(7);
    pump.DispatchPending();
    pump.DispatchPending();
    EXPECT_EQ(window.Handled, 1);
    MSG message{};
    EXPECT_EQ(GetMessageW(&message, nullptr, 0, 0), 0);
    EXPECT_EQ(message.wParam, 7u);
}

// Waits for a box with the given title, notes whether it stays above all windows, and presses one of its buttons.
class BoxAnswerer {
  public:
    BoxAnswerer(const wchar_t* title, int button)
        : thread_([this, title, button] {
              for (int attempt = 0; attempt < 200 && !Found; ++attempt) {
                  Sleep(50);
                  const HWND box = FindWindowW(nullptr, title);
                  if (box != nullptr && IsWindowVisible(box)) {
                      Found = true;
                      Topmost = (GetWindowLongPtrW(box, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
                      SendMessageW(box, WM_COMMAND, static_cast<WPARAM>(button), 0);
                  }
              }
          }) {}
    ~BoxAnswerer() { Wait(); }
    BoxAnswerer(const BoxAnswerer&) = delete;
    BoxAnswerer& operator=(const BoxAnswerer&) = delete;

    void Wait() {
        if (thread_.joinable()) {
            thread_.join();
        }
    }

    std::atomic<bool> Found = false;
    std::atomic<bool> Topmost = false;

  private:
    std::thread thread_;
};

TEST(WindowsPromptsTest, BoxesReportTheAnswer) {
    WindowsPrompts prompts;
    {
        BoxAnswerer yes(L"Corvina question", IDYES);
        EXPECT_TRUE(prompts.AskYesNo(L"Restart now?", L"Corvina question"));
    }
    {
        BoxAnswerer no(L"Corvina question", IDNO);
        EXPECT_FALSE(prompts.AskYesNo(L"Restart now?", L"Corvina question"));
    }
}

TEST(WindowsPromptsTest, OnlyInformationIsModalToTheSystem) {
    WindowsPrompts prompts;
    BoxAnswerer information(L"Corvina information", IDOK);
    prompts.ShowInformation(L"File not found.", L"Corvina information");
    information.Wait();
    EXPECT_TRUE(information.Topmost);
    BoxAnswerer error(L"Corvina error", IDOK);
    prompts.ShowError(L"Access is denied.", L"Corvina error");
    error.Wait();
    EXPECT_TRUE(error.Found);
    EXPECT_FALSE(error.Topmost);
}

TEST(ChooserFilterTest, SeparatesWithZerosAndAlwaysEnds) {
    EXPECT_EQ(ChooserFilter(L"Log (*.evtx)|*.evtx|All|* .*||").substr(0, 28),
              std::wstring_view(L"Log (*.evtx)\0*.evtx\0All\0* .*", 28));
    for (const wchar_t* filter : {L"Log|*.evtx||", L"Log|*.evtx", L"Log|*.evtx|", L"", L"|"}) {
        const std::wstring text = ChooserFilter(filter);
        EXPECT_TRUE(text.ends_with(std::wstring_view(L"\0\0", 2)));
        EXPECT_EQ(text.find(L'|'), std::wstring::npos);
    }
}

}  // namespace
}  // namespace corvina
