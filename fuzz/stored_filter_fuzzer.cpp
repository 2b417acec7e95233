// Any bytes as the file of a stored filter: what can be read is written and read back equal, on its own and over the
// file that it came from. Any text as a criterion and as a name.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

#include "base/utf.h"
#include "query/stored_filter.h"
#include "query/stored_filter_name.h"

namespace {

using namespace corvina;

void Expect(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void TryRoundTrip(const StoredFilter& filter, std::string_view previous) {
    const std::string bytes = WriteStoredFilter(filter, previous);
    StoredFilterFault fault;
    Expect(bytes.size() > MaximumStoredFilterSize || ReadStoredFilter(bytes, fault) == filter);
}

void TryFile(std::string_view bytes) {
    StoredFilterFault fault;
    const auto filter = ReadStoredFilter(bytes, fault);
    if (filter) {
        Expect(fault.Text.empty());
        TryRoundTrip(*filter, {});
        TryRoundTrip(*filter, bytes);
    } else {
        Expect(!fault.Text.empty() && fault.Line <= bytes.size() + 1);
    }
}

void TryText(const std::wstring& text, std::string_view previous) {
    StoredFilter filter;
    filter.Name = text;
    filter.Criteria.Providers = text;
    filter.Query = text;
    TryRoundTrip(filter, {});
    TryRoundTrip(filter, previous);
    for (const unsigned number : {1U, 10'000U}) {
        Expect(IsPlainFileName(StoredFilterFileName(text, number)));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    TryFile(bytes);
    TryText(WideFromUtf8(bytes), bytes);
    std::wstring utf16;
    AppendUtf16(std::as_bytes(std::span(data, size)), utf16);
    TryText(utf16, bytes);
    return 0;
}
