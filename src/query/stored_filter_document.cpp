#include "query/stored_filter_document.h"

#include <algorithm>
#include <optional>

#include "base/format_text.h"
#include "base/parse_number.h"
#include "base/utf.h"
#include "query/stored_filter_text.h"

namespace corvina::stored_filter {
namespace {

// The tree of many tiny tags needs far more memory than their text.
constexpr std::ptrdiff_t MostTags = 200'000;

constexpr int MaximumDepth = 100;

// Document types are passed over, and the entities that they declare are never expanded.
constexpr unsigned int ParseOptions = pugi::parse_default | pugi::parse_comments | pugi::parse_pi;

class DepthMeter : public pugi::xml_tree_walker {
  public:
    bool for_each(pugi::xml_node&) override { return depth() <= MaximumDepth; }
};

// Where the bytes stop being UTF-8 text; their size when they never do. The parser takes such bytes as they come, and
// a letter of another code page would be lost when the document is written again.
std::size_t EndOfUtf8(std::string_view bytes) {
    const std::string text = Utf8FromWide(WideFromUtf8(bytes));
    const auto difference = std::mismatch(bytes.begin(), bytes.end(), text.begin(), text.end()).first;
    return std::min(static_cast<std::size_t>(difference - bytes.begin()), bytes.find('\0'));
}

bool CheckVersion(pugi::xml_node root, StoredFilterFault& fault) {
    const pugi::xml_attribute attribute = root.attribute(VersionAttribute);
    if (!attribute) {
        return true;
    }
    const std::wstring text = WideFromUtf8(attribute.value());
    const std::optional<std::uint64_t> version = ParseUnsigned(TrimmedFilterText(text));
    if (version && *version >= 1 && *version <= StoredFilterVersion) {
        return true;
    }
    fault.Text =
        FormatText(version && *version != 0 ? L"the filter was stored by a later version of this program (%.20s)"
                                            : L"\"%.20s\" is not the version of a stored filter",
                   {text});
    return false;
}

}  // namespace

void SetFault(std::wstring_view text, const Document& document, std::ptrdiff_t offset, StoredFilterFault& fault) {
    fault = {};
    fault.Text = text;
    if (offset >= 0 && static_cast<std::size_t>(offset) <= document.Source.size()) {
        const std::string_view before = document.Source.substr(0, static_cast<std::size_t>(offset));
        fault.Line = 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
    }
}

bool Parse(std::string_view bytes, Document& document, StoredFilterFault& fault) {
    fault = {};
    if (bytes.size() > MaximumStoredFilterSize || std::count(bytes.begin(), bytes.end(), '<') > MostTags) {
        fault.Text = L"the file is too large for a stored filter";
        return false;
    }
    const pugi::xml_parse_result result = document.Tree.load_buffer(bytes.data(), bytes.size(), ParseOptions);
    document.Source = result.encoding == pugi::encoding_utf8 ? bytes : std::string_view();
    if (!result) {
        SetFault(WideFromUtf8(result.description()), document, result.offset, fault);
        return false;
    }
    if (const std::size_t end = EndOfUtf8(document.Source); end < document.Source.size()) {
        SetFault(L"the text is not UTF-8", document, static_cast<std::ptrdiff_t>(end), fault);
        return false;
    }
    if (DepthMeter meter; !document.Tree.traverse(meter)) {
        fault.Text = L"the elements are nested too deep";
        return false;
    }
    const pugi::xml_node root = document.Tree.document_element();
    if (std::string_view(root.name()) != RootElement) {
        fault.Text = L"the document is not a stored filter";
        return false;
    }
    return CheckVersion(root, fault);
}

}  // namespace corvina::stored_filter
