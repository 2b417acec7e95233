// The system at start: names, version, folders and privileges, as a test sets them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/error_codes.h"
#include "platform/system_services.h"

namespace corvina::test {

class FakeSystem final : public SystemServices {
  public:
    explicit FakeSystem(std::vector<std::wstring>& journal) : journal_(journal) {}

    std::wstring ModulePath() const override { return Module; }
    bool FolderExists(std::wstring_view path) const override {
        return std::find(Folders.begin(), Folders.end(), path) != Folders.end();
    }
    void CreateFolders(std::wstring_view path) override {
        journal_.push_back(L"CreateFolders " + std::wstring(path));
        Folders.emplace_back(path);
    }
    bool FileExists(std::wstring_view path) const override {
        return std::find(Files.begin(), Files.end(), path) != Files.end();
    }
    std::wstring ComputerName() const override { return Computer; }
    std::optional<std::uint16_t> UserInterfaceLanguage() const override { return Language; }
    WindowsVersion Version() const override {
        journal_.push_back(L"Version");
        return SystemVersion;
    }
    void StartProgram(std::wstring_view path) override { journal_.push_back(L"StartProgram " + std::wstring(path)); }

    std::wstring Module = L"C:\\Corvina\\Corvina.exe";
    std::wstring Computer = L"TESTPC";
    std::optional<std::uint16_t> Language = 1033;
    WindowsVersion SystemVersion{10, 0, 19045};
    std::vector<std::wstring> Folders;
    std::vector<std::wstring> Files;

  private:
    std::vector<std::wstring>& journal_;
};

// A token that holds every privilege unless a test says otherwise by name.
class FakePrivilegeToken final : public PrivilegeToken {
  public:
    explicit FakePrivilegeToken(std::vector<std::wstring>& journal) : journal_(journal) {}

    bool Open() override {
        journal_.push_back(L"OpenToken");
        return CanOpen;
    }
    std::uint32_t LookUpPrivilege(std::wstring_view name, std::uint64_t& value) override {
        if (const auto found = LookUpErrors.find(std::wstring(name)); found != LookUpErrors.end()) {
            return found->second;
        }
        names_.emplace_back(name);
        value = names_.size() - 1;
        return error::Success;
    }
    bool EnablePrivilege(std::uint64_t value, std::uint32_t& error) override {
        const std::wstring& name = names_.at(static_cast<std::size_t>(value));
        if (const auto found = AdjustErrors.find(name); found != AdjustErrors.end()) {
            error = found->second;
            return error == error::NotAllAssigned;
        }
        error = error::Success;
        Enabled.push_back(name);
        return true;
    }

    bool CanOpen = true;
    std::map<std::wstring, std::uint32_t> LookUpErrors;
    std::map<std::wstring, std::uint32_t> AdjustErrors;  // 1300: the call succeeds, the privilege is not held
    std::vector<std::wstring> Enabled;

  private:
    std::vector<std::wstring>& journal_;
    std::vector<std::wstring> names_;
};

}  // namespace corvina::test
