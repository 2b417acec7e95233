// Reading one setting so that a key without a value counts as missing.
#pragma once

#include <string>
#include <string_view>

#include "platform/settings_store.h"

namespace corvina {

std::wstring ReadSettingOrDefault(const SettingsStore& settings, std::wstring_view section, std::wstring_view key,
                                  std::wstring_view defaultValue);

}  // namespace corvina
