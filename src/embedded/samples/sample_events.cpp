#include "embedded/samples/sample_events.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "embedded/samples/sample_values.h"

namespace corvina::samples {
namespace {

GuidBytes MakeGuid(SampleRandom& random) {
    GuidBytes guid{};
    for (std::byte& byte : guid) {
        byte = static_cast<std::byte>(random.Next() & 0xFF);
    }
    return guid;
}

}  // namespace

GuidBytes ProviderGuid(const SampleProvider& provider) {
    if (const auto guid = ParseGuid(provider.Guid)) {
        return *guid;
    }
    SampleRandom random(SeedFor(0, provider.Name));
    return MakeGuid(random);
}

std::uint64_t KeywordsOf(const SampleProvider& provider, const SampleEvent& event) {
    return event.Keywords | (provider.IsClassic ? ClassicEvent : ChannelBit);
}

SampleEventSource::SampleEventSource(std::wstring channel, std::wstring computer, std::uint64_t seed)
    : random_(SeedFor(SeedFor(seed, computer), channel)) {
    AddChoices(channel);
    if (choices_.empty()) {
        AddChoices(L"System");
    }
    event_.System.Channel = std::move(channel);
    event_.System.Computer = std::move(computer);
}

void SampleEventSource::AddChoices(std::wstring_view channel) {
    std::uint64_t weight = 0;
    for (const SampleProvider& provider : Providers()) {
        for (const SampleEvent& event : provider.Events) {
            if (event.Channel == channel) {
                weight += event.Weight;
                choices_.push_back({&provider, &event, ProviderGuid(provider), weight});
            }
        }
    }
}

const SampleEventSource::Choice& SampleEventSource::Choose() {
    const std::uint64_t weight = random_.Below(choices_.back().WeightUpTo);
    return *std::upper_bound(choices_.begin(), choices_.end(), weight,
                             [](std::uint64_t value, const Choice& choice) { return value < choice.WeightUpTo; });
}

const evtx::WriterEvent& SampleEventSource::Next(std::uint64_t time) {
    const Choice& choice = Choose();
    FillSystem(choice, time);
    FillData(*choice.Event, time);
    return event_;
}

void SampleEventSource::FillSystem(const Choice& choice, std::uint64_t time) {
    const SampleProvider& provider = *choice.Provider;
    const SampleEvent& event = *choice.Event;
    evtx::SystemValues& system = event_.System;
    system.ProviderName = provider.Name;
    system.EventId = event.Id;
    system.Version = event.Version;
    system.Level = event.Level;
    system.Task = event.Task;
    system.Opcode = event.Opcode;
    system.Keywords = KeywordsOf(provider, event);
    system.TimeCreated = time;
    // Some classic providers have been given a manifest since, and with it a GUID; their old name stays with the
    // events.
    const bool hasGuid = !provider.IsClassic || *provider.Guid != L'\0';
    system.ProviderGuid = hasGuid ? std::optional(choice.Guid) : std::nullopt;
    system.EventSourceName = provider.IsClassic && hasGuid ? provider.Name : L"";
    system.Qualifiers = provider.IsClassic ? std::optional(event.Qualifiers) : std::nullopt;
    system.ActivityId.reset();
    system.RelatedActivityId.reset();
    if (provider.HasActivities && !random_.OneIn(3)) {
        system.ActivityId = MakeGuid(random_);
        if (random_.OneIn(4)) {
            system.RelatedActivityId = MakeGuid(random_);
        }
    }
    system.ProcessId = static_cast<std::uint32_t>(4 * (1 + random_.Below(3'000)));
    system.ThreadId = static_cast<std::uint32_t>(4 * (1 + random_.Below(5'000)));
    system.UserSid.clear();
    if (provider.User == SampleUser::System) {
        system.UserSid = SystemSid();
    } else if (provider.User == SampleUser::Account) {
        system.UserSid = AccountSid(random_);
    }
}

void SampleEventSource::FillData(const SampleEvent& event, std::uint64_t time) {
    event_.Data.resize(event.Fields.size());
    for (std::size_t index = 0; index < event.Fields.size(); ++index) {
        const SampleField& field = event.Fields[index];
        evtx::WriterValue& value = event_.Data[index];
        value.Name = field.Name;
        value.Type = KindOf(field.Kind);
        MakeValue(field.Kind, time, random_, value);
    }
}

}  // namespace corvina::samples
