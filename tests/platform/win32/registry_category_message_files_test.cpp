#include "platform/win32/registry_category_message_files.h"

#include <windows.h>

#include <filesystem>
#include <gtest/gtest.h>

namespace corvina {
namespace {

constexpr wchar_t LogPath[] = L"SYSTEM\\CurrentControlSet\\Services\\EventLog\\CorvinaTest";

class CategoryMessageFilesTest : public testing::Test {
  protected:
    void SetUp() override {
        if (RegCreateKeyExW(HKEY_LOCAL_MACHINE, LogPath, 0, nullptr, 0, KEY_ALL_ACCESS | KEY_WOW64_64KEY, nullptr,
                            &log_, nullptr) != ERROR_SUCCESS) {
            GTEST_SKIP() << "the registry's machine part cannot be written by this user";
        }
    }
    void TearDown() override {
        if (log_ != nullptr) {
            RegDeleteTreeW(log_, nullptr);
            RegCloseKey(log_);
            RegDeleteKeyExW(HKEY_LOCAL_MACHINE, LogPath, KEY_WOW64_64KEY, 0);
        }
    }

    // Stores characters as they are given, with or without a closing zero.
    void Register(const wchar_t* source, DWORD type, std::wstring_view value) {
        HKEY key = nullptr;
        ASSERT_EQ(RegCreateKeyExW(log_, source, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr), ERROR_SUCCESS);
        ASSERT_EQ(RegSetValueExW(key, L"CategoryMessageFile", 0, type, reinterpret_cast<const BYTE*>(value.data()),
                                 static_cast<DWORD>(value.size() * sizeof(wchar_t))),
                  ERROR_SUCCESS);
        RegCloseKey(key);
    }

    std::wstring FilesOf(const wchar_t* source) {
        return files_.CategoryMessageFileList(L"CorvinaTest", source).value_or(L"none");
    }

    HKEY log_ = nullptr;
    RegistryCategoryMessageFiles files_;
};

TEST_F(CategoryMessageFilesTest, FindsAndExpandsWhatASourceRegisters) {
    wchar_t windowsFolder[MAX_PATH] = {};
    GetWindowsDirectoryW(windowsFolder, MAX_PATH);
    Register(L"Expanded", REG_EXPAND_SZ, std::wstring_view(L"%SystemRoot%\\one.dll;two.dll\0", 29));
    Register(L"Plain", REG_SZ, L"%SystemRoot%\\one.dll");  // expanded as well, and stored without its zero
    Register(L"Full", REG_SZ, std::wstring(260, L'x'));
    EXPECT_TRUE(files_.HasCategoryMessageFile(L"CorvinaTest", L"Expanded"));
    EXPECT_EQ(FilesOf(L"Expanded"), windowsFolder + std::wstring(L"\\one.dll;two.dll"));
    EXPECT_EQ(FilesOf(L"Plain"), windowsFolder + std::wstring(L"\\one.dll"));
}

TEST_F(CategoryMessageFilesTest, RefusesWhatDoesNotFit) {
    Register(L"Long", REG_SZ, std::wstring(261, L'x'));
    Register(L"Grows", REG_EXPAND_SZ, std::wstring(250, L'x') + L"%SystemRoot%");
    Register(L"Number", REG_DWORD, std::wstring_view(L"\1\0", 2));
    EXPECT_TRUE(files_.HasCategoryMessageFile(L"CorvinaTest", L"Long"));
    EXPECT_EQ(FilesOf(L"Long"), L"none");
    EXPECT_EQ(FilesOf(L"Grows"), L"none");
    EXPECT_EQ(FilesOf(L"Number"), L"none");
    EXPECT_FALSE(files_.HasCategoryMessageFile(L"CorvinaTest", L"Missing"));
    EXPECT_EQ(FilesOf(L"Missing"), L"none");
    EXPECT_FALSE(files_.HasCategoryMessageFile(std::wstring(300, L'y'), L"Source"));
}

TEST_F(CategoryMessageFilesTest, AnEmptyNameDoesNotMeanTheKeyAbove) {
    RegSetValueExW(log_, L"CategoryMessageFile", 0, REG_SZ, reinterpret_cast<const BYTE*>(L"x"), 4);
    EXPECT_FALSE(files_.HasCategoryMessageFile(L"CorvinaTest", L""));
    EXPECT_FALSE(files_.HasCategoryMessageFile(L"", L"CorvinaTest"));
}

TEST_F(CategoryMessageFilesTest, ReadsMessagesAsData) {
    wchar_t program[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, program, MAX_PATH - 1);
    const std::wstring file = std::filesystem::path(program).replace_filename(L"impostor.dll").wstring();
    std::wstring text = files_.MessageFromFile(file, 12);
    text.erase(text.find_last_not_of(L" \r\n") + 1);
    EXPECT_EQ(text, L"Logon of %1 or later") << "line breaks of the file become blanks, marks stay";
    EXPECT_EQ(files_.MessageFromFile(file, 13), L"");
    EXPECT_EQ(GetModuleHandleW(L"impostor.dll"), nullptr) << "nothing stays loaded";
    EXPECT_EQ(files_.MessageFromFile(L"impostor.dll", 12), L"") << "not taken from the program's folder";
    EXPECT_EQ(files_.MessageFromFile(L"Z:\\no such folder\\messages.dll", 1), L"");
    EXPECT_EQ(files_.MessageFromFile(L"", 1), L"");
}

}  // namespace
}  // namespace corvina
