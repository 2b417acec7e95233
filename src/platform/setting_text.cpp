#include "platform/setting_text.h"

namespace corvina {

std::wstring ReadSettingOrDefault(const SettingsStore& settings, std::wstring_view section, std::wstring_view key,
                                  std::wstring_view defaultValue) {
    std::wstring text = settings.ReadSetting(section, key, defaultValue);
    return text.empty() ? std::wstring(defaultValue) : text;
}

}  // namespace corvina
