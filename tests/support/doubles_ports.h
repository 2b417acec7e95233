// The small ports of the operating system as a test sets them: boxes that note what they say, a debug log to read, a
// pump that runs what the test wants done in the middle of long work.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/accounts.h"
#include "platform/category_message_files.h"
#include "platform/clipboard.h"
#include "platform/debug_log.h"
#include "platform/message_pump.h"
#include "platform/prompts.h"
#include "platform/system_errors.h"

namespace corvina::test {

class RecordingDebugLog final : public DebugLog {
  public:
    void Write(std::wstring_view text) override { Lines.emplace_back(text); }

    bool Has(std::wstring_view line) const {
        for (const std::wstring& written : Lines) {
            if (written == line) {
                return true;
            }
        }
        return false;
    }

    std::vector<std::wstring> Lines;
};

class RecordingPrompts final : public Prompts {
  public:
    struct Box {
        std::wstring Text;
        std::wstring Title;
    };

    void ShowError(std::wstring_view text, std::wstring_view title) override {
        Errors.push_back({std::wstring(text), std::wstring(title)});
    }
    void ShowInformation(std::wstring_view text, std::wstring_view title) override {
        Informations.push_back({std::wstring(text), std::wstring(title)});
    }
    bool AskYesNo(std::wstring_view text, std::wstring_view title) override {
        Questions.push_back({std::wstring(text), std::wstring(title)});
        return Answer;
    }
    std::optional<std::wstring> ChooseFileToOpen(std::wstring_view filter) override {
        Filter = filter;
        return ChosenFile;
    }

    std::vector<Box> Errors;
    std::vector<Box> Informations;
    std::vector<Box> Questions;
    bool Answer = true;
    std::wstring Filter;
    std::optional<std::wstring> ChosenFile;
};

class RecordingClipboard final : public Clipboard {
  public:
    void PutText(std::wstring_view text) override { Texts.emplace_back(text); }

    std::vector<std::wstring> Texts;
};

class TestPump final : public MessagePump {
  public:
    void DispatchPending() override {
        ++Calls;
        if (OnDispatch) {
            OnDispatch();
        }
    }

    int Calls = 0;
    std::function<void()> OnDispatch;
};

// Knows the accounts that a test gives it, by the bytes of their identifiers.
class TestAccounts final : public Accounts {
  public:
    std::optional<std::wstring> AccountName(std::span<const std::byte> sid) override {
        ++LookUps;
        const auto found = Names.find(std::vector<std::byte>(sid.begin(), sid.end()));
        return found == Names.end() ? std::nullopt : std::optional(found->second);
    }

    std::optional<std::wstring> AccountSid(std::wstring_view name) override {
        ++LookUps;
        const auto found = Sids.find(std::wstring(name));
        return found == Sids.end() ? std::nullopt : std::optional(found->second);
    }

    std::map<std::vector<std::byte>, std::wstring> Names;
    std::map<std::wstring, std::wstring> Sids;
    int LookUps = 0;
};

class TestSystemErrors final : public SystemErrors {
  public:
    std::optional<std::wstring> MessageText(std::uint32_t code) const override {
        const auto found = Texts.find(code);
        return found == Texts.end() ? std::nullopt : std::optional(found->second);
    }

    std::map<std::uint32_t, std::wstring> Texts;
};

// Message files by "log/source" and their messages by path and number.
class TestCategoryFiles final : public CategoryMessageFiles {
  public:
    bool HasCategoryMessageFile(std::wstring_view logName, std::wstring_view sourceName) override {
        return CategoryMessageFileList(logName, sourceName).has_value();
    }
    std::optional<std::wstring> CategoryMessageFileList(std::wstring_view logName,
                                                        std::wstring_view sourceName) override {
        const auto found = Lists.find(std::wstring(logName) + L"/" + std::wstring(sourceName));
        return found == Lists.end() ? std::nullopt : std::optional(found->second);
    }
    std::wstring MessageFromFile(std::wstring_view path, std::uint32_t messageId) override {
        ++FileReads;
        const auto found = Messages.find({std::wstring(path), messageId});
        return found == Messages.end() ? std::wstring() : found->second;
    }

    std::map<std::wstring, std::wstring> Lists;
    std::map<std::pair<std::wstring, std::uint32_t>, std::wstring> Messages;
    int FileReads = 0;
};

}  // namespace corvina::test
