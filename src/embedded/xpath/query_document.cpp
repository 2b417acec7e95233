#include "embedded/xpath/query_document.h"

#include <algorithm>
#include <map>
#include <new>
#include <pugixml.hpp>
#include <utility>

#include "base/utf.h"

namespace corvina::xpath {
namespace {

// Room for saving more than a hundred thousand selected events at once, each with a Query of its own.
constexpr std::size_t MostCharacters = std::size_t{16} << 20;
constexpr std::ptrdiff_t MostTags = 1'000'000;

// More logs than any computer has; each is looked up and kept open.
constexpr std::size_t MostPaths = 10'000;

constexpr std::wstring_view Blanks = L" \t\r\n\xFEFF";

// Texts outside of elements are kept, so that a document with something behind its end is recognised.
constexpr unsigned int ParseOptions = pugi::parse_default | pugi::parse_fragment;

bool IsElement(pugi::xml_node node, std::string_view name) {
    return node.type() == pugi::node_element && name == node.name();
}

}  // namespace

bool IsQueryDocument(std::wstring_view text) {
    const std::size_t first = text.find_first_not_of(Blanks);
    return first != std::wstring_view::npos && text[first] == L'<';
}

class QueryDocument::Reader {
  public:
    Reader(std::uint64_t now, QueryDocument& document) : now_(now), document_(document) {}

    bool Read(const pugi::xml_document& xml) {
        const pugi::xml_node list = xml.first_child();
        return IsElement(list, "QueryList") && !list.next_sibling() &&
               ForEachChild(list, [this](pugi::xml_node query) { return ReadQuery(query); });
    }

  private:
    // False when one of the children is refused. Comments are no children.
    template <typename Use>
    static bool ForEachChild(pugi::xml_node node, Use use) {
        const auto children = node.children();
        return std::all_of(children.begin(), children.end(), use);
    }

    bool ReadQuery(pugi::xml_node query) {
        const auto readTerm = [this, query](pugi::xml_node term) { return ReadTerm(query, term); };
        const bool read = IsElement(query, "Query") && ForEachChild(query, readTerm);
        ++queryCount_;
        return read;
    }

    bool ReadTerm(pugi::xml_node query, pugi::xml_node element) {
        Term term;
        term.Query = queryCount_;
        term.Suppresses = IsElement(element, "Suppress");
        if (!term.Suppresses && !IsElement(element, "Select")) {
            return false;
        }
        std::string_view path = element.attribute("Path").value();
        if (path.empty()) {
            path = query.attribute("Path").value();
        }
        std::string text;
        const auto addText = [&text](pugi::xml_node part) {
            text += part.value();
            return part.type() == pugi::node_pcdata || part.type() == pugi::node_cdata;
        };
        if (path.empty() || !ForEachChild(element, addText) || !FindPath(path, term.Path)) {
            return false;
        }
        term.Condition = Compile(text);
        const bool valid = term.Condition != nullptr;
        document_.terms_.push_back(std::move(term));
        return valid;
    }

    bool FindPath(std::string_view path, std::size_t& index) {
        const auto [place, isNew] = paths_.try_emplace(std::string(path), document_.paths_.size());
        if (isNew) {
            document_.paths_.push_back(WideFromUtf8(path));
        }
        index = place->second;
        return document_.paths_.size() <= MostPaths;
    }

    // One condition is often repeated for each of many logs.
    std::shared_ptr<const Filter> Compile(const std::string& text) {
        if (lastCondition_ == nullptr || text != lastText_) {
            lastCondition_ = Filter::Parse(WideFromUtf8(text), now_);
            lastText_ = text;
        }
        return lastCondition_;
    }

    std::uint64_t now_;
    QueryDocument& document_;
    std::size_t queryCount_ = 0;
    std::map<std::string, std::size_t> paths_;
    std::string lastText_;
    std::shared_ptr<const Filter> lastCondition_;
};

std::optional<QueryDocument> QueryDocument::Parse(std::wstring_view text, std::uint64_t now) {
    // The tags are counted first: the tree of many tiny ones needs far more memory than their text.
    if (text.size() > MostCharacters || std::count(text.begin(), text.end(), L'<') > MostTags) {
        return std::nullopt;
    }
    text.remove_prefix(std::min(text.find_first_not_of(Blanks), text.size()));
    const std::string utf8 = Utf8FromWide(text);
    pugi::xml_document xml;
    // Whatever a declaration says, the text has already been decoded.
    const auto result = xml.load_buffer(utf8.data(), utf8.size(), ParseOptions, pugi::encoding_utf8);
    if (result.status == pugi::status_out_of_memory) {
        throw std::bad_alloc();
    }
    std::optional<QueryDocument> document(std::in_place);
    if (!result || !Reader(now, *document).Read(xml)) {
        document.reset();
    }
    return document;
}

}  // namespace corvina::xpath
