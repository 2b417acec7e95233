// Any bytes as a program file: its resources, message tables and lists of providers. Bytes that do not begin like an
// image are taken for one of the resources, so that short inputs reach all of the parts.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "embedded/publisher/event_template_resource.h"
#include "embedded/publisher/image_resources.h"
#include "embedded/publisher/message_ids.h"
#include "embedded/publisher/message_table.h"
#include "embedded/publisher/parameter_text.h"

namespace {

using namespace corvina;
using namespace corvina::publisher;

class MemoryFile : public RandomAccessFile {
  public:
    explicit MemoryFile(std::span<const std::byte> bytes) : bytes_(bytes) {}

    std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> buffer) const override {
        if (offset >= bytes_.size()) {
            return 0;
        }
        const auto rest = bytes_.subspan(static_cast<std::size_t>(offset));
        const std::size_t count = std::min(buffer.size(), rest.size());
        std::copy_n(rest.begin(), count, buffer.begin());
        return count;
    }
    std::uint64_t Size() const override { return bytes_.size(); }

  private:
    std::span<const std::byte> bytes_;
};

void Expect(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void ReadTable(std::vector<std::byte> bytes) {
    const std::size_t size = bytes.size();
    const auto table = std::make_shared<const MessageTable>(std::move(bytes));
    Expect(table->ByteSize() <= 2 * size);
    for (const std::uint32_t id : {0U, 1U, 7U, 0xFFFFU, 0x10000U, 0x50000002U, 0xB0000001U, 0xFFFFFFFFU}) {
        const std::optional<std::wstring> text = table->Find(id);
        Expect(!text || text->size() <= 2 * 0xFFFF);
    }
    Publisher publisher;
    publisher.Messages = std::make_shared<const MessageTables>(std::vector{table});
    std::wstring text = L"%%1 and %%1842%%2";
    ExpandParameters(publisher, text);
}

void ReadLists(std::span<const std::byte> bytes) {
    const std::vector<GuidBytes> providers = EventTemplateProviders(bytes);
    Expect(providers.size() <= 1'000);
    std::size_t count = 0;
    for (const GuidBytes& guid : providers) {
        Publisher publisher;
        if (++count > 3 || !ReadEventTemplate(bytes, guid, publisher)) {
            continue;
        }
        std::size_t characters = 0;
        for (const EventDefinition& event : publisher.Events) {
            const EventDefinition* const found = publisher.FindEvent(event.Id, event.Version);
            Expect(found != nullptr && found->Id == event.Id && found->Version == event.Version);
            characters += event.Template.size() + event.Channel.size();
        }
        Expect(characters <= std::size_t{8} << 20);
        publisher.KeywordTexts(UINT64_MAX);
        MessageById(publisher, publisher.MessageId);
    }
}

void ReadImage(std::span<const std::byte> bytes) {
    const auto image = ImageResources::Open(std::make_unique<MemoryFile>(bytes));
    if (image == nullptr) {
        return;
    }
    // A few are enough: all of them may be the same bytes.
    std::vector<ImageResource> tables = image->OfType(MessageTableType);
    std::vector<ImageResource> lists = image->OfType(EventTemplateType);
    Expect(tables.size() <= 1'000 && lists.size() <= 1'000);
    tables.resize(std::min<std::size_t>(tables.size(), 3));
    lists.resize(std::min<std::size_t>(lists.size(), 3));
    for (const ImageResource& resource : tables) {
        ReadTable(image->Read(resource));
    }
    for (const ImageResource& resource : lists) {
        Expect(image->Read(resource, 10).size() <= 10);
        ReadLists(image->Read(resource));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto bytes = std::as_bytes(std::span(data, size));
    if (size >= 2 && std::memcmp(data, "MZ", 2) == 0) {
        ReadImage(bytes);
    } else if (size >= 4 && std::memcmp(data, "CRIM", 4) == 0) {
        ReadLists(bytes);
    } else {
        ReadTable({bytes.begin(), bytes.end()});
    }
    return 0;
}
