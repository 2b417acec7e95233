// Makes up the events of one channel, one after another.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/identifiers.h"
#include "embedded/evtx/log_file_writer.h"
#include "embedded/samples/sample_catalog.h"
#include "embedded/samples/sample_random.h"

namespace corvina::samples {

// A provider's identity: the one in the catalog, or one made up from its name.
GuidBytes ProviderGuid(const SampleProvider& provider);

// The keywords as they stand in an event: the catalog's with the bits that the platform adds.
std::uint64_t KeywordsOf(const SampleProvider& provider, const SampleEvent& event);

class SampleEventSource {
  public:
    // A channel that no provider of the catalog writes to gets the events of the System log.
    SampleEventSource(std::wstring channel, std::wstring computer, std::uint64_t seed);

    // The next event; valid until the next call. `time` is a file time.
    const evtx::WriterEvent& Next(std::uint64_t time);

  private:
    struct Choice {
        const SampleProvider* Provider;
        const SampleEvent* Event;
        GuidBytes Guid;
        std::uint64_t WeightUpTo;  // of this choice and all before it
    };

    void AddChoices(std::wstring_view channel);
    const Choice& Choose();
    void FillSystem(const Choice& choice, std::uint64_t time);
    void FillData(const SampleEvent& event, std::uint64_t time);

    std::vector<Choice> choices_;
    SampleRandom random_;
    evtx::WriterEvent event_;
};

}  // namespace corvina::samples
