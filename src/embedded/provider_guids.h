// Which GUID belongs to a provider's name. Program files know their providers by GUIDs only, and on a dead computer
// nobody can ask the registry for the names; but events carry both.
#pragma once

#include <optional>
#include <string>
#include <unordered_map>

#include "embedded/evtx/system_values.h"

namespace corvina::embedded {

class ProviderGuids {
  public:
    // Learns from an event; the last event of a provider counts. What is kept is bounded.
    void Note(const evtx::SystemValues& event);

    // None when no event of that provider had a GUID.
    std::optional<GuidBytes> Find(const std::wstring& name) const;

  private:
    std::unordered_map<std::wstring, GuidBytes> guids_;
};

}  // namespace corvina::embedded
