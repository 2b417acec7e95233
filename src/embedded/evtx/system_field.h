// The values of an event's System part by name, and sets of them.
#pragma once

#include <bit>
#include <cstdint>

namespace corvina::evtx {

enum class SystemField : std::uint8_t {
    ProviderName,
    ProviderGuid,
    EventSourceName,
    EventId,
    Qualifiers,
    Version,
    Level,
    Task,
    Opcode,
    Keywords,
    TimeCreated,
    EventRecordId,
    ActivityId,
    RelatedActivityId,
    ProcessId,
    ThreadId,
    Channel,
    Computer,
    UserSid,
};

inline constexpr unsigned SystemFieldCount = 19;

class SystemFieldSet {
  public:
    static constexpr SystemFieldSet All() { return SystemFieldSet((1U << SystemFieldCount) - 1); }
    static constexpr SystemFieldSet Of(SystemField field) { return SystemFieldSet(Bit(field)); }

    constexpr SystemFieldSet() = default;

    constexpr bool Has(SystemField field) const { return (bits_ & Bit(field)) != 0; }
    friend constexpr bool operator==(const SystemFieldSet&, const SystemFieldSet&) = default;
    constexpr bool IsEmpty() const { return bits_ == 0; }
    // Of a set that is not empty.
    constexpr SystemField First() const { return static_cast<SystemField>(std::countr_zero(bits_)); }
    constexpr void Remove(SystemField field) { bits_ &= ~Bit(field); }

    constexpr SystemFieldSet With(SystemFieldSet other) const { return SystemFieldSet(bits_ | other.bits_); }
    constexpr SystemFieldSet Without(SystemFieldSet other) const { return SystemFieldSet(bits_ & ~other.bits_); }

  private:
    explicit constexpr SystemFieldSet(std::uint32_t bits) : bits_(bits) {}
    static constexpr std::uint32_t Bit(SystemField field) { return 1U << static_cast<unsigned>(field); }

    std::uint32_t bits_ = 0;
};

}  // namespace corvina::evtx
