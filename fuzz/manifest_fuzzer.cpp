// Any bytes as a publisher manifest: reading, every look-up, and the messages with too few and with many values.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>
#include <vector>

#include "base/utf.h"
#include "embedded/publisher/publisher_manifest.h"

namespace {

using corvina::publisher::EventDefinition;
using corvina::publisher::Publisher;

void Expect(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void ExpandBothWays(std::wstring_view message) {
    const std::vector<std::wstring> values = {L"4711", L"", L"-1", L"%1%n", L"0x7F", L"text"};
    for (std::size_t count = 0; count <= values.size(); count += values.size()) {
        bool missing = false;
        const std::wstring text = corvina::publisher::ExpandMessage(message, std::span(values).first(count), missing);
        Expect(text.size() <= std::size_t{16} << 20);
    }
}

void LookUp(const Publisher& publisher) {
    Expect(!publisher.Name.empty());
    for (const EventDefinition& event : publisher.Events) {
        const EventDefinition* const found = publisher.FindEvent(event.Id, event.Version);
        Expect(found != nullptr && found->Id == event.Id && found->Version == event.Version);
        Expect(publisher.FindEvent(event.Id, 0xFF) != nullptr);
        publisher.LevelText(event.Level);
        publisher.TaskText(event.Task);
        publisher.OpcodeText(event.Opcode, event.Task);
        publisher.KeywordTexts(event.Keywords);
        ExpandBothWays(event.Message);
    }
    publisher.KeywordTexts(UINT64_MAX);
    publisher.FindEvent(0, 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span bytes(reinterpret_cast<const std::byte*>(data), size);
    std::vector<std::wstring> problems;
    for (const Publisher& publisher : corvina::publisher::ReadManifest(bytes, &problems)) {
        LookUp(publisher);
    }
    Expect(problems.size() <= 1'000);

    std::wstring message;
    corvina::AppendUtf16(bytes, message);
    ExpandBothWays(message);
    ExpandBothWays(corvina::WideFromUtf8({reinterpret_cast<const char*>(data), size}));
    return 0;
}
